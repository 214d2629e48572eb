#pragma once
// The user-interface services of marlo-cli: messages on the terminal, progress as a bar on
// stderr, and no questions: where the desktop program would ask, the cautious answer is taken
// and the question is shown.
#include "base/cUserInterface.h"

#include <QElapsedTimer>
#include <QStringList>

class QTextStream;
class cLink;

class CliUserInterface : public cUserInterface {
public:
    CliUserInterface(QTextStream& out, QTextStream& err);

    void setBusyPointer(bool) override {}
    // The terminal is the "window": progress and status are shown.
    bool mainWindowVisible() const override { return true; }
    void startProgress(int maximum) override;
    void setProgress(int value) override;
    int progress() const override { return m_value; }
    void endProgress() override;
    QString stepText() const override { return m_step; }
    // Each new step is said on stderr (unless a progress line is being drawn).
    void setStepText(const QString& text) override;
    void setFirmwareVersion(const QString&) override {}
    void showMessage(const QString& text, const QString& title, MsgIcon icon) override;
    bool askYesNo(const QString& text, const QString& title, MsgIcon icon, bool defaultNo) override;
    QString inputBox(const QString& prompt, const QString& title, const QString& defaultText) override;
    std::optional<QString> openFileName(const FileDialogRequest& request) override;
    std::optional<QString> saveFileName(const FileDialogRequest& request) override;
    void processEvents() override;
    void showError(const MarloError& error, const QString& version, const QString& title) override;

    // Errors shown through the error reporter during the run (they make the exit status 1).
    int errorsShown() const { return m_errorsShown; }
    // Messages with the exclamation or critical icon (a refused firmware file, a failed upload).
    int warningsShown() const { return m_warningsShown; }

    // "error NNNNN: description" (line breaks of the description kept as lines, control
    // characters escaped).
    static QString ErrorLine(const MarloError& error);
    // What went wrong and what to do first (mLinkHelp::WhatToDo, from the link's last exchange
    // when a link is given), then the error line.
    static QString ErrorReport(const MarloError& error, const cLink* link);
    // The link the program's errors happen on (the caller keeps it), for the reports of errors.
    void setLink(const cLink* link) { m_link = link; }

private:
    void drawProgress(bool final);
    static QString plain(const QString& text);

    QTextStream& m_out;
    QTextStream& m_err;
    QString m_step;
    int m_maximum = 0;
    int m_value = 0;
    bool m_progressShown = false;
    bool m_isTerminal = false;
    QElapsedTimer m_lastDraw;
    int m_errorsShown = 0;
    int m_warningsShown = 0;
    const cLink* m_link = nullptr;
};
