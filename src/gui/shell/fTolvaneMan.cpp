#include "gui/shell/fTolvaneMan.h"

#include "gui/common/FittingScrollArea.h"
#include "gui/common/PlacedWidget.h"
#include "gui/common/mGUISupport.h"
#include "gui/common/mLabels.h"
#include "gui/library/cifSetsTemplate.h"
#include "gui/shell/GripCommandScope.h"
#include "gui/shell/QtUserInterface.h"
#include "gui/widgets/StatusPanel.h"
#include "gui/widgets/UpDown.h"
#include "gui/widgets/ucIProgress.h"
#include "library/cSetsTemplate.h"
#include "shell/cApplication.h"
#include "shell/mMain.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QSlider>
#include <QStatusBar>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>
#include <tuple>

using mGUISupport::MakeCheckBox;
using mGUISupport::MakeControl;
using mGUISupport::MakeLabel;
using mGUISupport::SetControlState;
using mGUISupport::TwipsToPixels;

namespace {

// ---- the form's tables -------------------------------------------------------------------

struct ToolButton {
    int index;
    const char* caption;
    const char* toolTip;       // set at load
    const char* designToolTip; // the form's own tip, where no tip is set at load
};

const ToolButton kToolButtons[] = {
    {0, QT_TRANSLATE_NOOP("fTolvaneMan", "&Get"), QT_TRANSLATE_NOOP("fTolvaneMan", "Start download of the current settings from the gun."), nullptr},
    {1, QT_TRANSLATE_NOOP("fTolvaneMan", "&Put"), QT_TRANSLATE_NOOP("fTolvaneMan", "Start upload of current settings to gun."), nullptr},
    {2, QT_TRANSLATE_NOOP("fTolvaneMan", "Library (settings)"), QT_TRANSLATE_NOOP("fTolvaneMan", "Show a list of the templates defined in the system at the current time."), nullptr},
    {3, QT_TRANSLATE_NOOP("fTolvaneMan", "Library (stats)"), QT_TRANSLATE_NOOP("fTolvaneMan", "Show all the settings downloaded from a gun in the past."), nullptr},
    {4, QT_TRANSLATE_NOOP("fTolvaneMan", "P&roperties"), QT_TRANSLATE_NOOP("fTolvaneMan", "Show the details about the current setting/template."), nullptr},
    {5, QT_TRANSLATE_NOOP("fTolvaneMan", "&Promote"), QT_TRANSLATE_NOOP("fTolvaneMan", "Promote a previously downloaded setting to a template."), nullptr},
    {6, QT_TRANSLATE_NOOP("fTolvaneMan", "&Default settings"), nullptr, QT_TRANSLATE_NOOP("fTolvaneMan", "Promote a downloaded setting to a template")},
    {9, QT_TRANSLATE_NOOP("fTolvaneMan", "&Burn program"), QT_TRANSLATE_NOOP("fTolvaneMan", "Upload new firmware to the gun."), nullptr},
};

using Handler = void (fTolvaneMan::*)();

// One item of the menu bar: a menu (no parent), a submenu (a parent and items of its own), an
// item or a separator ("-"). Items without a handler are present and greyed. A held item is
// disabled while a grip command runs: it talks to the grip, opens a modal window, changes the
// port or ends the program.
struct MenuItem {
    const char* name;
    const char* caption;
    const char* parent;
    Handler handler;
    bool held;
};

const MenuItem kMenus[] = {
    {"mnuFile", QT_TRANSLATE_NOOP("fTolvaneMan", "&File"), nullptr, nullptr, false},
    {"mnuNew", QT_TRANSLATE_NOOP("fTolvaneMan", "&New"), "mnuFile", &fTolvaneMan::mnuNew_Click, true},
    {"mnuOpen", QT_TRANSLATE_NOOP("fTolvaneMan", "&Open"), "mnuFile", nullptr, false},
    {"mnuSave", QT_TRANSLATE_NOOP("fTolvaneMan", "&Save"), "mnuFile", &fTolvaneMan::mnuSave_Click, false},
    {"mnuSaveAs", QT_TRANSLATE_NOOP("fTolvaneMan", "Save &As"), "mnuFile", nullptr, false},
    {"-", nullptr, "mnuFile", nullptr, false},
    {"mnuPrint", QT_TRANSLATE_NOOP("fTolvaneMan", "&Print"), "mnuFile", nullptr, false},
    {"-", nullptr, "mnuFile", nullptr, false},
    {"mnuExit", QT_TRANSLATE_NOOP("fTolvaneMan", "E&xit"), "mnuFile", &fTolvaneMan::mnuExit_Click, true},
    {"mnuEdit", QT_TRANSLATE_NOOP("fTolvaneMan", "&Edit"), nullptr, nullptr, false},
    {"mnuCut", QT_TRANSLATE_NOOP("fTolvaneMan", "&Cut"), "mnuEdit", &fTolvaneMan::mnuCut_Click, false},
    {"mnuCopy", QT_TRANSLATE_NOOP("fTolvaneMan", "C&opy"), "mnuEdit", &fTolvaneMan::mnuCopy_Click, false},
    {"mnuPaste", QT_TRANSLATE_NOOP("fTolvaneMan", "&Paste"), "mnuEdit", &fTolvaneMan::mnuPaste_Click, false},
    {"mnuFunction", QT_TRANSLATE_NOOP("fTolvaneMan", "F&unction"), nullptr, nullptr, false},
    {"mnuDownload", QT_TRANSLATE_NOOP("fTolvaneMan", "&Get"), "mnuFunction", nullptr, false},
    {"mnuDLTiming", QT_TRANSLATE_NOOP("fTolvaneMan", "&Timing settings"), "mnuDownload", &fTolvaneMan::mnuDLTiming_Click, true},
    {"mnuDLCounters", QT_TRANSLATE_NOOP("fTolvaneMan", "&Counters"), "mnuDownload", &fTolvaneMan::mnuDLCounters_Click, true},
    {"mnuDLGameTimers", QT_TRANSLATE_NOOP("fTolvaneMan", "G&ame timers"), "mnuDownload", &fTolvaneMan::mnuDLGameTimers_Click, true},
    {"mnuDLGunInfo", QT_TRANSLATE_NOOP("fTolvaneMan", "&Gun information"), "mnuDownload", &fTolvaneMan::mnuDLGunInfo_Click, true},
    {"mnuDLBattery", QT_TRANSLATE_NOOP("fTolvaneMan", "&Battery info"), "mnuDownload", &fTolvaneMan::mnuDLBattery_Click, true},
    {"mnuDLFirmware", QT_TRANSLATE_NOOP("fTolvaneMan", "&Firmware program"), "mnuDownload", &fTolvaneMan::mnuDLFirmware_Click, true},
    {"mnuDLEEPROM", QT_TRANSLATE_NOOP("fTolvaneMan", "&EEPROM"), "mnuDownload", nullptr, false},
    {"mnuDLExtEEPROM", QT_TRANSLATE_NOOP("fTolvaneMan", "E&xtended EEPROM"), "mnuDownload", nullptr, false},
    {"mnuDLStatistics", QT_TRANSLATE_NOOP("fTolvaneMan", "&Statistics"), "mnuDownload", nullptr, false},
    {"-", nullptr, "mnuDownload", nullptr, false},
    {"mnuDLGame", QT_TRANSLATE_NOOP("fTolvaneMan", "Ga&me"), "mnuDownload", nullptr, false},
    {"mnuUpload", QT_TRANSLATE_NOOP("fTolvaneMan", "P&ut"), "mnuFunction", nullptr, false},
    {"mnuULTiming", QT_TRANSLATE_NOOP("fTolvaneMan", "&Timing"), "mnuUpload", &fTolvaneMan::mnuULTiming_Click, true},
    {"mnuULGameTimers", QT_TRANSLATE_NOOP("fTolvaneMan", "G&ame timers"), "mnuUpload", &fTolvaneMan::mnuULGameTimers_Click, true},
    {"mnuULFirmware", QT_TRANSLATE_NOOP("fTolvaneMan", "&Firmware program"), "mnuUpload", &fTolvaneMan::mnuULFirmware_Click, true},
    {"-", nullptr, "mnuUpload", nullptr, false},
    {"mnuULAll", QT_TRANSLATE_NOOP("fTolvaneMan", "&All"), "mnuUpload", &fTolvaneMan::mnuULAll_Click, true},
    {"mnuCompare", QT_TRANSLATE_NOOP("fTolvaneMan", "Co&mpare with grip..."), "mnuFunction", &fTolvaneMan::mnuCompare_Click, true},
    {"mnuDefaultSettings", QT_TRANSLATE_NOOP("fTolvaneMan", "Default Settings"), "mnuFunction", &fTolvaneMan::mnuDefaultSettings_Click, true},
    {"mnuLibTemplates", QT_TRANSLATE_NOOP("fTolvaneMan", "Library &templates..."), "mnuFunction", &fTolvaneMan::mnuLibTemplates_Click, true},
    {"mnuLibStatistics", QT_TRANSLATE_NOOP("fTolvaneMan", "Library &statistics..."), "mnuFunction", &fTolvaneMan::mnuLibStatistics_Click, false},
    {"mnuGripHistory", QT_TRANSLATE_NOOP("fTolvaneMan", "Grip &history..."), "mnuFunction", &fTolvaneMan::mnuGripHistory_Click, true},
    {"mnuProperties", QT_TRANSLATE_NOOP("fTolvaneMan", "P&roperties"), "mnuFunction", &fTolvaneMan::mnuProperties_Click, true},
    {"mnuPromote", QT_TRANSLATE_NOOP("fTolvaneMan", "&Promote"), "mnuFunction", &fTolvaneMan::mnuPromote_Click, false},
    {"mnuBurnFirmware", QT_TRANSLATE_NOOP("fTolvaneMan", "&Burn firmware"), "mnuFunction", &fTolvaneMan::mnuBurnFirmware_Click, false},
    {"-", nullptr, "mnuFunction", nullptr, false},
    {"mnuOptions", QT_TRANSLATE_NOOP("fTolvaneMan", "&Options"), "mnuFunction", &fTolvaneMan::mnuOptions_Click, true},
    {"mnuView", QT_TRANSLATE_NOOP("fTolvaneMan", "&View"), nullptr, nullptr, false},
    {"mnuCommLog", QT_TRANSLATE_NOOP("fTolvaneMan", "&Communication log"), "mnuView", &fTolvaneMan::mnuCommLog_Click, false},
    {"mnuBuildInfo", QT_TRANSLATE_NOOP("fTolvaneMan", "Gun &build info"), "mnuView", &fTolvaneMan::mnuBuildInfo_Click, false},
    {"mnuHelp", QT_TRANSLATE_NOOP("fTolvaneMan", "&Help"), nullptr, nullptr, false},
    {"mnuContents", QT_TRANSLATE_NOOP("fTolvaneMan", "&Contents"), "mnuHelp", nullptr, false},
    {"mnuIndex", QT_TRANSLATE_NOOP("fTolvaneMan", "&Index"), "mnuHelp", nullptr, false},
    {"-", nullptr, "mnuHelp", nullptr, false},
    {"mnuAbout", QT_TRANSLATE_NOOP("fTolvaneMan", "&About Tolvane Manager"), "mnuHelp", &fTolvaneMan::mnuAbout_Click, true},
};

// Tool tips of the menu items that have one: the items beyond the classic form.
struct MenuToolTip {
    const char* name;
    const char* toolTip;
};

const MenuToolTip kMenuToolTips[] = {
    {"mnuCompare", QT_TRANSLATE_NOOP("fTolvaneMan", "Show the settings on the grip beside those Put would send; nothing is written.")},
    {"mnuGripHistory", QT_TRANSLATE_NOOP("fTolvaneMan", "List the settings each grip held after every get and put, and make a template of one")},
};

struct TimingRow {
    const char* suffix;  // ST, DT, CTO, LT, CTC
    const char* caption; // the caption label
};

const TimingRow kTimingRows[] = {
    {"ST", QT_TRANSLATE_NOOP("fTolvaneMan", "Shot")},  {"DT", QT_TRANSLATE_NOOP("fTolvaneMan", "Dwell")},
    {"CTO", QT_TRANSLATE_NOOP("fTolvaneMan", "Open")}, {"LT", QT_TRANSLATE_NOOP("fTolvaneMan", "Load")},
    {"CTC", QT_TRANSLATE_NOOP("fTolvaneMan", "Close")},
};

QString named(const char* name, int index)
{
    return QStringLiteral("%1(%2)").arg(QLatin1String(name)).arg(index);
}

// A text box wide enough for the given number of digits.
QLineEdit* textBox(QWidget* parent, const QString& name, int digits)
{
    auto* box = MakeControl<QLineEdit>(parent, name);
    box->setAlignment(Qt::AlignRight);
    const int width = box->fontMetrics().horizontalAdvance(QString(digits + 1, QLatin1Char('0'))) + 14;
    box->setFixedWidth(width);
    return box;
}

// A list of modes as wide as its longest mode, which no layout cuts (at a large font the panes
// share less room than they would like).
QComboBox* modeList(QWidget* parent, const QString& name)
{
    auto* list = MakeControl<QComboBox>(parent, name);
    list->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    list->setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Fixed);
    return list;
}

