// The grip history file: entries come back newest first and per grip, at most the kept number of
// a grip is listed and the file does not grow past it, a write cut off at any byte loses only
// that entry, and a damaged or unwritable file is told once without raising. Then what the grip
// commands record in it: one entry per command with the settings it exchanged (none for counters,
// battery, or a refusal), the grip's serial number and firmware version, the values the grip
// holds afterwards; and a full disk told once without touching the command.
#include "GripTestSupport.h"
#include "TestFiles.h"

#include "grip/cGripHistory.h"
#include "grip/mRecordFields.h"

#include <QTemporaryDir>
#include <QtTest>
#include <csignal>
#include <sys/resource.h>

using namespace griptest;
using namespace mGripCommands;

namespace {

cGripHistory::tEntry entry(const QString& serial, int n)
{
    cGripHistory::tEntry e;
    e.time = QDateTime(QDate(2026, 11, 24), QTime(10, 0)).addSecs(n);
    e.serial = serial;
    e.firmware = QStringLiteral("4.0.5");
    e.values = {{QStringLiteral("timing"), QJsonObject{{QStringLiteral("ShotTime"), n % 256}, {QStringLiteral("ROF"), 9.71}}}};
    return e;
}

QStringList summary(const QList<cGripHistory::tEntry>& entries)
{
    QStringList lines;
    for (const auto& e : entries)
        lines << QStringLiteral("%1 %2").arg(e.serial).arg(e.values.value(QStringLiteral("timing"))[QStringLiteral("ShotTime")].toInt());
    return lines;
}

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

class tst_gripHistory : public QObject {
    Q_OBJECT
private slots:
    void init() { clearPreferences(); }

    // The kept number of a grip is listed; the oldest go first, another grip keeps all of its own,
    // and the file is rewritten in batches so that it never holds more than the slack beyond.
    void boundedPerGrip()
    {
        QTemporaryDir dir;
        cGripHistory history(dir.path());
        const QString path = history.FileOf(QStringLiteral("A"));
        const int many = int(cGripHistory::kKeptPerGrip + cGripHistory::kSlack) + 5;
        QVERIFY(history.Record(entry(QStringLiteral("OTHER"), 0)));
        for (int n = 1; n <= many; ++n)
            QVERIFY(history.Record(entry(QStringLiteral("A"), n)));
        const auto listed = history.Entries(QStringLiteral("A"));
        QCOMPARE(listed.size(), cGripHistory::kKeptPerGrip);
        QCOMPARE(listed.first().time, entry(QString(), many).time);
        QCOMPARE(listed.last().time, entry(QString(), many - int(cGripHistory::kKeptPerGrip) + 1).time);
        QCOMPARE(history.Entries(QStringLiteral("OTHER")).size(), 1);
        const qsizetype lines = fileBytes(path).count('\n');
        QVERIFY2(lines <= cGripHistory::kKeptPerGrip + cGripHistory::kSlack + 1, qPrintable(QString::number(lines)));
    }

    // A kill while an entry is written leaves the file cut at some byte of that entry: whatever the
    // byte, the earlier entries stay, the cut one is dropped quietly, and the next one is whole.
    void cutAtEveryByte()
    {
        QTemporaryDir dir;
        const QString path = cGripHistory(dir.path()).FileOf(QStringLiteral("A"));
        {
            cGripHistory history(dir.path());
            QVERIFY(history.Record(entry(QStringLiteral("A"), 1)));
            QVERIFY(history.Record(entry(QStringLiteral("A"), 2)));
        }
        const QByteArray whole = fileBytes(path);
        const qsizetype second = whole.indexOf('\n') + 1;
        for (qsizetype cut = second; cut < whole.size(); ++cut) {
            writeFile(path, whole.left(cut));
            cGripHistory history(dir.path());
            // Only the line's end missing: the entry is whole.
            QStringList kept = cut == whole.size() - 1 ? QStringList{"A 2", "A 1"} : QStringList{"A 1"};
            QCOMPARE(summary(history.Entries()), kept);
            QVERIFY(history.Record(entry(QStringLiteral("A"), 3)));
            kept.prepend(QStringLiteral("A 3"));
            QCOMPARE(summary(history.Entries()), kept);
            QVERIFY2(history.TakeProblem().isEmpty(), qPrintable(QString::number(cut)));
        }
    }

