// The options and ramping records: kept in the preferences under their own keys, with their
// range rules, their frames, and no exchange with a grip that lacks them.
#include "GripTestSupport.h"

#include "grip/cHyper.h"
#include "grip/cOptions.h"
#include "link/cError.h"
#include "link/mErrCodes.h"
#include "shell/cRegistrySettings.h"

#include <QtTest>

using griptest::GripHarness;

namespace {

QVariant stored(const QString& section, const QString& key)
{
    QSettings store(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("Marlo"), QStringLiteral("Marlo"));
    return store.value(section + QLatin1Char('/') + key);
}

void setOption(cOptions& o, const QString& name, int value)
{
    if (name == QLatin1String("EyeMounted")) o.setEyeMounted(value);
    else if (name == QLatin1String("TriggerFilterOn")) o.setTriggerFilterOn(value);
    else if (name == QLatin1String("EyeCheckMaxTimeOn")) o.setEyeCheckMaxTimeOn(value);
    else if (name == QLatin1String("UseEye")) o.setUseEye(value);
    else if (name == QLatin1String("LoaderOn")) o.setLoaderOn(value);
    else if (name == QLatin1String("LedOn")) o.setLedOn(value);
    else if (name == QLatin1String("EyeCheckOKTimeOn")) o.setEyeCheckOKTimeOn(value);
    else if (name == QLatin1String("CTOAdjust")) o.setCTOAdjust(value);
    else if (name == QLatin1String("EyeCheckMaxTime")) o.setEyeCheckMaxTime(value);
    else if (name == QLatin1String("EyeCheckOKTime")) o.setEyeCheckOKTime(value);
    else if (name == QLatin1String("DefaultLoadTime")) o.setDefaultLoadTime(value);
    else QFAIL("unknown option");
}

} // namespace

class TstCOptionsHyper : public QObject {
    Q_OBJECT

private slots:
    void init() { griptest::clearPreferences(); }

    void optionKeys_data();
    void optionKeys();
    void optionTimeRanges_data();
    void optionTimeRanges();
    void optionsUploadPayload_data();
    void optionsUploadPayload();
    void optionsDownload_data();
    void optionsDownload();
    void garbageInStore_data();
    void garbageInStore();
    void assignAndDefaultsHaveNoEffect();

    void hyperRanges_data();
    void hyperRanges();
    void hyperUploadPayload_data();
    void hyperUploadPayload();
    void hyperDownload_data();
    void hyperDownload();
    void hyperModeThatDoesNotFitIsNotSent();

    void unsupportedFirmwareExchangesNothing_data();
    void unsupportedFirmwareExchangesNothing();
    void sharedBetweenObjects();
};

void TstCOptionsHyper::optionKeys_data()
{
    QTest::addColumn<QString>("property");
    QTest::addColumn<QString>("key");
    QTest::addColumn<int>("value");
    QTest::addColumn<QString>("text");
    QTest::newRow("EyeMounted") << "EyeMounted" << "EyeMounted" << 1 << "True";
    QTest::newRow("TriggerFilterOn") << "TriggerFilterOn" << "TriggerFilter" << 1 << "True";
    QTest::newRow("EyeCheckMaxTimeOn") << "EyeCheckMaxTimeOn" << "EyeCheckMax" << 1 << "True";
    QTest::newRow("UseEye") << "UseEye" << "UseEye" << 0 << "False";
    QTest::newRow("EyeCheckMaxTime") << "EyeCheckMaxTime" << "EyeCheckMaxTime" << 17 << "17";
    QTest::newRow("DefaultLoadTime") << "DefaultLoadTime" << "DefaultLoadTime" << 126 << "126";
    QTest::newRow("LoaderOn") << "LoaderOn" << "Loader" << 1 << "True";
    QTest::newRow("LedOn") << "LedOn" << "LED" << 1 << "True";
    QTest::newRow("EyeCheckOKTimeOn") << "EyeCheckOKTimeOn" << "EyeCheckOK" << 1 << "True";
    QTest::newRow("EyeCheckOKTime") << "EyeCheckOKTime" << "EyeCheckOKTime" << 255 << "255";
    QTest::newRow("CTOAdjust") << "CTOAdjust" << "CTOAdjust" << 1 << "True";
}