UpDown* upDown(QWidget* parent, const QString& name, QLineEdit* buddy, const QString& accessibleName)
{
    auto* control = MakeControl<UpDown>(parent, name);
    control->setAccessibleName(accessibleName);
    control->setBuddy(buddy);
    return control;
}

// A control without a caption of its own is read by the caption it stands beside.
void nameAfter(QWidget* control, const QString& caption)
{
    QString name = QString(caption).remove(QLatin1Char('&')).trimmed();
    if (name.endsWith(QLatin1Char(':')))
        name = name.chopped(1).trimmed();
    control->setAccessibleName(name);
}

} // namespace

// ---- building the form -------------------------------------------------------------------

fTolvaneMan::fTolvaneMan(cGripSession& session, cApplication& application, QWidget* parent)
    : QMainWindow(parent), m_session(session), m_application(application)
{
    setObjectName(kForm);
    setWindowTitle(tr(kDesignCaption));
    // The services on screen show progress, status and the pointer in this window.
    if (auto* ui = dynamic_cast<QtUserInterface*>(&mMain::UI()))
        ui->setMainWindow(this);
    m_commandLine = QCoreApplication::arguments().mid(1);
    createPanes();
    createMenus();
    createStatusBar();
    createBinding();
    connectHandlers();
    SetupViews();
    Form_Load();
}

