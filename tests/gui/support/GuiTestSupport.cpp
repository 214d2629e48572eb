#include "GuiTestSupport.h"

#include "library/mDatabase.h"

#include <QAccessible>
#include <QDir>
#include <QSettings>
#include <QTimer>

namespace guitest {

// A comparison where one value of each kind differs and a record was left out.
mGripComparison::tComparison differingComparison()
{
    mGripComparison::tComparison comparison;
    comparison.values = {{mGripCommands::GripRecord::Timing, QStringLiteral("ShotTime"), 14, 12},
                         {mGripCommands::GripRecord::GameTimer, QStringLiteral("PreAlert1On"), true, false}};
    comparison.unsupported = {mGripCommands::GripRecord::Ramping};
    return comparison;
}

void fillGrip(griptest::GripHarness& grip)
{
    grip.grip.updateState([](gripsim::GripState& s) {
        s.timing = {12, 9, 31, 40, 29, 6};
        s.counters = {300, 65535, 197121};
        s.options.flags = 0x41; // eye mounted, use eye
        s.options.defaultLoadTime = 50;
        s.ramping = {7, 120, 4};
        s.gameTimer.countDownTimer = 15;
        s.gameTimer.preAlert1On = 1;
        s.battery = 880;
    });
}


void run(QObject* window, const QString& name)
{
    if (auto* action = window->findChild<QAction*>(name))
        action->trigger();
    else
        control<QAbstractButton>(window, name)->click();
}

bool enabled(QObject* window, const QString& name)
{
    if (auto* action = window->findChild<QAction*>(name))
        return action->isEnabled();
    const QWidget* widget = control<QWidget>(window, name);
    return widget && widget->isEnabled();
}

QStringList enabledCommands(QObject* window)
{
    static const char* const held[] = {
        "cmdTools(0)", "cmdTools(1)", "cmdTools(2)", "cmdTools(4)", "cmdTools(6)", "cmdReset(0)", "cmdReset(1)",
        "mnuDLTiming", "mnuDLCounters", "mnuDLGameTimers", "mnuDLGunInfo", "mnuDLBattery", "mnuDLFirmware",
        "mnuULTiming", "mnuULGameTimers", "mnuULFirmware", "mnuULAll", "mnuLibTemplates", "mnuProperties",
        "mnuDefaultSettings", "mnuOptions", "mnuAbout", "mnuNew", "mnuExit",
    };
    QStringList names;
    for (const char* name : held)
        if (enabled(window, QLatin1String(name)))
            names << QLatin1String(name);
    return names;
}

QString text(QObject* window, const QString& name)
{
    return control<QLineEdit>(window, name)->text();
}

void type(QLineEdit* edit, const QString& text)
{
    edit->setFocus();
    edit->selectAll();
    if (text.isEmpty())
        QTest::keyClick(edit, Qt::Key_Backspace);
    else
        QTest::keyClicks(edit, text);
}

void type(QObject* window, const QString& name, const QString& text)
{
    type(control<QLineEdit>(window, name), text);
}

QStringList columnTexts(QTreeWidget* list, int column)
{
    QStringList texts;
    for (int i = 0; i < list->topLevelItemCount(); ++i)
        texts << list->topLevelItem(i)->text(column);
    return texts;
}

void selectRow(QTreeWidget* list, int index)
{
    int column = 0; // the first column on show
    while (list->isColumnHidden(column))
        ++column;
    list->setCurrentItem(list->topLevelItem(index), column);
    list->topLevelItem(index)->setSelected(true);
}

void answerNextModal(std::function<void(QDialog*)> answer, int tries)
{
    QTimer::singleShot(tries == 0 ? 0 : 10, [answer, tries] {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (!dialog || !dialog->isVisible()) {
            if (tries < 500)
                answerNextModal(answer, tries + 1);
            return;
        }
        answer(dialog);
        if (dialog->isVisible())
            dialog->reject();
    });
}

QString accessibleName(QObject* control)
{
    QAccessibleInterface* face = QAccessible::queryAccessibleInterface(control);
    if (!face)
        return QString();
    if (face->role() == QAccessible::ComboBox) { // its name on this platform is its current item
        const auto labels = face->relations(QAccessible::Label);
        return labels.isEmpty() ? QString() : labels.first().first->text(QAccessible::Name);
    }
    return face->text(QAccessible::Name);
}

QStringList unnamedControls(QWidget* window)
{
    QStringList unnamed;
    int reachable = 0;
    for (QWidget* widget : window->findChildren<QWidget*>()) {
        // Parts Qt makes for itself (a combo box's list, scroll-bar buttons) have no object name,
        // and the text box inside a combo box or spin box is read through its owner.
        if (widget->focusPolicy() == Qt::NoFocus || widget->objectName().isEmpty()
            || widget->objectName().startsWith(QLatin1String("qt_")) || qobject_cast<QComboBox*>(widget->parentWidget())
            || qobject_cast<QAbstractSpinBox*>(widget->parentWidget()))
            continue;
        ++reachable;
        if (accessibleName(widget).trimmed().isEmpty())
            unnamed << widget->objectName();
    }
    if (reachable == 0) // nothing looked at proves nothing
        unnamed << QStringLiteral("(no control reachable)");
    return unnamed;
}

WindowHarness::WindowHarness(const QString& gripOptions) : grip(gripOptions)
{
    mMain::SetUserInterface(&ui);
}

WindowHarness::~WindowHarness()
{
    window.reset();
    mMain::SetUserInterface(&grip.link.ui);
}

fTolvaneMan& WindowHarness::open(bool show, const QStringList& commandLine)
{
    mMain::CheckForDB(grip.link.prefs);
    window = std::make_unique<fTolvaneMan>(grip.session, grip.link.app());
    window->setCommandLine(commandLine);
    if (show) {
        window->show();
        QCoreApplication::processEvents();
    }
    return *window;
}

QList<int> WindowHarness::takeCodes()
{
    const QList<int> codes = grip.codes();
    grip.link.port.frames.clear();
    return codes;
}

ScriptedLibrary::ScriptedLibrary()
{
    FreshStart();
    program.restart(); // the preferences as the fresh start left them
    mMain::SetUserInterface(&ui);
    mMain::CheckForDB(program.prefs);
}

ScriptedLibrary::~ScriptedLibrary()
{
    mMain::SetUserInterface(nullptr);
}

QStringList messageTexts(const ScriptedUi& script)
{
    QStringList texts;
    for (const ScriptedUi::Message& m : script.messages)
        texts.append(m.text);
    return texts;
}

QString firstError(const ScriptedUi& script)
{
    return script.errors.isEmpty() ? QString()
                                   : QStringLiteral("%1: %2").arg(script.errors.first().Number()).arg(script.errors.first().Description());
}

QString stored(const QString& key)
{
    QSettings store(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("Marlo"), QStringLiteral("Marlo"));
    return store.value(QStringLiteral("Initialize/") + key).toString();
}

void FreshStart()
{
    mDatabase::DisconnectDB();
    QSettings(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("Marlo"), QStringLiteral("Marlo")).clear();
    const QString folder = mMain::ProgramFolder();
    QDir().mkpath(folder);
    QFile::remove(QDir(folder).filePath(QStringLiteral("Marlo.mdb")));
    const QString templ = QDir(qEnvironmentVariable("MARLO_TEMPLATE_DIR")).filePath(QStringLiteral("instdbxx.tmp"));
    QFile::remove(QDir(folder).filePath(QStringLiteral("instdbxx.tmp")));
    QFile::copy(templ, QDir(folder).filePath(QStringLiteral("instdbxx.tmp")));
}

} // namespace guitest
