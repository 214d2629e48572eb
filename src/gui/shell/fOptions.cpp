#include "gui/common/mGUISupport.h"
#include "gui/shell/fOptions.h"

#include "firmware/mFirmwareBackup.h"
#include "grip/cGunInfo.h"
#include "gui/common/KeyPreview.h"
#include "gui/common/mLabels.h"
#include "library/mDatabase.h"
#include "base/cRegistrySettings.h"
#include "shell/mMain.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStackedWidget>
#include <QStyle>
#include <QTabBar>
#include <QVBoxLayout>


using mGUISupport::MakeCheckBox;
using mGUISupport::MakeControl;

namespace {

// ---- the dialog's tables -----------------------------------------------------------------------

struct Tab {
    const char* key;
    const char* caption;
    const char* toolTip;
};

const Tab kTabs[] = {
    {"general", QT_TRANSLATE_NOOP("fOptions", "General"), QT_TRANSLATE_NOOP("fOptions", "Set general options")},
    {"Comm", QT_TRANSLATE_NOOP("fOptions", "Communication"), QT_TRANSLATE_NOOP("fOptions", "Set options for communication")},
};

struct ListItem {
    const char* text;
    int data;
};

// The fixed lists of the communication parameters: combo, its label and its items.
struct FixedList {
    const char* name;
    const char* label;
    QList<ListItem> items;
};

const QList<FixedList>& fixedLists()
{
    static const QList<FixedList> lists = {
        {"cboPort", QT_TRANSLATE_NOOP("fOptions", "&Port:"), {{"1", 1}, {"2", 2}, {"3", 3}, {"4", 4}}},
        {"cboBaud", QT_TRANSLATE_NOOP("fOptions", "Ba&ud:"),
         {{"110", 1}, {"300", 2}, {"600", 3}, {"1200", 4}, {"2400", 5}, {"9600", 6}, {"14400", 7}, {"19200", 8},
          {"28800", 9}, {"38400", 10}, {"56000", 11}, {"128000", 12}, {"256000", 13}}},
        {"cboParity", QT_TRANSLATE_NOOP("fOptions", "&Parity:"),
         {{QT_TRANSLATE_NOOP("fOptions", "None"), 0},
          {QT_TRANSLATE_NOOP("fOptions", "Even"), 1},
          {QT_TRANSLATE_NOOP("fOptions", "Mark"), 2},
          {QT_TRANSLATE_NOOP("fOptions", "Odd"), 3},
          {QT_TRANSLATE_NOOP("fOptions", "Space"), 4}}},
        {"cboBits", QT_TRANSLATE_NOOP("fOptions", "&Bits:"), {{"4", 4}, {"5", 5}, {"6", 6}, {"7", 7}, {"8", 8}}},
        {"cboStopBits", QT_TRANSLATE_NOOP("fOptions", "&Stopbits:"), {{"1", 0}, {"1.5", 1}, {"2", 2}}},
    };
    return lists;
}

// The device list asks for the ports present each time it opens.
class DeviceComboBox : public QComboBox {
public:
    DeviceComboBox(QWidget* parent, std::function<void()> beforePopup) : QComboBox(parent), m_beforePopup(std::move(beforePopup)) {}
    void showPopup() override
    {
        m_beforePopup();
        QComboBox::showPopup();
    }

private:
    std::function<void()> m_beforePopup;
};

QString lines(const QStringList& parts)
{
    return parts.join(QStringLiteral("\r\n"));
}

} // namespace

// ---- building the dialog -----------------------------------------------------------------------