fTolvaneMan::~fTolvaneMan()
{
    // Hiding the window on its way out takes the focus from a text box, which would finish its
    // edit into a window that is no longer whole.
    for (QLineEdit* box : findChildren<QLineEdit*>())
        disconnect(box, &QLineEdit::editingFinished, this, nullptr);
    ReleaseViews();
    if (auto* ui = dynamic_cast<QtUserInterface*>(&mMain::UI()); ui && ui->mainWindow() == this)
        ui->setMainWindow(nullptr);
}

void fTolvaneMan::createPanes()
{
    auto* central = new QWidget(this);
    central->setObjectName(QStringLiteral("picMain"));
    m_toolRow = MakeControl<QWidget>(central, QStringLiteral("picTools"));
    // The tool buttons come first in the tab order, then the panes.
    createToolButtons();
    fraTiming = createTimingPane();
    fraOptions = createOptionsPane();
    fraRamping = createRampingPane();
    fraCounters = createCountersPane();
    fraGameTimer = createGameTimerPane();
    fraBettery = createBatteryPane();
    for (QGroupBox* pane : {fraTiming, fraOptions, fraRamping, fraCounters, fraGameTimer, fraBettery})
        pane->setParent(central);

    auto* panes = new QGridLayout;
    panes->addWidget(fraTiming, 0, 0, 2, 1);
    panes->addWidget(fraOptions, 0, 1);
    panes->addWidget(fraRamping, 1, 1);
    auto* bottom = new QHBoxLayout;
    bottom->addWidget(fraCounters);
    bottom->addWidget(fraGameTimer);
    bottom->addWidget(fraBettery, 1);
    panes->addLayout(bottom, 2, 0, 1, 2);
    panes->setColumnStretch(0, 3);
    panes->setColumnStretch(1, 2);

    auto* layout = new QVBoxLayout(central);
    layout->addWidget(m_toolRow);
    layout->addLayout(panes);
    // The form ends 240 twips below the game-timer pane.
    layout->addSpacing(TwipsToPixels(240, this));
    auto* scroll = new FittingScrollArea(this);
    scroll->setObjectName(QStringLiteral("picScroll"));
    scroll->setWidget(central);
    setCentralWidget(scroll);
}

