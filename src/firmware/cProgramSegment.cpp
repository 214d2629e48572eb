#include "firmware/cProgramSegment.h"

#include "base/mErrCodes.h"
#include "base/mErrorReport.h"
#include "grip/cGripSession.h"
#include "link/cLink.h"
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
// is recorded in the refusal record and answers false; anything else raises the exchange's error.
bool expectedAnswer(cError& refusal, const QByteArray& report, qint32 expected, qint32 number, const cText& message)
{
    const qint32 code = FrameByte(report, 1);
    if (code == REP_NEGATIVE) {
        refusal.RecordNegativeAnswer(report);
        return false;
    }
    if (code != expected)
        RaiseError(number, QString(), message);
    return true;
}

} // namespace

bool cProgramSegment::OldBootCode(const cGunInfo& gunInfo)
{
    return mVersion::VersionCompare(QStringLiteral("1.2.0"), gunInfo.BootBuild()) < 1;
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

QString cProgramSegment::AddressText() const
{
    return LZ(4, hexOf(m_address / 2));
}

QByteArray cProgramSegment::addressBytes() const
{
    // Transfers address at most 0x7FFF; a word address beyond 16 bits has no frame.
    const qint32 word = m_address / 2;
    if (word < 0 || word > 0xFFFF)
        RaiseRuntimeError(mErrCodes::RT_OVERFLOW);
    return FrameBytes({word >> 8, word & 255});
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

QByteArray cProgramSegment::payloadWithoutChecksum(bool withCommand, bool oldBootCode) const
{
    QByteArray frame;
    if (withCommand)
        frame += FrameBytes({oldBootCode ? CMD_WRITE_BLOCK_OLD : CMD_WRITE_BLOCK});
    frame += addressBytes();
    frame += static_cast<char>(m_byteCount);
    for (qint32 i = 1; i <= m_byteCount; ++i)
        frame += static_cast<char>(Data(i));
    return frame;
}

quint8 cProgramSegment::Checksum(const cGunInfo& gunInfo) const
{
    return PassErrors(kClass, kRevision, QStringLiteral("Checksum"), [&] {
        // Old boot code checks the whole frame; newer boot code leaves the command byte out.
        const bool oldBootCode = OldBootCode(gunInfo);
        return mCommBasic::CalcCRC(payloadWithoutChecksum(oldBootCode, oldBootCode));
    });
}

bool cProgramSegment::Upload(cGripSession& session)
{
    return PassErrors(kClass, kRevision, exchangeName(QStringLiteral("Upload"), m_address), [&] {
        // The check byte is made first: a block it cannot be made for fails there.
        const quint8 checksum = Checksum(session.GunInfo());
        const QByteArray frame = payloadWithoutChecksum(true, OldBootCode(session.GunInfo())) + static_cast<char>(checksum);
        // The frame ends with the block's own check byte: the link appends none.
        tExchangeOptions options;
        options.appendChecksum = false;
        const QByteArray report = session.Link().CommHexData(frame, true, options);
        return expectedAnswer(session.GripError(), report, REP_ACK, mErrCodes::ERR_UL_FIRMWAREDATA, mErrCodes::MessageText(mErrCodes::MSG_UL_FIRMWAREDATA));
    });
}

bool cProgramSegment::Download(cGripSession& session)
{
    return PassErrors(kClass, kRevision, exchangeName(QStringLiteral("Download"), m_address), [&] {
        const tExchangeOptions options;
        const QByteArray report = session.Link().CommHexData(FrameBytes({CMD_READ_BLOCK}) + addressBytes(), true, options);
        if (!expectedAnswer(session.GripError(), report, REP_BLOCK, mErrCodes::ERR_DL_FIRMWAREDATA, mErrCodes::MessageText(mErrCodes::MSG_DL_FIRMWAREDATA)))
            return false;
        // A memory report that lost bytes or was spoiled on the way must not become program
        // data: it counts as a failed read, and the transfer reads the block again.
        if (report.size() != GetReportReturnSize(REP_BLOCK) || (options.checkChecksum && !mCommBasic::CheckCRC(report)))
            RaiseError(mErrCodes::ERR_DL_FIRMWAREDATA, QString(), mErrCodes::MessageText(mErrCodes::MSG_DL_FIRMWAREDATA));
        for (qint32 i = 1; i <= kBlockSize; ++i)
            m_data[dataSlot(i)] = FrameByte(report, i + 1);
        return true;
    });
}
