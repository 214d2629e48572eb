#include "link/cLink.h"

#include "base/mErrCodes.h"
#include "base/mErrorReport.h"
#include "link/cCommConsole.h"
#include "link/cCommControl.h"
#include "link/cLinkSettings.h"
#include "link/mAppFunc.h"
#include "link/mCommBasic.h"

#include <QDateTime>
#include <QFile>
#include <QThread>

using mAppFunc::FrameByte;
using mAppFunc::GetFunctionInputSize;
using mAppFunc::GetFunctionReturnSize;
using mAppFunc::GetReportReturnSize;
using mCommBasic::kModule;
using mCommBasic::kRevision;

namespace {

// Closes the port on every way out of an exchange that opened it, errors included.
class ClosePortOnExit {
public:
    explicit ClosePortOnExit(cCommControl& port) : m_port(port) {}
    ~ClosePortOnExit()
    {
        try {
            if (m_port.PortOpen())
                m_port.setPortOpen(false);
        } catch (...) {
        }
    }
    ClosePortOnExit(const ClosePortOnExit&) = delete;
    ClosePortOnExit& operator=(const ClosePortOnExit&) = delete;

private:
    cCommControl& m_port;
};

} // namespace

cLink::cLink(cCommControl* port, const cLinkSettings& settings) : m_port(port), m_settings(settings)
{
}

cLink::~cLink() = default;

void cLink::DoWait(qint32 milliseconds)
{
    if (m_sleep)
        m_sleep(milliseconds);
    else if (milliseconds > 0)
        QThread::msleep(static_cast<unsigned long>(milliseconds));
}

void cLink::WaitWithEvents(qint32 milliseconds)
{
    if (m_sleep)
        m_sleep(milliseconds);
    else if (milliseconds > 0)
        mMain::UI().waitWithEvents(milliseconds);
}

void cLink::SetSleepFunction(std::function<void(qint32)> sleep) { m_sleep = std::move(sleep); }

void cLink::SetConsoleFactory(std::function<std::unique_ptr<cCommConsole>()> factory)
{
    m_consoleFactory = std::move(factory);
}

void cLink::ResetConsole() { m_console.reset(); }

void cLink::ShowCommStatus(const QString& text, bool flag)
{
    // Deliberately shows nothing: the outcome texts stay in the code path only.
    Q_UNUSED(text);
    Q_UNUSED(flag);
}

cCommConsole* cLink::StartLogging()
{
    try {
        if (!m_console && m_consoleFactory) {
            m_console = m_consoleFactory();
            if (m_console)
                m_console->StartLogging();
        }
        return m_console.get();
    } catch (...) {
        return nullptr; // errors are ignored
    }
}

void cLink::LogCommData(const QByteArray& bytes, const QString& label)
{
    // A log that cannot be written never disturbs an exchange: every error is ignored here. Both
    // switches are asked at every entry, so a change in the options applies at once.
    try {
        const bool toConsole = m_settings.CommLogToConsole();
        const bool toFile = m_settings.CommLogToFile();
        if (!toFile && !toConsole)
            return;
        const QString entry = mCommBasic::FormatLogEntry(QDateTime::currentDateTime(), bytes, label);
        if (toFile) {
            QFile file(m_settings.CommLogFile());
            if (file.open(QIODevice::Append))
                file.write((entry + QStringLiteral("\r\n")).toLocal8Bit());
        }
        if (toConsole) {
            if (cCommConsole* console = StartLogging())
                console->logData(entry);
        }
    } catch (...) {
    }
}

void cLink::CommWriteBytes(const QByteArray& bytes, qint32 n)
{
    PassErrors(kModule, kRevision, QStringLiteral("CommWriteBytes"), [&] {
        if (n < 0)
            RaiseRuntimeError(mErrCodes::RT_INVALID_CALL);
        // A command shorter than its catalogue size goes out padded with zero bytes; the log
        // shows the bytes as given.
        const QByteArray given = bytes.left(n);
        QByteArray out = given;
        out.append(QByteArray(n - given.size(), '\0'));
        LogCommData(given, QStringLiteral("Sending data"));
        m_port->setOutput(out);
    });
}

