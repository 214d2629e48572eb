#pragma once
// The main window: the active setting in its panes (timing, options, ramping, counters, game
// timer, battery), the grip commands as tool buttons and menu items, and every control's state
// kept in step with one flag, whether the active setting is an editable template or a setting
// read from a grip. Its implementation is split by concern: the form and its state
// (fTolvaneMan.cpp), the grip commands (fTolvaneMan_Commands.cpp), the timing editor
// (fTolvaneMan_TimingEditor.cpp), the firmware commands with the traffic window and the build
// information (fTolvaneMan_Firmware.cpp) and the comparison with the grip (fTolvaneMan_Compare.cpp).
#include "firmware/mFirmwareWorkflows.h"
#include "grip/mGripCommands.h"
#include "grip/cGripSession.h"
#include "link/cLink.h"

#include <QList>
#include <QMainWindow>
#include <QPointer>
#include <QStringList>
#include <functional>
#include <memory>

class cApplication;
class cifSetsTemplate;
class fBuildInfo;
class fCommConsole;
class cSetsTemplate;
class QAction;
class QCheckBox;
class QComboBox;
class QFrame;
class QGroupBox;
class QLabel;
class QLineEdit;
class QMenu;
class QProgressBar;
class QPushButton;
class QSlider;
class UpDown;
class ucIProgress;

class fTolvaneMan : public QMainWindow {
    Q_OBJECT
    friend struct fTolvaneManOptionTables;

public:
    static inline const QString kForm = QStringLiteral("fTolvaneMan");
    static inline const QString kRevision = QStringLiteral("$Revision: 1 $");
    static inline const char* const kDesignCaption = QT_TR_NOOP("Tolvane Interface Programme");

    // Builds the form and loads it (Form_Load). The window talks to the grip through the session
    // (and its link) and keeps its library and preferences in the application object; the caller
    // keeps both for the window's lifetime.
    fTolvaneMan(cGripSession& session, cApplication& application, QWidget* parent = nullptr);
    ~fTolvaneMan() override;

    // The words of the command line read at the first activation (default: the program's
    // arguments). Tests give their own.
    void setCommandLine(const QStringList& words) { m_commandLine = words; }

    // ---- state ---------------------------------------------------------------------------
    bool IsTemplate() const { return m_isTemplate; }
    void setIsTemplate(bool value);
    // The setting shown and edited: the record bound to the timing editor.
    std::shared_ptr<cSetsTemplate> ActiveSetting() const;
    void ChangeTemplate(const std::shared_ptr<cSetsTemplate>& setting, bool isTemplate);
    void NewTemplate();
    void SetCaption();
    void UpdateState();
    void SetVersionStatus();
    void LoadProgramSettings();
    void SaveProgramSettings();
    void ActivateTools(int index);

    // ---- timing editor -------------------------------------------------------------------
    void SetupSettingsBoundaries();
    void SetupOptionsBoundaries();
    void SetupOptionsData();
    void SetOptionsState();
    void SetupFiringMode();
    void SetupHyperMode();
    void SetDefaultSettings();
    void RecalculateRPS();
    void MoveControlsToOptions();
    void MoveControlsToHyper();

    // ---- the status bar, for the user-interface services ------------------------------------
    // Panels from 1: the library file, the grip's firmware version, the current step, and the
    // panel the progress bar covers.
    static constexpr int kPanelDatabase = 1;
    static constexpr int kPanelFirmware = 2;
    static constexpr int kPanelStep = 3;
    static constexpr int kPanelProgress = 4;
    QString PanelText(int panel) const;
    void SetPanelText(int panel, const QString& text);
    void StartProgressBar(int maximum);
    void SetProgressValue(int value);
    int ProgressValue() const;
    void EndProgressBar();

public slots:
    void cmdTools_Click(int index);
    void cmdReset_Click(int index);
    void mnuLibTemplates_Click();
    void mnuLibStatistics_Click();
    void mnuGripHistory_Click();
    void mnuProperties_Click();
    void mnuPromote_Click();
    void mnuBurnFirmware_Click();
    void mnuDefaultSettings_Click();
    void mnuNew_Click();
    void mnuSave_Click();
    void mnuExit_Click();
    void mnuAbout_Click();
    void mnuOptions_Click();
    void mnuDLTiming_Click();
    void mnuULTiming_Click();
    void mnuDLCounters_Click();
    void mnuDLBattery_Click();
    void mnuDLGunInfo_Click();
    void mnuDLFirmware_Click();
    void mnuULFirmware_Click();
    // Beyond the classic form's handlers: the items a user expects to work.
    void mnuDLGameTimers_Click();
    void mnuULGameTimers_Click();
    void mnuULAll_Click();
    void mnuCut_Click();
    void mnuCopy_Click();
    void mnuPaste_Click();
    void mnuCompare_Click();