void TstCOptionsHyper::optionKeys()
{
    QFETCH(QString, property);
    QFETCH(QString, key);
    QFETCH(int, value);
    QFETCH(QString, text);
    cOptions options;
    setOption(options, property, value);
    QCOMPARE(stored(QStringLiteral("Options"), key).toString(), text);
}

void TstCOptionsHyper::optionTimeRanges_data()
{
    QTest::addColumn<QString>("property");
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("kept");
    QTest::newRow("EyeCheckMaxTime 0") << "EyeCheckMaxTime" << 0 << 100;
    QTest::newRow("EyeCheckMaxTime 1") << "EyeCheckMaxTime" << 1 << 1;
    QTest::newRow("EyeCheckMaxTime 255") << "EyeCheckMaxTime" << 255 << 255;
    QTest::newRow("EyeCheckMaxTime 256") << "EyeCheckMaxTime" << 256 << 100;
    QTest::newRow("EyeCheckOKTime -1") << "EyeCheckOKTime" << -1 << 100;
    QTest::newRow("EyeCheckOKTime 255") << "EyeCheckOKTime" << 255 << 255;
    QTest::newRow("DefaultLoadTime 0") << "DefaultLoadTime" << 0 << 45;
    QTest::newRow("DefaultLoadTime 126") << "DefaultLoadTime" << 126 << 126;
    QTest::newRow("DefaultLoadTime 127") << "DefaultLoadTime" << 127 << 45;
}

void TstCOptionsHyper::optionTimeRanges()
{
    QFETCH(QString, property);
    QFETCH(int, value);
    QFETCH(int, kept);
    cOptions options;
    qint32 answered = 0;
    if (property == QLatin1String("EyeCheckMaxTime"))
        answered = options.setEyeCheckMaxTime(value);
    else if (property == QLatin1String("EyeCheckOKTime"))
        answered = options.setEyeCheckOKTime(value);
    else
        answered = options.setDefaultLoadTime(value);
    QCOMPARE(answered, kept);
    QCOMPARE(stored(QStringLiteral("Options"), property).toString(), QString::number(kept));

    // A value out of range written straight into the store reads as the default too.
    griptest::clearPreferences();
    cRegistrySettings::SaveSetting(QStringLiteral("Options"), property, QString::number(value));
    const qint32 read = property == QLatin1String("EyeCheckMaxTime") ? options.EyeCheckMaxTime()
                        : property == QLatin1String("EyeCheckOKTime") ? options.EyeCheckOKTime()
                                                                      : options.DefaultLoadTime();
    QCOMPARE(read, kept);
}

void TstCOptionsHyper::optionsUploadPayload_data()
{
    QTest::addColumn<QStringList>("set"); // "Name=value"
    QTest::addColumn<QString>("payload");
    QTest::newRow("empty store") << QStringList{} << QStringLiteral("280064642D");
    QTest::newRow("bit 0 eye mounted") << QStringList{"EyeMounted=1"} << QStringLiteral("280164642D");
    QTest::newRow("bit 1 loader") << QStringList{"LoaderOn=1"} << QStringLiteral("280264642D");
    QTest::newRow("bit 2 trigger filter") << QStringList{"TriggerFilterOn=1"} << QStringLiteral("280464642D");
    QTest::newRow("bit 3 LED") << QStringList{"LedOn=1"} << QStringLiteral("280864642D");
    QTest::newRow("bit 4 eye check max") << QStringList{"EyeCheckMaxTimeOn=1"} << QStringLiteral("281064642D");
    QTest::newRow("bit 5 eye check OK") << QStringList{"EyeCheckOKTimeOn=1"} << QStringLiteral("282064642D");
    QTest::newRow("bit 6 use eye") << QStringList{"UseEye=1"} << QStringLiteral("284064642D");
    QTest::newRow("bit 7 CTO adjust") << QStringList{"CTOAdjust=1"} << QStringLiteral("288064642D");
    QTest::newRow("times in order max, OK, load")
        << QStringList{"EyeCheckMaxTime=1", "EyeCheckOKTime=2", "DefaultLoadTime=3"} << QStringLiteral("2800010203");
}

