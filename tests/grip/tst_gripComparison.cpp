// The comparison of what a put would send with what the grip holds: which values differ, the
// summary, a firmware without options and ramping, and that reading the grip for it leaves the
// session's records (and so the next put) as they were, even when the grip falls silent part-way.
// (A grip that refuses: marlo-cli diff.)
#include "GripTestSupport.h"

#include "base/mErrCodes.h"
#include "grip/mGripComparison.h"

#include <QtTest>

using namespace griptest;
using mGripComparison::tComparison;

namespace {

// The virtual grip's own values, record by record, in the order of fields().
const QList<QPair<GripRecord, QString>> kGripHolds = {
    {GripRecord::Timing, QStringLiteral("10 10 30 35 28 0")},
    {GripRecord::GameTimer, QStringLiteral("10 0 60 0 30")},
    {GripRecord::Options, QStringLiteral("0 0 0 0 100 45 0 0 0 100 0")},
    {GripRecord::Ramping, QStringLiteral("3 100 1")},
};

const QStringList kNames = {
    "ShotTime", "Dwelltime", "CycleTimeOpen", "LoadTime", "CycleTimeClose", "FiringMode",
    "CountDownTimer", "PreAlert1On", "PreAlert1Time", "PreAlert2On", "PreAlert2Time",
    "EyeMounted", "TriggerFilterOn", "EyeCheckMaxTimeOn", "UseEye", "EyeCheckMaxTime", "DefaultLoadTime",
    "LoaderOn", "LedOn", "EyeCheckOKTimeOn", "EyeCheckOKTime", "CTOAdjust",
    "Shots", "HyperTime", "HyperMode",
};

// The put side: the grip's values with the given ones (by name) changed: a switch turned on, a
// number one up.
void fillPut(cGripSession& put, const QStringList& changed)
{
    int index = 0;
    for (const auto& [record, text] : kGripHolds) {
        QStringList values = text.split(QLatin1Char(' '));
        for (QString& value : values) {
            if (changed.contains(kNames[index++]))
                value = QString::number(value.toInt() == 0 ? 1 : value.toInt() + 1);
        }
        setFields(put, record, values.join(QLatin1Char(' ')));
    }
}

QStringList differing(const tComparison& comparison)
{
    QStringList names;
    for (const mGripComparison::tValue& value : comparison.values)
        if (value.Differs())
            names.append(value.name);
    return names;
}

QString allFields(cGripSession& session)
{
    QStringList text;
    for (const GripRecord record : mGripComparison::PutRecords())
        text.append(fields(session, record));
    return text.join(QStringLiteral(" | "));
}

} // namespace

class tst_gripComparison : public QObject {
    Q_OBJECT
private slots:
    void init() { clearPreferences(); }

    void comparison_data()
    {
        QTest::addColumn<QString>("grip");
        QTest::addColumn<QStringList>("changed");
        QTest::addColumn<int>("silentOn"); // the command the grip does not answer, or 0
        QTest::addColumn<QStringList>("expected"); // the differing values, "unsupported ..." or an error number
        QTest::addColumn<QString>("summary");

        const QString fw = QStringLiteral("firmware=4.0.5");
        QTest::newRow("same") << fw << QStringList() << 0 << QStringList() << "The grip holds these settings";
        for (const QString& name : kNames)
            QTest::newRow(qPrintable(name + " differs")) << fw << QStringList{name} << 0 << QStringList{name} << "1 value differs";
        QTest::newRow("firmware without options and ramping") << QStringLiteral("firmware=1.1.69") << QStringList{"UseEye", "Shots"} << 0
                                                              << QStringList{"unsupported options ramping"} << "The grip holds these settings";
        QTest::newRow("grip silent on the options") << fw << QStringList{"Shots"} << 0x18
                                                    << QStringList{QString::number(mErrCodes::ERR_DL_OPTIONS)} << "";
    }
    void comparison()
    {
        QFETCH(QString, grip);
        QFETCH(QStringList, changed);
        QFETCH(int, silentOn);
        QFETCH(QStringList, expected);
        QFETCH(QString, summary);
        GripHarness h(grip);
        if (silentOn)
            h.replies[quint8(silentOn)] = QByteArray();
        cGripSession put(h.link.link, cGripSession::tKind::Scratch);
        fillPut(put, changed);
        const QString sessionBefore = allFields(h.session);
        const QString putBefore = allFields(put);

        tComparison comparison;
        const auto error = errorOf([&] { comparison = mGripComparison::Compare(h.session, put, mGripComparison::PutRecords()); });
        // Whatever happened, neither side's records changed.
        QCOMPARE(allFields(h.session), sessionBefore);
        QCOMPARE(allFields(put), putBefore);
        if (error) {
            QCOMPARE(QStringList{QString::number(error->Number())}, expected);
            return;
        }
        QStringList got = differing(comparison);
        if (!comparison.unsupported.isEmpty()) {
            QStringList names;
            for (const GripRecord record : comparison.unsupported)
                names << mGripCommands::RecordName(record);
            got.prepend(QStringLiteral("unsupported ") + names.join(QLatin1Char(' ')));
        }
        QVERIFY(!comparison.refused);
        QCOMPARE(got, expected);
        QCOMPARE(mGripComparison::Summary(comparison), summary);
        QCOMPARE(comparison.Same(), expected.isEmpty() || expected.first().startsWith(QLatin1String("unsupported")));
    }

    // The put after a comparison sends the bytes it sends without one: the options and ramping
    // the grip holds must not reach the preferences where the session's records keep theirs.
    void nextPutSendsTheSameBytes_data()
    {
        QTest::addColumn<bool>("compareFirst");
        QTest::newRow("put alone") << false;
        QTest::newRow("compare, then put") << true;
    }
    void nextPutSendsTheSameBytes()
    {
        static QList<QByteArray> alone;
        QFETCH(bool, compareFirst);
        clearPreferences();
        GripHarness h(QStringLiteral("firmware=4.0.5"));
        // The session holds other values than the grip in every record.
        fillPut(h.session, kNames);
        if (compareFirst) {
            cGripSession put(h.link.link, cGripSession::tKind::Scratch);
            fillPut(put, kNames);
            QCOMPARE(differing(mGripComparison::Compare(h.session, put, mGripComparison::PutRecords())), kNames);
            h.link.port.frames.clear();
        }
        mGripCommands::PutAll(h.session);
        if (!compareFirst) {
            alone = h.link.port.frames;
            QCOMPARE(h.payloads(0x29), QStringList{"29046502"}); // the session's ramping, not the grip's
            return;
        }
        QCOMPARE(h.link.port.frames, alone);
    }
};

QTEST_GUILESS_MAIN(tst_gripComparison)
#include "tst_gripComparison.moc"
