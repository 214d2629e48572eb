#pragma once
// The user-interface services on screen: the wait pointer, the main window's status bar and
// progress bar, message boxes, questions, the input box, file dialogs and the error window.
#include "base/cUserInterface.h"
#include "gui/shell/fTolvaneMan.h"

#include <QPointer>
#include <QStringList>

class QWidget;

class QtUserInterface : public cUserInterface {
public:
    // The window whose status bar, progress bar and pointer the services use (may be none yet).
    void setMainWindow(fTolvaneMan* window) { m_main = window; }
    fTolvaneMan* mainWindow() const { return m_main; }

    void setBusyPointer(bool busy) override;
    bool mainWindowVisible() const override;
    void startProgress(int maximum) override;
    void setProgress(int value) override;
    int progress() const override;
    void endProgress() override;
    // The step goes in the main window's step panel, the version in its firmware-version panel.
    QString stepText() const override;
    void setStepText(const QString& text) override;
    void setFirmwareVersion(const QString& version) override;
    void showMessage(const QString& text, const QString& title, MsgIcon icon) override;
    bool askYesNo(const QString& text, const QString& title, MsgIcon icon, bool defaultNo) override;
    QString inputBox(const QString& prompt, const QString& title, const QString& defaultText) override;
    std::optional<QString> openFileName(const FileDialogRequest& request) override;
    std::optional<QString> saveFileName(const FileDialogRequest& request) override;
    void processEvents() override;
    void showError(const MarloError& error, const QString& version, const QString& title) override;

    // The file dialog's name filters for a filter text of the classic form
    // "All (*.*)|*.*|Tolvane Firmware (*.tvf)|*.tvf" ("*.*" meaning every file).
    static QStringList NameFilters(const QString& filter);
    // The parent for a modal box: the main window when it is shown.
    QWidget* dialogParent() const;

private:
    std::optional<QString> fileName(const FileDialogRequest& request, bool save);

    QPointer<fTolvaneMan> m_main;
    bool m_busy = false;
    QString m_step; // used while there is no main window
};
