#include "link/cSerialPort.h"

#include "base/MarloError.h"
#include "base/mErrCodes.h"
#include "link/cSystemFacts.h"
#include "link/mSerialDevices.h"

#include <QFileInfo>

namespace {

cSerialPort::DeviceResolver& resolver()
{
    static cSerialPort::DeviceResolver instance;
    return instance;
}

bool isSimDevice(const QString& device)
{
    return device == QLatin1String("sim") || device.startsWith(QLatin1String("sim:"));
}

} // namespace

void cSerialPort::SetDeviceResolver(DeviceResolver r)
{
    resolver() = std::move(r);
}

cSerialPort::cSerialPort() = default;

cSerialPort::~cSerialPort()
{
    if (m_port.isOpen())
        m_port.close();
}

QString cSerialPort::devicePath() const
{
    if (device().isEmpty())
        return mSerialDevices::PortPath(CommPort());
    if (isSimDevice(device())) {
        if (!resolver())
            RaiseError(mErrCodes::RT_PORT_OPEN_FAILED, QStringLiteral("cSerialPort"),
                       cText("cSerialPort", QT_TRANSLATE_NOOP("cSerialPort", "The virtual grip (%1) is not available in this program."), {device()}));
        QString problem;
        const QString path = resolver()(device(), &problem);
        if (path.isEmpty())
            RaiseError(mErrCodes::RT_PORT_OPEN_FAILED, QStringLiteral("cSerialPort"),
                       cText("cSerialPort", QT_TRANSLATE_NOOP("cSerialPort", "The virtual grip cannot start: %1"), {problem}));
        return path;
    }
    return device();
}

bool cSerialPort::PortOpen() const
{
    return m_port.isOpen();
}

void cSerialPort::setPortOpen(bool open)
{
    if (open == m_port.isOpen()) {
        if (!open)
            RaiseError(mErrCodes::RT_DEVICE_NOT_OPEN, QStringLiteral("cSerialPort"),
                       mErrCodes::RuntimeError(mErrCodes::RT_DEVICE_NOT_OPEN));
        return;
    }
    if (open)
        this->open();
    else
        m_port.close();
}

mLinkHelp::PortFailure cSerialPort::OpenFailure(const QString& path, QSerialPort::SerialPortError error,
                                                 const QString& systemText)
{
    using Kind = mLinkHelp::PortFailure::Kind;
    mLinkHelp::PortFailure failure;
    failure.path = path;
    failure.systemText = systemText;
    switch (error) {
    case QSerialPort::DeviceNotFoundError:
        failure.kind = Kind::NotFound;
        break;
    case QSerialPort::PermissionError:
        if (QFileInfo::exists(path) && !QFileInfo(path).isWritable()) {
            failure.kind = Kind::PermissionDenied;
            break;
        }
        // The device may be written: another program has it, or a lock file keeps it.
        failure.kind = Kind::InUse;
        // A lock file decides by itself: its owner runs, or nobody does and it is stale. Without
        // one, the program that has the device open exclusively is looked for.
        failure.lockFile = mLinkHelp::FindLockFile(path);
        failure.holderPid = failure.lockFile.isEmpty() ? mLinkHelp::DeviceUser(path) : mLinkHelp::LockOwner(failure.lockFile);
        if (failure.holderPid > 0)
            failure.holder = mLinkHelp::ProgramName(failure.holderPid);
        break;
    default:
        failure.kind = Kind::Other;
        break;
    }
    return failure;
}

void cSerialPort::open()
{
    const QString path = devicePath();
    m_openedPath.clear();
    m_port.setPortName(path);
    if (!m_port.open(QIODevice::ReadWrite)) {
        const mLinkHelp::PortFailure failure = OpenFailure(path, m_port.error(), m_port.errorString());
        m_port.clearError();
        MarloError error(mErrCodes::RT_PORT_OPEN_FAILED, QStringLiteral("cSerialPort"), mLinkHelp::PortFailureCause(failure));
        for (const QString& line : mLinkHelp::PortFailureHelp(failure))
            error.addHint(line);
        const cSystemFacts machine;
        for (const QString& line : mLinkHelp::DoctorHints(failure, machine))
            error.addHint(line);
        throw error;
    }
    m_openedPath = path;
    applyLineSettings();
}

QString cSerialPort::LostDevice() const
{
    // An unplugged USB adapter takes its device node with it; the port itself says no more than
    // that nothing arrives (or a read or resource error), so the node decides.
    if (m_openedPath.isEmpty() || QFileInfo::exists(m_openedPath))
        return QString();
    return m_openedPath;
}

void cSerialPort::applyLineSettings()
{
    const LineSettings& line = lineSettings();
    m_port.setBaudRate(line.baudRate);
    m_port.setDataBits(static_cast<QSerialPort::DataBits>(line.dataBits));
    switch (line.parity.toLatin1()) {
    case 'E': m_port.setParity(QSerialPort::EvenParity); break;
    case 'O': m_port.setParity(QSerialPort::OddParity); break;
    case 'M': m_port.setParity(QSerialPort::MarkParity); break;
    case 'S': m_port.setParity(QSerialPort::SpaceParity); break;
    default: m_port.setParity(QSerialPort::NoParity); break;
    }
    if (line.stopBits == QLatin1String("2"))
        m_port.setStopBits(QSerialPort::TwoStop);
    else if (line.stopBits == QLatin1String("1.5"))
        m_port.setStopBits(QSerialPort::OneAndHalfStop);
    else
        m_port.setStopBits(QSerialPort::OneStop);
    m_port.setFlowControl(QSerialPort::NoFlowControl);
    m_port.clearError();
}

void cSerialPort::pollInput()
{
    // Takes whatever the driver holds into the port's buffer without blocking.
    if (m_port.isOpen() && m_port.waitForReadyRead(0))
        return;
    m_port.clearError();
}

qint32 cSerialPort::InBufferCount()
{
    if (!m_port.isOpen())
        return 0;
    pollInput();
    return static_cast<qint32>(m_port.bytesAvailable());
}

QByteArray cSerialPort::Input()
{
    if (!m_port.isOpen())
        RaiseError(mErrCodes::RT_DEVICE_NOT_OPEN, QStringLiteral("cSerialPort"),
                   mErrCodes::RuntimeError(mErrCodes::RT_DEVICE_NOT_OPEN));
    pollInput();
    return InputLen() > 0 ? m_port.read(InputLen()) : m_port.readAll();
}

void cSerialPort::setOutput(const QByteArray& bytes)
{
    if (!m_port.isOpen())
        RaiseError(mErrCodes::RT_DEVICE_NOT_OPEN, QStringLiteral("cSerialPort"),
                   mErrCodes::RuntimeError(mErrCodes::RT_DEVICE_NOT_OPEN));
    m_port.write(bytes);
    // The bytes must be on their way before the link pauses after the code byte.
    while (m_port.bytesToWrite() > 0 && m_port.waitForBytesWritten(1000)) {
    }
    m_port.clearError();
}

void cSerialPort::waitForInput(qint32 msecs)
{
    if (!m_port.isOpen())
        return;
    if (!m_port.waitForReadyRead(msecs))
        m_port.clearError();
}
