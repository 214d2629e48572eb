// marlo-cli given hostile or broken input, run as the program itself: errors that lead with the
// cause, usage errors for empty devices and files, control characters that reach the terminal
// escaped, firmware files refused before the grip is touched, imports that are all or nothing
// and libraries that stay readable.
#include "CliRunner.h"
#include "../library/LibraryTestSupport.h"

#include "cli/CliContext.h"

#include <QtTest>

using LibraryTest::runSql;
using LibraryTest::writeFile;

class tst_cliHostileInput : public QObject {
    Q_OBJECT

    QTemporaryDir m_dir;
    QString m_home = m_dir.filePath(QStringLiteral("prog"));
    QString library() const { return QDir(m_home).filePath(QStringLiteral("Marlo.mdb")); }

    // marlo-cli with this test's program folder and preferences; "<name>" is a file of the test.
    CliRun cli(const QStringList& arguments) { return RunCli(QDir(m_dir.path()), m_home, arguments); }

private slots:
    void initTestCase()
    {
        // A firmware file whose fourth record holds 17 bytes.
        QByteArray firmware = ";\r\n; Firmware: 1.1.70\r\n; Boot: 1.0.0-1.2.0\r\n; Protocol: 1.1.1\r\n; Hardware: 2.1.0\r\n";
        for (const char* record : {":0400400001020304B2", ":0400500001020304A2", ":040060000102030492",
                                   ":11007000000102030405060708090A0B0C0D0E0F1044"})
            firmware += QByteArray(record) + "\r\n";
        writeFile(m_dir.filePath(QStringLiteral("long.tvf")), firmware);
        // One block for the virtual grip's builds.
        writeFile(m_dir.filePath(QStringLiteral("fits.tvf")),
                  ";\r\n; Firmware: 4.0.0\r\n; Boot: 1.2.1\r\n; Protocol: 1.1.1\r\n; Hardware: 1.1.1\r\n:0400400001020304B2\r\n");
    }
    void init()
    {
        QDir(m_home).removeRecursively();
        QDir(m_dir.filePath(QStringLiteral("config"))).removeRecursively();
        QVERIFY(QDir().mkpath(m_home));
        QVERIFY(QFile::copy(LibraryTest::builtTemplate(), QDir(m_home).filePath(QStringLiteral("instdbxx.tmp"))));
    }

