// The main window saving a library whose file was taken away while it ran: File > Save and the
// exit's Yes write every template and user variable again, say where, and the next start finds
// all of it, on the same active setting.
#include "GuiTestSupport.h"
#include "TestFiles.h"

#include <QDir>
#include <QFileInfo>
#include <QSqlQuery>

using namespace guitest;

namespace {

// The number of templates and of user variables in the library file at path.
QPair<int, int> rowsIn(const QString& path)
{
    QPair<int, int> counts{-1, -1};
    if (!QFileInfo(path).isFile())
        return counts;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("look"));
        db.setDatabaseName(path);
        if (db.open()) {
            QSqlQuery q(db);
            if (q.exec(QStringLiteral("SELECT (SELECT COUNT(*) FROM ta_SetsTemplate), (SELECT COUNT(*) FROM ta_UserVar)")) && q.next())
                counts = {q.value(0).toInt(), q.value(1).toInt()};
        }
    }
    QSqlDatabase::removeDatabase(QStringLiteral("look"));
    return counts;
}

} // namespace

class tst_mainWindowLibraryFile : public QObject {
    Q_OBJECT
private slots:
    void init() { FreshStart(); }

    void savingAfterTheFileWasTakenAway_data()
    {
        QTest::addColumn<bool>("onExit");   // the exit's Yes, else File > Save
        QTest::addColumn<bool>("replaced"); // another file put in its place, else deleted
        QTest::addColumn<bool>("changed");  // a template added after the last save
        QTest::newRow("deleted, File > Save") << false << false << true;
        QTest::newRow("deleted, exit with Yes") << true << false << true;
        QTest::newRow("replaced, File > Save") << false << true << true;
        QTest::newRow("replaced, exit with Yes") << true << true << true;
        // Nothing changed, yet the file is gone: closing asks all the same.
        QTest::newRow("deleted, unchanged, exit with Yes") << true << false << false;
        QTest::newRow("replaced, unchanged, exit with Yes") << true << true << false;
    }
    void savingAfterTheFileWasTakenAway()
    {
        QFETCH(bool, onExit);
        QFETCH(bool, replaced);
        QFETCH(bool, changed);
        const QPair<int, int> rows = changed ? qMakePair(6, 43) : qMakePair(5, 35);
        const QString path = mMain::ProgramFile(QStringLiteral("Marlo.mdb"));
        const QString written = replaced ? mMain::ProgramFile(QStringLiteral("Marlo (2).mdb")) : path;
        for (const char* beside : {"", "-wal", "-shm"})
            QFile::remove(written + QLatin1String(beside));
        QString activeId;
        {
            WindowHarness h;
            fTolvaneMan& w = h.open();
            // Five templates with their user variables, saved: the window's own and four more.
            type(&w, QStringLiteral("txtTimingLT"), QStringLiteral("33"));
            w.ActiveSetting()->setsName(QStringLiteral("Field day"));
            activeId = w.ActiveSetting()->ID();
            for (int n = 1; n <= 4; ++n) {
                auto r = h.app().colSetsTemplate().Add();
                r->setsName(QStringLiteral("Setting %1").arg(n));
                r->colUserVar().Item(3)->setsValue(QStringLiteral("%1 C").arg(20 + n));
            }
            run(&w, QStringLiteral("mnuSave"));
            GUITEST_NO_ERRORS(h.ui.script);
            QCOMPARE(rowsIn(path), qMakePair(5, 35));
            // One more, made through the window and changed there; then the file goes.
            if (changed) {
                run(&w, QStringLiteral("mnuNew"));
                type(&w, QStringLiteral("txtTimingLT"), QStringLiteral("44"));
                w.ActiveSetting()->AddUserVar(QStringLiteral("Barrel length"), QStringLiteral("14\""));
                activeId = w.ActiveSetting()->ID();
            }
            QVERIFY(QFile::remove(path));
            const QByteArray stranger = "a file that is no library";
            if (replaced)
                writeFile(path, stranger);

            if (onExit) {
                h.ui.script.yesNoAnswers.enqueue(true);
                QVERIFY(w.close());
            } else {
                run(&w, QStringLiteral("mnuSave"));
            }
            GUITEST_NO_ERRORS(h.ui.script);
            QCOMPARE(rowsIn(written), rows);
            QCOMPARE(h.ui.script.messages.size(), 1);
            const QString said = h.ui.script.messages.first().text;
            QVERIFY2(said.contains(QLatin1Char('"') + QDir::toNativeSeparators(written) + QLatin1Char('"')), qPrintable(said));
            QVERIFY2(said.contains(replaced ? QStringLiteral("replaced") : QStringLiteral("deleted")), qPrintable(said));
            if (replaced) {
                QCOMPARE(fileBytes(path), stranger);
                // The next start opens the library, not the stranger.
                QCOMPARE(stored(QStringLiteral("DBName")), written);
                // Every ID is kept, so the next start must not forget the last active setting.
                QVERIFY(stored(QStringLiteral("DBChanged")) != QLatin1String("True"));
            }
            QVERIFY(!h.app().AnythingNeedSave());
            if (!onExit) {
                // Nothing is left to save: closing asks nothing.
                QVERIFY(w.close());
                QCOMPARE(h.ui.script.questions.size(), 0);
            }
        }
        // The next start: every template, and the one last active is active again.
        mDatabase::DisconnectDB();
        WindowHarness h;
        fTolvaneMan& w = h.open();
        GUITEST_NO_ERRORS(h.ui.script);
        QCOMPARE(h.app().colSetsTemplate().Count(), rows.first);
        QVERIFY(w.ActiveSetting());
        QCOMPARE(w.ActiveSetting()->ID(), activeId);
        QCOMPARE(text(&w, QStringLiteral("txtTimingLT")), changed ? QStringLiteral("44") : QStringLiteral("33"));
    }
};

QTEST_MAIN(tst_mainWindowLibraryFile)
#include "tst_mainWindowLibraryFile.moc"
