#include "firmware/mCommSupport.h"

#include "base/mErrCodes.h"
#include "base/mErrorReport.h"
#include "firmware/cProgramSegment.h"
#include "grip/cGripSession.h"
#include "grip/mCommSupportHex.h"
#include "link/cLink.h"
#include "link/mAppFunc.h"

namespace mCommSupport {
namespace {

// The context the transfer's texts are translated in.
constexpr char kContext[] = "mCommSupport";

QString hexOf(qint32 value)
{
    return QString::number(static_cast<quint32>(value), 16).toUpper();
}

// A line's load address in the 16-bit signed arithmetic the transfer has always used: a high
// byte of 0x80 or more overflows.
qint32 lineAddress(const HexLine& line)
{
    const qint32 address = line.AddrHi * 256 + line.AddrLo;
    if (address > 32767)
        RaiseRuntimeError(mErrCodes::RT_OVERFLOW);
    return address;
}

// Old firmware wants its program started and stopped again in the middle of a transfer, when
// the transfer reaches the block at restartAddress. The preference BackwardCompatibleUpload says
// so, and it answers from the grip's firmware, whatever is stored.
void restartProgramAt(cGripSession& session, qint32 address, qint32 restartAddress)
{
    if (address != restartAddress || !session.GunInfo().BackwardCompatibleUpload())
        return;
    mCommSupportHex::GRIPStartProgram(session);
    mCommSupportHex::GRIPStopProgram(session);
}

void advanceProgress()
{
    cUserInterface& ui = mMain::UI();
    ui.setProgress(ui.progress() + 1);
}

// Runs one block exchange up to three times, then advances the progress display. The error
// record is cleared before each attempt and read after it: a negative answer fails the attempt
// like an error does. The third failure raises the error number with the source, described by
// failedText and "(number) message" of the last attempt.
template <typename Exchange>
void transferBlock(cGripSession& session, Exchange exchange, qint32 retryPauseMs, qint32 errorNumber, const QString& source,
                   const cText& failedText)
{
    cText failure;
    for (qint32 attempt = 1; attempt <= kAttempts; ++attempt) {
        cError& refusal = session.GripError();
        refusal.Clear();
        bool acknowledged = false;
        qint32 number = 0;
        cText message;
        try {
            acknowledged = exchange();
        } catch (...) {
            // A failed attempt is not the end of the transfer: keep the reason, try again.
            const MarloError error = mMain::CurrentErrorAsMarloError();
            number = error.Number();
            message = error.DescriptionText();
        }
        if (refusal.ErrorCode() != cError::NoError) {
            number = refusal.ErrorCode();
            message = refusal.Text();
        } else if (acknowledged) {
            advanceProgress();
            return;
        }
        failure = cText(kContext, QT_TRANSLATE_NOOP("mCommSupport", "(%1) %2"), {QString::number(number), message});
        if (attempt < kAttempts && retryPauseMs > 0)
            session.Link().WaitWithEvents(retryPauseMs);
    }
    //: Where the transfer failed, then why: "Download failed at address: 64 (10212) An unknown error ..."
    RaiseError(errorNumber, source, cText(kContext, QT_TRANSLATE_NOOP("mCommSupport", "%1 %2"), {failedText, failure}));
}

} // namespace

void DLFirmware(cGripSession& session, FirmwareFile& image)
{
    PassErrors(kModule, kRevision, QStringLiteral("DLFirmware"), [&](Procedure& proc) {
        WaitPointerScope wait;
        RefreshGunInfo(session, true);
        proc.setName(QStringLiteral("DLFirmware - read PIC-memory"));
        QList<HexLine> lines;
        lines.reserve(kBlockCount);
        cProgramSegment segment;
        for (qint32 address = kFirstAddress; address < kEndAddress; address += kBlockSize) {
            proc.setName(QStringLiteral("DLFirmware - read PIC-memory [$") + mAppFunc::LZ(4, hexOf(address)) +
                         QLatin1Char(']'));
            restartProgramAt(session, address, kReadRestartAddress);
            segment.setAddress(address);
            segment.setByteCount(static_cast<quint8>(kBlockSize));
            transferBlock(session, [&] { return segment.Download(session); }, 0, mErrCodes::ERR_DL_FIRMWARE, QStringLiteral("DLFirmware"),
                          mErrCodes::DownloadFailedText(address));
            HexLine line;
            line.ByteCount = static_cast<quint8>(kBlockSize);
            line.AddrHi = segment.addrHi();
            line.AddrLo = segment.addrLo();
            line.RecordType = 0;
            for (qint32 i = 1; i <= kBlockSize; ++i)
                line.Data.append(segment.Data(i));
            line.Checksum = segment.Checksum(session.GunInfo());
            lines.append(std::move(line));
        }
        image.Segments = std::move(lines);
    });
}

void ULFirmware(cGripSession& session, const FirmwareFile& image)
{
    PassErrors(kModule, kRevision, QStringLiteral("ULFirmware"), [&](Procedure& proc) {
        WaitPointerScope wait;
        RefreshGunInfo(session, true);
        proc.setName(QStringLiteral("ULFirmware - upload data to grip"));
        for (const HexLine& line : image.Segments) {
            cProgramSegment segment;
            const qint32 address = lineAddress(line);
            segment.setAddress(address);
            segment.setByteCount(line.ByteCount);
            segment.setRecordType(line.RecordType);
            for (qsizetype i = 0; i < line.Data.size(); ++i)
                segment.setData(static_cast<qint32>(i + 1), line.Data.at(i));
            // The write restarts at 0xF50 where the read does at 0x200: both are intended.
            restartProgramAt(session, address, kWriteRestartAddress);
            transferBlock(session, [&] { return segment.Upload(session); }, kWriteRetryPauseMs, mErrCodes::ERR_UL_FIRMWARE,
                          QStringLiteral("ULFirmware"), mErrCodes::UploadFailedText(address));
        }
    });
}

void CheckFirmwareImage(const FirmwareFile& image)
{
    PassErrors(kModule, kRevision, QStringLiteral("CheckFirmwareImage"), [&] {
        qint64 bytes = 0;
        for (qsizetype record = 0; record < image.Segments.size(); ++record) {
            const HexLine& line = image.Segments.at(record);
            const qint64 count = qMax<qint64>(line.ByteCount, line.Data.size());
            const qint32 address = line.AddrHi * 256 + line.AddrLo;
            bytes += count;
            const QString hexAddress = mAppFunc::LZ(4, hexOf(address));
            cText problem;
            if (count > kBlockSize)
                problem = cText(kContext, QT_TRANSLATE_NOOP("mCommSupport", "the record holds %1 data bytes, but a memory block holds at most %2"),
                                {QString::number(count), QString::number(kBlockSize)});
            else if (address >= kProgramMemoryBytes)
                problem = cText(kContext, QT_TRANSLATE_NOOP("mCommSupport", "the address 0x%1 lies outside the program memory (0x0000 to 0x7FFF)"),
                                {hexAddress});
            else if (address + count > kProgramMemoryBytes)
                problem = cText(kContext,
                                QT_TRANSLATE_NOOP("mCommSupport", "the record's %1 data bytes from address 0x%2 run past the end of the program "
                                                                  "memory (0x7FFF)"),
                                {QString::number(count), hexAddress});
            else if (bytes > kProgramMemoryBytes)
                problem = cText(kContext, QT_TRANSLATE_NOOP("mCommSupport", "the file holds more data than the program memory (%1 bytes)"),
                                {QString::number(kProgramMemoryBytes)});
            else if (record + 1 > kProgramMemoryBytes)
                problem = cText(kContext, QT_TRANSLATE_NOOP("mCommSupport", "the file holds more records than the program memory has bytes (%1)"),
                                {QString::number(kProgramMemoryBytes)});
            if (!problem.isEmpty()) {
                // A line of the file, or the record's position in an image not read from one.
                const qint32 where = line.FileLine > 0 ? line.FileLine : static_cast<qint32>(record + 1);
                RaiseError(mErrCodes::ERR_FIRMWARE_IMAGE, QStringLiteral("UploadFirmware"),
                           mErrCodes::FirmwareImageText(where, problem));
            }
        }
    });
}

bool CompareProgramData(const FirmwareFile& fileImage, const FirmwareFile& gripImage)
{
    bool equal = true;
    // Showing the error resets the wait pointer; the stretches of the callers stay open, so
    // their nesting is put back afterwards.
    const qint32 depth = mMain::MousePointerDepth();
    const bool clean = ShowErrors(kModule, kRevision, QStringLiteral("CompareProgramData"), [&](Procedure& proc) {
        qint32 counted = 0;
        // The count is taken before any line is counted, so the text always reads 0 lines.
        // Kept as it is.
        proc.setName(QStringLiteral("CompareProgramData - Start comparing %1 lines.").arg(counted));
        for (qsizetype number = 0; number < fileImage.Segments.size(); ++number) {
            const HexLine& line = fileImage.Segments.at(number);
            ++counted;
            proc.setName(QStringLiteral("CompareProgramData - Line: %1").arg(number));
            const qint32 address = lineAddress(line);
            const qint32 block = address / kBlockSize - kFirstAddress / kBlockSize;
            if (block < 0)
                continue; // below 0x40: not part of the grip image
            proc.setName(QStringLiteral("CompareProgramData - Addr: $") + hexOf(address));
            if (block >= gripImage.Segments.size())
                RaiseRuntimeError(mErrCodes::RT_SUBSCRIPT);
            const QList<quint8>& gripData = gripImage.Segments.at(block).Data;
            const qsizetype offset = line.AddrLo & 15;
            for (qsizetype i = 0; i < line.Data.size(); ++i) {
                if (offset + i >= gripData.size())
                    RaiseRuntimeError(mErrCodes::RT_SUBSCRIPT);
                if (line.Data.at(i) != gripData.at(offset + i))
                    equal = false;
            }
            if (!equal)
                break; // after the line with the first difference
        }
    });
    if (!clean) {
        for (qint32 level = mMain::MousePointerDepth(); level < depth; ++level)
            mMain::WaitMousePointer();
    }
    return clean && equal;
}

} // namespace mCommSupport
