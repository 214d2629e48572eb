// The grip history file: entries come back newest first and per grip, at most the kept number of
// a grip is listed and the file does not grow past it, a write cut off at any byte loses only
// that entry, and a damaged or unwritable file is told once without raising.
#include "TestFiles.h"

#include "grip/cGripHistory.h"

#include <QFile>
#include <QJsonArray>
#include <QTemporaryDir>
#include <QtTest>

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

} // namespace

class tst_gripHistory : public QObject {
    Q_OBJECT
private slots:
    void entriesOfTwoGrips_data()
    {
        QTest::addColumn<QString>("serial");
        QTest::addColumn<QStringList>("listed");
        QTest::newRow("all grips") << QString() << QStringList{"B 4", "A 3", "B 2", "A 1"};
        QTest::newRow("one grip") << "A" << QStringList{"A 3", "A 1"};
        QTest::newRow("a grip never seen") << "C" << QStringList{};
    }
    void entriesOfTwoGrips()
    {
        QFETCH(QString, serial);
        QFETCH(QStringList, listed);
        QTemporaryDir dir;
        cGripHistory history(dir.path());
        for (const auto& [grip, n] : {std::pair{"A", 1}, std::pair{"B", 2}, std::pair{"A", 3}, std::pair{"B", 4}})
            QVERIFY(history.Record(entry(QString::fromLatin1(grip), n)));
        const auto entries = history.Entries(serial);
        QCOMPARE(summary(entries), listed);
        if (!entries.isEmpty()) { // everything comes back as it went in
            QCOMPARE(entries.last().ToJson(), entry(entries.last().serial, entries.last().time.time().second()).ToJson());
        }
        QVERIFY(history.TakeProblem().isEmpty());
    }

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

    void damagedFile_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("garbage") << QByteArray("\x00\x01\xFF garbage\n", 13);
        QTest::newRow("text in the middle") << QByteArray("{\"firmware\":\"4.0.5\",\"serial\":\"A\",\"time\":\"2026-11-24T10:00:01.000\"}\nnot an entry\n");
        QTest::newRow("an array") << QByteArray("[1,2,3]\n");
    }
    // Set aside under a name that says so, told once, and a new history begun; a get or put that
    // records goes on.
    void damagedFile()
    {
        QFETCH(QByteArray, content);
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
};

QTEST_GUILESS_MAIN(tst_gripHistory)
#include "tst_gripHistory.moc"