void TstCOptionsHyper::optionsUploadPayload()
{
    QFETCH(QStringList, set);
    QFETCH(QString, payload);
    GripHarness h; // firmware 4.0.0 has options
    cOptions options;
    for (const QString& item : set)
        setOption(options, item.section(QLatin1Char('='), 0, 0), item.section(QLatin1Char('='), 1).toInt());
    options.Upload();
    QCOMPARE(h.codes(), (QList<int>{0x13, 0x28}));
    QCOMPARE(h.payloads(0x28), QStringList{payload});
}

void TstCOptionsHyper::optionsDownload_data()
{
    QTest::addColumn<QString>("report");
    QTest::addColumn<int>("bits"); // expected switches as a byte, bit order of the link
    QTest::addColumn<int>("maxTime");
    QTest::addColumn<int>("okTime");
    QTest::addColumn<int>("loadTime");
    QTest::newRow("all switches") << "48FF010203" << 0xFF << 1 << 2 << 3;
    QTest::newRow("no switches") << "4800646432" << 0 << 100 << 100 << 50;
    QTest::newRow("load time 0x7F gets its default") << "48017F7F7F" << 0x01 << 127 << 127 << 45;
    QTest::newRow("load time 0x7E kept") << "48A0FFFF7E" << 0xA0 << 255 << 255 << 126;
    QTest::newRow("zero times get their defaults") << "4842000000" << 0x42 << 100 << 100 << 45;
}

void TstCOptionsHyper::optionsDownload()
{
    QFETCH(QString, report);
    QFETCH(int, bits);
    QFETCH(int, maxTime);
    QFETCH(int, okTime);
    QFETCH(int, loadTime);
    GripHarness h;
    h.replies[0x18] = griptest::framed(report);
    cOptions options;
    options.Download();
    QCOMPARE(options.EyeMounted(), bool(bits & 0x01));
    QCOMPARE(options.LoaderOn(), bool(bits & 0x02));
    QCOMPARE(options.TriggerFilterOn(), bool(bits & 0x04));
    QCOMPARE(options.LedOn(), bool(bits & 0x08));
    QCOMPARE(options.EyeCheckMaxTimeOn(), bool(bits & 0x10));
    QCOMPARE(options.EyeCheckOKTimeOn(), bool(bits & 0x20));
    QCOMPARE(options.UseEye(), bool(bits & 0x40));
    QCOMPARE(options.CTOAdjust(), bool(bits & 0x80));
    QCOMPARE(options.EyeCheckMaxTime(), maxTime);
    QCOMPARE(options.EyeCheckOKTime(), okTime);
    QCOMPARE(options.DefaultLoadTime(), loadTime);
    // Kept in the store under the program's keys.
    QCOMPARE(stored(QStringLiteral("Options"), QStringLiteral("LED")).toString(),
             cRegistrySettings::BoolText(bits & 0x08));
    QCOMPARE(stored(QStringLiteral("Options"), QStringLiteral("DefaultLoadTime")).toString(), QString::number(loadTime));
}

void TstCOptionsHyper::garbageInStore_data()
{
    QTest::addColumn<QString>("section");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("text");
    QTest::newRow("options switch") << "Options" << "LED" << "maybe";
    QTest::newRow("options time") << "Options" << "EyeCheckOKTime" << "ten";
    QTest::newRow("ramping shots") << "Hyper" << "Shots" << "x3";
    QTest::newRow("ramping mode") << "Hyper" << "HyperMode" << "";
}

