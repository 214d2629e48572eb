#include "firmware/cProgramSegment.h"

#include "base/mErrCodes.h"
#include "base/mErrorReport.h"
#include "grip/cGunInfo.h"
#include "link/cError.h"
#include "link/mAppFunc.h"
#include "link/mCommBasic.h"
#include "link/mVersion.h"

using namespace mAppFunc;

namespace {

QString hexOf(qint32 value)
{
    return QString::number(static_cast<quint32>(value), 16).toUpper();
}

// Data bytes are indexed from 1 to 16; other indexes are "Subscript out of range".
size_t dataSlot(qint32 index)
{
    if (index < 1 || index > cProgramSegment::kBlockSize)
        RaiseRuntimeError(mErrCodes::RT_SUBSCRIPT);
    return static_cast<size_t>(index - 1);
}

// The error-log name of a block exchange: "Upload (0x200)".
QString exchangeName(const QString& exchange, qint32 address)
{
    return exchange + QStringLiteral(" (0x") + hexOf(address) + QLatin1Char(')');
}

// Byte 1 of a block exchange's report: the expected report code answers true; a negative answer
// is recorded in cError and answers false; anything else raises the exchange's error.
bool expectedAnswer(const QString& report, qint32 expected, qint32 number, const QString& message)
{
    const qint32 code = GetByteFromHexstring(report, 1);
    if (code == REP_NEGATIVE) {
        GripError().RecordNegativeAnswer(report);
        return false;
    }
    if (code != expected)
        RaiseError(number, QString(), message);
    return true;
}

// The block write supplies its own check byte as the frame's last byte: the link must not
// append another one for that single exchange.
class NoChecksumOutScope {
public:
    NoChecksumOutScope() { mCommBasic::bNoCRCOut = true; }
    ~NoChecksumOutScope() { mCommBasic::bNoCRCOut = false; }
    NoChecksumOutScope(const NoChecksumOutScope&) = delete;
    NoChecksumOutScope& operator=(const NoChecksumOutScope&) = delete;
};

} // namespace

bool cProgramSegment::OldBootCode()
{
    return mVersion::VersionCompare(QStringLiteral("1.2.0"), GunInfo().BootBuild()) < 1;
}

void cProgramSegment::setAddress(const QString& address)
{
    PassErrors(kClass, kRevision, QStringLiteral("Address"), [&] {
        bool ok = false;
        const qint32 value = address.trimmed().toInt(&ok);
        if (!ok)
            RaiseRuntimeError(mErrCodes::RT_TYPE_MISMATCH);
        setAddress(value);
    });
}

void cProgramSegment::setAddress(qint32 address)
{
    m_address = address;
    m_addressText = LZ(4, hexOf(address / 2));
}

quint8 cProgramSegment::Data(qint32 index) const
{
    return m_data[dataSlot(index)];
}

void cProgramSegment::setData(qint32 index, quint8 value)
{
    m_data[dataSlot(index)] = value;
}

quint8 cProgramSegment::addrHi() const
{
    const qint32 high = m_address / 256;
    if (high < 0 || high > 255)
        RaiseRuntimeError(mErrCodes::RT_OVERFLOW);
    return static_cast<quint8>(high);
}

quint8 cProgramSegment::addrLo() const
{
    return static_cast<quint8>(m_address & 255);
}

QString cProgramSegment::payloadWithoutChecksum(bool withCommand) const
{
    QString hex;
    if (withCommand)
        hex += HexByte(OldBootCode() ? CMD_WRITE_BLOCK_OLD : CMD_WRITE_BLOCK);
    hex += m_addressText;
    hex += HexByte(m_byteCount);
    for (qint32 i = 1; i <= m_byteCount; ++i)
        hex += HexByte(Data(i));
    return hex;
}

quint8 cProgramSegment::Checksum() const
{
    return PassErrors(kClass, kRevision, QStringLiteral("Checksum"), [&] {
        // Old boot code checks the whole frame; newer boot code leaves the command byte out.
        return mCommBasic::CalcCRC(payloadWithoutChecksum(OldBootCode()));
    });
}

bool cProgramSegment::Upload()
{
    return PassErrors(kClass, kRevision, exchangeName(QStringLiteral("Upload"), m_address), [&] {
        const QString frame = payloadWithoutChecksum(true) + HexByte(Checksum());
        QString report;
        {
            NoChecksumOutScope noChecksumOut;
            report = mCommBasic::CommHexData(frame, true);
        }
        return expectedAnswer(report, REP_ACK, mErrCodes::ERR_UL_FIRMWAREDATA, mErrCodes::MSG_UL_FIRMWAREDATA);
    });
}

bool cProgramSegment::Download()
{
    return PassErrors(kClass, kRevision, exchangeName(QStringLiteral("Download"), m_address), [&] {
        const QString report = mCommBasic::CommHexData(HexByte(CMD_READ_BLOCK) + m_addressText, true);
        if (!expectedAnswer(report, REP_BLOCK, mErrCodes::ERR_DL_FIRMWAREDATA, mErrCodes::MSG_DL_FIRMWAREDATA))
            return false;
        // A memory report that lost bytes or was spoiled on the way must not become program
        // data: it counts as a failed read, and the transfer reads the block again.
        const qsizetype reportChars = 2 * GetReportReturnSize(REP_BLOCK);
        if (report.size() != reportChars || (!mCommBasic::bNoCRCIn && !mCommBasic::CheckCRC(report)))
            RaiseError(mErrCodes::ERR_DL_FIRMWAREDATA, QString(), mErrCodes::MSG_DL_FIRMWAREDATA);
        for (qint32 i = 1; i <= kBlockSize; ++i)
            m_data[dataSlot(i)] = GetByteFromHexstring(report, i + 1);
        return true;
    });
}