QGroupBox* fTolvaneMan::createTimingPane()
{
    auto* pane = MakeControl<QGroupBox>(this, QStringLiteral("fraTiming"));
    pane->setTitle(tr("Timing"));
    auto* grid = new QGridLayout(pane);

    lblFiringModes = MakeLabel(pane, QStringLiteral("lblFiringModes"), tr("Firing mode:"));
    cboFiringModes = modeList(pane, QStringLiteral("cboFiringModes"));
    lblFiringModes->setBuddy(cboFiringModes);
    nameAfter(cboFiringModes, lblFiringModes->text());
    auto* modeRow = new QHBoxLayout;
    modeRow->addWidget(lblFiringModes);
    modeRow->addWidget(cboFiringModes);
    modeRow->addStretch(1);
    grid->addLayout(modeRow, 0, 0, 1, 5);

    chkExpert = MakeCheckBox(pane, QStringLiteral("chkExpert"), tr("Expert Mode"), tr("All timingsettings are made available for adjusting"));
    chkCopyCTO = MakeCheckBox(pane, QStringLiteral("chkCopyCTO"), tr("Close = Open"), tr("Cycle Time Close assumes the same value as Cycle Time Open"));
    chkCTOAdjust = MakeCheckBox(pane, QStringLiteral("chkCTOAdjust"), tr("Training Mode"));
    auto* switches = new QHBoxLayout;
    switches->addWidget(chkExpert);
    switches->addWidget(chkCopyCTO);
    switches->addWidget(chkCTOAdjust);
    switches->addStretch(1);
    grid->addLayout(switches, 1, 0, 1, 5);

    for (int i = 0; i < 5; ++i) {
        const QString suffix = QLatin1String(kTimingRows[i].suffix);
        TimingControls& t = m_timing[i];
        t.caption = MakeLabel(pane, QStringLiteral("lbl") + suffix, tr(kTimingRows[i].caption));
        t.text = textBox(pane, QStringLiteral("txtTiming") + suffix, 3);
        t.caption->setBuddy(t.text);
        t.upDown = upDown(pane, QStringLiteral("upd") + suffix, t.text, tr(kTimingRows[i].caption));
        t.slider = MakeControl<QSlider>(pane, QStringLiteral("sld") + suffix);
        t.slider->setOrientation(Qt::Horizontal);
        t.slider->setTickPosition(QSlider::TicksBelow);
        t.slider->setTickInterval(5);
        t.slider->setMinimumWidth(160);
        t.slider->setAccessibleName(tr(kTimingRows[i].caption));
        t.unit = MakeLabel(pane, QStringLiteral("lbl") + suffix + QStringLiteral("ms"), tr("(ms)"));
        const int row = 2 + i;
        grid->addWidget(t.caption, row, 0);
        grid->addWidget(t.text, row, 1);
        grid->addWidget(t.upDown, row, 2);
        grid->addWidget(t.slider, row, 3);
        grid->addWidget(t.unit, row, 4);
    }
    grid->setColumnStretch(3, 1);

    lblROFtxt = MakeLabel(pane, QStringLiteral("lblROFtxt"), tr("Rate of Fire"));
    lblROFbps = mLabels::ValueLabel(pane, QStringLiteral("lblROFbps"), lblROFtxt->text(), tr("10,0"));
    lblROFbps->setToolTip(tr("Balls Per Second"));
    lblROFbps->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    lblROFbps->setMinimumWidth(lblROFbps->fontMetrics().horizontalAdvance(QStringLiteral("000.0")));
    lblROFbpstxt = MakeLabel(pane, QStringLiteral("lblROFbpstxt"), tr("bps."));
    auto* rof = new QHBoxLayout;
    rof->addWidget(lblROFtxt);
    rof->addWidget(lblROFbps);
    rof->addWidget(lblROFbpstxt);
    rof->addStretch(1);
    grid->addLayout(rof, 7, 0, 1, 5);
    grid->setRowStretch(8, 1);
    return pane;
}

QGroupBox* fTolvaneMan::createOptionsPane()
{
    auto* pane = MakeControl<QGroupBox>(this, QStringLiteral("fraOptions"));
    pane->setTitle(tr("Options"));
    auto* grid = new QGridLayout(pane);
    chkACE = MakeCheckBox(pane, QStringLiteral("chkACE"), tr("A.C.E. Mounted"));
    chkUseEye = MakeCheckBox(pane, QStringLiteral("chkUseEye"), tr("Use A.C.E."));
    chkUseFeeder = MakeCheckBox(pane, QStringLiteral("chkUseFeeder"), tr("Use Feeder"));
    chkUseLED = MakeCheckBox(pane, QStringLiteral("chkUseLED"), tr("Use LED"));
    chkTriggerFilter = MakeCheckBox(pane, QStringLiteral("chkTriggerFilter"), tr("Use Trigger Filter"));
    grid->addWidget(chkACE, 0, 0);
    grid->addWidget(chkUseEye, 0, 1, 1, 3);
    grid->addWidget(chkUseFeeder, 1, 0);
    grid->addWidget(chkUseLED, 1, 1, 1, 3);
    grid->addWidget(chkTriggerFilter, 2, 0, 1, 4);

    chkEyeCheckMax = MakeCheckBox(pane, QStringLiteral("chkEyeCheckMax"), tr("Eye Check Max"));
    txtEyeCheckMax = textBox(pane, QStringLiteral("txtEyeCheckMax"), 3);
    nameAfter(txtEyeCheckMax, chkEyeCheckMax->text());
    updEyeCheckMax = upDown(pane, QStringLiteral("updEyeCheckMax"), txtEyeCheckMax, txtEyeCheckMax->accessibleName());
    chkEyeOKMax = MakeCheckBox(pane, QStringLiteral("chkEyeOKMax"), tr("Eye OK Max"));
    txtEyeOKMax = textBox(pane, QStringLiteral("txtEyeOKMax"), 3);
    nameAfter(txtEyeOKMax, chkEyeOKMax->text());
    updEyeOKMax = upDown(pane, QStringLiteral("updEyeOKMax"), txtEyeOKMax, txtEyeOKMax->accessibleName());
    lblDefaultLoadTime = MakeLabel(pane, QStringLiteral("lblDefaultLoadTime"), tr("Max ROF in ms"));
    txtDefaultLoadTime = textBox(pane, QStringLiteral("txtDefaultLoadTime"), 3);
    lblDefaultLoadTime->setBuddy(txtDefaultLoadTime);
    updDefaultLoadTime = upDown(pane, QStringLiteral("updDefaultLoadTime"), txtDefaultLoadTime, lblDefaultLoadTime->text());
    int row = 3;
    for (auto [caption, text, up] : {std::tuple<QWidget*, QLineEdit*, UpDown*>{chkEyeCheckMax, txtEyeCheckMax, updEyeCheckMax},
                                     {chkEyeOKMax, txtEyeOKMax, updEyeOKMax},
                                     {lblDefaultLoadTime, txtDefaultLoadTime, updDefaultLoadTime}}) {
        grid->addWidget(caption, row, 0);
        grid->addWidget(text, row, 1);
        grid->addWidget(up, row, 2);
        ++row;
    }
    lblBPStxt = MakeLabel(pane, QStringLiteral("lblBPStxt"), tr("Max ROF"));
    lblMaxROF = mLabels::ValueLabel(pane, QStringLiteral("lblMaxROF"), lblBPStxt->text(), tr("10,0"));
    lblMaxROF->setToolTip(tr("Maximum Balls Per Second"));
    lblMaxROF->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    grid->addWidget(lblBPStxt, row, 0);
    grid->addWidget(lblMaxROF, row, 1);
    grid->addWidget(MakeLabel(pane, QStringLiteral("lblMaxROFbps"), tr("bps.")), row, 2, 1, 2);
    grid->setColumnStretch(3, 1);
    grid->setRowStretch(row + 1, 1);
    return pane;
}

