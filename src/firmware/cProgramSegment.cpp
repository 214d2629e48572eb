#include "firmware/cProgramSegment.h"

#include "grip/cGunInfo.h"
#include "link/cError.h"
#include "link/mAppFunc.h"
#include "link/mCommBasic.h"
#include "link/mErrCodes.h"
#include "link/mVersion.h"
#include "shell/mMain.h"

using namespace mAppFunc;

namespace {

QString hexOf(qint32 value)
{
    return QString::number(static_cast<quint32>(value), 16).toUpper();
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
    if (index < 1 || index > kBlockSize)
        RaiseRuntimeError(mErrCodes::RT_SUBSCRIPT);
    return m_data[static_cast<size_t>(index - 1)];
}

void cProgramSegment::setData(qint32 index, quint8 value)
{
    if (index < 1 || index > kBlockSize)
        RaiseRuntimeError(mErrCodes::RT_SUBSCRIPT);
    m_data[static_cast<size_t>(index - 1)] = value;
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
    return PassErrors(kClass, kRevision, QStringLiteral("Upload (0x") + hexOf(m_address) + QLatin1Char(')'), [&] {
        const QString frame = payloadWithoutChecksum(true) + HexByte(Checksum());
        QString report;
        {
            NoChecksumOutScope noChecksumOut;
            report = mCommBasic::CommHexData(frame, true);
        }
        switch (GetByteFromHexstring(report, 1)) {
        case REP_ACK: return true;
        case REP_NEGATIVE: GripError().RecordNegativeAnswer(report); return false;
        default: RaiseError(mErrCodes::ERR_UL_FIRMWAREDATA, QString(), mErrCodes::MSG_UL_FIRMWAREDATA);
        }
    });
}

bool cProgramSegment::Download()
{
    return PassErrors(kClass, kRevision, QStringLiteral("Download (0x") + hexOf(m_address) + QLatin1Char(')'), [&] {
        const QString report = mCommBasic::CommHexData(HexByte(CMD_READ_BLOCK) + m_addressText, true);
        switch (GetByteFromHexstring(report, 1)) {
        case REP_BLOCK: {
            // A memory report that lost bytes or was spoiled on the way must not become program
            // data: it counts as a failed read, and the transfer reads the block again.
            const qsizetype reportChars = 2 * GetReportReturnSize(REP_BLOCK);
            if (report.size() != reportChars || (!mCommBasic::bNoCRCIn && !mCommBasic::CheckCRC(report)))
                RaiseError(mErrCodes::ERR_DL_FIRMWAREDATA, QString(), mErrCodes::MSG_DL_FIRMWAREDATA);
            for (qint32 i = 1; i <= kBlockSize; ++i)
                m_data[static_cast<size_t>(i - 1)] = GetByteFromHexstring(report, i + 1);
            return true;
        }
        case REP_NEGATIVE: GripError().RecordNegativeAnswer(report); return false;
        default: RaiseError(mErrCodes::ERR_DL_FIRMWAREDATA, QString(), mErrCodes::MSG_DL_FIRMWAREDATA);
        }
    });
}