fOptions::fOptions(const cGunInfo& gunInfo, cRegistrySettings& preferences, QWidget* parent)
    : QDialog(parent), m_gunInfo(gunInfo), m_preferences(preferences), m_portLister(&mSerialDevices::AvailablePorts), m_deviceChecker(&mSerialDevices::Diagnosis)
{
    setObjectName(kForm);
    setWindowTitle(tr("Options"));

    tbsOptions = MakeControl<QTabBar>(this, QStringLiteral("tbsOptions"));
    tbsOptions->setAccessibleName(tr("Pages"));
    tbsOptions->setExpanding(false);
    tbsOptions->setDrawBase(false);
    m_pages = MakeControl<QStackedWidget>(this, QStringLiteral("picOptionsArea"));
    m_pages->setFrameShape(QFrame::StyledPanel);
    for (const Tab& tab : kTabs) {
        const int index = tbsOptions->addTab(tr(tab.caption));
        tbsOptions->setTabData(index, QLatin1String(tab.key));
        tbsOptions->setTabToolTip(index, tr(tab.toolTip));
        auto* page = MakeControl<QWidget>(m_pages, QStringLiteral("picOptions(%1)").arg(index));
        page->setAccessibleName(tr(tab.caption));
        m_pages->addWidget(page);
        picOptions.append(page);
    }
    createGeneralPage(picOptions[0]);
    createCommunicationPage(picOptions[1]);

    cmdOK = MakeControl<QPushButton>(this, QStringLiteral("cmdOK"));
    cmdOK->setText(tr("OK"));
    cmdOK->setDefault(true);
    cmdCancel = MakeControl<QPushButton>(this, QStringLiteral("cmdCancel"));
    cmdCancel->setText(tr("Cancel"));
    cmdApply = MakeControl<QPushButton>(this, QStringLiteral("cmdApply"));
    cmdApply->setText(tr("Apply"));
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);
    buttons->addWidget(cmdApply);

    auto* layout = new QVBoxLayout(this);
    layout->setSpacing(0);
    layout->addWidget(tbsOptions);
    layout->addWidget(m_pages, 1);
    layout->addSpacing(10);
    layout->addLayout(buttons);

    connectHandlers();
    Form_Load();
}

void fOptions::createGeneralPage(QWidget* page)
{
    chkShowSplash = MakeCheckBox(page, QStringLiteral("chkShowSplash"), tr("Show splashscreen on startup"));
    chkConfirm = MakeCheckBox(page, QStringLiteral("chkConfirm"), tr("Show confirmation after grip communication"));
    chkBackwardCompatibleUpload = MakeCheckBox(page, QStringLiteral("chkBackwardCompatibleUpload"), tr("Backward Compatible Upload"));
    chkFirmwareBackup = MakeCheckBox(page, QStringLiteral("chkFirmwareBackup"), tr("Back up the grip's firmware before writing new firmware"),
                                     tr("A write first reads the grip's program into a file in %1; writing that file back restores the grip.")
                                         .arg(QDir::toNativeSeparators(mFirmwareBackup::DefaultFolder())));

    fraDataPath = MakeControl<QGroupBox>(page, QStringLiteral("fraDataPath"));
    fraDataPath->setTitle(tr("Database path"));
    txtDBPath = MakeControl<QLineEdit>(fraDataPath, QStringLiteral("txtDBPath"));
    txtDBPath->setAccessibleName(tr("Database path"));
    txtDBPath->setMinimumWidth(300);
    cmdBrowseDBPath = MakeControl<QPushButton>(fraDataPath, QStringLiteral("cmdBrowseDBPath"));
    cmdBrowseDBPath->setText(tr("..."));
    cmdBrowseDBPath->setAccessibleName(tr("Browse for the database"));
    cmdBrowseDBPath->setToolTip(tr("Browse for the database"));
    cmdBrowseDBPath->setAutoDefault(false);
    cmdBrowseDBPath->setFixedWidth(cmdBrowseDBPath->fontMetrics().horizontalAdvance(QStringLiteral("...")) + 24);
    auto* path = new QHBoxLayout(fraDataPath);
    path->addWidget(txtDBPath, 1);
    path->addWidget(cmdBrowseDBPath);

    // The grip synchronization frame is part of the form but nothing reads or writes its
    // controls: it stays inert, as it always was.
    fraGripSync = MakeControl<QGroupBox>(page, QStringLiteral("fraGripSync"));
    fraGripSync->setTitle(tr("Grip syncronization"));
    chkSettingsGet = MakeCheckBox(fraGripSync, QStringLiteral("chkSettingsGet"), tr("Get settings on connect:"));
    chkAutoDetect = MakeCheckBox(fraGripSync, QStringLiteral("chkAutoDetect"), tr("Automatic grip detection:"));
    auto* lblAutocheckInterval = MakeControl<QLabel>(fraGripSync, QStringLiteral("lblAutocheckInterval"));
    lblAutocheckInterval->setText(tr("Interval (secs):"));
    txtAutocheckInterval = MakeControl<QLineEdit>(fraGripSync, QStringLiteral("txtAutocheckInterval"));
    txtAutocheckInterval->setFixedWidth(txtAutocheckInterval->fontMetrics().horizontalAdvance(QStringLiteral("00000")) + 14);
    mLabels::LabelFor(lblAutocheckInterval, txtAutocheckInterval);
    auto* sync = new QGridLayout(fraGripSync);
    sync->addWidget(chkSettingsGet, 0, 0, 1, 2, Qt::AlignLeft);
    sync->addWidget(chkAutoDetect, 1, 0, 1, 2, Qt::AlignLeft);
    sync->addWidget(lblAutocheckInterval, 2, 0);
    sync->addWidget(txtAutocheckInterval, 2, 1, Qt::AlignLeft);
    sync->setColumnStretch(1, 1);

    auto* layout = new QVBoxLayout(page);
    layout->addWidget(chkShowSplash);
    layout->addWidget(chkConfirm);
    layout->addWidget(chkBackwardCompatibleUpload);
    layout->addWidget(chkFirmwareBackup);
    layout->addWidget(fraDataPath);
    layout->addWidget(fraGripSync);
    layout->addStretch(1);
}

