#pragma once
// The user-interface services: everything the core needs from the user. The desktop program
// implements them with widgets, marlo-cli with the terminal, the tests with a script.
#include <QString>
#include <QStringList>
#include <optional>

class MarloError;

enum class MsgIcon { None, Information, Exclamation, Critical, Question };

struct FileDialogRequest {
    QString title;
    QString filter;          // "All (*.*)|*.*|Tolvane Firmware (*.tvf)|*.tvf"
    int filterIndex = 1;     // 1-based entry preselected
    bool pathMustExist = false;
    bool overwritePrompt = false;
    bool hideReadOnly = false;
};

class cUserInterface {
public:
    virtual ~cUserInterface() = default;

    // Wait pointer of the main window (the nesting is counted by mMain).
    virtual void setBusyPointer(bool busy) = 0;
    virtual bool mainWindowVisible() const = 0;

    // Progress display.
    virtual void startProgress(int maximum) = 0;
    virtual void setProgress(int value) = 0;
    virtual int progress() const = 0;
    virtual void endProgress() = 0;
    // The step a long piece of work (a firmware workflow) is at, shown until the next one, and
    // the grip's firmware version as it last reported it: each front end shows them its way.
    virtual QString stepText() const = 0;
    virtual void setStepText(const QString& text) = 0;
    virtual void setFirmwareVersion(const QString& version) = 0;

    // Message boxes. Lines of a multi-line message are joined with "\r\n" by the caller.
    virtual void showMessage(const QString& text, const QString& title, MsgIcon icon) = 0;
    // defaultNo: No is the default button (Enter answers No).
    virtual bool askYesNo(const QString& text, const QString& title, MsgIcon icon, bool defaultNo = false) = 0;
    // A one-line input box; a cancelled box answers an empty text, as the toolkit did.
    virtual QString inputBox(const QString& prompt, const QString& title, const QString& defaultText) = 0;
    // File dialogs: no value when the user cancels.
    virtual std::optional<QString> openFileName(const FileDialogRequest& request) = 0;
    virtual std::optional<QString> saveFileName(const FileDialogRequest& request) = 0;

    // Lets pending window events run (the link calls it while it waits for the grip).
    virtual void processEvents() = 0;
    // A pause of at least the given time during which events keep running (user input is
    // delivered after it): the thread blocks in the event loop (no spinning) and wakes for each
    // event and at the end.
    virtual void waitWithEvents(int milliseconds);

    // The error reporter's "show": the error reached a place with no caller left.
    virtual void showError(const MarloError& error, const QString& version, const QString& title) = 0;
};

// A user interface without a user: events run, questions get the cautious answer, messages and
// errors go to stderr. Used until a front end installs its own.
class cHeadlessUserInterface : public cUserInterface {
public:
    void setBusyPointer(bool) override {}
    bool mainWindowVisible() const override { return false; }
    void startProgress(int maximum) override;
    void setProgress(int value) override { m_progress = value; }
    int progress() const override { return m_progress; }
    void endProgress() override {}
    QString stepText() const override { return m_step; }
    void setStepText(const QString& text) override { m_step = text; }
    void setFirmwareVersion(const QString&) override {}
    void showMessage(const QString& text, const QString& title, MsgIcon icon) override;
    bool askYesNo(const QString& text, const QString& title, MsgIcon icon, bool defaultNo) override;
    QString inputBox(const QString& prompt, const QString& title, const QString& defaultText) override;
    std::optional<QString> openFileName(const FileDialogRequest& request) override;
    std::optional<QString> saveFileName(const FileDialogRequest& request) override;
    void processEvents() override;
    void showError(const MarloError& error, const QString& version, const QString& title) override;

private:
    int m_progress = 0;
    int m_maximum = 0;
    QString m_step;
};
