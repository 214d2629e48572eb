// What the grip commands record in the grip history: one entry per command with the settings it
// exchanged (none for counters, battery, or a refusal), the grip's serial number and firmware
// version, the values the grip holds afterwards; two grips kept apart; and a damaged history or a
// full disk told once without touching the command.
#include "GripTestSupport.h"

#include "grip/cGripHistory.h"
#include "grip/mRecordFields.h"

#include <QTemporaryDir>
#include <QtTest>
#include <csignal>
#include <sys/resource.h>

using namespace griptest;
using namespace mGripCommands;

namespace {

const QString kGrip = QStringLiteral("serial=HIST000001,firmware=4.0.5");

CommandResult runCommand(cGripSession& session, const QString& command)
{
    const QStringList words = command.split(QLatin1Char(' '));
    GripRecord record = GripRecord::Timing;
    RecordFromName(words.last(), record);
    if (command == QLatin1String("get all"))
        return GetAll(session);
    if (command == QLatin1String("put all"))
        return PutAll(session);
    if (command == QLatin1String("reset 1"))
        return ResetCounter(session, 1);
    return words.first() == QLatin1String("get") ? GetRecord(session, record) : PutRecord(session, record);
}

QString recordNames(const cGripHistory::tEntry& entry)
{
    QStringList names = entry.values.keys();
    names.sort();
    return names.join(QLatin1Char(' '));
}

// The disk holds no byte more for any file this process writes, while it lives.
class DiskFull {
public:
    DiskFull()
    {
        std::signal(SIGXFSZ, SIG_IGN); // a write past the limit fails instead of ending the test
        getrlimit(RLIMIT_FSIZE, &m_before);
    }
    void fill(rlim_t bytes)
    {
        rlimit limit = m_before;
        limit.rlim_cur = bytes;
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~DiskFull() { setrlimit(RLIMIT_FSIZE, &m_before); }

private:
    rlimit m_before{};
};

} // namespace

class tst_historyRecording : public QObject {
    Q_OBJECT

private slots:
    void init() { clearPreferences(); }

    void onePerCommand_data()
    {
        QTest::addColumn<QString>("grip");
        QTest::addColumn<QString>("command");
        QTest::addColumn<QString>("recorded"); // the records of the one entry; empty: no entry
        QTest::newRow("get all") << kGrip << "get all" << "gametimer options ramping timing";
        QTest::newRow("put all") << kGrip << "put all" << "gametimer options ramping timing";
        QTest::newRow("get timing") << kGrip << "get timing" << "timing";
        QTest::newRow("put game timer") << kGrip << "put gametimer" << "gametimer";
        QTest::newRow("get options") << kGrip << "get options" << "options";
        QTest::newRow("put ramping") << kGrip << "put ramping" << "ramping";
        QTest::newRow("get counters") << kGrip << "get counters" << "";
        QTest::newRow("get battery") << kGrip << "get battery" << "";
        QTest::newRow("reset a counter") << kGrip << "reset 1" << "";
        QTest::newRow("old firmware: no options, no ramping") << "serial=HIST000001,firmware=1.1.0" << "get all" << "gametimer timing";
        QTest::newRow("ramping refused") << kGrip + QStringLiteral(",fault=nak@0x19") << "get all" << "gametimer options timing";
        QTest::newRow("timing put refused") << kGrip + QStringLiteral(",fault=nak@0x24") << "put timing" << "";
    }
    void onePerCommand()
    {
        QFETCH(QString, grip);
        QFETCH(QString, command);
        QFETCH(QString, recorded);
        QTemporaryDir dir;
        cGripHistory history(dir.path());
        GripHarness h(grip);
        h.session.SetHistory(&history);
        runCommand(h.session, command);
        const QList<cGripHistory::tEntry> entries = history.Entries();
        QCOMPARE(entries.size(), recorded.isEmpty() ? 0 : 1);
        QVERIFY(h.link.ui.messages.isEmpty());
        if (recorded.isEmpty())
            return;
        const cGripHistory::tEntry& entry = entries.first();
        QCOMPARE(recordNames(entry), recorded);
        QCOMPARE(entry.serial, QStringLiteral("HIST000001"));
        QCOMPARE(entry.firmware, h.session.GunInfo().FirmwareBuild());
        QVERIFY(qAbs(entry.time.secsTo(QDateTime::currentDateTime())) < 60);
        // What the session holds of the grip now, by the names of marlo-cli's JSON.
        for (const QString& name : entry.values.keys()) {
            GripRecord record = GripRecord::Timing;
            QVERIFY(RecordFromName(name, record));
            QCOMPARE(entry.values.value(name).toObject(), mRecordFields::ToJson(mRecordFields::Values(h.session, record)));
        }
    }

