// The feature flags at their firmware thresholds (and so the version comparison behind them), and
// the mode tables that follow them.
#include "GripTestSupport.h"

#include "grip/cGunInfo.h"
#include "grip/cSupports.h"
#include "grip/cModeTables.h"

#include <QtTest>

using namespace griptest;

namespace {

using Flag = bool (cSupports::*)() const;
#define FLAG(name) {#name, &cSupports::name}
const QList<QPair<const char*, Flag>> kFlags = {
    FLAG(EyeMounting), FLAG(LoaderMounting), FLAG(TriggerFilter), FLAG(fmodeClassic), FLAG(fmodeSemiAuto),
    FLAG(fmodeFullAuto), FLAG(fmodeBurst), FLAG(fmodeTurbo), FLAG(fmodeSniper), FLAG(fmodeBurst3), FLAG(fmodeHyper),
    FLAG(fmodeOpenBolt), FLAG(PreAlert60sec), FLAG(PreAlert1), FLAG(PreAlert2), FLAG(Options), FLAG(Hyper),
    FLAG(NineVolt), FLAG(hmodeUnlimited), FLAG(hmodeHundredPercent), FLAG(hmodeSeventyfivePercent),
    FLAG(hmodeFiftyPercent), FLAG(hmodeThirtythreePercent)};
#undef FLAG

QString table(const QList<mModes::tModeEntry>& entries)
{
    QStringList text;
    for (const mModes::tModeEntry& e : entries)
        text.append(QStringLiteral("%1=%2%3").arg(e.caption).arg(e.code).arg(e.visible ? "" : " hidden"));
    return text.join(QStringLiteral(", "));
}

} // namespace

class TstCSupports : public QObject {
    Q_OBJECT

private slots:
    void flags_data()
    {
        QTest::addColumn<QString>("firmware");
        QTest::addColumn<QString>("on"); // in interface order
        const QString modes = QStringLiteral("fmodeClassic fmodeSemiAuto fmodeFullAuto fmodeSniper");
        const QString v1170 = QStringLiteral("EyeMounting LoaderMounting TriggerFilter ") + modes + " PreAlert60sec Options";
        const QString v2020 = QStringLiteral("EyeMounting LoaderMounting TriggerFilter ") + modes +
                              " fmodeBurst3 fmodeHyper PreAlert60sec Options";
        const QString ramping = QStringLiteral(" hmodeUnlimited hmodeHundredPercent hmodeSeventyfivePercent "
                                               "hmodeFiftyPercent hmodeThirtythreePercent");
        QTest::newRow("1.1.3") << "1.1.3" << "fmodeClassic fmodeSemiAuto";
        QTest::newRow("1.1.9: mode 4, not 6") << "1.1.9" << "fmodeClassic fmodeSemiAuto fmodeFullAuto";
        QTest::newRow("1.1.10") << "1.1.10" << modes;
        QTest::newRow("1.1.69") << "1.1.69" << modes;
        QTest::newRow("1.1.70: newer than 1.1.4") << "1.1.70" << v1170;
        QTest::newRow("2.0.19") << "2.0.19" << v1170;
        QTest::newRow("2.0.20: older than 4.0.0") << "2.0.20" << v2020;
        QTest::newRow("3.255.65535") << "3.255.65535" << v2020;
        QTest::newRow("4.0.0: equal counts") << "4.0.0" << v2020 + " Hyper" + ramping;
        QTest::newRow("4.0.5: nine volt") << "4.0.5" << v2020 + " Hyper NineVolt" + ramping;
        QTest::newRow("4.0.6") << "4.0.6" << v2020 + " Hyper" + ramping;
    }

    void flags()
    {
        // Rows run one after another: a flag that kept an earlier grip's answer shows.
        QFETCH(QString, firmware);
        QFETCH(QString, on);
        GripHarness h(QStringLiteral("firmware=") + firmware);
        RefreshGunInfo(h.session, true);
        QStringList set;
        for (const auto& [name, flag] : kFlags)
            if ((h.session.Supports().*flag)())
                set.append(QLatin1String(name));
        QCOMPARE(set.join(QLatin1Char(' ')), on);
    }

    void modeTables_data()
    {
        QTest::addColumn<QString>("firmware");
        QTest::addColumn<QString>("firing");
        QTest::addColumn<QString>("ramping");
        QTest::newRow("1.1.9") << "1.1.9"
            << "SemiAuto=1, Classic=0, Sniper=6 hidden, Turbo=3 hidden, Burst=2 hidden, NXL Full Auto=4, "
               "Open Bolt=5 hidden, Burst 3=8 hidden, Ramping=16 hidden"
            << "Unlimited Ramping=1 hidden, 100% Ramping=2 hidden, 75% Ramping=4 hidden, 50% Ramping=8 hidden, "
               "33% Ramping=16 hidden";
        QTest::newRow("4.0.0") << "4.0.0"
            << "SemiAuto=1, Classic=0, Sniper=6, Turbo=3 hidden, Burst=2 hidden, NXL Full Auto=4, "
               "Open Bolt=5 hidden, Burst 3=8, Ramping=16"
            << "Unlimited Ramping=1, 100% Ramping=2, 75% Ramping=4, 50% Ramping=8, 33% Ramping=16";
    }

    void modeTables()
    {
        QFETCH(QString, firmware);
        QFETCH(QString, firing);
        QFETCH(QString, ramping);
        GripHarness h(QStringLiteral("firmware=") + firmware);
        RefreshGunInfo(h.session, true);
        cModeTables& modes = h.session.Modes();
        modes.FiringModesGlobalArraySet();
        modes.HyperModesGlobalArraySet();
        h.session.GunInfo() = cGunInfo(); // another grip (4.0.0): the tables keep what they were filled with
        QCOMPARE(table(modes.FiringModes()), firing);
        QCOMPARE(table(modes.HyperModes()), ramping);
        // Codes that name no mode are never visible.
        const cSupports& flags = h.session.Supports();
        QVERIFY(!mModes::FiringModeVisible(7, flags) && !mModes::FiringModeVisible(17, flags) && !mModes::HyperModeVisible(3, flags));
    }
};

QTEST_GUILESS_MAIN(TstCSupports)
#include "tst_cSupports.moc"