QGroupBox* fTolvaneMan::createRampingPane()
{
    auto* pane = MakeControl<QGroupBox>(this, QStringLiteral("fraRamping"));
    pane->setTitle(tr("Ramping"));
    auto* grid = new QGridLayout(pane);
    lblHyperModes = MakeLabel(pane, QStringLiteral("lblHyperModes"), tr("Ramping Mode :"));
    cboHyperModes = modeList(pane, QStringLiteral("cboHyperModes"));
    lblHyperModes->setBuddy(cboHyperModes);
    nameAfter(cboHyperModes, lblHyperModes->text());
    grid->addWidget(lblHyperModes, 0, 0);
    grid->addWidget(cboHyperModes, 0, 1, 1, 3);
    lblShots = MakeLabel(pane, QStringLiteral("lblShots"), tr("Shots before ramping"));
    txtShots = textBox(pane, QStringLiteral("txtShots"), 3);
    lblShots->setBuddy(txtShots);
    updShots = upDown(pane, QStringLiteral("updShots"), txtShots, lblShots->text());
    lblHyperTime = MakeLabel(pane, QStringLiteral("lblHyperTime"), tr("ROF in ms before ramping"));
    txtHyperTime = textBox(pane, QStringLiteral("txtHyperTime"), 3);
    lblHyperTime->setBuddy(txtHyperTime);
    updHyperTime = upDown(pane, QStringLiteral("updHyperTime"), txtHyperTime, lblHyperTime->text());
    grid->addWidget(lblShots, 1, 0);
    grid->addWidget(txtShots, 1, 1);
    grid->addWidget(updShots, 1, 2);
    grid->addWidget(lblHyperTime, 2, 0);
    grid->addWidget(txtHyperTime, 2, 1);
    grid->addWidget(updHyperTime, 2, 2);
    grid->setColumnStretch(3, 1);
    grid->setRowStretch(3, 1);
    return pane;
}

QGroupBox* fTolvaneMan::createCountersPane()
{
    auto* pane = MakeControl<QGroupBox>(this, QStringLiteral("fraCounters"));
    pane->setTitle(tr("Counters"));
    auto* grid = new QGridLayout(pane);
    static const char* const captions[] = {QT_TRANSLATE_NOOP("fTolvaneMan", "Counter 1 is at"),
                                           QT_TRANSLATE_NOOP("fTolvaneMan", "Counter 2 is at"),
                                           QT_TRANSLATE_NOOP("fTolvaneMan", "Total is at")};
    // The boxes are sized for 4, 5 and 8 digits; they only display, and never cut a value.
    static const int digits[] = {4, 5, 8};
    for (int i = 0; i < 3; ++i) {
        lblCounter[i] = MakeLabel(pane, named("lblCounter", i), tr(captions[i]));
        txtCounters[i] = textBox(pane, named("txtCounters", i), qMax(digits[i], 5));
        lblCounter[i]->setBuddy(txtCounters[i]);
        grid->addWidget(lblCounter[i], i, 0);
        grid->addWidget(txtCounters[i], i, 1);
    }
    for (int i = 0; i < 2; ++i) {
        cmdReset[i] = MakeControl<QPushButton>(pane, named("cmdReset", i));
        cmdReset[i]->setText(tr("Reset"));
        cmdReset[i]->setAccessibleDescription(tr("Reset counter %1").arg(i + 1));
        cmdReset[i]->setToolTip(tr("Reset counter %1").arg(i + 1));
        grid->addWidget(cmdReset[i], i, 2);
        m_heldCommands.append(cmdReset[i]);
    }
    grid->setRowStretch(3, 1);
    return pane;
}

QGroupBox* fTolvaneMan::createGameTimerPane()
{
    auto* pane = MakeControl<QGroupBox>(this, QStringLiteral("fraGameTimer"));
    pane->setTitle(tr("Game Timer"));
    auto* grid = new QGridLayout(pane);
    lblGT = MakeLabel(pane, QStringLiteral("lblGT"), tr("Counting down from "));
    txtCntDown = textBox(pane, QStringLiteral("txtCntDown"), 3);
    lblGT->setBuddy(txtCntDown);
    updGT = upDown(pane, QStringLiteral("updGT"), txtCntDown, lblGT->text().trimmed());
    updGT->setRange(0, 255);
    lblGTmin = MakeLabel(pane, QStringLiteral("lblGTmin"), tr("minutes"));
    chkAlertOne = MakeCheckBox(pane, QStringLiteral("chkAlertOne"), tr("Sound alert 60 sec. before game end"));
    grid->addWidget(lblGT, 0, 0);
    grid->addWidget(txtCntDown, 0, 1);
    grid->addWidget(updGT, 0, 2);
    grid->addWidget(lblGTmin, 0, 3);
    grid->addWidget(chkAlertOne, 1, 0, 1, 4);
    grid->setColumnStretch(4, 1);
    grid->setRowStretch(2, 1);
    return pane;
}