    // ---- firmware, the traffic window, the build information (fTolvaneMan_Firmware.cpp) ------
public slots:
    void mnuCommLog_Click();
    void mnuBuildInfo_Click();

public:
    // A grip command runs (a firmware transfer included): the commands are held and the window
    // cannot be closed.
    bool GripCommandRunning() const { return m_commandDepth > 0; }
    // A firmware transfer runs.
    bool FirmwareTransferRunning() const { return m_transferRunning; }
    // The traffic window, made on first use; shown or hidden with logging to it.
    fCommConsole* CommLogWindow();
    void ShowCommLog(bool show);

private:
    friend class FirmwareTransferScope;
    friend class GripCommandScope;
    friend class HoldSuspended;
    // What a grip command holds (fTolvaneMan_Hold.cpp): every command that talks to the grip,
    // opens a modal window, changes the port or ends the program. Each is disabled while the
    // command runs and given back the state it would have had.
    void HoldCommands();
    void ReleaseCommands();
    struct HeldCommand {
        QPointer<QObject> command;
        bool enabled = false;
    };
    QList<QObject*> m_heldCommands; // filled as the form is built, from its tables
    QList<HeldCommand> m_held;      // while held: each command and the state it gets back
    int m_commandDepth = 0;
    void SetupViews();
    void ReleaseViews();
    void setTransferRunning(bool running);
    QPointer<fCommConsole> m_commLog;
    QPointer<fBuildInfo> m_buildInfo;
    bool m_transferRunning = false;

protected:
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    // Building the form (fTolvaneMan.cpp).
    void createPanes();
    QGroupBox* createTimingPane();
    QGroupBox* createOptionsPane();
    QGroupBox* createRampingPane();
    QGroupBox* createCountersPane();
    QGroupBox* createGameTimerPane();
    QGroupBox* createBatteryPane();
    void createToolButtons();
    void createMenus();
    void createStatusBar();
    void createBinding();
    void connectHandlers();

    void Form_Load();
    void Form_Activate();
    void Form_Unload(bool& cancel);
    void LayoutToolButtons();
    void FitToScreen();
    void ReadCommandLine();
    void UploadFirmware(const QString& file);
    // Runs a firmware write with the grip's firmware backed up first when the preferences say
    // so; the step panel then says where the backup went.
    void WriteFirmware(const std::function<void(const mFirmwareWorkflows::tUploadOptions&)>& write);
    // The names the firmware workflows run under in this window.
    static const mFirmwareWorkflows::tCaller kUploadFirmware;
    static const mFirmwareWorkflows::tCaller kDownloadFirmware;

    // The common frame of a grip command: the commands held, wait pointer, a fresh error record,
    // the command (the core's get or put with its boot-mode check, or a single exchange), then
    // the confirmation when confirmations are on and the grip refused nothing
    // (fTolvaneMan_Commands.cpp). The first form answers whether nothing was refused.
    bool RunGripCommand(const std::function<void()>& command);
    void RunGripCommand(const QString& confirmation, const std::function<void()>& command);
    // The window's part of the core's get and put, transfer by transfer: the loaders below show
    // each record as soon as it came, and the transfers carry the loaders' names (InitDLTiming,
    // ..., InitULOptions, InitULHyper) in the error trail (fTolvaneMan_Commands.cpp).
    class TransferSteps;
    void InitDLTiming(mGripCommands::Outcome got);
    void InitCounters(mGripCommands::Outcome got);
    void InitDLCountDownTimers(mGripCommands::Outcome got);
    void InitBatteryIndicator(mGripCommands::Outcome got);
    void InitDLOptions(mGripCommands::Outcome got);
    void InitDLHyper(mGripCommands::Outcome got);
    // A refusal of the grip, said in the status bar until the next grip command.
    void ShowRefusal();
    void ClearRefusal();
    QString m_refusalText;
    QString m_stepBeforeRefusal;
    // Before a put: every value fits what its record carries, or nothing is sent.
    void CheckPut(const QList<mGripCommands::GripRecord>& records);
    // The comparison with the grip (fTolvaneMan_Compare.cpp): what Put all would send, into the
    // records of a scratch session, then read the grip beside it and show the two.
    void PutValuesInto(cGripSession& put);
    void CompareWithGrip();
    // The option and ramping boxes into the records given, as a put takes them; the boxes stay as
    // they are (fTolvaneMan_TimingEditor.cpp; the callers' frames name them in an error).
    void ControlsIntoOptions(cOptions& options) const;
    void ControlsIntoHyper(cHyper& ramping) const;
    // The library browser and the property editor of the active setting
    // (fTolvaneMan_Library.cpp).
    void ShowLibraryBrowser();
    void ShowPropertyEditor();
    // The grip history; a chosen entry becomes a new template, the active setting.
    void ShowGripHistory();
    // Runs a handler's body with its error trap.
    void Handle(const QString& procedure, const std::function<void()>& body);