QByteArray cLink::CommReadBytes(qint32& n)
{
    return PassErrors(kModule, kRevision, QStringLiteral("CommReadBytes"), [&] {
        if (n < 0)
            RaiseRuntimeError(mErrCodes::RT_INVALID_CALL);
        m_port->setInputLen(n);
        const QByteArray bytes = m_port->Input();
        n = static_cast<qint32>(bytes.size());
        LogCommData(bytes, QStringLiteral("Receiving data"));
        return bytes;
    });
}

void cLink::SendCommandWait(const QByteArray& frame)
{
    PassErrors(kModule, kRevision, QStringLiteral("SendCommandWait"), [&] {
        CommWriteBytes(frame, 1);
        // The grip needs the pause after the code byte; it stays for every command. Window
        // events run during it, as they do while the report is awaited (the busy flag is set).
        WaitWithEvents(100);
    });
}

void cLink::CommSendData(const QByteArray& cmd, const tExchangeOptions& options)
{
    PassErrors(kModule, kRevision, QStringLiteral("CommSendData"), [&] {
        QByteArray frame = cmd;
        if (options.appendChecksum)
            frame.append(static_cast<char>(mCommBasic::CalcCRC(frame)));
        const qint32 size = GetFunctionInputSize(FrameByte(frame, 1), frame);
        SendCommandWait(frame);
        CommWriteBytes(frame.mid(1), size - 1);
    });
}

QByteArray cLink::CommReceiveData(qint32& n)
{
    return PassErrors(kModule, kRevision, QStringLiteral("CommReceiveData"), [&] {
        qint32 one = 1;
        const QByteArray code = CommReadBytes(one);
        const qint32 size = GetReportReturnSize(FrameByte(code, 1));
        if (size == 0) {
            // A code the catalogue does not know is damaged data. The classic program asked for
            // -1 more bytes and failed with a run-time error that said nothing useful; this one
            // takes what came, so that the record raises its own error with the help for
            // damaged data.
            m_lastOutcome = Outcome::UnknownReport;
            n = 0;
            return code + CommReadBytes(n);
        }
        n = size - 1;
        const QByteArray rest = CommReadBytes(n);
        return code + rest;
    });
}

void cLink::FlushBuffer()
{
    PassErrors(kModule, kRevision, QStringLiteral("FlushBuffer"), [&] {
        qint32 all = 0;
        CommReadBytes(all);
    });
}

void cLink::WaitForInput(qint32 expected)
{
    PassErrors(kModule, kRevision, QStringLiteral("WaitForInput"), [&] {
        // The clock has whole-second resolution on purpose: a silent grip is given up on
        // between 1 and 2 seconds after the wait began.
        const qint64 start = QDateTime::currentSecsSinceEpoch();
        // A device that vanished (unplugged) will not answer: no use waiting for it.
        while (m_port->InBufferCount() < expected && QDateTime::currentSecsSinceEpoch() < start + 2 &&
               m_port->LostDevice().isEmpty()) {
            mMain::UI().processEvents();
            m_port->waitForInput(10);
        }
    });
}

bool cLink::OpenComm()
{
    return PassErrors(kModule, kRevision, QStringLiteral("OpenComm"), [&] {
        if (!m_port)
            return false;
        if (m_port->PortOpen())
            return true;
        // Asked at every opening: a change in the options applies to the next exchange.
        m_port->setSettings(m_settings.CommSettings());
        m_port->setInputMode(m_settings.CommInputMode());
        m_port->setCommPort(static_cast<qint16>(m_settings.CommPort()));
        m_port->setDevice(m_settings.CommDevice());
        try {
            m_port->setPortOpen(true);
        } catch (const MarloError& e) {
            // Not raised: the exchange ends with an empty report. The reason is kept for the
            // traffic log and for front ends that explain it.
            m_lastOpenError = e.ShownDescription();
            m_lastOpenHelp = e.Hints();
            ShowCommStatus(QStringLiteral("Error opening port (%1)!").arg(e.Number()), true);
            ShowCommStatus(e.Description(), true);
            LogCommData(QByteArray(), QStringLiteral("Error opening port (%1): %2").arg(e.Number()).arg(e.Description()));
            return false;
        }
        m_lastOpenError.clear();
        m_lastOpenHelp.clear();
        return true;
    });
}

