// Preferences: text forms, odd and unreadable values in the file (read key by key, each bad one
// at its default, and reported once), and the upload form the grip's firmware asks for. (The
// options' and ramping's defaults and ranges: tst_gripRecords; DBChanged: tst_options.)
#include "ScriptedUi.h"
#include "TestFiles.h"

#include "base/cPlacedWindow.h"
#include "base/cRegistrySettings.h"
#include "grip/cGunInfo.h"
#include "grip/cHyper.h"
#include "grip/cOptions.h"
#include "shell/mMain.h"

#include <QDir>
#include <QFile>
#include <QSettings>
#include <QtTest>

namespace {

QString iniPath()
{
    return QSettings(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("Marlo"), QStringLiteral("Marlo")).fileName();
}

void writeIni(const QByteArray& text)
{
    QDir().mkpath(QFileInfo(iniPath()).path());
    writeFile(iniPath(), text);
}

QByteArray readIni() { return fileBytes(iniPath()); }

class FakeWindow : public cPlacedWindow {
public:
    QString formName() const override { return QStringLiteral("fTolvaneMan"); }
    qint16 windowState() const override { return state; }
    void setWindowState(qint16 s) override { state = s; }
    float left() const override { return x; }
    float top() const override { return y; }
    float width() const override { return w; }
    float height() const override { return h; }
    void move(float l, float t) override { x = l; y = t; }
    void resize(float width, float height) override { w = width; h = height; }
    qint16 state = StateNormal;
    float x = 100, y = 200, w = 3000, h = 4000;
};

// A preferences file with keys of each kind in every section, each value differing from its
// default: "Section/Key", the stored text and what the program reads from it through its public
// interface, in the order of the file.
struct Entry {
    QString key, stored;
    QVariant read;
};
const QList<Entry>& readableFile()
{
    static const QList<Entry> entries = {
        {"Initialize/ShowSplash", "False", false}, {"Initialize/GripEye", "True", true},
        {"Initialize/DBName", "/data/other.mdb", "/data/other.mdb"}, {"Initialize/CommPort", "4", 4},
        {"Initialize/CommSettings", "19200,E,7,2", "19200,E,7,2"}, {"Initialize/CommInputMode", "0", 0},
        {"Initialize/CommDevice", "/dev/ttyUSB1", "/dev/ttyUSB1"},
        {"Initialize/LastKey", "{8C5B1E2A-0000-4000-8000-0123456789AB}", "{8C5B1E2A-0000-4000-8000-0123456789AB}"},
        {"fTolvaneMan/WindowState", "0", 0},
        {"fTolvaneMan/Left", "1500", 1500.0f}, {"fTolvaneMan/Top", "900", 900.0f}, {"fTolvaneMan/Width", "6000.5", 6000.5f},
        {"fTolvaneMan/Height", "5000", 5000.0f}, {"Options/EyeMounted", "True", true}, {"Options/LED", "True", true},
        {"Options/DefaultLoadTime", "8", 8}, {"Hyper/Shots", "5", 5}, {"Hyper/HyperTime", "6", 6}};
    return entries;
}

using Values = QMap<QString, QVariant>;

// Every value as the program reads it from the store.
Values readValues(cRegistrySettings& prefs)
{
    FakeWindow window;
    prefs.WindowState(window, true, true);
    const cOptions options;
    const cHyper hyper;
    return {{"Initialize/ShowSplash", prefs.ShowSplash()},
            {"Initialize/GripEye", prefs.GripEye()},
            {"Initialize/DBName", prefs.DBName()},
            {"Initialize/LastKey", prefs.LastKey()},
            {"Initialize/CommPort", prefs.CommPort()},
            {"Initialize/CommSettings", prefs.CommSettings()},
            {"Initialize/CommInputMode", prefs.CommInputMode()},
            {"Initialize/CommDevice", prefs.CommDevice()},
            {"fTolvaneMan/WindowState", int(window.state)},
            {"fTolvaneMan/Left", window.x},
            {"fTolvaneMan/Top", window.y},
            {"fTolvaneMan/Width", window.w},
            {"fTolvaneMan/Height", window.h},
            {"Options/EyeMounted", options.EyeMounted()},
            {"Options/LED", options.LedOn()},
            {"Options/DefaultLoadTime", options.DefaultLoadTime()},
            {"Hyper/Shots", hyper.Shots()},
            {"Hyper/HyperTime", hyper.HyperTime()}};
}

// The file of readableFile with some stored texts replaced, section by section.
QByteArray fileWith(const QMap<QString, QString>& replaced)
{
    QByteArray text;
    QString section;
    for (const auto& [name, value, read] : readableFile()) {
        const QString here = name.section(QLatin1Char('/'), 0, 0);
        if (here != section) {
            section = here;
            text += "[" + section.toUtf8() + "]\n";
        }
        text += name.section(QLatin1Char('/'), 1).toUtf8() + "=" + replaced.value(name, value).toUtf8() + "\n";
    }
    return text;
}

// Every value of expected is read as it says.
void compareValues(cRegistrySettings& prefs, const Values& expected)
{
    const Values read = readValues(prefs);
    for (auto it = expected.cbegin(); it != expected.cend(); ++it)
        QVERIFY2(read.value(it.key()) == it.value(),
                 qPrintable(it.key() + ": " + read.value(it.key()).toString() + " instead of " + it.value().toString()));
}

} // namespace

