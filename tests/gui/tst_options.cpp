// The options dialog: what it loads, Apply/OK/Cancel with good and bad library paths and the
// lists that only show CommSettings, the hidden box, Ctrl+Tab, the browse button and the devices
// with what stands in the way of each.
#include "FakeSystem.h"
#include "GuiTestSupport.h"

#include "grip/cGunInfo.h"
#include "gui/shell/fOptions.h"
#include "library/mDatabase.h"
#include "link/cPortDoctor.h"

#include <QStackedWidget>
#include <QTabBar>
#include <QTemporaryDir>

using namespace guitest;
using mSerialDevices::PortEntry;

namespace {

// The grip the dialogs answer BackwardCompatibleUpload from: a fresh session's (firmware 4.0.0).
const cGunInfo kGrip;

QComboBox* combo(QWidget* dialog, const char* name)
{
    return control<QComboBox>(dialog, QLatin1String(name));
}

const QList<PortEntry> kPorts = {
    {QStringLiteral("/dev/ttyUSB0"), QStringLiteral("FT232R USB UART"), QStringLiteral("FTDI"), quint16(0x0403), quint16(0x6001)},
    {QStringLiteral("/dev/ttyACM0"), QString(), QString(), std::nullopt, std::nullopt},
};

const QString kRefusedApply = QStringLiteral(
    "Specified database path does not exist.\r\nPlease specify an existing database path or the changes will not be saved.");
const QString kRefusedOK = QStringLiteral(
    "Specified database path does not exist. Do you wish to close the window anyways?\r\n"
    "If you wish to end the options-dialog without saving press 'Yes'.\r\n"
    "If you wish to correct the path to a valid path press 'No'.");

// The library path typed (same, other, missing, text), the button pressed, the
// answer to OK's question (-1 none asked, 0 No, 1 Yes), whether the changes were applied and the
// dialog is still open, and the beginning of the message or question shown ("" none).
struct Closing {
    QString path, button;
    int answer;
    bool applied, open;
    QString message;
};

// A device chosen from the list (item) or typed, what is stored, the path checked for access
// ("" none) and whether the page shows a problem.
struct Device {
    int item; // -1: typed is typed
    QString typed, device, checked;
    bool problem;
};

// The tab on show, a key with its modifiers, and the tab on show then.
struct TabKey {
    int start, key, modifiers, tab;
};

} // namespace