void fOptions::createCommunicationPage(QWidget* page)
{
    chkLogCommToFile = MakeCheckBox(page, QStringLiteral("chkLogCommToFile"), tr("Log communication to a file"));
    chkLogCommToConsole = MakeCheckBox(page, QStringLiteral("chkLogCommToConsole"), tr("Log communication to console"));

    fraComm = MakeControl<QGroupBox>(page, QStringLiteral("fraComm"));
    fraComm->setTitle(tr("Communication parameters"));
    auto* grid = new QGridLayout(fraComm);
    int row = 0;
    for (const FixedList& list : fixedLists()) {
        auto* combo = MakeControl<QComboBox>(fraComm, QLatin1String(list.name));
        for (const ListItem& item : list.items)
            combo->addItem(tr(item.text), item.data);
        combo->setCurrentIndex(-1);
        auto* caption = MakeControl<QLabel>(fraComm, QStringLiteral("lbl") + QLatin1String(list.name).mid(3));
        caption->setText(tr(list.label));
        mLabels::LabelFor(caption, combo);
        grid->addWidget(caption, row, 0);
        grid->addWidget(combo, row, 1, Qt::AlignLeft);
        ++row;
    }
    cboPort = fraComm->findChild<QComboBox*>(QStringLiteral("cboPort"));
    cboBaud = fraComm->findChild<QComboBox*>(QStringLiteral("cboBaud"));
    cboParity = fraComm->findChild<QComboBox*>(QStringLiteral("cboParity"));
    cboBits = fraComm->findChild<QComboBox*>(QStringLiteral("cboBits"));
    cboStopBits = fraComm->findChild<QComboBox*>(QStringLiteral("cboStopBits"));
    for (QComboBox* combo : {cboPort, cboBaud, cboParity, cboBits, cboStopBits})
        combo->setMinimumWidth(combo->fontMetrics().horizontalAdvance(QStringLiteral("256000")) + 40);

    // Beyond the port number: a serial device of this machine, the virtual grip, or any path.
    auto* lblDevice = MakeControl<QLabel>(fraComm, QStringLiteral("lblDevice"));
    lblDevice->setText(tr("&Device:"));
    cboDevice = new DeviceComboBox(fraComm, [this] { RefreshDeviceList(); });
    cboDevice->setObjectName(QStringLiteral("cboDevice"));
    cboDevice->setEditable(true);
    cboDevice->setInsertPolicy(QComboBox::NoInsert);
    cboDevice->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    cboDevice->setMinimumContentsLength(34);
    cboDevice->lineEdit()->setPlaceholderText(tr("(none: the port number above)"));
    cboDevice->setToolTip(tr("A serial device of this machine, the virtual grip, or a device path. "
                             "Empty: the port number above is used."));
    mLabels::LabelFor(lblDevice, cboDevice);
    grid->addWidget(lblDevice, row, 0);
    grid->addWidget(cboDevice, row, 1);
    ++row;
    lblDeviceProblemIcon = MakeControl<QLabel>(fraComm, QStringLiteral("lblDeviceProblemIcon"));
    const int iconSize = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this);
    lblDeviceProblemIcon->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxWarning, nullptr, this).pixmap(iconSize, iconSize));
    lblDeviceProblemIcon->setAlignment(Qt::AlignRight | Qt::AlignTop);
    lblDeviceProblem = mLabels::ValueLabel(fraComm, QStringLiteral("lblDeviceProblem"), tr("Device problem"));
    lblDeviceProblem->setWordWrap(true);
    lblDeviceProblem->setTextFormat(Qt::PlainText);
    lblDeviceProblem->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    grid->addWidget(lblDeviceProblemIcon, row, 0);
    grid->addWidget(lblDeviceProblem, row, 1);
    grid->setColumnStretch(1, 1);

    auto* layout = new QVBoxLayout(page);
    layout->addWidget(chkLogCommToFile);
    layout->addWidget(chkLogCommToConsole);
    layout->addWidget(fraComm);
    layout->addStretch(1);
}