    void twoGrips_data()
    {
        QTest::addColumn<QString>("serial");
        QTest::addColumn<QStringList>("listed"); // serial and shot time, newest first
        QTest::newRow("all grips") << QString() << QStringList{"GRIPB00001 7", "GRIPA00001 6", "GRIPA00001 5"};
        QTest::newRow("grip A") << "GRIPA00001" << QStringList{"GRIPA00001 6", "GRIPA00001 5"};
        QTest::newRow("grip B") << "GRIPB00001" << QStringList{"GRIPB00001 7"};
    }
    void twoGrips()
    {
        QFETCH(QString, serial);
        QFETCH(QStringList, listed);
        QTemporaryDir dir;
        cGripHistory history(dir.path());
        GripHarness a(QStringLiteral("serial=GRIPA00001"));
        GripHarness b(QStringLiteral("serial=GRIPB00001"));
        a.session.SetHistory(&history);
        b.session.SetHistory(&history);
        for (auto [harness, shot] : {std::pair{&a, 5}, std::pair{&a, 6}, std::pair{&b, 7}}) {
            harness->session.Timing().setShotTime(shot);
            PutRecord(harness->session, GripRecord::Timing);
            QTest::qWait(2); // entries a millisecond apart at least: newest first is then certain
        }
        QStringList seen;
        for (const cGripHistory::tEntry& entry : history.Entries(serial))
            seen << QStringLiteral("%1 %2").arg(entry.serial).arg(entry.values.value("timing")["ShotTime"].toInt());
        QCOMPARE(seen, listed);
    }

    void problemToldOnce_data()
    {
        QTest::addColumn<bool>("diskFull"); // else: a damaged history file
        QTest::addColumn<QString>("told");
        QTest::addColumn<int>("entriesAfter"); // after two more gets
        QTest::newRow("damaged file") << false << "set aside" << 2;
        QTest::newRow("disk full") << true << "could not be written" << 1;
    }
    // The get goes on and shows what the grip holds; the problem is told once, as a warning,
    // however many gets follow.
    void problemToldOnce()
    {
        QFETCH(bool, diskFull);
        QFETCH(QString, told);
        QFETCH(int, entriesAfter);
        QTemporaryDir dir;
        cGripHistory history(dir.path());
        GripHarness h(kGrip);
        h.session.SetHistory(&history);
        QVERIFY(!GetRecord(h.session, GripRecord::Timing).refused());
        const QString file = history.FileOf(QStringLiteral("HIST000001"));
        DiskFull disk;
        if (diskFull) {
            disk.fill(QFileInfo(file).size());
        } else {
            QFile damaged(file);
            QVERIFY(damaged.open(QIODevice::WriteOnly | QIODevice::Truncate));
            damaged.write("\x7f" "ELF garbage\n");
        }
        for (int shot : {11, 12}) {
            h.grip.updateState([&](gripsim::GripState& state) { state.timing.shotTime = static_cast<quint8>(shot); });
            const CommandResult result = GetAll(h.session);
            QVERIFY(!result.refused());
            QCOMPARE(h.session.Timing().ShotTime(), shot);
        }
        const QList<ScriptedUi::Message>& messages = h.link.ui.messages;
        QCOMPARE(messages.size(), 1);
        QVERIFY2(messages.first().text.contains(told), qPrintable(messages.first().text));
        QCOMPARE(messages.first().title, HistoryTitle());
        QCOMPARE(messages.first().icon, MsgIcon::Exclamation);
        QVERIFY(h.link.ui.errors.isEmpty());
        QCOMPARE(history.Entries().size(), entriesAfter);
    }
};

QTEST_GUILESS_MAIN(tst_historyRecording)
#include "tst_historyRecording.moc"
