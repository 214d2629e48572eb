// The main window's firmware commands and what keeps the window alive and safe while one runs,
// the traffic window (View > Communication log) and the build information (View > Gun build
// info, or a double-click on the firmware-version panel).
#include "gui/shell/fTolvaneMan.h"

#include "firmware/mFirmwareBackup.h"
#include "firmware/mFirmwareWorkflows.h"
#include "gui/grip/fBuildInfo.h"
#include "gui/link/cCommConsoleWindow.h"
#include "gui/link/fCommConsole.h"
#include "gui/shell/GripCommandScope.h"
#include "shell/cApplication.h"
#include "shell/mMain.h"

#include <QAction>
#include <QCloseEvent>
#include <QDir>
#include <QLabel>
#include <QPointer>
#include <QTimer>
#include <exception>


namespace {

// The window's events that the firmware and view code looks at: the first showing (the traffic
// window opens with it when logging to the console is on), closing during a transfer (refused),
// and a double-click on the firmware-version panel.
class ViewEvents : public QObject {
public:
    explicit ViewEvents(fTolvaneMan* window) : QObject(window), m_window(window) {}

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (watched == m_window && event->type() == QEvent::Show && !m_shown) {
            m_shown = true;
            if (m_window->App().RegistrySettings().CommLogToConsole())
                QTimer::singleShot(0, m_window, [w = m_window] { w->ShowCommLog(true); });
        } else if (watched == m_window && event->type() == QEvent::Close && m_window->GripCommandRunning()) {
            // Closing would end the program inside an exchange (during a firmware transfer, with
            // the grip left in its boot code, half written).
            event->ignore();
            return true;
        } else if (watched != m_window && event->type() == QEvent::MouseButtonDblClick) {
            m_window->mnuBuildInfo_Click();
            return true;
        }
        return QObject::eventFilter(watched, event);
    }

private:
    fTolvaneMan* m_window;
    bool m_shown = false;
};

} // namespace

// ---- a firmware transfer in the window ---------------------------------------------------------

// What a firmware transfer keeps in order while it runs, beside the held commands: the traffic
// window knows of it, and an error leaves no progress bar and no step text behind.
class FirmwareTransferScope {
public:
    explicit FirmwareTransferScope(fTolvaneMan& window)
        : m_window(window), m_outer(!window.m_transferRunning), m_hold(window),
          m_stepText(window.PanelText(fTolvaneMan::kPanelStep)), m_exceptions(std::uncaught_exceptions())
    {
        if (m_outer)
            m_window.setTransferRunning(true);
    }

    ~FirmwareTransferScope()
    {
        if (!m_outer)
            return;
        // The error window comes after.
        if (std::uncaught_exceptions() > m_exceptions) {
            m_window.EndProgressBar();
            m_window.SetPanelText(fTolvaneMan::kPanelStep, m_stepText);
        }
        m_window.setTransferRunning(false);
    }

    FirmwareTransferScope(const FirmwareTransferScope&) = delete;
    FirmwareTransferScope& operator=(const FirmwareTransferScope&) = delete;

private:
    fTolvaneMan& m_window;
    bool m_outer;
    GripCommandScope m_hold;
    QString m_stepText;
    int m_exceptions;
};

void fTolvaneMan::setTransferRunning(bool running)
{
    m_transferRunning = running;
    if (m_commLog)
        m_commLog->setTransferRunning(running);
}

// The workflows run as this window's procedures: their errors name the window and the step they
// failed in; the caller shows them. The firmware-version panel is the workflow's own last step:
// a cancelled dialog leaves it as it was.
const mFirmwareWorkflows::tCaller fTolvaneMan::kUploadFirmware{kForm, kRevision, QStringLiteral("UploadFirmware")};
const mFirmwareWorkflows::tCaller fTolvaneMan::kDownloadFirmware{kForm, kRevision, QStringLiteral("mnuDLFirmware_Click")};

void fTolvaneMan::WriteFirmware(const std::function<void(const mFirmwareWorkflows::tUploadOptions&)>& write)
{
    FirmwareTransferScope transfer(*this);
    QString backup;
    mFirmwareWorkflows::tUploadOptions options;
    if (m_application.RegistrySettings().FirmwareBackup())
        options.backupFolder = mFirmwareBackup::DefaultFolder();
    options.backedUp = [&backup](const QString& path) { backup = path; };
    write(options);
    if (!backup.isEmpty())
        SetPanelText(kPanelStep, tr("Firmware backed up to %1").arg(QDir::toNativeSeparators(backup)));
}

