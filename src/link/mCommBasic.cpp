#include "link/mCommBasic.h"

#include "base/cRegistrySettings.h"
#include "base/mErrCodes.h"
#include "base/mErrorReport.h"
#include "link/cCommConsole.h"
#include "link/cCommControl.h"
#include "link/mAppFunc.h"

#include <QDateTime>
#include <QFile>
#include <QLocale>
#include <QStringList>
#include <QThread>

using namespace mAppFunc;

namespace mCommBasic {

cCommControl* objComm = nullptr;
bool bCommBusy = false;
bool bNoCRCIn = false;
bool bNoCRCOut = false;
bool bLogToFile = false;

namespace {
// The preferences set the flag when they are made and whenever CommLogToFile is set.
[[maybe_unused]] const bool mirrorsCommLogToFile =
    (cRegistrySettings::SetCommLogToFileMirror([](bool value) { bLogToFile = value; }), true);
} // namespace

namespace {

struct LinkState {
    std::function<void(qint32)> sleep;
    std::function<std::unique_ptr<cCommConsole>()> consoleFactory;
    std::unique_ptr<cCommConsole> console;
    Outcome lastOutcome = Outcome::None;
    QString lastOpenError;
    QStringList lastOpenHelp;
};

LinkState& link()
{
    static LinkState state;
    return state;
}

// Closes the port on every way out of an exchange that opened it, errors included.
class ClosePortOnExit {
public:
    ~ClosePortOnExit()
    {
        try {
            if (objComm && objComm->PortOpen())
                objComm->setPortOpen(false);
        } catch (...) {
        }
    }
};

QString logTimestamp(const QDateTime& when)
{
    // The system's short date and long time (without the zone name).
    const QLocale locale = QLocale::system();
    QString time = locale.timeFormat(QLocale::LongFormat);
    time.remove(QLatin1Char('t')).replace(QLatin1String("  "), QLatin1String(" "));
    return locale.toString(when.date(), QLocale::ShortFormat) + QLatin1Char(' ') +
           locale.toString(when.time(), time.trimmed());
}

QString classify(qint32 received, qint32 expected, bool showResult, QString& report, qint32& n);

} // namespace

quint8 CalcCRC(const QString& hex)
{
    return PassErrors(kModule, kRevision, QStringLiteral("CalcCRC"), [&] {
        quint32 sum = 0;
        const qint32 count = static_cast<qint32>(hex.size() / 2);
        for (qint32 i = 1; i <= count; ++i)
            sum += GetByteFromHexstring(hex, i);
        return static_cast<quint8>((256 - sum % 256) % 256);
    });
}

bool CheckCRC(const QString& hex)
{
    return PassErrors(kModule, kRevision, QStringLiteral("CheckCRC"), [&] {
        const qint32 last = static_cast<qint32>(hex.size() / 2);
        if (last < 1)
            return false;
        return CalcCRC(hex.left(2 * (last - 1))) == GetByteFromHexstring(hex, last);
    });
}

void DoWait(qint32 milliseconds)
{
    if (link().sleep)
        link().sleep(milliseconds);
    else if (milliseconds > 0)
        QThread::msleep(static_cast<unsigned long>(milliseconds));
}

void WaitWithEvents(qint32 milliseconds)
{
    if (link().sleep)
        link().sleep(milliseconds);
    else if (milliseconds > 0)
        mMain::UI().waitWithEvents(milliseconds);
}

void SetSleepFunction(std::function<void(qint32)> sleep) { link().sleep = std::move(sleep); }

void SetConsoleFactory(std::function<std::unique_ptr<cCommConsole>()> factory)
{
    link().consoleFactory = std::move(factory);
}

void ResetConsole() { link().console.reset(); }

Outcome LastOutcome() { return link().lastOutcome; }
QString LastOpenError() { return link().lastOpenError; }
QStringList LastOpenHelp() { return link().lastOpenHelp; }

void ShowCommStatus(const QString& text, bool flag)
{
    // Deliberately shows nothing: the outcome texts stay in the code path only.
    Q_UNUSED(text);
    Q_UNUSED(flag);
}

cCommConsole* StartLogging()
{
    try {
        LinkState& state = link();
        if (!state.console && state.consoleFactory) {
            state.console = state.consoleFactory();
            if (state.console)
                state.console->StartLogging();
        }
        return state.console.get();
    } catch (...) {
        return nullptr; // errors are ignored
    }
}

QString FormatLogEntry(const QDateTime& when, const QString& hex, const QString& label)
{
    QStringList decimals;
    const qint32 count = static_cast<qint32>((hex.size() + 1) / 2);
    for (qint32 i = 1; i <= count; ++i)
        decimals.append(QString::number(GetByteFromHexstring(hex, i)));
    return logTimestamp(when) + QStringLiteral(": ") + label + QStringLiteral("\r\n") +
           QStringLiteral("  dec: [") + decimals.join(QLatin1Char(',')) + QStringLiteral("]\r\n") +
           QStringLiteral("  hex:   [") + hex + QStringLiteral("]");
}

void LogCommData(const QString& hex, const QString& label)
{
    // A log that cannot be written never disturbs an exchange: every error is ignored here.
    try {
        const bool toConsole = mMain::RegistrySettings().CommLogToConsole();
        if (!bLogToFile && !toConsole)
            return;
        const QString entry = FormatLogEntry(QDateTime::currentDateTime(), hex, label);
        if (bLogToFile) {
            QFile file(mMain::ProgramFile(QStringLiteral("komm.log")));
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

void CommWriteBytes(const QString& hex, qint32 n)
{
    PassErrors(kModule, kRevision, QStringLiteral("CommWriteBytes"), [&] {
        if (n < 0)
            RaiseRuntimeError(mErrCodes::RT_INVALID_CALL);
        QByteArray bytes(n, '\0');
        for (qint32 i = 0; i < n; ++i)
            bytes[i] = static_cast<char>(GetByteFromHexstring(hex, i + 1));
        LogCommData(hex.left(2 * n), QStringLiteral("Sending data"));
        objComm->setOutput(bytes);
    });
}

QString CommReadBytes(qint32& n)
{
    return PassErrors(kModule, kRevision, QStringLiteral("CommReadBytes"), [&] {
        if (n < 0)
            RaiseRuntimeError(mErrCodes::RT_INVALID_CALL);
        objComm->setInputLen(n);
        const QByteArray bytes = objComm->Input();
        n = static_cast<qint32>(bytes.size());
        const QString hex = BytesToHex(bytes);
        LogCommData(hex, QStringLiteral("Receiving data"));
        return hex;
    });
}

void SendCommandWait(const QString& hex)
{
    PassErrors(kModule, kRevision, QStringLiteral("SendCommandWait"), [&] {
        CommWriteBytes(hex, 1);
        // The grip needs the pause after the code byte; it stays for every command. Window
        // events run during it, as they do while the report is awaited (the busy flag is set).
        WaitWithEvents(100);
    });
}

void CommSendData(const QString& hex)
{
    PassErrors(kModule, kRevision, QStringLiteral("CommSendData"), [&] {
        QString frame = hex;
        if (!bNoCRCOut)
            frame += LZ(2, QString::number(CalcCRC(frame), 16).toUpper());
        const qint32 size = GetFunctionInputSize(GetByteFromHexstring(frame, 1), frame);
        SendCommandWait(frame);
        CommWriteBytes(frame.mid(2), size - 1);
    });
}

QString CommReceiveData(qint32& n)
{
    return PassErrors(kModule, kRevision, QStringLiteral("CommReceiveData"), [&] {
        qint32 one = 1;
        const QString code = CommReadBytes(one);
        const qint32 size = GetReportReturnSize(GetByteFromHexstring(code, 1));
        if (size == 0) {
            // A code the catalogue does not know is damaged data. The classic program asked for
            // -1 more bytes and failed with a run-time error that said nothing useful; this one
            // takes what came, so that the record raises its own error with the help for
            // damaged data.
            link().lastOutcome = Outcome::UnknownReport;
            n = 0;
            return code + CommReadBytes(n);
        }
        n = size - 1;
        const QString rest = CommReadBytes(n);
        return code + rest;
    });
}

void FlushBuffer()
{
    PassErrors(kModule, kRevision, QStringLiteral("FlushBuffer"), [&] {
        qint32 all = 0;
        CommReadBytes(all);
    });
}

void WaitForInput(qint32 expected)
{
    PassErrors(kModule, kRevision, QStringLiteral("WaitForInput"), [&] {
        // The clock has whole-second resolution on purpose: a silent grip is given up on
        // between 1 and 2 seconds after the wait began.
        const qint64 start = QDateTime::currentSecsSinceEpoch();
        while (objComm->InBufferCount() < expected && QDateTime::currentSecsSinceEpoch() < start + 2) {
            mMain::UI().processEvents();
            objComm->waitForInput(10);
        }
    });
}

bool OpenComm()
{
    return PassErrors(kModule, kRevision, QStringLiteral("OpenComm"), [&] {
        if (!objComm)
            return false;
        if (objComm->PortOpen())
            return true;
        cRegistrySettings& prefs = mMain::RegistrySettings();
        objComm->setSettings(prefs.CommSettings());
        objComm->setInputMode(prefs.CommInputMode());
        objComm->setCommPort(static_cast<qint16>(prefs.CommPort()));
        objComm->setDevice(prefs.CommDevice());
        try {
            objComm->setPortOpen(true);
        } catch (const MarloError& e) {
            // Not raised: the exchange ends with an empty report. The reason is kept for the
            // traffic log and for front ends that explain it.
            link().lastOpenError = e.Description();
            link().lastOpenHelp = e.Hints();
            ShowCommStatus(QStringLiteral("Error opening port (%1)!").arg(e.Number()), true);
            ShowCommStatus(e.Description(), true);
            LogCommData(QString(), QStringLiteral("Error opening port (%1): %2").arg(e.Number()).arg(e.Description()));
            return false;
        }
        link().lastOpenError.clear();
        link().lastOpenHelp.clear();
        return true;
    });
}

void CloseComm()
{
    PassErrors(kModule, kRevision, QStringLiteral("CloseComm"), [&] {
        if (!objComm || !objComm->PortOpen())
            return;
        try {
            objComm->setPortOpen(false);
        } catch (const MarloError& e) {
            if (e.Number() != mErrCodes::RT_DEVICE_NOT_OPEN)
                throw;
        }
    });
}

QString CommHexData(const QString& cmd, bool showResult)
{
    struct ClearBusyOnExit {
        // Every way out clears the flag, the refusal of a second exchange included: that
        // refusal therefore also frees the exchange still running. Deliberate, and kept.
        ~ClearBusyOnExit() { bCommBusy = false; }
    };
    return PassErrors(kModule, kRevision, QStringLiteral("CommHexData"), [&]() -> QString {
        ClearBusyOnExit clearBusy;
        if (bCommBusy)
            RaiseError(mErrCodes::ERR_COMM_BUSY, QString(), mErrCodes::MSG_COMM_BUSY);
        bCommBusy = true;
        link().lastOutcome = Outcome::None;
        if (cmd.size() < 2)
            RaiseError(mErrCodes::ERR_NOT_ENOUGH_DATA, QStringLiteral("CommHexData"),
                       mErrCodes::MSG_NOT_ENOUGH_DATA);
        const qint32 code = GetByteFromHexstring(cmd, 1);

        if (!OpenComm()) {
            link().lastOutcome = Outcome::PortFailed;
            ShowCommStatus(showResult ? QStringLiteral(" - PORT!") : QStringLiteral("Cannot open comm. port."), showResult);
            return QString();
        }
        ClosePortOnExit closePort;
        if (objComm->InBufferCount() >= 1)
            FlushBuffer(); // stale bytes of an earlier exchange
        const qint32 expected = GetFunctionReturnSize(code);
        CommSendData(cmd);
        WaitForInput(expected);

        QString report;
        qint32 n = 0;
        const qint32 received = objComm->InBufferCount();
        ShowCommStatus(classify(received, expected, showResult, report, n), showResult);
        CloseComm();
        return report;
    });
}

namespace {

// Reads whatever arrived and names the outcome. The outcome texts are never shown.
QString classify(qint32 received, qint32 expected, bool showResult, QString& report, qint32& n)
{
    if (received == 0) {
        link().lastOutcome = Outcome::Timeout;
        return showResult ? QStringLiteral(" - TIMEOUT!") : QStringLiteral("Operation timed out.");
    }
    if (received != expected) {
        // Another frame than the expected one, normally the negative answer: returned unchecked.
        link().lastOutcome = Outcome::WrongLength;
        report = CommReceiveData(n);
        return showResult ? QStringLiteral(" - CRC OUT!") : QString();
    }
    report = CommReceiveData(n);
    if (link().lastOutcome == Outcome::UnknownReport)
        return showResult ? QStringLiteral(" - CRC IN!") : QString();
    if (objComm->InBufferCount() > 0)
        FlushBuffer();
    if (!bNoCRCIn && !CheckCRC(report)) {
        link().lastOutcome = Outcome::BadChecksum;
        return showResult ? QStringLiteral(" - CRC IN!") : QString();
    }
    link().lastOutcome = Outcome::Ok;
    return showResult ? QStringLiteral(" - OK") : QString();
}

} // namespace

} // namespace mCommBasic
