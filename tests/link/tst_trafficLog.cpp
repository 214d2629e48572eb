// The traffic log: its entry format, the file komm.log and the console.
#include "TestFiles.h"
#include "TestLink.h"

#include "link/cCommConsole.h"
#include "link/cLink.h"
#include "link/mCommBasic.h"
#include "shell/cApplication.h"
#include "shell/mMain.h"

#include <QDir>
#include <QFile>
#include <QtTest>

namespace {

class RecordingConsole : public cCommConsole {
public:
    static inline int starts = 0;
    static inline QStringList entries;
    void StartLogging() override { ++starts; }
    void logData(const QString& text) override { entries.append(text); }
};

QString logPath() { return mMain::ProgramFile(QStringLiteral("komm.log")); }

const QByteArray kBootModeQuery("\x11");

} // namespace

class tst_trafficLog : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() { QDir().mkpath(mMain::ProgramFolder()); }

    void init()
    {
        QFile::remove(logPath());
        QDir(logPath()).removeRecursively();
        link = std::make_unique<TestLink>();
        link->port.setResponder([](const QByteArray&) { return QByteArray::fromHex("4100BF"); });
    }
    void cleanup()
    {
        link->prefs.setCommLogToFile(false);
        link->prefs.setCommLogToConsole(false);
        link.reset();
    }
    void entryFormat_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("label");
        QTest::addColumn<QString>("body");
        QTest::newRow("command") << QByteArray::fromHex("1400EC") << "Sending data"
                                 << "Sending data\r\n  dec: [20,0,236]\r\n  hex:   [1400EC]";
        QTest::newRow("nothing read") << QByteArray() << "Receiving data" << "Receiving data\r\n  dec: []\r\n  hex:   []";
        QTest::newRow("every digit upper case, zeros kept") << QByteArray::fromHex("00ABCDEF0A") << "Sending data"
                                                            << "Sending data\r\n  dec: [0,171,205,239,10]\r\n  hex:   [00ABCDEF0A]";
    }
    void entryFormat()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, label);
        QFETCH(QString, body);
        const QDateTime when(QDate(2026, 11, 21), QTime(13, 4, 5));
        const QString entry = mCommBasic::FormatLogEntry(when, bytes, label);
        const qsizetype colon = entry.indexOf(QStringLiteral(": ") + label);
        QVERIFY(colon > 0);
        QCOMPARE(entry.mid(colon + 2), body);
        const QString stamp = entry.left(colon);
        QVERIFY2(stamp.contains(QStringLiteral("13:04:05")) || stamp.contains(QStringLiteral("1:04:05")), qPrintable(stamp));
    }
    void fileGetsEveryWriteAndRead()
    {
        link->prefs.setCommLogToFile(true);
        link->port.queueInput(QByteArray::fromHex("99")); // stale: flushed and logged as received data
        QCOMPARE(link->link.CommHexData(kBootModeQuery, true), QByteArray::fromHex("4100BF"));
        const QString log = QString::fromLocal8Bit(fileBytes(logPath()));
        QCOMPARE(log.count(QStringLiteral(": Sending data\r\n")), 2);
        QCOMPARE(log.count(QStringLiteral(": Receiving data\r\n")), 3); // stale byte, code byte, rest
        QVERIFY(log.contains(QStringLiteral("  dec: [153]\r\n  hex:   [99]\r\n")));
        QVERIFY(log.contains(QStringLiteral("  dec: [17]\r\n  hex:   [11]\r\n")));
        QVERIFY(log.contains(QStringLiteral("  dec: [239]\r\n  hex:   [EF]\r\n")));
        QVERIFY(log.endsWith(QStringLiteral("\r\n")));
    }
    void unwritableLogNeverDisturbs()
    {
        QVERIFY(QDir().mkpath(logPath())); // a folder where the file should be
        link->prefs.setCommLogToFile(true);
        QCOMPARE(link->link.CommHexData(kBootModeQuery, true), QByteArray::fromHex("4100BF"));
        QVERIFY(QFileInfo(logPath()).isDir());
    }
    void consoleGetsEntries()
    {
        RecordingConsole::starts = 0;
        RecordingConsole::entries.clear();
        link->link.SetConsoleFactory([] { return std::make_unique<RecordingConsole>(); });
        link->prefs.setCommLogToConsole(true);
        link->link.CommHexData(kBootModeQuery, true);
        link->link.CommHexData(kBootModeQuery, true);
        QCOMPARE(RecordingConsole::starts, 1); // made once, kept for the run
        QCOMPARE(RecordingConsole::entries.size(), 8);
        QVERIFY(RecordingConsole::entries.first().endsWith(QStringLiteral("Sending data\r\n  dec: [17]\r\n  hex:   [11]")));
        QVERIFY(!QFile::exists(logPath()));
    }
    void aChangedSwitchAppliesToTheNextEntry_data()
    {
        QTest::addColumn<bool>("file"); // the switch of the file, else of the console
        QTest::newRow("file") << true;
        QTest::newRow("console") << false;
    }
    void aChangedSwitchAppliesToTheNextEntry()
    {
        QFETCH(bool, file);
        RecordingConsole::entries.clear();
        link->link.SetConsoleFactory([] { return std::make_unique<RecordingConsole>(); });
        const auto set = [&](bool on) { file ? link->prefs.setCommLogToFile(on) : link->prefs.setCommLogToConsole(on); };
        const auto entries = [&]() -> qsizetype {
            if (!file)
                return RecordingConsole::entries.size();
            QFile log(logPath());
            return log.open(QIODevice::ReadOnly) ? QString::fromLocal8Bit(log.readAll()).count(QStringLiteral(" data\r\n")) : 0;
        };
        // Each exchange of the boot-mode query logs four entries: two writes, two reads.
        const QList<QPair<bool, qsizetype>> steps = {{true, 4}, {false, 4}, {true, 8}};
        for (const auto& [on, expected] : steps) {
            set(on);
            link->link.CommHexData(kBootModeQuery, true);
            QCOMPARE(entries(), expected);
        }
    }

private:
    std::unique_ptr<TestLink> link;
};

QTEST_GUILESS_MAIN(tst_trafficLog)
#include "tst_trafficLog.moc"