void cLink::CloseComm()
{
    PassErrors(kModule, kRevision, QStringLiteral("CloseComm"), [&] {
        if (!m_port || !m_port->PortOpen())
            return;
        try {
            m_port->setPortOpen(false);
        } catch (const MarloError& e) {
            if (e.Number() != mErrCodes::RT_DEVICE_NOT_OPEN)
                throw;
        }
    });
}

QByteArray cLink::CommHexData(const QByteArray& cmd, bool showResult, const tExchangeOptions& options)
{
    struct ClearBusyOnExit {
        // Every way out clears the flag, the refusal of a second exchange included: that
        // refusal therefore also frees the exchange still running. Deliberate, and kept.
        bool& busy;
        ~ClearBusyOnExit() { busy = false; }
    };
    return PassErrors(kModule, kRevision, QStringLiteral("CommHexData"), [&]() -> QByteArray {
        ClearBusyOnExit clearBusy{m_busy};
        if (m_busy)
            RaiseError(mErrCodes::ERR_COMM_BUSY, QString(), mErrCodes::MessageText(mErrCodes::MSG_COMM_BUSY));
        m_busy = true;
        m_lastOutcome = Outcome::None;
        m_lastLostDevice.clear();
        if (cmd.isEmpty())
            RaiseError(mErrCodes::ERR_NOT_ENOUGH_DATA, QStringLiteral("CommHexData"),
                       mErrCodes::MessageText(mErrCodes::MSG_NOT_ENOUGH_DATA));
        const qint32 code = FrameByte(cmd, 1);

        if (!OpenComm()) {
            m_lastOutcome = Outcome::PortFailed;
            ShowCommStatus(showResult ? QStringLiteral(" - PORT!") : QStringLiteral("Cannot open comm. port."), showResult);
            return QByteArray();
        }
        ClosePortOnExit closePort(*m_port);
        if (m_port->InBufferCount() >= 1)
            FlushBuffer(); // stale bytes of an earlier exchange
        const qint32 expected = GetFunctionReturnSize(code);
        CommSendData(cmd, options);
        WaitForInput(expected);

        QByteArray report;
        qint32 n = 0;
        const qint32 received = m_port->InBufferCount();
        ShowCommStatus(classify(received, expected, showResult, options, report, n), showResult);
        // A report cut short (or none) by a device that vanished is named as such.
        if (received < expected && !m_port->LostDevice().isEmpty()) {
            m_lastOutcome = Outcome::DeviceLost;
            m_lastLostDevice = m_port->LostDevice();
        }
        CloseComm();
        return report;
    });
}

QString cLink::classify(qint32 received, qint32 expected, bool showResult, const tExchangeOptions& options,
                        QByteArray& report, qint32& n)
{
    // The outcome texts are never shown.
    if (received == 0) {
        m_lastOutcome = Outcome::Timeout;
        return showResult ? QStringLiteral(" - TIMEOUT!") : QStringLiteral("Operation timed out.");
    }
    if (received != expected) {
        // Another frame than the expected one, normally the negative answer: returned unchecked.
        m_lastOutcome = Outcome::WrongLength;
        report = CommReceiveData(n);
        return showResult ? QStringLiteral(" - CRC OUT!") : QString();
    }
    report = CommReceiveData(n);
    if (m_lastOutcome == Outcome::UnknownReport)
        return showResult ? QStringLiteral(" - CRC IN!") : QString();
    if (m_port->InBufferCount() > 0)
        FlushBuffer();
    if (options.checkChecksum && !mCommBasic::CheckCRC(report)) {
        m_lastOutcome = Outcome::BadChecksum;
        return showResult ? QStringLiteral(" - CRC IN!") : QString();
    }
    m_lastOutcome = Outcome::Ok;
    return showResult ? QStringLiteral(" - OK") : QString();
}