    // Timing editor events (fTolvaneMan_TimingEditor.cpp).
    void sldScroll(QSlider* slider, QLineEdit* text);
    void timingTextChange(int timing);
    void followText(QLineEdit* text, QSlider* slider);
    void chkOption_Click(const QString& procedure);
    void mIFSettings_sldlCycleTimeCloseScroll();
    void mIFSettings_chkbCTCLikeCTOClick();
    void mIFSettings_chkbExpertModeClick();
    void mIFSettings_chkbAlertOneClick();
    void mIFSettings_chkbAlertTwoClick();
    void FillModeList(QComboBox* list, bool firing, qint32 code);
    void SetMaxROF();

public:
    // ---- the controls, named as the form names them ---------------------------------------
    // The five timings, in the order of the pane: ST, DT, CTO, LT, CTC.
    enum Timing { ST, DT, CTO, LT, CTC };
    struct TimingControls {
        QLineEdit* text = nullptr;
        UpDown* upDown = nullptr;
        QSlider* slider = nullptr;
        QLabel* caption = nullptr;
        QLabel* unit = nullptr;
    };
    TimingControls timing(int index) const { return m_timing[index]; }

    // The session with the grip the window was given, and its link.
    cGripSession& Session() { return m_session; }
    cLink& Link() { return m_session.Link(); }
    // The application object the window was given (library, preferences, active setting).
    cApplication& App() { return m_application; }

private:
    cGripSession& m_session;
    cApplication& m_application;
    cifSetsTemplate* mIFSettings = nullptr;
    bool m_isTemplate = false;
    bool m_activated = false;
    QStringList m_commandLine;

    // Panes.
    QGroupBox* fraTiming = nullptr;
    QGroupBox* fraOptions = nullptr;
    QGroupBox* fraRamping = nullptr;
    QGroupBox* fraCounters = nullptr;
    QGroupBox* fraGameTimer = nullptr;
    QGroupBox* fraBettery = nullptr;

    // Timing.
    QComboBox* cboFiringModes = nullptr;
    QLabel* lblFiringModes = nullptr;
    QCheckBox* chkExpert = nullptr;
    QCheckBox* chkCopyCTO = nullptr;
    QCheckBox* chkCTOAdjust = nullptr;
    TimingControls m_timing[5];
    QLabel* lblROFtxt = nullptr;
    QLabel* lblROFbps = nullptr;
    QLabel* lblROFbpstxt = nullptr;

    // Options.
    QCheckBox* chkACE = nullptr;
    QCheckBox* chkUseEye = nullptr;
    QCheckBox* chkUseFeeder = nullptr;
    QCheckBox* chkUseLED = nullptr;
    QCheckBox* chkTriggerFilter = nullptr;
    QCheckBox* chkEyeOKMax = nullptr;
    QLineEdit* txtEyeOKMax = nullptr;
    UpDown* updEyeOKMax = nullptr;
    QCheckBox* chkEyeCheckMax = nullptr;
    QLineEdit* txtEyeCheckMax = nullptr;
    UpDown* updEyeCheckMax = nullptr;
    QLabel* lblDefaultLoadTime = nullptr;
    QLineEdit* txtDefaultLoadTime = nullptr;
    UpDown* updDefaultLoadTime = nullptr;
    QLabel* lblMaxROF = nullptr;
    QLabel* lblBPStxt = nullptr;

    // Ramping.
    QLabel* lblHyperModes = nullptr;
    QComboBox* cboHyperModes = nullptr;
    QLabel* lblShots = nullptr;
    QLineEdit* txtShots = nullptr;
    UpDown* updShots = nullptr;
    QLabel* lblHyperTime = nullptr;
    QLineEdit* txtHyperTime = nullptr;
    UpDown* updHyperTime = nullptr;

    // Counters, game timer, battery.
    QLineEdit* txtCounters[3] = {};
    QLabel* lblCounter[3] = {};
    QPushButton* cmdReset[2] = {};
    QLineEdit* txtCntDown = nullptr;
    UpDown* updGT = nullptr;
    QLabel* lblGT = nullptr;
    QLabel* lblGTmin = nullptr;
    QCheckBox* chkAlertOne = nullptr;
    ucIProgress* ucIProgress1 = nullptr;

    // Tool buttons (the index is the command number), menus, status bar.
    QWidget* m_toolRow = nullptr;
    QList<QPushButton*> cmdTools; // indices 0..9; 7 and 8 are not on the form
    QAction* mnuProperties = nullptr;
    QAction* mnuPromote = nullptr;
    QMenu* mnuUpload = nullptr;
    QMenu* mnuView = nullptr;
    QList<QLabel*> m_panels; // panels 1..3 at 0..2
    QFrame* m_progressPanel = nullptr;
    QProgressBar* pgbProgress = nullptr;
};