void fOptions::connectHandlers()
{
    connect(tbsOptions, &QTabBar::currentChanged, this, &fOptions::tbsOptions_Click);
    connect(cmdOK, &QPushButton::clicked, this, &fOptions::cmdOK_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &fOptions::cmdCancel_Click);
    connect(cmdApply, &QPushButton::clicked, this, &fOptions::cmdApply_Click);
    connect(cmdBrowseDBPath, &QPushButton::clicked, this, &fOptions::cmdBrowseDBPath_Click);
    connect(cboDevice, &QComboBox::currentTextChanged, this, [this] { CheckDevice(); });
    connect(cboPort, &QComboBox::currentIndexChanged, this, [this] { CheckDevice(); });
    new KeyPreview(this, [this](QKeyEvent& key) { return Form_KeyDown(key.key(), key.modifiers()); });
}

void fOptions::setPortLister(PortLister lister)
{
    m_portLister = std::move(lister);
}

void fOptions::setDeviceChecker(DeviceChecker checker)
{
    m_deviceChecker = std::move(checker);
    CheckDevice();
}

// ---- loading -----------------------------------------------------------------------------------

void fOptions::Form_Load()
{
    ShowErrors(kForm, kRevision, QStringLiteral("Form_Load"), [&] {
        cRegistrySettings& prefs = m_preferences;
        txtDBPath->setText(prefs.DBName());
        chkShowSplash->setChecked(prefs.ShowSplash());
        chkConfirm->setChecked(prefs.ShowConfirmComm());
        chkBackwardCompatibleUpload->setChecked(m_gunInfo.BackwardCompatibleUpload());
        chkBackwardCompatibleUpload->setVisible(prefs.ShowLogToFile());
        chkFirmwareBackup->setChecked(prefs.FirmwareBackup());
        chkLogCommToFile->setChecked(prefs.CommLogToFile());
        chkLogCommToConsole->setChecked(prefs.CommLogToConsole());
        for (int i = 0; i <= 3 && i < cboPort->count(); ++i) {
            if (cboPort->itemData(i).toInt() == prefs.CommPort()) {
                cboPort->setCurrentIndex(i);
                break;
            }
        }
        selectCommSettings(prefs.CommSettings());
        RefreshDeviceList();
        const int item = cboDevice->findData(prefs.CommDevice());
        if (item >= 0 && !prefs.CommDevice().isEmpty())
            cboDevice->setCurrentIndex(item);
        else
            cboDevice->setEditText(prefs.CommDevice());
        CheckDevice();
        tbsOptions->setCurrentIndex(0);
        tbsOptions_Click();
    });
}

