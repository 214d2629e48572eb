// The traffic log: the file komm.log with its entry format, and the console; each switch counts
// from the next entry on.
#include "TestFiles.h"
#include "TestLink.h"

#include "link/cCommConsole.h"
#include "link/cLink.h"
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
        QVERIFY(log.contains(QStringLiteral("  dec: [0,191]\r\n  hex:   [00BF]\r\n"))); // upper case, zeros kept
        QVERIFY(log.endsWith(QStringLiteral("\r\n")));
    }
    void unwritableLogNeverDisturbs()
    {
        QVERIFY(QDir().mkpath(logPath())); // a folder where the file should be
        link->prefs.setCommLogToFile(true);
        QCOMPARE(link->link.CommHexData(kBootModeQuery, true), QByteArray::fromHex("4100BF"));
        QVERIFY(QFileInfo(logPath()).isDir());
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
        RecordingConsole::starts = 0;
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
        if (file)
            return;
        QCOMPARE(RecordingConsole::starts, 1); // made once, kept for the run
        QVERIFY(RecordingConsole::entries.first().endsWith(QStringLiteral("Sending data\r\n  dec: [17]\r\n  hex:   [11]")));
        QVERIFY(!QFile::exists(logPath()));
    }

private:
    std::unique_ptr<TestLink> link;
};

QTEST_GUILESS_MAIN(tst_trafficLog)
#include "tst_trafficLog.moc"