QGroupBox* fTolvaneMan::createBatteryPane()
{
    auto* pane = MakeControl<QGroupBox>(this, QStringLiteral("fraBettery"));
    pane->setTitle(tr("Battery"));
    auto* layout = new QVBoxLayout(pane);
    ucIProgress1 = MakeControl<ucIProgress>(pane, QStringLiteral("ucIProgress1"));
    ucIProgress1->setVisible(false);
    layout->addWidget(ucIProgress1);
    layout->addStretch(1);
    return pane;
}

void fTolvaneMan::createToolButtons()
{
    cmdTools = QList<QPushButton*>(10, nullptr);
    for (const ToolButton& b : kToolButtons) {
        auto* button = MakeControl<QPushButton>(m_toolRow, named("cmdTools", b.index));
        button->setText(tr(b.caption));
        if (b.designToolTip)
            button->setToolTip(tr(b.designToolTip));
        button->resize(qMax(button->sizeHint().width(), TwipsToPixels(1215, this)), button->sizeHint().height());
        cmdTools[b.index] = button;
        m_heldCommands.append(button);
    }
    // Burn program has no action: the form keeps it out of sight.
    cmdTools[9]->setVisible(false);
    m_toolRow->setMinimumHeight(cmdTools[0]->height() + 4);
    LayoutToolButtons();
}

void fTolvaneMan::createMenus()
{
    QHash<QString, QMenu*> menus;
    for (const MenuItem& item : kMenus) {
        const QString name = QLatin1String(item.name);
        if (!item.parent) {
            QMenu* menu = menuBar()->addMenu(tr(item.caption));
            menu->setObjectName(name);
            menus.insert(name, menu);
            continue;
        }
        QMenu* parentMenu = menus.value(QLatin1String(item.parent));
        if (name == QLatin1String("-")) {
            parentMenu->addSeparator();
            continue;
        }
        // A submenu is an item that other items name as their parent.
        const bool isSubmenu = std::any_of(std::begin(kMenus), std::end(kMenus), [&](const MenuItem& other) {
            return other.parent && name == QLatin1String(other.parent);
        });
        if (isSubmenu) {
            QMenu* submenu = parentMenu->addMenu(tr(item.caption));
            submenu->setObjectName(name);
            menus.insert(name, submenu);
            continue;
        }
        QAction* action = parentMenu->addAction(tr(item.caption));
        action->setObjectName(name);
        action->setParent(this);
        if (item.handler)
            connect(action, &QAction::triggered, this, item.handler);
        else
            action->setEnabled(false); // present, with nothing behind it
        if (item.held)
            m_heldCommands.append(action);
    }
    for (const MenuToolTip& tip : kMenuToolTips) {
        auto* action = findChild<QAction*>(QLatin1String(tip.name));
        action->setToolTip(tr(tip.toolTip));
        for (QObject* owner : action->associatedObjects())
            if (auto* menu = qobject_cast<QMenu*>(owner))
                menu->setToolTipsVisible(true);
    }
    mnuProperties = findChild<QAction*>(QStringLiteral("mnuProperties"));
    mnuPromote = findChild<QAction*>(QStringLiteral("mnuPromote"));
    mnuUpload = menus.value(QStringLiteral("mnuUpload"));
    mnuView = menus.value(QStringLiteral("mnuView"));
}

void fTolvaneMan::createStatusBar()
{
    QStatusBar* bar = MakeControl<QStatusBar>(this, QStringLiteral("stbStatus"));
    setStatusBar(bar);
    static const char* const names[] = {QT_TRANSLATE_NOOP("fTolvaneMan", "Library"),
                                        QT_TRANSLATE_NOOP("fTolvaneMan", "Firmware version"),
                                        QT_TRANSLATE_NOOP("fTolvaneMan", "Status")};
    for (int panel = 1; panel <= 3; ++panel) {
        // The library's path keeps its file name when shortened, a step its beginning; the short
        // firmware version is never shortened.
        QLabel* label = panel == kPanelFirmware ? new QLabel(bar)
                                                : new StatusPanel(panel == kPanelDatabase ? Qt::ElideMiddle : Qt::ElideRight, bar);
        auto* text = mLabels::AsValueLabel(label, QStringLiteral("stbStatus.Panels(%1)").arg(panel), tr(names[panel - 1]),
                                           panel == kPanelDatabase ? QString() : tr("N/A"));
        text->setFrameShape(QFrame::StyledPanel);
        text->setFrameShadow(QFrame::Sunken);
        text->setTextInteractionFlags(Qt::TextSelectableByMouse);
        bar->addWidget(text, panel == kPanelDatabase ? 3 : (panel == kPanelStep ? 2 : 0));
        m_panels.append(text);
    }
    m_panels[kPanelFirmware - 1]->setObjectName(QStringLiteral("FWVer"));
    m_panels[kPanelFirmware - 1]->setToolTip(tr("The grip's firmware version"));
    m_progressPanel = MakeControl<QFrame>(bar, QStringLiteral("stbStatus.Panels(4)"));
    m_progressPanel->setFrameShape(QFrame::StyledPanel);
    m_progressPanel->setFrameShadow(QFrame::Sunken);
    m_progressPanel->setMinimumWidth(TwipsToPixels(2400, this));
    // Hidden, it keeps its room, and shown it is as tall as the other panels, so that they stay
    // where they are while it shows.
    QSizePolicy keepsRoom = m_progressPanel->sizePolicy();
    keepsRoom.setRetainSizeWhenHidden(true);
    m_progressPanel->setSizePolicy(keepsRoom);
    m_progressPanel->setFixedHeight(m_panels.first()->sizeHint().height());
    auto* inset = new QHBoxLayout(m_progressPanel);
    pgbProgress = MakeControl<QProgressBar>(m_progressPanel, QStringLiteral("pgbProgress"));
    pgbProgress->setAccessibleName(tr("Progress"));
    pgbProgress->setTextVisible(true);
    pgbProgress->setMinimumHeight(0);
    inset->addWidget(pgbProgress);
    bar->addPermanentWidget(m_progressPanel, 2);
}