void TstCOptionsHyper::garbageInStore()
{
    QFETCH(QString, section);
    QFETCH(QString, key);
    QFETCH(QString, text);
    cRegistrySettings::SaveSetting(section, key, text);
    cOptions options;
    cHyper hyper;
    try {
        if (key == QLatin1String("LED"))
            (void)options.LedOn();
        else if (key == QLatin1String("EyeCheckOKTime"))
            (void)options.EyeCheckOKTime();
        else if (key == QLatin1String("Shots"))
            (void)hyper.Shots();
        else
            (void)hyper.HyperMode();
        QFAIL("the stored text was taken");
    } catch (const MarloError& e) {
        QCOMPARE(e.Number(), mErrCodes::RT_TYPE_MISMATCH);
        QCOMPARE(e.Trail().first().module, section == QLatin1String("Options") ? QStringLiteral("cOptions") : QStringLiteral("cHyper"));
    }
}

void TstCOptionsHyper::assignAndDefaultsHaveNoEffect()
{
    cOptions options;
    options.setLedOn(true);
    options.setDefaultLoadTime(99);
    options.AssignDefaults();
    options.Assign(false, false, false, false, 0, 45, false, false, false, 0, false);
    QCOMPARE(options.LedOn(), true);
    QCOMPARE(options.DefaultLoadTime(), 99);

    cHyper hyper;
    hyper.setShots(7);
    hyper.setHyperMode(4);
    hyper.AssignDefaults();
    QCOMPARE(hyper.Shots(), 7);
    QCOMPARE(hyper.HyperMode(), 4);
}

void TstCOptionsHyper::hyperRanges_data()
{
    QTest::addColumn<QString>("property");
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("kept");
    QTest::newRow("Shots 0") << "Shots" << 0 << 3;
    QTest::newRow("Shots 1") << "Shots" << 1 << 1;
    QTest::newRow("Shots 255") << "Shots" << 255 << 255;
    QTest::newRow("Shots 256") << "Shots" << 256 << 3;
    QTest::newRow("HyperTime 0") << "HyperTime" << 0 << 100;
    QTest::newRow("HyperTime 200") << "HyperTime" << 200 << 200;
    QTest::newRow("HyperTime 300") << "HyperTime" << 300 << 100;
    QTest::newRow("HyperMode 0 unchecked") << "HyperMode" << 0 << 0;
    QTest::newRow("HyperMode 300 unchecked") << "HyperMode" << 300 << 300;
}

void TstCOptionsHyper::hyperRanges()
{
    QFETCH(QString, property);
    QFETCH(int, value);
    QFETCH(int, kept);
    cHyper hyper;
    const qint32 answered = property == QLatin1String("Shots")       ? hyper.setShots(value)
                            : property == QLatin1String("HyperTime") ? hyper.setHyperTime(value)
                                                                     : hyper.setHyperMode(value);
    QCOMPARE(answered, kept);
    QCOMPARE(stored(QStringLiteral("Hyper"), property).toString(), QString::number(kept));
    griptest::clearPreferences();
    cRegistrySettings::SaveSetting(QStringLiteral("Hyper"), property, QString::number(value));
    const qint32 read = property == QLatin1String("Shots")       ? hyper.Shots()
                        : property == QLatin1String("HyperTime") ? hyper.HyperTime()
                                                                 : hyper.HyperMode();
    QCOMPARE(read, kept);
}

void TstCOptionsHyper::hyperUploadPayload_data()
{
    QTest::addColumn<int>("shots");
    QTest::addColumn<int>("time");
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("payload");
    QTest::newRow("no stored values") << -1 << -1 << -1 << "29036401";
    QTest::newRow("given values") << 10 << 255 << 16 << "290AFF10";
    QTest::newRow("mode 0") << 1 << 1 << 0 << "29010100";
}

