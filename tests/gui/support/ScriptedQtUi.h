#pragma once
// The window's own services (pointer, status bar, progress bar, events) with every message box,
// question, input box, file dialog and error window answered and recorded by a script, so that
// no modal box blocks a test.
#include "ScriptedUi.h"
#include "gui/shell/QtUserInterface.h"

class ScriptedQtUi : public QtUserInterface {
public:
    ScriptedUi script; // the answers and the record of what was shown

    void showMessage(const QString& text, const QString& title, MsgIcon icon) override { script.showMessage(text, title, icon); }
    bool askYesNo(const QString& text, const QString& title, MsgIcon icon, bool defaultNo) override
    {
        return script.askYesNo(text, title, icon, defaultNo);
    }
    QString inputBox(const QString& prompt, const QString& title, const QString& defaultText) override
    {
        return script.inputBox(prompt, title, defaultText);
    }
    std::optional<QString> openFileName(const FileDialogRequest& request) override { return script.openFileName(request); }
    std::optional<QString> saveFileName(const FileDialogRequest& request) override { return script.saveFileName(request); }
    void showError(const MarloError& error, const QString& version, const QString& title) override
    {
        script.showError(error, version, title);
    }
};
