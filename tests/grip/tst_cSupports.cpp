// The feature flags at their firmware thresholds, and the mode tables that follow them.
#include "GripTestSupport.h"

#include "grip/cGunInfo.h"
#include "grip/mModes.h"
#include "link/cSupports.h"
#include "link/mErrCodes.h"
#include "link/mVersion.h"

#include <QtTest>

namespace {

// Gives the gun information record this firmware version, as a report from the grip would.
void setFirmware(const QString& version)
{
    const QStringList parts = version.split(QLatin1Char('.'));
    const int revision = parts[2].toInt();
    QString report = QStringLiteral("43") + QStringLiteral("41").repeated(10);
    report += mAppFunc::HexByte(parts[0].toInt()) + mAppFunc::HexByte(parts[1].toInt()) +
              mAppFunc::HexByte(revision & 255) + mAppFunc::HexByte(revision >> 8);
    report += QStringLiteral("01010100").repeated(3);
    GunInfo().Comm2Obj(report);
    QCOMPARE(GunInfo().FirmwareBuild(), version);
}

using Flag = bool (cSupports::*)() const;

const QList<QPair<QString, Flag>>& allFlags()
{
    static const QList<QPair<QString, Flag>> flags = {
        {"EyeMounting", &cSupports::EyeMounting},
        {"LoaderMounting", &cSupports::LoaderMounting},
        {"TriggerFilter", &cSupports::TriggerFilter},
        {"fmodeClassic", &cSupports::fmodeClassic},
        {"fmodeSemiAuto", &cSupports::fmodeSemiAuto},
        {"fmodeFullAuto", &cSupports::fmodeFullAuto},
        {"fmodeBurst", &cSupports::fmodeBurst},
        {"fmodeTurbo", &cSupports::fmodeTurbo},
        {"fmodeSniper", &cSupports::fmodeSniper},
        {"fmodeBurst3", &cSupports::fmodeBurst3},
        {"fmodeHyper", &cSupports::fmodeHyper},
        {"fmodeOpenBolt", &cSupports::fmodeOpenBolt},
        {"PreAlert60sec", &cSupports::PreAlert60sec},
        {"PreAlert1", &cSupports::PreAlert1},
        {"PreAlert2", &cSupports::PreAlert2},
        {"Options", &cSupports::Options},
        {"Hyper", &cSupports::Hyper},
        {"NineVolt", &cSupports::NineVolt},
        {"hmodeUnlimited", &cSupports::hmodeUnlimited},
        {"hmodeHundredPercent", &cSupports::hmodeHundredPercent},
        {"hmodeSeventyfivePercent", &cSupports::hmodeSeventyfivePercent},
        {"hmodeFiftyPercent", &cSupports::hmodeFiftyPercent},
        {"hmodeThirtythreePercent", &cSupports::hmodeThirtythreePercent},
    };
    return flags;
}

} // namespace

class TstCSupports : public QObject {
    Q_OBJECT

private slots:
    void init() { ResetGunInfo(); }
    void cleanup() { ResetGunInfo(); }

    void versionComparison_data();
    void versionComparison();
    void flagsAtThresholds_data();
    void flagsAtThresholds();
    void flagsFollowTheGripOnEveryCall();
    void firingModeTable_data();
    void firingModeTable();
    void hyperModeTable_data();
    void hyperModeTable();
    void visibilityOfOtherCodes_data();
    void visibilityOfOtherCodes();
};

void TstCSupports::versionComparison_data()
{
    QTest::addColumn<QString>("a");
    QTest::addColumn<QString>("b");
    QTest::addColumn<int>("result");
    QTest::newRow("fields compare as numbers") << "1.1.70" << "1.1.4" << -1;
    QTest::newRow("b newer") << "2.0.20" << "4.0.0" << 1;
    QTest::newRow("equal") << "4.0.0" << "4.0.0" << 0;
    QTest::newRow("threshold 1.1.70 one below") << "1.1.69" << "1.1.70" << 1;
    QTest::newRow("minor outweighs revision") << "1.2.0" << "1.1.65535" << -1;
}

void TstCSupports::versionComparison()
{
    QFETCH(QString, a);
    QFETCH(QString, b);
    QFETCH(int, result);
    QCOMPARE(mVersion::VersionCompare(a, b), result);
}

void TstCSupports::flagsAtThresholds_data()
{
    // The flags that are set, in interface order, as one text per firmware.
    QTest::addColumn<QString>("firmware");
    QTest::addColumn<QStringList>("set");
    const QStringList always = {"fmodeClassic", "fmodeSemiAuto"};
    const QStringList fullAuto = always + QStringList{"fmodeFullAuto"};
    const QStringList sniper = fullAuto + QStringList{"fmodeSniper"};
    const QStringList options = QStringList{"EyeMounting", "LoaderMounting", "TriggerFilter"} + sniper;
    const QStringList burst3 = options + QStringList{"fmodeBurst3", "fmodeHyper"};
    const QStringList hyper = QStringList{"Hyper", "hmodeUnlimited", "hmodeHundredPercent", "hmodeSeventyfivePercent",
                                          "hmodeFiftyPercent", "hmodeThirtythreePercent"};
    QTest::newRow("1.1.3") << "1.1.3" << always;
    QTest::newRow("1.1.4") << "1.1.4" << fullAuto;
    QTest::newRow("1.1.9: mode 4 yes, mode 6 no") << "1.1.9" << fullAuto;
    QTest::newRow("1.1.10") << "1.1.10" << sniper;
    QTest::newRow("1.1.69") << "1.1.69" << sniper;
    QTest::newRow("1.1.70") << "1.1.70" << options + QStringList{"PreAlert60sec", "Options"};
    QTest::newRow("2.0.19") << "2.0.19" << options + QStringList{"PreAlert60sec", "Options"};
    QTest::newRow("2.0.20") << "2.0.20" << burst3 + QStringList{"PreAlert60sec", "Options"};
    QTest::newRow("3.255.65535") << "3.255.65535" << burst3 + QStringList{"PreAlert60sec", "Options"};
    QTest::newRow("4.0.0") << "4.0.0" << burst3 + QStringList{"PreAlert60sec", "Options"} + hyper;
    QTest::newRow("4.0.4") << "4.0.4" << burst3 + QStringList{"PreAlert60sec", "Options"} + hyper;
    QTest::newRow("4.0.5: nine volt only here") << "4.0.5" << burst3 + QStringList{"PreAlert60sec", "Options", "NineVolt"} + hyper;
    QTest::newRow("4.0.6") << "4.0.6" << burst3 + QStringList{"PreAlert60sec", "Options"} + hyper;
}