class tst_options : public QObject {
    Q_OBJECT
private slots:
    void loadsThePreferences()
    {
        ScriptedLibrary library;
        cRegistrySettings& prefs = library.prefs();
        prefs.setShowSplash(false);
        prefs.setShowConfirmComm(true);
        prefs.setCommLogToFile(true);
        prefs.setCommLogToConsole(false);
        prefs.setCommPort(3);
        prefs.setCommSettings(QStringLiteral("19200,E,7,2"));
        prefs.setCommDevice(QStringLiteral("sim"));
        prefs.setFirmwareBackup(true);
        fOptions dialog(kGrip, library.prefs());
        QCOMPARE(text(&dialog, QStringLiteral("txtDBPath")), prefs.DBName());
        QStringList shown;
        for (const char* name : {"chkShowSplash", "chkConfirm", "chkLogCommToFile", "chkLogCommToConsole", "chkFirmwareBackup"})
            shown << (control<QCheckBox>(&dialog, QLatin1String(name))->isChecked() ? "1" : "0");
        for (const char* name : {"cboPort", "cboBaud", "cboParity", "cboBits", "cboStopBits"})
            shown << combo(&dialog, name)->currentText();
        QCOMPARE(shown, (QStringList{"0", "1", "1", "0", "1", "3", "19200", "Even", "7", "2"}));
        QCOMPARE(combo(&dialog, "cboDevice")->currentText(), QStringLiteral("Virtual grip (demo)"));
        QCOMPARE(dialog.ChosenDevice(), QStringLiteral("sim"));
        // A device typed is checked by the port doctor of this machine.
        combo(&dialog, "cboDevice")->setEditText(QStringLiteral("/dev/marlo-no-such-port"));
        QVERIFY2(dialog.DeviceProblem().startsWith(QStringLiteral("The serial port /dev/marlo-no-such-port does not exist.")),
                 qPrintable(dialog.DeviceProblem()));
        GUITEST_NO_ERRORS(library.ui.script);
    }
    void applyOkCancel_data()
    {
        QTest::addColumn<Closing>("row");

        const QString changed = QStringLiteral("The databasename and/or -path has changed.\r\n"
                                               "For this change of setting to take effect you have to close and reopen the Marlo");
        QTest::newRow("Apply, same library") << Closing{"same", "cmdApply", -1, true, true, ""};
        QTest::newRow("Apply, another library") << Closing{"other", "cmdApply", -1, true, true, changed};
        QTest::newRow("Apply, missing file") << Closing{"missing", "cmdApply", -1, false, true, kRefusedApply};
        QTest::newRow("Apply, a text file") << Closing{"text", "cmdApply", -1, false, true, kRefusedApply};
        QTest::newRow("OK, another library") << Closing{"other", "cmdOK", -1, true, false, changed};
        QTest::newRow("OK, missing, No") << Closing{"missing", "cmdOK", 0, false, true, kRefusedOK};
        QTest::newRow("OK, missing, Yes") << Closing{"missing", "cmdOK", 1, false, false, kRefusedOK};
        QTest::newRow("Cancel") << Closing{"other", "cmdCancel", -1, false, false, ""};
    }
    void applyOkCancel()
    {
        QFETCH(Closing, row);
        const auto& [path, button, answer, applied, open, message] = row;
        ScriptedLibrary library;
        QTemporaryDir folder;
        cRegistrySettings& prefs = library.prefs();
        const QString library0 = prefs.DBName();
        QString target = library0;
        if (path == QLatin1String("other")) {
            target = folder.filePath(QStringLiteral("Other.mdb"));
            QVERIFY(QFile::copy(mDatabase::TemplatePath(), target));
        } else if (path == QLatin1String("missing")) {
            target = folder.filePath(QStringLiteral("Missing.mdb"));
        } else if (path == QLatin1String("text")) {
            target = folder.filePath(QStringLiteral("Foreign.mdb"));
            QFile file(target);
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write("just some notes\n");
        }
        prefs.setShowConfirmComm(true);
        prefs.setFirmwareBackup(false);
        prefs.setCommPort(1);
        prefs.setCommSettings(QStringLiteral("9600,N,8,1"));
        prefs.setDBChanged(false);
        fOptions dialog(kGrip, library.prefs());
        dialog.show();
        control<QCheckBox>(&dialog, QStringLiteral("chkConfirm"))->setChecked(false);
        control<QCheckBox>(&dialog, QStringLiteral("chkFirmwareBackup"))->setChecked(true);
        // The baud, parity, bits and stop-bit lists only show the stored settings: never written.
        for (const auto& [name, item] : QList<QPair<const char*, const char*>>{{"cboBaud", "19200"}, {"cboParity", "Odd"}, {"cboBits", "7"}, {"cboStopBits", "2"}})
            combo(&dialog, name)->setCurrentText(QLatin1String(item));
        combo(&dialog, "cboPort")->setCurrentIndex(1);
        combo(&dialog, "cboDevice")->setEditText(QStringLiteral("/dev/ttyUSB3"));
        control<QLineEdit>(&dialog, QStringLiteral("txtDBPath"))->setText(target);
        if (answer >= 0)
            library.ui.script.yesNoAnswers.enqueue(answer == 1);
        run(&dialog, button);

        QCOMPARE(dialog.isVisible(), open);
        QCOMPARE(prefs.ShowConfirmComm(), !applied);
        QCOMPARE(stored(QStringLiteral("ShowConfirmComm")), applied ? QStringLiteral("False") : QStringLiteral("True"));
        QCOMPARE(prefs.FirmwareBackup(), applied);
        QCOMPARE(stored(QStringLiteral("FirmwareBackup")), applied ? QStringLiteral("True") : QStringLiteral("False"));
        QCOMPARE(prefs.CommPort(), applied ? 2 : 1);
        QCOMPARE(prefs.CommDevice(), applied ? QStringLiteral("/dev/ttyUSB3") : QString());
        QCOMPARE(prefs.DBName(), applied ? target : library0);
        QCOMPARE(prefs.DBChanged(), applied && path == QLatin1String("other"));
        QCOMPARE(prefs.CommSettings() + QLatin1Char('/') + stored(QStringLiteral("CommSettings")), QStringLiteral("9600,N,8,1/9600,N,8,1"));

        const QList<ScriptedUi::Message> shown = answer >= 0 ? library.ui.script.questions : library.ui.script.messages;
        QCOMPARE(shown.size(), message.isEmpty() ? 0 : 1);
        if (!message.isEmpty()) {
            QVERIFY2(shown[0].text.startsWith(message), qPrintable(shown[0].text));
            if (applied) {
                QCOMPARE(shown[0].title, QStringLiteral("Database Path Changed"));
                QCOMPARE(shown[0].icon, MsgIcon::Information);
            } else {
                QCOMPARE(shown[0].title, QStringLiteral("Nonexistent path"));
                QCOMPARE(shown[0].icon, MsgIcon::Exclamation);
                QCOMPARE(shown[0].defaultNo, answer >= 0);
                // A file that is there but is no library says why, after the fixed text.
                if (path == QLatin1String("missing"))
                    QCOMPARE(shown[0].text, message);
                else
                    QVERIFY(shown[0].text.size() > message.size());
            }
        }
        GUITEST_NO_ERRORS(library.ui.script);
    }
    void backwardCompatibleBoxOnlyWithLogToFile_data()
    {
        QTest::addColumn<bool>("showLogToFile");
        QTest::newRow("ShowLogToFile off: hidden, not written") << false;
        QTest::newRow("ShowLogToFile on: shown and written") << true;
    }
    void backwardCompatibleBoxOnlyWithLogToFile()
    {
        QFETCH(bool, showLogToFile);
        ScriptedLibrary library;
        cRegistrySettings& prefs = library.prefs();
        prefs.setShowLogToFile(showLogToFile);
        prefs.setBackwardCompatibleUpload(true);
        fOptions dialog(kGrip, library.prefs());
        auto* box = control<QCheckBox>(&dialog, QStringLiteral("chkBackwardCompatibleUpload"));
        QCOMPARE(box->isHidden(), !showLogToFile);
        // The box shows what the preference answers (from the grip), not the stored value.
        QCOMPARE(box->isChecked(), kGrip.BackwardCompatibleUpload());
        box->setChecked(false);
        run(&dialog, QStringLiteral("cmdApply"));
        QCOMPARE(prefs.StoredBackwardCompatibleUpload(), !showLogToFile);
        QCOMPARE(stored(QStringLiteral("BackwardCompatibleUpload")), showLogToFile ? QStringLiteral("False") : QStringLiteral("True"));
    }
    void ctrlTabAndOnlyCtrlTab_data()
    {
        QTest::addColumn<TabKey>("row");
        QTest::newRow("Ctrl+Tab to the next") << TabKey{0, int(Qt::Key_Tab), int(Qt::ControlModifier), 1};
        QTest::newRow("Ctrl+Tab from the last to the first") << TabKey{1, int(Qt::Key_Tab), int(Qt::ControlModifier), 0};
        QTest::newRow("Ctrl+Shift+Tab (backtab) nothing") << TabKey{0, int(Qt::Key_Backtab), int(Qt::ControlModifier | Qt::ShiftModifier), 0};
    }
    void ctrlTabAndOnlyCtrlTab()
    {
        QFETCH(TabKey, row);
        const auto [start, key, modifiers, tab] = row;
        ScriptedLibrary library;
        fOptions dialog(kGrip, library.prefs());
        dialog.show();
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        auto* tabs = control<QTabBar>(&dialog, QStringLiteral("tbsOptions"));
        tabs->setCurrentIndex(start);
        // Whichever control has the focus: a check box of the page on show.
        QWidget* focus = start == 0 ? static_cast<QWidget*>(control<QCheckBox>(&dialog, QStringLiteral("chkConfirm")))
                                    : control<QCheckBox>(&dialog, QStringLiteral("chkLogCommToFile"));
        focus->setFocus();
        QTest::keyClick(focus, Qt::Key(key), Qt::KeyboardModifiers(modifiers));
        QCOMPARE(tabs->currentIndex(), tab);
        QCOMPARE(control<QStackedWidget>(&dialog, QStringLiteral("picOptionsArea"))->currentIndex(), tab);
        QVERIFY(control<QWidget>(&dialog, QStringLiteral("picOptions(%1)").arg(tab))->isVisible());
        QVERIFY(!control<QWidget>(&dialog, QStringLiteral("picOptions(%1)").arg(1 - tab))->isVisible());
    }
    void browseFillsThePath()
    {
        ScriptedLibrary library;
        fOptions dialog(kGrip, library.prefs());
        auto* path = control<QLineEdit>(&dialog, QStringLiteral("txtDBPath"));
        const QString before = path->text();
        library.ui.script.fileAnswers.enqueue(std::nullopt);
        run(&dialog, QStringLiteral("cmdBrowseDBPath"));
        QCOMPARE(path->text(), before);
        library.ui.script.fileAnswers.enqueue(QStringLiteral("/srv/marlo/Team.mdb"));
        run(&dialog, QStringLiteral("cmdBrowseDBPath"));
        QCOMPARE(path->text(), QStringLiteral("/srv/marlo/Team.mdb"));
        QCOMPARE(library.ui.script.fileRequests.size(), 2);
        QCOMPARE(library.ui.script.fileRequests[1].filter, QStringLiteral("All (*.*)|*.*|MS Access (*.mdb)|*.mdb"));
        // Nothing is applied by browsing.
        QCOMPARE(library.prefs().DBName(), before);
    }
    void devices_data()
    {
        QTest::addColumn<Device>("row");
        QTest::newRow("a port of the machine, access denied") << Device{0, "", "/dev/ttyUSB0", "/dev/ttyUSB0", true};
        QTest::newRow("the virtual grip: nothing to check") << Device{2, "", "sim", "", false};
        QTest::newRow("a path typed") << Device{-1, " /dev/ttyS7 ", "/dev/ttyS7", "/dev/ttyS7", false};
        QTest::newRow("a virtual grip with options") << Device{-1, "sim:firmware=1.1.70", "sim:firmware=1.1.70", "", false};
        QTest::newRow("empty: the port number decides") << Device{-1, "", "", "/dev/ttyS1", false};
    }
    void devices()
    {
        QFETCH(Device, row);
        const auto& [item, typed, device, checked, problem] = row;
        ScriptedLibrary library;
        cRegistrySettings& prefs = library.prefs();
        prefs.setCommDevice(QStringLiteral("/dev/old"));
        prefs.setCommPort(2);
        fOptions dialog(kGrip, library.prefs());
        int listed = 0;
        dialog.setPortLister([&] {
            ++listed;
            return kPorts;
        });
        const QString denied = QStringLiteral("Permission denied opening /dev/ttyUSB0. Your user must be in the 'dialout' group");
        QStringList asked;
        dialog.setDeviceChecker([&](const QString& path) {
            asked << path;
            return path == QLatin1String("/dev/ttyUSB0") ? denied : QString();
        });
        // The machine's ports with what they tell of themselves, then the virtual grip; what was
        // typed stays. Opening the list asks again, so that a device plugged in meanwhile shows.
        QComboBox* devices = combo(&dialog, "cboDevice");
        devices->setEditText(QStringLiteral("typed by hand"));
        dialog.RefreshDeviceList();
        QStringList items;
        for (int i = 0; i < devices->count(); ++i)
            items << devices->itemText(i) + QLatin1Char(':') + devices->itemData(i).toString();
        QCOMPARE(items, (QStringList{"/dev/ttyUSB0 - FT232R USB UART (FTDI, USB 0403:6001):/dev/ttyUSB0", "/dev/ttyACM0:/dev/ttyACM0",
                                     "Virtual grip (demo):sim"}));
        dialog.show();
        devices->showPopup();
        devices->hidePopup();
        QCOMPARE(listed, 2);
        QCOMPARE(devices->currentText(), QStringLiteral("typed by hand"));
        if (item >= 0)
            devices->setCurrentIndex(item);
        else
            devices->setEditText(typed);
        QCOMPARE(dialog.ChosenDevice(), device);
        // The device's problem, if any, is shown on the page at once.
        QCOMPARE(asked.last(), checked);
        auto* label = control<QLabel>(&dialog, QStringLiteral("lblDeviceProblem"));
        QCOMPARE(label->isHidden() ? QString() : label->text(), problem ? denied : QString());
        combo(&dialog, "cboPort")->setCurrentIndex(3);
        if (device.isEmpty())
            QCOMPARE(asked.last(), QStringLiteral("/dev/ttyS3"));
        run(&dialog, QStringLiteral("cmdOK"));
        QCOMPARE(prefs.CommDevice(), device);
        QCOMPARE(stored(QStringLiteral("CommDevice")), device);
    }
    // Every problem of the chosen device (not in dialout, a stale lock, ModemManager) is on the page,
    // none of it cut, with the label that a screen reader reads: chosen on the page, or already
    // chosen when the dialog opens.
    void everyProblemOfTheDevice_data()
    {
        QTest::addColumn<bool>("chosenOnThePage");
        QTest::newRow("chosen on the page") << true;
        QTest::newRow("chosen before") << false;
    }
    void everyProblemOfTheDevice()
    {
        QFETCH(bool, chosenOnThePage);
        FakeSystem system;
        QVERIFY(system.group(QStringLiteral("dialout"), FakeSystem::fileGroup()));
        QVERIFY(system.user(FakeSystem::fileOwner() + 1000, {FakeSystem::fileOwner() + 1000}));
        QVERIFY(system.node(QStringLiteral("/dev/ttyS0"), 0666)); // the port the dialog opens on: ready
        QVERIFY(system.node(QStringLiteral("/dev/ttyACM0"), 0660));
        QVERIFY(system.write(QStringLiteral("/var/lock/LCK..ttyACM0"), "999\n"));
        QVERIFY(system.process(800, QStringLiteral("ModemManager")));
        const cSystemFacts facts(system.root());
        const cPortDoctor doctor(facts);

        ScriptedLibrary library;
        if (!chosenOnThePage)
            library.prefs().setCommDevice(QStringLiteral("/dev/ttyACM0"));
        fOptions dialog(kGrip, library.prefs());
        dialog.setDeviceChecker([&](const QString& path) { return doctor.Sentences(path).join(QLatin1Char('\n')); });
        dialog.resize(dialog.minimumSizeHint());
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        dialog.findChild<QTabBar*>(QStringLiteral("tbsOptions"))->setCurrentIndex(1);
        if (chosenOnThePage)
            combo(&dialog, "cboDevice")->setEditText(QStringLiteral("/dev/ttyACM0"));
        QApplication::processEvents();
        auto* label = control<QLabel>(&dialog, QStringLiteral("lblDeviceProblem"));
        auto* icon = control<QLabel>(&dialog, QStringLiteral("lblDeviceProblemIcon"));
        QVERIFY(label->isVisible() && icon->isVisible());
        QCOMPARE(label->accessibleDescription(), QStringLiteral("Device problem"));
        QCOMPARE(dialog.DeviceProblem().split(QLatin1Char('\n')).size(), 3);
        QVERIFY2(dialog.DeviceProblem().contains(QStringLiteral("ID_MM_DEVICE_IGNORE")), qPrintable(dialog.DeviceProblem()));
        // The dialog grew so that the whole text fits its label.
        QVERIFY2(label->height() >= label->heightForWidth(label->width()),
                 qPrintable(QStringLiteral("%1 < %2").arg(label->height()).arg(label->heightForWidth(label->width()))));
    }
};

QTEST_MAIN(tst_options)
#include "tst_options.moc"