void fTolvaneMan::createBinding()
{
    cifSetsTemplate::Controls c;
    c.txtlShotTime = m_timing[ST].text;
    c.txtlDwellTime = m_timing[DT].text;
    c.txtlCycleTimeOpen = m_timing[CTO].text;
    c.txtlLoadTime = m_timing[LT].text;
    c.txtlCycleTimeClose = m_timing[CTC].text;
    c.sldlShotTime = m_timing[ST].slider;
    c.sldlDwellTime = m_timing[DT].slider;
    c.sldlCycleTimeOpen = m_timing[CTO].slider;
    c.sldlLoadTime = m_timing[LT].slider;
    c.sldlCycleTimeClose = m_timing[CTC].slider;
    c.txtlGameTime = txtCntDown;
    c.updlGameTime = updGT;
    c.chkbCTCLikeCTO = chkCopyCTO;
    c.chkbExpertMode = chkExpert;
    c.chkbAlertOne = chkAlertOne;
    c.cbolFiringMode = cboFiringModes;
    c.cbolHyperMode = cboHyperModes;
    mIFSettings = new cifSetsTemplate(c, &m_session, this);
    mIFSettings->setObjectName(QStringLiteral("mIFSettings"));
}

// ---- the form's events -------------------------------------------------------------------

void fTolvaneMan::Handle(const QString& procedure, const std::function<void()>& body)
{
    ShowErrors(kForm, kRevision, procedure, body);
}

void fTolvaneMan::Form_Load()
{
    Handle(QStringLiteral("Form_Load"), [&] {
        m_progressPanel->setVisible(false);
        pgbProgress->setVisible(false);
        for (QLineEdit* counter : txtCounters)
            counter->setText(QStringLiteral("0"));
        ucIProgress1->setMax(580);
        ucIProgress1->setMin(400);
        ucIProgress1->setMaxLow(425);
        ucIProgress1->setMaxMid(450);
        // Mended on purpose: no voltage (it showed 5.60 V) until one is read from a grip.
        ucIProgress1->clearValue();
        ucIProgress1->setVisible(true);
        SetupSettingsBoundaries();
        SetupOptionsBoundaries();
        SetupOptionsData();
        LoadProgramSettings();
        SetupFiringMode();
        SetupHyperMode();
        for (const ToolButton& b : kToolButtons) {
            if (b.toolTip)
                cmdTools[b.index]->setToolTip(tr(b.toolTip));
        }
        SetPanelText(kPanelDatabase, m_application.RegistrySettings().DBName());
        FitToScreen();
    });
}

void fTolvaneMan::showEvent(QShowEvent* event)
{
    QMainWindow::showEvent(event);
    if (!m_activated) {
        m_activated = true;
        // Shown, the controls have their final style and font, and so the form its size.
        FitToScreen();
        // The window is activated once, when it is first on screen: it lays out its tool buttons
        // and reads the command line. Later changes of state enable and disable buttons in place.
        QTimer::singleShot(0, this, &fTolvaneMan::Form_Activate);
    }
}

void fTolvaneMan::FitToScreen()
{
    // The whole form where the screen has room for it; where it has not, the panes scroll. The
    // panes' layouts catch up with their controls' style and font by requests still waiting in
    // the event loop (showing lays out the window, but not what is inside its scroll area).
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    resize(sizeHint().boundedTo(screen()->availableSize()));
}

void fTolvaneMan::Form_Activate()
{
    Handle(QStringLiteral("Form_Activate"), [&] {
        LayoutToolButtons();
        ReadCommandLine();
    });
}

void fTolvaneMan::LayoutToolButtons()
{
    // From the left, each enabled button in the array's order takes the next place; a disabled
    // button keeps the place it had. A hidden button takes no room in the row.
    int left = TwipsToPixels(180, this);
    const int gap = TwipsToPixels(30, this);
    for (QPushButton* button : cmdTools) {
        if (!button || !button->isEnabled() || button->isHidden())
            continue;
        button->move(left, 2);
        left += button->width() + gap;
    }
    m_toolRow->setMinimumWidth(left);
}

void fTolvaneMan::ReadCommandLine()
{
    for (qsizetype i = 0; i < m_commandLine.size(); ++i) {
        const QString word = m_commandLine[i].trimmed();
        if (!word.startsWith(QLatin1Char('/')) && !word.startsWith(QLatin1Char('-')))
            continue;
        if (word.mid(1, 1).compare(QLatin1String("F"), Qt::CaseInsensitive) != 0) {
            mMain::UI().showMessage(tr("Unsupported command-line parameter."), tr("Warning"), MsgIcon::Exclamation);
            continue;
        }
        QString file = word.mid(2);
        // "-F file": the file is the next word.
        if (file.isEmpty() && i + 1 < m_commandLine.size())
            file = m_commandLine[++i].trimmed();
        if (file.startsWith(QLatin1Char('"')))
            file.remove(0, 1);
        if (file.endsWith(QLatin1Char('"')))
            file.chop(1);
        UploadFirmware(file);
    }
}

void fTolvaneMan::closeEvent(QCloseEvent* event)
{
    bool cancel = false;
    Form_Unload(cancel);
    if (cancel)
        event->ignore();
    else
        event->accept();
}

void fTolvaneMan::Form_Unload(bool& cancel)
{
    Handle(QStringLiteral("Form_Unload"), [&] {
        if (m_application.AnythingNeedSave()) {
            const bool save = mMain::UI().askYesNo(
                tr("Some data have changed without being saved.\r\nDo you wish to save before exiting?"),
                tr("Save settings"), MsgIcon::Question);
            if (save) {
                // A save that fails is shown, and the window stays open so that nothing is lost.
                cancel = !ShowErrors(kForm, kRevision, QStringLiteral("Form_Unload"), [&] {
                    WaitPointerScope wait;
                    m_application.SaveLibraryOrThrow();
                });
            }
        }
        if (!cancel) {
            MoveControlsToOptions();
            SaveProgramSettings();
        }
    });
}