void TstCOptionsHyper::hyperUploadPayload()
{
    QFETCH(int, shots);
    QFETCH(int, time);
    QFETCH(int, mode);
    QFETCH(QString, payload);
    GripHarness h;
    cHyper hyper;
    if (shots >= 0) {
        hyper.setShots(shots);
        hyper.setHyperTime(time);
        hyper.setHyperMode(mode);
    }
    hyper.Upload();
    QCOMPARE(h.codes(), (QList<int>{0x13, 0x29}));
    QCOMPARE(h.payloads(0x29), QStringList{payload});
}

void TstCOptionsHyper::hyperDownload_data()
{
    QTest::addColumn<QString>("report");
    QTest::addColumn<int>("shots");
    QTest::addColumn<int>("time");
    QTest::addColumn<int>("mode");
    QTest::newRow("plain") << "49056408" << 5 << 100 << 8;
    QTest::newRow("zeros get defaults, mode kept") << "49000000" << 3 << 100 << 0;
    QTest::newRow("largest") << "49FFFFFF" << 255 << 255 << 255;
}

void TstCOptionsHyper::hyperDownload()
{
    QFETCH(QString, report);
    QFETCH(int, shots);
    QFETCH(int, time);
    QFETCH(int, mode);
    GripHarness h;
    h.replies[0x19] = griptest::framed(report);
    cHyper hyper;
    hyper.Download();
    QCOMPARE(h.codes(), (QList<int>{0x13, 0x19}));
    QCOMPARE(hyper.Shots(), shots);
    QCOMPARE(hyper.HyperTime(), time);
    QCOMPARE(hyper.HyperMode(), mode);
    QCOMPARE(stored(QStringLiteral("Hyper"), QStringLiteral("HyperMode")).toString(), QString::number(mode));
}

void TstCOptionsHyper::hyperModeThatDoesNotFitIsNotSent()
{
    GripHarness h;
    cHyper hyper;
    hyper.setHyperMode(256);
    QVERIFY_THROWS_EXCEPTION(MarloError, hyper.Upload());
    try {
        hyper.Upload();
    } catch (const MarloError& e) {
        QCOMPARE(e.Number(), mErrCodes::RT_INVALID_CALL);
        QCOMPARE(e.Trail().last().module, QStringLiteral("cHyper"));
    }
    QVERIFY(h.payloads(0x29).isEmpty());
}

void TstCOptionsHyper::unsupportedFirmwareExchangesNothing_data()
{
    QTest::addColumn<QString>("firmware");
    QTest::addColumn<bool>("options");
    QTest::addColumn<bool>("ramping");
    QTest::newRow("1.1.69") << "1.1.69" << false << false;
    QTest::newRow("1.1.70") << "1.1.70" << true << false;
    QTest::newRow("3.255.65535") << "3.255.65535" << true << false;
    QTest::newRow("4.0.0") << "4.0.0" << true << true;
}

void TstCOptionsHyper::unsupportedFirmwareExchangesNothing()
{
    QFETCH(QString, firmware);
    QFETCH(bool, options);
    QFETCH(bool, ramping);
    GripHarness h(QStringLiteral("firmware=") + firmware);
    cOptions o;
    cHyper r;
    o.Download();
    o.Upload();
    r.Download();
    r.Upload();
    QList<int> expected;
    for (const int code : {0x18, 0x28}) {
        expected << 0x13;
        if (options)
            expected << code;
    }
    for (const int code : {0x19, 0x29}) {
        expected << 0x13;
        if (ramping)
            expected << code;
    }
    QCOMPARE(h.codes(), expected);
    QCOMPARE(GripError().ErrorCode(), cError::NoError);
}

void TstCOptionsHyper::sharedBetweenObjects()
{
    cOptions first;
    cOptions second;
    first.setUseEye(true);
    QCOMPARE(second.UseEye(), true);
    cHyper a;
    cHyper b;
    a.setShots(9);
    QCOMPARE(b.Shots(), 9);
    QCOMPARE(&OptionsRecord(), &OptionsRecord());
    QCOMPARE(HyperRecord().Shots(), 9);
}

QTEST_GUILESS_MAIN(TstCOptionsHyper)
#include "tst_cOptionsHyper.moc"