void TstCSupports::flagsAtThresholds()
{
    QFETCH(QString, firmware);
    QFETCH(QStringList, set);
    setFirmware(firmware);
    for (const auto& [name, flag] : allFlags())
        QVERIFY2((Supports().*flag)() == set.contains(name), qPrintable(name));
}

void TstCSupports::flagsFollowTheGripOnEveryCall()
{
    setFirmware(QStringLiteral("4.0.0"));
    QVERIFY(Supports().Hyper());
    setFirmware(QStringLiteral("2.0.20"));
    QVERIFY(!Supports().Hyper());
    QVERIFY(Supports().fmodeHyper());
}

void TstCSupports::firingModeTable_data()
{
    QTest::addColumn<QString>("firmware");
    QTest::addColumn<QList<bool>>("visible"); // in list order
    QTest::newRow("1.1.0") << "1.1.0" << QList<bool>{true, true, false, false, false, false, false, false, false};
    QTest::newRow("1.1.9") << "1.1.9" << QList<bool>{true, true, false, false, false, true, false, false, false};
    QTest::newRow("1.1.10") << "1.1.10" << QList<bool>{true, true, true, false, false, true, false, false, false};
    QTest::newRow("2.0.20") << "2.0.20" << QList<bool>{true, true, true, false, false, true, false, true, true};
}

void TstCSupports::firingModeTable()
{
    QFETCH(QString, firmware);
    QFETCH(QList<bool>, visible);
    setFirmware(firmware);
    mModes::FiringModesGlobalArraySet();
    const QList<mModes::tModeEntry>& table = mModes::FiringModes();
    const QStringList captions = {"SemiAuto", "Classic", "Sniper", "Turbo", "Burst", "NXL Full Auto", "Open Bolt", "Burst 3", "Ramping"};
    const QList<int> codes = {1, 0, 6, 3, 2, 4, 5, 8, 16};
    QCOMPARE(table.size(), 9);
    for (int i = 0; i < 9; ++i) {
        QCOMPARE(table[i].caption, captions[i]);
        QCOMPARE(table[i].code, codes[i]);
        QCOMPARE(table[i].visible, visible[i]);
    }
    // Evaluated when filled, not when read.
    setFirmware(QStringLiteral("1.1.0"));
    QCOMPARE(mModes::FiringModes()[2].visible, visible[2]);
}

void TstCSupports::hyperModeTable_data()
{
    QTest::addColumn<QString>("firmware");
    QTest::addColumn<bool>("visible");
    QTest::newRow("3.9.9") << "3.9.9" << false;
    QTest::newRow("4.0.0") << "4.0.0" << true;
}

void TstCSupports::hyperModeTable()
{
    QFETCH(QString, firmware);
    QFETCH(bool, visible);
    setFirmware(firmware);
    mModes::HyperModesGlobalArraySet();
    const QList<mModes::tModeEntry>& table = mModes::HyperModes();
    const QStringList captions = {"Unlimited Ramping", "100% Ramping", "75% Ramping", "50% Ramping", "33% Ramping"};
    const QList<int> codes = {1, 2, 4, 8, 16};
    QCOMPARE(table.size(), 5);
    for (int i = 0; i < 5; ++i) {
        QCOMPARE(table[i].caption, captions[i]);
        QCOMPARE(table[i].code, codes[i]);
        QCOMPARE(table[i].visible, visible);
    }
}

void TstCSupports::visibilityOfOtherCodes_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<bool>("firing");
    QTest::addColumn<bool>("ramping");
    QTest::newRow("-1") << -1 << false << false;
    QTest::newRow("0") << 0 << true << false;
    QTest::newRow("3") << 3 << false << false;
    QTest::newRow("7") << 7 << false << false;
    QTest::newRow("9") << 9 << false << false;
    QTest::newRow("15") << 15 << false << false;
    QTest::newRow("16") << 16 << true << true;
    QTest::newRow("17") << 17 << false << false;
    QTest::newRow("32") << 32 << false << false;
}

void TstCSupports::visibilityOfOtherCodes()
{
    QFETCH(int, code);
    QFETCH(bool, firing);
    QFETCH(bool, ramping);
    setFirmware(QStringLiteral("9.9.9"));
    QCOMPARE(mModes::FiringModeVisible(code), firing);
    QCOMPARE(mModes::HyperModeVisible(code), ramping);
}

QTEST_GUILESS_MAIN(TstCSupports)
#include "tst_cSupports.moc"
