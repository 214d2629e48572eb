// Preferences: defaults, text forms, round trips, garbage in the file, window placement.
#include "ScriptedUi.h"

#include "grip/cGunInfo.h"
#include "link/mAppFunc.h"
#include "link/mErrCodes.h"
#include "shell/cPlacedWindow.h"
#include "shell/cRegistrySettings.h"
#include "shell/mMain.h"

#include <QDir>
#include <QFile>
#include <QSettings>
#include <QStandardPaths>
#include <QtTest>

namespace {

QString iniPath()
{
    return QSettings(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("Marlo"), QStringLiteral("Marlo")).fileName();
}

void writeIni(const QByteArray& text)
{
    QDir().mkpath(QFileInfo(iniPath()).path());
    QFile file(iniPath());
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(text);
}

QByteArray readIni()
{
    QFile file(iniPath());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

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

} // namespace

class tst_cRegistrySettings : public QObject {
    Q_OBJECT
private slots:
    void init()
    {
        QFile::remove(iniPath());
        mMain::SetUserInterface(&ui);
        ui.errors.clear();
        ResetGunInfo();
    }
    void cleanup() { mMain::SetUserInterface(nullptr); }

    void firstRunDefaults();
    void textForms();
    void roundTrip();
    void garbage_data();
    void garbage();
    void backwardCompatibleUploadAnswersFromTheGrip_data();
    void backwardCompatibleUploadAnswersFromTheGrip();
    void dbNameChangeMarksDBChanged();
    void windowPlacement();
    void minimisedWindowKeepsStoredPosition();

private:
    ScriptedUi ui;
};

void tst_cRegistrySettings::firstRunDefaults()
{
    cRegistrySettings prefs;
    QCOMPARE(prefs.CommPort(), 1);
    QCOMPARE(prefs.CommSettings(), QStringLiteral("9600,N,8,1"));
    QCOMPARE(prefs.CommInputMode(), 1);
    QCOMPARE(prefs.CommLogToFile(), false);
    QCOMPARE(prefs.CommLogToConsole(), false);
    QCOMPARE(prefs.LastKey(), QString());
    QCOMPARE(prefs.DBName(), QDir(mMain::ProgramFolder()).filePath(QStringLiteral("Marlo.mdb")));
    QCOMPARE(prefs.DBChanged(), false);
    QCOMPARE(prefs.GripEye(), false);
    QCOMPARE(prefs.ShowSplash(), true);
    QCOMPARE(prefs.ShowConfirmComm(), true);
    QCOMPARE(prefs.ShowLogToFile(), false);
    QCOMPARE(prefs.StoredBackwardCompatibleUpload(), true);
    QCOMPARE(prefs.CommDevice(), QString());
    QVERIFY(ui.errors.isEmpty());
    QVERIFY(!QFile::exists(iniPath())); // reading writes nothing
}

void tst_cRegistrySettings::textForms()
{
    cRegistrySettings prefs;
    prefs.setShowSplash(false);
    prefs.setCommPort(3);
    prefs.setGripEye(true);
    const QString ini = QString::fromUtf8(readIni());
    QVERIFY2(ini.contains(QStringLiteral("[Initialize]")), qPrintable(ini));
    QVERIFY2(ini.contains(QStringLiteral("ShowSplash=False")), qPrintable(ini));
    QVERIFY2(ini.contains(QStringLiteral("GripEye=True")), qPrintable(ini));
    QVERIFY2(ini.contains(QStringLiteral("CommPort=3")), qPrintable(ini));
}

void tst_cRegistrySettings::roundTrip()
{
    {
        cRegistrySettings prefs;
        prefs.setCommPort(4);
        prefs.setCommSettings(QStringLiteral("19200,E,7,2"));
        prefs.setCommInputMode(0);
        prefs.setCommLogToFile(true);
        prefs.setCommLogToConsole(true);
        prefs.setLastKey(QStringLiteral("{8C5B1E2A-0000-4000-8000-0123456789AB}"));
        prefs.setGripEye(true);
        prefs.setShowSplash(false);
        prefs.setShowConfirmComm(false);
        prefs.setShowLogToFile(true);
        prefs.setBackwardCompatibleUpload(false);
        prefs.setCommDevice(QStringLiteral("sim:firmware=1.1.70"));
    }
    cRegistrySettings prefs;
    QCOMPARE(prefs.CommPort(), 4);
    QCOMPARE(prefs.CommSettings(), QStringLiteral("19200,E,7,2"));
    QCOMPARE(prefs.CommInputMode(), 0);
    QCOMPARE(prefs.CommLogToFile(), true);
    QCOMPARE(prefs.CommLogToConsole(), true);
    QCOMPARE(prefs.LastKey(), QStringLiteral("{8C5B1E2A-0000-4000-8000-0123456789AB}"));
    QCOMPARE(prefs.GripEye(), true);
    QCOMPARE(prefs.ShowSplash(), false);
    QCOMPARE(prefs.ShowConfirmComm(), false);
    QCOMPARE(prefs.ShowLogToFile(), true);
    QCOMPARE(prefs.StoredBackwardCompatibleUpload(), false);
    QCOMPARE(prefs.CommDevice(), QStringLiteral("sim:firmware=1.1.70"));
}

void tst_cRegistrySettings::garbage_data()
{
    QTest::addColumn<QByteArray>("ini");
    QTest::addColumn<bool>("error");
    QTest::addColumn<bool>("showSplash");
    QTest::addColumn<int>("commPort");
    QTest::addColumn<QString>("commSettings");
    QTest::newRow("port not a number: read stops there")
        << QByteArray("[Initialize]\nShowSplash=False\nCommPort=abc\nCommSettings=4800,N,8,1\n") << true << false << 0 << QString();
    QTest::newRow("boolean not a boolean: everything after it zero")
        << QByteArray("[Initialize]\nBackwardCompatibleUpload=perhaps\n") << true << false << 0 << QString();
    QTest::newRow("numbers for booleans are fine")
        << QByteArray("[Initialize]\nShowSplash=0\nCommPort= 2 \n") << false << false << 2 << QStringLiteral("9600,N,8,1");
    QTest::newRow("lower-case booleans are fine")
        << QByteArray("[Initialize]\nShowSplash=true\n") << false << true << 1 << QStringLiteral("9600,N,8,1");
    QTest::newRow("unquoted commas") << QByteArray("[Initialize]\nCommSettings=38400,O,8,2\n") << false << true << 1
                                     << QStringLiteral("38400,O,8,2");
    QTest::newRow("binary junk file") << QByteArray("\x00\xFF\xFE[[[=\n\x01\x02", 10) << false << true << 1
                                      << QStringLiteral("9600,N,8,1");
}

void tst_cRegistrySettings::garbage()
{
    QFETCH(QByteArray, ini);
    QFETCH(bool, error);
    QFETCH(bool, showSplash);
    QFETCH(int, commPort);
    QFETCH(QString, commSettings);
    writeIni(ini);
    cRegistrySettings prefs;
    QCOMPARE(ui.errors.isEmpty(), !error);
    if (error) {
        QCOMPARE(ui.errors.first().Number(), mErrCodes::RT_TYPE_MISMATCH);
        QCOMPARE(ui.errors.first().Trail().first().module, QStringLiteral("cRegistrySettings"));
    }
    QCOMPARE(prefs.ShowSplash(), showSplash);
    QCOMPARE(prefs.CommPort(), commPort);
    QCOMPARE(prefs.CommSettings(), commSettings);
    // The object stays usable and writes what is set.
    prefs.setCommPort(5);
    QCOMPARE(prefs.CommPort(), 5);
    QVERIFY(QString::fromUtf8(readIni()).contains(QStringLiteral("CommPort=5")));
}

void tst_cRegistrySettings::backwardCompatibleUploadAnswersFromTheGrip_data()
{
    QTest::addColumn<QString>("firmware"); // major, minor, revision low, revision high
    QTest::addColumn<bool>("answer");
    QTest::newRow("1.1.70 is older than 1.2.0") << "01014600" << true;
    QTest::newRow("1.2.0 itself") << "01020000" << false;
    QTest::newRow("4.0.5") << "04000500" << false;
}

void tst_cRegistrySettings::backwardCompatibleUploadAnswersFromTheGrip()
{
    QFETCH(QString, firmware);
    QFETCH(bool, answer);
    cRegistrySettings prefs;
    prefs.setBackwardCompatibleUpload(!answer);
    GunInfo().Comm2Obj(QStringLiteral("43") + QString(20, QLatin1Char('0')) + firmware + QString(24, QLatin1Char('0')));
    QCOMPARE(prefs.BackwardCompatibleUpload(), answer);
    QCOMPARE(prefs.StoredBackwardCompatibleUpload(), !answer);
}

void tst_cRegistrySettings::dbNameChangeMarksDBChanged()
{
    cRegistrySettings prefs;
    prefs.setDBName(prefs.DBName());
    QCOMPARE(prefs.DBChanged(), false);
    prefs.setDBName(QStringLiteral("/tmp/other.mdb"));
    QCOMPARE(prefs.DBChanged(), true);
    QCOMPARE(cRegistrySettings().DBChanged(), true);
}

void tst_cRegistrySettings::windowPlacement()
{
    cRegistrySettings prefs;
    FakeWindow window;
    window.x = 1500;
    window.y = 900;
    prefs.SaveWindowState(window, true, false);
    FakeWindow reopened;
    prefs.WindowState(reopened, true, false);
    QCOMPARE(reopened.x, 1500.0f);
    QCOMPARE(reopened.y, 900.0f);
    QCOMPARE(reopened.w, 3000.0f); // size not asked for: untouched
    QVERIFY(QString::fromUtf8(readIni()).contains(QStringLiteral("[fTolvaneMan]")));
}

void tst_cRegistrySettings::minimisedWindowKeepsStoredPosition()
{
    cRegistrySettings prefs;
    FakeWindow window;
    window.x = 1500;
    prefs.SaveWindowState(window, true, true);
    window.state = cPlacedWindow::StateMaximized;
    window.x = 0;
    prefs.SaveWindowState(window, true, true);
    QVERIFY(QString::fromUtf8(readIni()).contains(QStringLiteral("Left=1500")));
    FakeWindow reopened;
    prefs.WindowState(reopened, true, true);
    QCOMPARE(reopened.state, cPlacedWindow::StateMaximized);
    QCOMPARE(reopened.x, 100.0f); // not moved while maximised
}

QTEST_GUILESS_MAIN(tst_cRegistrySettings)
#include "tst_cRegistrySettings.moc"