    // A file with text in the middle is set aside whole under a name that says so, told once, and a
    // new history begun; a get or put that records goes on.
    void damagedFile()
    {
        const QByteArray content("{\"firmware\":\"4.0.5\",\"serial\":\"A\",\"time\":\"2026-11-24T10:00:01.000\"}\nnot an entry\n");
        QTemporaryDir dir;
        cGripHistory history(dir.path());
        const QString path = history.FileOf(QStringLiteral("A"));
        writeFile(path, content);
        QCOMPARE(history.Entries().size(), 0);
        const QString problem = history.TakeProblem();
        QVERIFY2(problem.contains(QLatin1String("set aside")), qPrintable(problem));
        QVERIFY(history.TakeProblem().isEmpty());
        const QStringList aside = QDir(dir.path()).entryList({QStringLiteral("A.jsonl.damaged-*")});
        QCOMPARE(aside.size(), 1);
        QCOMPARE(fileBytes(dir.filePath(aside.first())), content);
        QVERIFY(history.Record(entry(QStringLiteral("A"), 5)));
        QCOMPARE(summary(history.Entries()), QStringList{"A 5"});
    }

    // A folder that cannot be made (a file stands in its way) is said, and nothing raises.
    void unwritable()
    {
        QTemporaryDir dir;
        writeFile(dir.filePath(QStringLiteral("blocker")), "x");
        cGripHistory history(dir.filePath(QStringLiteral("blocker/history")));
        QVERIFY(!history.Record(entry(QStringLiteral("A"), 1)));
        QVERIFY(history.TakeProblem().contains(QLatin1String("could not be written")));
        QCOMPARE(history.Entries().size(), 0);
    }

    void onePerCommand_data()
    {
        QTest::addColumn<QString>("grip");
        QTest::addColumn<QString>("command");
        QTest::addColumn<QString>("recorded"); // the records of the one entry; empty: no entry
        QTest::newRow("put all") << kGrip << "put all" << "gametimer options ramping timing";
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

    // With the disk full, the get goes on and shows what the grip holds; the problem is told once,
    // as a warning, however many gets follow.
    void diskFullToldOnce()
    {
        QTemporaryDir dir;
        cGripHistory history(dir.path());
        GripHarness h(kGrip);
        h.session.SetHistory(&history);
        QVERIFY(!GetRecord(h.session, GripRecord::Timing).refused());
        const QString file = history.FileOf(QStringLiteral("HIST000001"));
        DiskFull disk;
        disk.fill(QFileInfo(file).size());
        for (int shot : {11, 12}) {
            h.grip.updateState([&](gripsim::GripState& state) { state.timing.shotTime = static_cast<quint8>(shot); });
            const CommandResult result = GetAll(h.session);
            QVERIFY(!result.refused());
            QCOMPARE(h.session.Timing().ShotTime(), shot);
        }
        const QList<ScriptedUi::Message>& messages = h.link.ui.messages;
        QCOMPARE(messages.size(), 1);
        QVERIFY2(messages.first().text.contains(QLatin1String("could not be written")), qPrintable(messages.first().text));
        QCOMPARE(messages.first().title, HistoryTitle());
        QCOMPARE(messages.first().icon, MsgIcon::Exclamation);
        QVERIFY(h.link.ui.errors.isEmpty());
        QCOMPARE(history.Entries().size(), 1);
    }
};

QTEST_GUILESS_MAIN(tst_gripHistory)
#include "tst_gripHistory.moc"