// ---- state ---------------------------------------------------------------------------------

std::shared_ptr<cSetsTemplate> fTolvaneMan::ActiveSetting() const
{
    return mIFSettings->SetsTemplate();
}

void fTolvaneMan::setIsTemplate(bool value)
{
    m_isTemplate = value;
    UpdateState();
}

void fTolvaneMan::ChangeTemplate(const std::shared_ptr<cSetsTemplate>& setting, bool isTemplate)
{
    PassErrors(kForm, kRevision, QStringLiteral("ChangeTemplate"), [&] {
        m_application.setActiveSetting(setting);
        mIFSettings->setSetsTemplate(setting);
        setIsTemplate(isTemplate);
        SetCaption();
    });
}

void fTolvaneMan::NewTemplate()
{
    PassErrors(kForm, kRevision, QStringLiteral("NewTemplate"), [&] {
        ChangeTemplate(m_application.colSetsTemplate().Add(), true);
    });
}

void fTolvaneMan::SetCaption()
{
    PassErrors(kForm, kRevision, QStringLiteral("SetCaption"), [&] {
        const auto setting = ActiveSetting();
        const QString name = setting ? setting->sName() : QString();
        setWindowTitle(tr("Tolvane Interface Programme [%1]").arg(name.isEmpty() ? tr("Untitled") : name));
    });
}

void fTolvaneMan::UpdateState()
{
    PassErrors(kForm, kRevision, QStringLiteral("UpdateState"), [&] {
        // During a grip command the held commands stay held (Get and Default settings too, which
        // the rows enable always); they take the states set here when the command ends.
        HoldSuspended hold(*this);
        const bool E = chkExpert->isChecked();
        const bool C = !chkCopyCTO->isChecked();
        const bool T = m_isTemplate;
        const auto timingRow = [&](int t) {
            return QList<QWidget*>{m_timing[t].text, m_timing[t].upDown, m_timing[t].slider, m_timing[t].caption, m_timing[t].unit};
        };
        struct Row {
            QList<QWidget*> widgets;
            QList<QAction*> actions;
            bool enabled;
            bool visible;
        };
        const Row rows[] = {
            {{cmdTools[0], cmdTools[6]}, {}, true, true},
            {{cmdTools[3]}, {}, true, false},
            {{cmdTools[1], cmdTools[4], chkExpert}, {mnuProperties, mnuUpload->menuAction()}, T, true},
            {{cmdTools[5]}, {mnuPromote}, !T, false},
            {{chkCopyCTO}, {}, E && T, true},
            {timingRow(ST) + timingRow(DT) + timingRow(CTO), {}, E && T, true},
            {timingRow(LT), {}, T, true},
            {timingRow(CTC), {}, E && C && T, true},
            {{lblROFbps, lblROFbpstxt, lblROFtxt}, {}, T, true},
            {{txtCntDown, updGT, chkAlertOne, lblGT, lblGTmin}, {}, T, true},
            {{txtCounters[0], txtCounters[1], txtCounters[2]}, {}, false, true},
            {{lblCounter[0], lblCounter[1], lblCounter[2]}, {}, true, true},
            {{cmdReset[0], cmdReset[1]}, {}, T, true},
        };
        for (const Row& row : rows) {
            for (QWidget* widget : row.widgets)
                SetControlState(widget, row.enabled, row.visible);
            for (QAction* action : row.actions)
                SetControlState(action, row.enabled, row.visible);
        }
        SetOptionsState();
        SetupFiringMode();
        SetupHyperMode();
    });
}

void fTolvaneMan::LoadProgramSettings()
{
    PassErrors(kForm, kRevision, QStringLiteral("LoadProgramSettings"), [&] {
        PlacedWidget placement(*this);
        m_application.RegistrySettings().WindowState(placement, true, false);
        const QString key = m_application.RegistrySettings().LastKey();
        const auto setting = key.isEmpty() ? nullptr : m_application.colSetsTemplate().Find(key);
        if (setting)
            ChangeTemplate(setting, true);
        else
            NewTemplate();
    });
}

void fTolvaneMan::SaveProgramSettings()
{
    PassErrors(kForm, kRevision, QStringLiteral("SaveProgramSettings"), [&] {
        cRegistrySettings& prefs = m_application.RegistrySettings();
        PlacedWidget placement(*this);
        prefs.SaveWindowState(placement, true, false);
        const auto active = m_application.ActiveSetting();
        const bool stored = active && !active->IsNew() && !active->IsDeleted();
        prefs.setLastKey(stored ? active->ID() : QString());
    });
}

// ---- the status bar --------------------------------------------------------------------------

QString fTolvaneMan::PanelText(int panel) const
{
    return panel >= 1 && panel <= m_panels.size() ? m_panels[panel - 1]->text() : QString();
}

void fTolvaneMan::SetPanelText(int panel, const QString& text)
{
    if (panel >= 1 && panel <= m_panels.size())
        m_panels[panel - 1]->setText(text);
}

void fTolvaneMan::StartProgressBar(int maximum)
{
    // The bar covers panel 4, inset by 45 twips inside the panel's bevel.
    const int inset = TwipsToPixels(m_progressPanel->frameShape() == QFrame::NoFrame ? 15 : 45, this);
    m_progressPanel->layout()->setContentsMargins(inset, inset, inset, inset);
    m_progressPanel->setVisible(true);
    pgbProgress->setMaximum(maximum);
    pgbProgress->setValue(0);
    pgbProgress->setVisible(true);
    pgbProgress->raise();
}

void fTolvaneMan::SetProgressValue(int value)
{
    pgbProgress->setValue(value);
}

int fTolvaneMan::ProgressValue() const
{
    return pgbProgress->value();
}

void fTolvaneMan::EndProgressBar()
{
    pgbProgress->setVisible(false);
    m_progressPanel->setVisible(false);
}