    void escaping_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("shown");
        QTest::newRow("plain, non-Latin, a pair") << QStringLiteral("Barrel 14\" Ölfarbe 東京 \U0001F3AF") << QStringLiteral("Barrel 14\" Ölfarbe 東京 \U0001F3AF");
        QTest::newRow("escape sequence, bell") << QStringLiteral("\x1b]0;pwned\x07\x1b[2J") << QStringLiteral("\\x1b]0;pwned\\x07\\x1b[2J");
        QTest::newRow("line breaks, tab, NUL") << QStringLiteral("a\r\nb\tc") + QChar(0) << QStringLiteral("a\\r\\nb\\tc\\x00");
        QTest::newRow("DEL and C1 controls") << QStringLiteral("\x7f") + QChar(0x9B) + QStringLiteral("31m") << QStringLiteral("\\x7f\\x9b31m");
        QTest::newRow("bidirectional override") << QStringLiteral("abc") + QChar(0x202E) + QStringLiteral("fdp.exe") << QStringLiteral("abc\\u202efdp.exe");
        QTest::newRow("lone surrogate") << QStringLiteral("k") + QChar(0xD800) << QStringLiteral("k\\ud800");
    }
    void escaping()
    {
        QFETCH(QString, text);
        QFETCH(QString, shown);
        QCOMPARE(CliText(text), shown);
        QCOMPARE(CliText(shown), shown);  // escaping twice changes nothing
        // A message keeps its own CR LF line breaks as lines.
        if (!text.contains(QLatin1Char('\n')))
            QCOMPARE(CliLines(text + QStringLiteral("\r\n") + text), shown + QLatin1Char('\n') + shown);
    }

    void errors_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("status");
        QTest::addColumn<QStringList>("lines");  // stderr begins with these lines, in order (a line may be cut short)
        QTest::newRow("empty device") << QStringList{"--device", "", "info"} << 2
                                      << QStringList{"marlo-cli: --device '': the device is empty"};
        QTest::newRow("empty library") << QStringList{"--db", " ", "library", "list"} << 2
                                       << QStringList{"marlo-cli: --db ' ': the library file is empty"};
        QTest::newRow("port that does not exist: cause first") << QStringList{"--device", "/dev/marlo-no-such-port", "info"} << 1
            << QStringList{"The serial port /dev/marlo-no-such-port does not exist.", "Check the port number or the device in the options",
                           "error 10201: An unknown error occurred during download of guninfo-values."};
        QTest::newRow("control characters in an option") << QStringList{"--device", "sim:serial=\x1b[31mX\x07", "info"} << 2
            << QStringList{"marlo-cli: --device 'sim:serial=\\x1b[31mX\\x07': serial='\\x1b[31mX\\x07'"};
        QTest::newRow("control characters in a word") << QStringList{"library", "show", "\x1b]0;owned\x07"} << 1
            << QStringList{"error 5: The library holds no template \"\\x1b]0;owned\\x07\"."};
        QTest::newRow("control characters in a command") << QStringList{"\x1b[2J"} << 2
            << QStringList{"marlo-cli \\x1b[2J: unknown command '\\x1b[2J'"};
        // Refused before any exchange: the missing port is never even tried.
        QTest::newRow("firmware longer than a block") << QStringList{"--device", "/dev/marlo-no-such-port", "firmware", "write", "<long.tvf>"} << 1
            << QStringList{"Loading firmwarefile to be uploaded",
                           "error 10802: The firmwarefile cannot be uploaded: line 9: the record holds 17 data bytes, but a memory block holds at most 16.",
                           "Nothing was sent to the grip."};
        // A file stands where the backup folder goes: refused before the grip is stopped.
        QTest::newRow("backup folder that cannot take the backup") << QStringList{"--device", "sim", "firmware", "write", "--backup", "<fits.tvf>"} << 1
            << QStringList{"Loading firmwarefile to be uploaded", "Preparing grip for upload",
                           "The grip's firmware could not be backed up, so nothing was written to the grip.",
                           "Make the folder writable, or write the firmware without a backup.",
                           "error 75: Path/File access error: the backup folder " + QDir(m_home).filePath("Backups") +
                               " cannot take the backup: a file of that name is in the way"};
    }
    void errors()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, status);
        QFETCH(QStringList, lines);
        if (arguments.contains(QStringLiteral("--backup")))
            writeFile(QDir(m_home).filePath(QStringLiteral("Backups")), "not a folder");
        const CliRun run = cli(arguments);
        QCOMPARE(run.status, status);
        const QStringList said = run.err.split(QLatin1Char('\n'));
        for (qsizetype i = 0; i < lines.size(); ++i)
            QVERIFY2(said.value(i).startsWith(lines[i]), qPrintable(QStringLiteral("line %1 is not '%2':\n%3").arg(i).arg(lines[i], run.err)));
        QVERIFY2(!run.err.contains(QChar(0x1b)) && !run.err.contains(QChar(7)), "a control character reached the terminal");
        // One error, and no library made where none was used.
        QVERIFY(run.err.count(QLatin1String("\nerror ")) + run.err.startsWith(QLatin1String("error ")) <= 1);
        QVERIFY(!QFile::exists(library()) || arguments.contains(QStringLiteral("show")));
    }

    // A preferences file with a value that cannot be read: said once on stderr, naming the file
    // and the key, its control characters escaped; that value stands at its default and the rest
    // are read (the library path and the device, the last preference read), so the commands work.
    // The texts for each kind of value are pinned by the preferences' own tests.
    void unreadablePreferences()
    {
        const QString other = m_dir.filePath(QStringLiteral("other.mdb"));
        writeFile(m_dir.filePath(QStringLiteral("seed.json")), "[{\"sName\": \"seed\"}]");
        QCOMPARE(cli({"--db", other, "library", "import", "<seed.json>"}).status, 0);
        const QString ini = m_dir.filePath(QStringLiteral("config/Marlo/Marlo.ini"));
        QVERIFY(QDir().mkpath(QFileInfo(ini).path()));
        writeFile(ini, QStringLiteral("[Initialize]\nDBName=%1\nCommDevice=sim\nCommLogToFile=\x1b[2J\n").arg(other).toUtf8());

        const QStringList heading{"marlo-cli: The preferences file " + ini + " has values that cannot be read; their defaults are used:",
                                  "  [Initialize] CommLogToFile = \"\\x1b[2J\" (not True or False)"};
        for (const QStringList& arguments : {QStringList{"get", "timing"}, QStringList{"library", "list"}}) {
            const CliRun run = cli(arguments);
            QVERIFY2(run.status == 0, qPrintable(run.err));
            QCOMPARE(run.err.split(QLatin1Char('\n')).mid(0, 2), heading);
            QCOMPARE(run.err.count(QLatin1String("preferences file")), 1);
            QVERIFY2(!run.err.contains(QChar(0x1b)), "a control character reached the terminal");
            QVERIFY2(run.out.contains(arguments.first() == QLatin1String("get") ? "ShotTime" : "seed"), qPrintable(run.out));
        }
    }

    // An import is all or nothing: the third template's variable is refused by the library file
    // itself, and the library holding the seed stays as it was. (What an import refuses before
    // writing, and what it stores, is pinned by the library's tests.)
    void importRefusedHalfWay()
    {
        writeFile(m_dir.filePath(QStringLiteral("seed.json")), "[{\"sName\": \"seed\", \"UserVariables\": [{\"sName\": \"s\", \"sValue\": \"t\"}]}]");
        writeFile(m_dir.filePath(QStringLiteral("import.json")),
                  "{\"templates\": [{\"sName\": \"first\", \"UserVariables\": []}, {\"sName\": \"second\", \"UserVariables\": "
                  "[{\"sName\": \"a\", \"sValue\": \"b\"}]}, {\"sName\": \"third\", \"UserVariables\": [{\"sName\": \"k\", \"sValue\": \"v\"}]}]}");
        QCOMPARE(cli({"library", "import", "<seed.json>"}).status, 0);
        QVERIFY(runSql(library(), {"CREATE TRIGGER refuse BEFORE INSERT ON ta_UserVar WHEN NEW.sName LIKE 'k%' "
                                   "BEGIN SELECT RAISE(ABORT, 'refused'); END"}));
        const QString before = cli({"library", "export", "-"}).out;
        QVERIFY2(before.contains(QLatin1String("\"seed\"")), qPrintable(before));
        const CliRun run = cli({"library", "import", "<import.json>"});
        QCOMPARE(run.status, 1);
        QVERIFY2(run.err.contains("error 3000: The library file \"" + library() + "\" could not be written: refused."), qPrintable(run.err));
        QCOMPARE(cli({"library", "export", "-"}).out, before); // every template and variable as it was
    }

    // Rows another program wrote: extreme numbers are listed; a null where none may be is
    // reported with its ID and column, and the other rows are still listed.
    void readableLibrary()
    {
        writeFile(m_dir.filePath(QStringLiteral("seed.json")), "[{\"ID\": \"{00000000-0000-4000-8000-000000000001}\", \"sName\": \"extreme\"},"
            "{\"ID\": \"{00000000-0000-4000-8000-000000000002}\", \"sName\": \"broken\"},"
            "{\"sName\": \"plain\\u001b[31m\"}]");
        QCOMPARE(cli({"library", "import", "<seed.json>"}).status, 0);
        QVERIFY(runSql(library(), {"UPDATE ta_SetsTemplate SET lDwellTime = 2147483647, lCycleTimeOpen = 2147483647, lLoadTime = 2147483647, "
                                   "lCycleTimeClose = 2147483647 WHERE sName = 'extreme'",
                                   "UPDATE ta_SetsTemplate SET sName = NULL WHERE sName = 'broken'"}));
        const CliRun run = cli({"library", "list"});
        QCOMPARE(run.status, 1);
        QVERIFY2(run.out.contains(QLatin1String("extreme")) && run.out.contains(QLatin1String("2147483647")) &&
                     run.out.contains(QLatin1String("plain\\x1b[31m")), qPrintable(run.out));
        QCOMPARE(run.err, QStringLiteral("error 94: Invalid use of Null (column sName of the row with ID "
                                         "{00000000-0000-4000-8000-000000000002}). (mDatabase)\n"));
    }
};

QTEST_GUILESS_MAIN(tst_cliHostileInput)
#include "tst_cliHostileInput.moc"