// The baud, parity, bits and stop-bit lists only show the stored parameters.
void fOptions::selectCommSettings(const QString& settings)
{
    const QStringList parts = settings.split(QLatin1Char(','));
    // An item is found by its text as the table has it (in English, whatever the list shows): the
    // parity by its first letter.
    const auto select = [](QComboBox* combo, const QString& text, bool firstLetter) {
        for (const FixedList& list : fixedLists()) {
            if (combo->objectName() != QLatin1String(list.name))
                continue;
            for (const ListItem& item : list.items) {
                const QString english = QLatin1String(item.text);
                if (firstLetter ? english.left(1).compare(text, Qt::CaseInsensitive) == 0 : english == text) {
                    combo->setCurrentIndex(combo->findData(item.data));
                    return;
                }
            }
        }
    };
    select(cboBaud, parts.value(0).trimmed(), false);
    select(cboParity, parts.value(1).trimmed(), true);
    select(cboBits, parts.value(2).trimmed(), false);
    select(cboStopBits, parts.value(3).trimmed(), false);
}

// ---- the device list ---------------------------------------------------------------------------

void fOptions::RefreshDeviceList()
{
    const QString text = cboDevice->currentText();
    {
        const QSignalBlocker quiet(cboDevice);
        cboDevice->clear();
        for (const mSerialDevices::PortEntry& port : m_portLister ? m_portLister() : QList<mSerialDevices::PortEntry>())
            cboDevice->addItem(mSerialDevices::DisplayText(port), port.path);
        cboDevice->addItem(tr("Virtual grip (demo)"), mSerialDevices::kVirtualGrip);
        cboDevice->setCurrentIndex(-1);
        const int item = cboDevice->findText(text);
        if (item >= 0)
            cboDevice->setCurrentIndex(item);
        else
            cboDevice->setEditText(text);
    }
    CheckDevice();
}

QString fOptions::ChosenDevice() const
{
    const QString text = cboDevice->currentText();
    const int item = cboDevice->findText(text);
    if (item >= 0 && !text.isEmpty())
        return cboDevice->itemData(item).toString();
    return text.trimmed();
}

QString fOptions::DeviceProblem() const
{
    return lblDeviceProblem->isHidden() ? QString() : lblDeviceProblem->text();
}

void fOptions::CheckDevice()
{
    if (!lblDeviceProblem)
        return;
    const int port = cboPort->currentIndex() >= 0 ? cboPort->currentData().toInt()
                                                  : m_preferences.CommPort();
    const QString path = mSerialDevices::EffectivePath(ChosenDevice(), port);
    const QString problem = m_deviceChecker ? m_deviceChecker(path) : QString();
    lblDeviceProblem->setText(problem);
    lblDeviceProblem->setVisible(!problem.isEmpty());
    lblDeviceProblemIcon->setVisible(!problem.isEmpty());
    FitDeviceProblem();
}

void fOptions::FitDeviceProblem()
{
    // A longer text needs more lines: the label asks for the height of all of them at the width
    // it has on screen, and the dialog grows so that none is cut.
    if (!isVisible() || !layout() || !lblDeviceProblem->isVisible())
        return;
    layout()->activate();
    lblDeviceProblem->setMinimumHeight(lblDeviceProblem->heightForWidth(lblDeviceProblem->width()));
    layout()->activate();
    resize(size().expandedTo(minimumSizeHint()));
}

void fOptions::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    FitDeviceProblem();
}

// ---- checking and applying ---------------------------------------------------------------------

bool fOptions::ValidateChanges()
{
    return PassErrors(kForm, kRevision, QStringLiteral("ValidateChanges"), [&] {
        m_pathProblem.clear();
        const QString path = txtDBPath->text();
        const QFileInfo info(path);
        if (path.isEmpty() || !info.isFile())
            return false;
        // An existing file that is not a Marlo library (an Access file, a text, a damaged one)
        // is refused like a missing one.
        m_pathProblem = mDatabase::LibraryFileProblem(path);
        return m_pathProblem.isEmpty();
    });
}