void fTolvaneMan::UploadFirmware(const QString& file)
{
    WriteFirmware([&](const mFirmwareWorkflows::tUploadOptions& options) {
        mFirmwareWorkflows::UploadFirmware(m_session, file, kUploadFirmware, options);
    });
}

void fTolvaneMan::mnuULFirmware_Click()
{
    Handle(QStringLiteral("mnuULFirmware_Click"), [&] {
        WriteFirmware([&](const mFirmwareWorkflows::tUploadOptions& options) {
            mFirmwareWorkflows::PutFirmwareProgram(m_session, m_application.RegistrySettings(), kUploadFirmware, options);
        });
    });
}

void fTolvaneMan::mnuDLFirmware_Click()
{
    Handle(QStringLiteral("mnuDLFirmware_Click"), [&] {
        FirmwareTransferScope transfer(*this);
        mFirmwareWorkflows::DownloadFirmware(m_session, m_application.RegistrySettings(), QString(), kDownloadFirmware);
    });
}

// ---- the traffic window and the build information ----------------------------------------------

void fTolvaneMan::SetupViews()
{
    auto* events = new ViewEvents(this);
    installEventFilter(events);
    if (QLabel* version = findChild<QLabel*>(QStringLiteral("FWVer"))) {
        version->installEventFilter(events);
        version->setToolTip(tr("%1 (double-click: gun build info)").arg(version->toolTip()));
    }
    if (auto* item = findChild<QAction*>(QStringLiteral("mnuCommLog")))
        item->setCheckable(true);
    // The link's console logging object shows its entries in this window's traffic window.
    QPointer<fTolvaneMan> self(this);
    Link().ResetConsole();
    Link().SetConsoleFactory([self]() -> std::unique_ptr<cCommConsole> {
        return std::make_unique<cCommConsoleWindow>([self]() -> fCommConsole* { return self ? self->CommLogWindow() : nullptr; });
    });
    // An open build-information window follows every reading of the gun information.
    m_session.GunInfo().setReadHandler([this] {
        if (m_buildInfo)
            m_buildInfo->Form_Load();
    });
}

void fTolvaneMan::ReleaseViews()
{
    m_session.GunInfo().setReadHandler(nullptr);
    Link().ResetConsole();
    Link().SetConsoleFactory(nullptr);
}

fCommConsole* fTolvaneMan::CommLogWindow()
{
    if (!m_commLog) {
        m_commLog = new fCommConsole(this);
        m_commLog->setTransferRunning(m_transferRunning);
        // Closing the window ends logging to it; the next start then opens without it.
        connect(m_commLog, &fCommConsole::closedByUser, this, [this] {
            ShowErrors(kForm, kRevision, QStringLiteral("fCommConsole_Close"),
                       [this] { m_application.RegistrySettings().setCommLogToConsole(false); });
        });
        connect(m_commLog, &fCommConsole::visibilityChanged, this, [this](bool visible) {
            if (auto* item = findChild<QAction*>(QStringLiteral("mnuCommLog")))
                item->setChecked(visible);
        });
    }
    return m_commLog;
}

void fTolvaneMan::ShowCommLog(bool show)
{
    PassErrors(kForm, kRevision, QStringLiteral("ShowCommLog"), [&] {
        m_application.RegistrySettings().setCommLogToConsole(show);
        if (show) {
            fCommConsole* window = CommLogWindow();
            window->show();
            window->raise();
        } else if (m_commLog) {
            m_commLog->hide();
        }
    });
}

void fTolvaneMan::mnuCommLog_Click()
{
    Handle(QStringLiteral("mnuCommLog_Click"), [&] {
        auto* item = findChild<QAction*>(QStringLiteral("mnuCommLog"));
        ShowCommLog(item && item->isChecked());
    });
}

void fTolvaneMan::mnuBuildInfo_Click()
{
    Handle(QStringLiteral("mnuBuildInfo_Click"), [&] {
        // Not modal: it may stay open beside the window, a firmware transfer included.
        if (!m_buildInfo) {
            m_buildInfo = new fBuildInfo(m_session.GunInfo(), this);
            m_buildInfo->setAttribute(Qt::WA_DeleteOnClose);
        } else {
            m_buildInfo->Form_Load();
        }
        m_buildInfo->show();
        m_buildInfo->raise();
        m_buildInfo->activateWindow();
    });
}