class tst_cRegistrySettings : public QObject {
    Q_OBJECT
private slots:
    void init()
    {
        QFile::remove(iniPath());
        mMain::SetUserInterface(&ui);
        ui.errors.clear();
    }
    void cleanup() { mMain::SetUserInterface(nullptr); }

    // What the file holds for a setting: booleans as True/False; a value that could not be read is
    // replaced once it is set.
    void textForms()
    {
        writeIni("[Initialize]\nCommPort=abc\n");
        {
            cRegistrySettings prefs;
            QCOMPARE(prefs.Unreadable().size(), 1);
            prefs.setShowSplash(false);
            prefs.setCommPort(3);
            prefs.setGripEye(true);
        }
        const QString ini = QString::fromUtf8(readIni());
        for (const char* line : {"[Initialize]", "ShowSplash=False", "GripEye=True", "CommPort=3"})
            QVERIFY2(ini.contains(QLatin1String(line)), qPrintable(ini));
        QVERIFY(cRegistrySettings().Unreadable().isEmpty());
    }
    // A file that is no preferences file at all: every value at its default, nothing reported.
    void junkFile()
    {
        writeIni(QByteArray("\x00\xFF\xFE[[[=\n\x01\x02", 10));
        cRegistrySettings prefs;
        QVERIFY(ui.errors.isEmpty() && prefs.Unreadable().isEmpty());
        compareValues(prefs, {{"Initialize/ShowSplash", true}, {"Initialize/CommPort", 1}, {"Initialize/CommSettings", "9600,N,8,1"}});
    }
    void unreadableValues_data()
    {
        QTest::addColumn<QStringList>("bad");    // "Section/Key=text", stored instead of the readable text
        QTest::addColumn<QVariantMap>("stands"); // what each one reads; a bad one: its default (a window's: its own value)
        QTest::addColumn<QStringList>("lines");  // the values of the report
        const QString int32 = QStringLiteral("(not a number from -2147483648 to 2147483647)");
        auto row = [](const char* name, const QString& bad, const QVariant& stands, const QString& line) {
            QTest::newRow(name) << QStringList{bad} << QVariantMap{{bad.section(QLatin1Char('='), 0, 0), stands}}
                                << (line.isEmpty() ? QStringList{} : QStringList{line});
        };
        QTest::newRow("all readable: nothing to report") << QStringList{} << QVariantMap{} << QStringList{};
        // Odd but readable: read, and not reported.
        row("a number for a switch", "Initialize/ShowSplash=0", false, QString());
        row("blanks around a number", "Initialize/CommPort= 2 ", 2, QString());
        row("a fraction rounds half to even", "Initialize/CommPort=2.5", 2, QString());
        row("the largest 32-bit number", "Initialize/CommPort=2147483647", 2147483647, QString());
        row("CommPort empty", "Initialize/CommPort=", 1, "[Initialize] CommPort = \"\" (not a number)");
        row("CommInputMode rounds to one past 32 bits", "Initialize/CommInputMode=2147483647.5", 1,
            "[Initialize] CommInputMode = \"2147483647.5\" " + int32);
        row("placement Height beyond a single", "fTolvaneMan/Height=1e39", 4000.0f,
            "[fTolvaneMan] Height = \"1e39\" (not a number from -3.402823466e+38 to 3.402823466e+38)");
        row("option time beyond its range", "Options/DefaultLoadTime=127", 45,
            "[Options] DefaultLoadTime = \"127\" (not a number from 1 to 126)");
        QTest::newRow("several, in every section: all reported, the others read")
            << QStringList{"Hyper/Shots=many", "fTolvaneMan/Top=high", "Initialize/ShowSplash=maybe", "Options/EyeMounted=2x",
                           "Initialize/CommPort=COM1"}
            << QVariantMap{{"Hyper/Shots", 3}, {"fTolvaneMan/Top", 200.0f}, {"Initialize/ShowSplash", true},
                           {"Options/EyeMounted", false}, {"Initialize/CommPort", 1}}
            << QStringList{"[Initialize] ShowSplash = \"maybe\" (not True or False)", "[Initialize] CommPort = \"COM1\" (not a number)",
                           "[Options] EyeMounted = \"2x\" (not True or False)", "[Hyper] Shots = \"many\" (not a number)",
                           "[fTolvaneMan] Top = \"high\" (not a number)"};
    }
    void unreadableValues()
    {
        QFETCH(QStringList, bad);
        QFETCH(QVariantMap, stands);
        QFETCH(QStringList, lines);
        QMap<QString, QString> replaced;
        Values expected;
        for (const Entry& entry : readableFile())
            expected.insert(entry.key, entry.read);
        for (const QString& entry : bad)
            replaced.insert(entry.section(QLatin1Char('='), 0, 0), entry.section(QLatin1Char('='), 1));
        expected.insert(stands);
        const QByteArray file = fileWith(replaced);
        writeIni(file);
        cRegistrySettings prefs;

        // Every other value is read as stored, and nothing is shown as an error.
        compareValues(prefs, expected);
        QVERIFY(ui.errors.isEmpty());

        // One report, naming the file, then each bad value with its section.
        const QStringList report = mMain::UnreadablePreferencesReport(mMain::UnreadablePreferences(prefs));
        if (lines.isEmpty()) {
            QCOMPARE(report, QStringList{});
        } else {
            QCOMPARE(report.value(0), QStringLiteral("The preferences file %1 has values that cannot be read; their defaults are used:")
                                          .arg(iniPath()));
            QCOMPARE(report.mid(1), lines);
        }
        // Reading changes nothing in the file: the text stays until the preference is set.
        QCOMPARE(readIni(), file);
    }
    void backwardCompatibleUploadAnswersFromTheGrip_data()
    {
        QTest::addColumn<QString>("firmware"); // major, minor, revision low, revision high
        QTest::addColumn<bool>("answer");
        QTest::newRow("1.1.70 is older than 1.2.0") << "01014600" << true;
        QTest::newRow("1.2.0 itself") << "01020000" << false;
    }
    void backwardCompatibleUploadAnswersFromTheGrip()
    {
        QFETCH(QString, firmware);
        QFETCH(bool, answer);
        cRegistrySettings prefs;
        prefs.setBackwardCompatibleUpload(!answer);
        cGunInfo grip;
        grip.Comm2Obj(QByteArray("\x43") + QByteArray(10, '\0') + QByteArray::fromHex(firmware.toLatin1()) + QByteArray(12, '\0'));
        QCOMPARE(grip.BackwardCompatibleUpload(), answer);
        QCOMPARE(prefs.StoredBackwardCompatibleUpload(), !answer);
    }

private:
    ScriptedUi ui;
};

QTEST_GUILESS_MAIN(tst_cRegistrySettings)
#include "tst_cRegistrySettings.moc"
