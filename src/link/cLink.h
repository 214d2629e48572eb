#pragma once
// The serial link: one command out, one report back, over a port opened for that exchange only.
// The program builds one over its serial control and a source of its settings; CommHexData is
// the one entry point for the rest of the program. Its errors carry the frames of module
// mCommBasic, as the link's procedures always have.
#include <QByteArray>
#include <QString>
#include <QStringList>
#include <functional>
#include <memory>

class cCommConsole;
class cCommControl;
class cLinkSettings;

// What one exchange does about check bytes. The block write of the firmware transfer brings its
// own check byte, so the link must not append another.
struct tExchangeOptions {
    bool appendChecksum = true; // append the check byte to the command
    bool checkChecksum = true;  // check the check byte of the report
};

class cLink {
public:
    // What the last exchange ended with, so that a front end can explain an empty report.
    enum class Outcome { None, Ok, PortFailed, Timeout, WrongLength, BadChecksum, UnknownReport, DeviceLost };

    // The caller keeps the control and the settings, which must outlive the link. Without a
    // control every exchange ends with an empty report, as with a port that cannot be opened.
    cLink(cCommControl* port, const cLinkSettings& settings);
    ~cLink();
    cLink(const cLink&) = delete;
    cLink& operator=(const cLink&) = delete;

    cCommControl* Port() const { return m_port; }
    void setPort(cCommControl* port) { m_port = port; }

    // Sends the command (code byte first, the pause, then the rest of its catalogue size) and
    // answers the report as it came: empty when the port cannot be opened or the grip is silent;
    // another frame than the expected one, or one with a wrong check byte, unchecked (LastOutcome
    // says which). A second exchange while one runs is refused with 10300.
    QByteArray CommHexData(const QByteArray& cmd, bool showResult = true, const tExchangeOptions& options = {});
    // An exchange is in progress (the busy guard).
    bool CommBusy() const { return m_busy; }

    void DoWait(qint32 milliseconds);
    // The same pause with window events running (the user-interface services' waitWithEvents), so
    // that the window repaints and moves during long transfers; the replaced sleep of the tests
    // stands in for it too.
    void WaitWithEvents(qint32 milliseconds);

    Outcome LastOutcome() const { return m_lastOutcome; }
    // Why the port could not be opened the last time, or empty, and what to do about it, in the
    // user's language (the traffic log has the reason in English).
    QString LastOpenError() const { return m_lastOpenError; }
    QStringList LastOpenHelp() const { return m_lastOpenHelp; }
    // The device that vanished during the last exchange (Outcome::DeviceLost), else empty.
    QString LastLostDevice() const { return m_lastLostDevice; }

    // The sleep behind DoWait and WaitWithEvents. Tests may replace it so that long transfers run
    // fast; the product never does. nullptr restores the real sleep.
    void SetSleepFunction(std::function<void(qint32)> sleep);
    // Makes the console logging object on first use; without a factory console logging does nothing.
    void SetConsoleFactory(std::function<std::unique_ptr<cCommConsole>()> factory);
    // Drops the console object.
    void ResetConsole();

private:
    bool OpenComm();
    void CloseComm();
    void CommSendData(const QByteArray& cmd, const tExchangeOptions& options);
    void SendCommandWait(const QByteArray& frame);
    QByteArray CommReceiveData(qint32& n);
    void FlushBuffer();
    cCommConsole* StartLogging();
    void CommWriteBytes(const QByteArray& bytes, qint32 n);
    QByteArray CommReadBytes(qint32& n);
    void WaitForInput(qint32 expected);
    void LogCommData(const QByteArray& bytes, const QString& label);
    // The sink of the outcome texts: deliberately shows nothing.
    static void ShowCommStatus(const QString& text, bool flag);
    // Reads whatever arrived and names the outcome.
    QString classify(qint32 received, qint32 expected, bool showResult, const tExchangeOptions& options,
                     QByteArray& report, qint32& n);

    cCommControl* m_port;
    const cLinkSettings& m_settings;
    bool m_busy = false;
    std::function<void(qint32)> m_sleep;
    std::function<std::unique_ptr<cCommConsole>()> m_consoleFactory;
    std::unique_ptr<cCommConsole> m_console;
    Outcome m_lastOutcome = Outcome::None;
    QString m_lastOpenError;
    QStringList m_lastOpenHelp;
    QString m_lastLostDevice;
};
