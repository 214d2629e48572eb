#pragma once
// A scripted user: records every message, progress step and error, answers every question
// from prepared answers.
#include "base/MarloError.h"
#include "base/cUserInterface.h"

#include <QList>
#include <QQueue>
#include <QStringList>
#include <functional>

class ScriptedUi : public cUserInterface {
public:
    struct Message {
        QString text;
        QString title;
        MsgIcon icon;
        bool defaultNo = false; // questions: No was the default button
    };

    // Prepared answers, used in order. A question without a prepared answer fails the test.
    QQueue<bool> yesNoAnswers;
    QQueue<QString> inputAnswers;
    QQueue<std::optional<QString>> fileAnswers;

    // Recorded.
    QList<Message> messages;     // showMessage
    QList<Message> questions;    // askYesNo and inputBox prompts
    QList<MarloError> errors;    // errors shown by the error reporter
    QList<bool> busyPointer;     // each setBusyPointer call
    QList<int> progressMaxima;   // each startProgress
    QList<int> progressValues;   // each setProgress
    int progressEnds = 0;
    QList<FileDialogRequest> fileRequests;
    bool visible = true;

    // Runs inside processEvents (for example, to start a second exchange while one waits).
    std::function<void()> onProcessEvents;

    void setBusyPointer(bool busy) override { busyPointer.append(busy); }
    bool mainWindowVisible() const override { return visible; }
    void startProgress(int maximum) override;
    void setProgress(int value) override;
    int progress() const override { return m_progress; }
    void endProgress() override { ++progressEnds; }
    QString stepText() const override { return m_step; }
    void setStepText(const QString& text) override;
    void setFirmwareVersion(const QString& version) override;
    void showMessage(const QString& text, const QString& title, MsgIcon icon) override;
    bool askYesNo(const QString& text, const QString& title, MsgIcon icon, bool defaultNo) override;
    QString inputBox(const QString& prompt, const QString& title, const QString& defaultText) override;
    std::optional<QString> openFileName(const FileDialogRequest& request) override;
    std::optional<QString> saveFileName(const FileDialogRequest& request) override;
    void processEvents() override;
    void showError(const MarloError& error, const QString& version, const QString& title) override;

    QStringList statusHistory; // every step text and firmware version shown, as "step:text", "version:text"

private:
    int m_progress = 0;
    QString m_step;
};
