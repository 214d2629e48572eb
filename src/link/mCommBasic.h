#pragma once
// The serial link: one command out, one report back, over a port opened for that exchange only.
// CommHexData is the one entry point for the rest of the program.
#include <QDateTime>
#include <QString>
#include <QStringList>
#include <functional>
#include <memory>

class cCommControl;
class cCommConsole;

namespace mCommBasic {

inline const QString kModule = QStringLiteral("mCommBasic");
inline const QString kRevision = QStringLiteral("$Revision: 41 $");

// Module state.
extern cCommControl* objComm; // the serial control; set once by the front end
extern bool bCommBusy;        // an exchange is in progress (the busy guard)
extern bool bNoCRCIn;         // do not check the checksum of a received report
extern bool bNoCRCOut;        // do not append a checksum to an outgoing command
extern bool bLogToFile;       // mirrors the preference CommLogToFile

QString CommHexData(const QString& cmd, bool showResult = true);
bool OpenComm();
void CloseComm();
void CommSendData(const QString& hex);
void SendCommandWait(const QString& hex);
QString CommReceiveData(qint32& n);
void FlushBuffer();
quint8 CalcCRC(const QString& hex);
bool CheckCRC(const QString& hex);
void DoWait(qint32 milliseconds);
// The same pause with window events running (the user-interface services' waitWithEvents), so
// that the window repaints and moves during long transfers; the replaced sleep of the tests
// stands in for it too.
void WaitWithEvents(qint32 milliseconds);
cCommConsole* StartLogging();
void CommWriteBytes(const QString& hex, qint32 n);
QString CommReadBytes(qint32& n);
void WaitForInput(qint32 expected);
void LogCommData(const QString& hex, const QString& label);
// The sink of the outcome texts: deliberately shows nothing.
void ShowCommStatus(const QString& text, bool flag);

// One traffic-log entry, as written to komm.log and the console.
QString FormatLogEntry(const QDateTime& when, const QString& hex, const QString& label);

// What the last exchange ended with, so that a front end can explain an empty report.
enum class Outcome { None, Ok, PortFailed, Timeout, WrongLength, BadChecksum, UnknownReport };
Outcome LastOutcome();
// Why the port could not be opened the last time, or empty, and what to do about it.
QString LastOpenError();
QStringList LastOpenHelp();

// The sleep behind DoWait. Tests may replace it so that long transfers run fast; the product
// never does. nullptr restores the real sleep.
void SetSleepFunction(std::function<void(qint32)> sleep);
// Makes the console logging object on first use; without a factory console logging does nothing.
void SetConsoleFactory(std::function<std::unique_ptr<cCommConsole>()> factory);
// Drops the console object (tests).
void ResetConsole();

} // namespace mCommBasic