bool fOptions::ApplyChanges()
{
    return PassErrors(kForm, kRevision, QStringLiteral("ApplyChanges"), [&] {
        if (!ValidateChanges())
            return false;
        cRegistrySettings& prefs = m_preferences;
        if (cboPort->currentIndex() >= 0)
            prefs.setCommPort(cboPort->currentData().toInt());
        prefs.setCommDevice(ChosenDevice());
        prefs.setShowSplash(chkShowSplash->isChecked());
        prefs.setShowConfirmComm(chkConfirm->isChecked());
        prefs.setFirmwareBackup(chkFirmwareBackup->isChecked());
        prefs.setCommLogToFile(chkLogCommToFile->isChecked());
        prefs.setCommLogToConsole(chkLogCommToConsole->isChecked());
        if (prefs.ShowLogToFile())
            prefs.setBackwardCompatibleUpload(chkBackwardCompatibleUpload->isChecked());
        prefs.setDBName(txtDBPath->text());
        // Baud, parity, data bits and stop bits are never written back: CommSettings keeps the
        // stored parameters. Deliberate, and kept.
        if (prefs.DBChanged())
            mMain::UI().showMessage(lines({tr("The databasename and/or -path has changed."),
                                           tr("For this change of setting to take effect you have to close and reopen the Marlo")}),
                                    tr("Database Path Changed"), MsgIcon::Information);
        return true;
    });
}

QString fOptions::refusalDetail() const
{
    return m_pathProblem.isEmpty() ? QString() : QStringLiteral("\r\n\r\n") + m_pathProblem;
}

// ---- handlers ----------------------------------------------------------------------------------

void fOptions::tbsOptions_Click()
{
    ShowErrors(kForm, kRevision, QStringLiteral("tbsOptions_Click"), [&] {
        // The page of the selected tab is shown, the others hidden.
        m_pages->setCurrentIndex(qMax(tbsOptions->currentIndex(), 0));
        FitDeviceProblem();
    });
}

void fOptions::cmdApply_Click()
{
    ShowErrors(kForm, kRevision, QStringLiteral("cmdApply_Click"), [&] {
        if (!ApplyChanges())
            mMain::UI().showMessage(lines({tr("Specified database path does not exist."),
                                           tr("Please specify an existing database path or the changes will not be saved.")})
                                        + refusalDetail(),
                                    tr("Nonexistent path"), MsgIcon::Exclamation);
    });
}

void fOptions::cmdOK_Click()
{
    ShowErrors(kForm, kRevision, QStringLiteral("cmdOK_Click"), [&] {
        if (ApplyChanges()) {
            accept();
            return;
        }
        const bool close = mMain::UI().askYesNo(
            lines({tr("Specified database path does not exist. Do you wish to close the window anyways?"),
                   tr("If you wish to end the options-dialog without saving press 'Yes'."),
                   tr("If you wish to correct the path to a valid path press 'No'.")})
                + refusalDetail(),
            tr("Nonexistent path"), MsgIcon::Exclamation, true);
        if (close)
            reject();
    });
}

void fOptions::cmdCancel_Click()
{
    ShowErrors(kForm, kRevision, QStringLiteral("cmdCancel_Click"), [&] { reject(); });
}

void fOptions::cmdBrowseDBPath_Click()
{
    ShowErrors(kForm, kRevision, QStringLiteral("cmdBrowseDBPath_Click"), [&] {
        FileDialogRequest request;
        request.title = tr("Database path");
        request.filter = tr("All (*.*)|*.*|MS Access (*.mdb)|*.mdb");
        request.filterIndex = 1;
        request.pathMustExist = true;
        request.hideReadOnly = true;
        if (const auto chosen = mMain::UI().openFileName(request))
            txtDBPath->setText(*chosen);
    });
}

// Ctrl+Tab, and only Ctrl+Tab, moves to the next page, from the last back to the first.
bool fOptions::Form_KeyDown(int key, Qt::KeyboardModifiers modifiers)
{
    bool handled = false;
    ShowErrors(kForm, kRevision, QStringLiteral("Form_KeyDown"), [&] {
        if (key == Qt::Key_Tab && modifiers == Qt::ControlModifier) {
            handled = true;
            tbsOptions->setCurrentIndex((tbsOptions->currentIndex() + 1) % tbsOptions->count());
        }
    });
    return handled;
}
