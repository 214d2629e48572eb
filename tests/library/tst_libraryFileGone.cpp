// The library file taken from under the running program: deleted, moved away, replaced by
// another file or overwritten; made unwritable; damaged. A save writes the whole library again
// where it may and says where; what it cannot write stays in memory for the next save; what is
// wrong with a file is said by its cause and path, never with a statement.
#include "LibraryTestSupport.h"

#include "library/mLibraryExchange.h"

#include <QDir>
#include <QFileInfo>
#include <QScopeGuard>
#include <QtTest>

using namespace LibraryTest;
using Mode = cApplication::SaveMode;

namespace {

QString native(const QString& path) { return QDir::toNativeSeparators(path); }

// What the file at path holds, read by a library of its own: every stored field of every
// template and its user variables, as the export writes them (rows of nobody's are not read).
QByteArray inFile(const QString& path)
{
    if (!QFileInfo(path).isFile())
        return "(no file)";
    QByteArray document = "(cannot open)";
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("look"));
        db.setDatabaseName(path);
        if (db.open()) {
            cColSetsTemplate library;
            library.LoadOrThrow(db);
            document = mLibraryExchange::ExportDocument(library);
        }
    }
    QSqlDatabase::removeDatabase(QStringLiteral("look"));
    return document;
}
QByteArray inMemory(cColSetsTemplate& library) { return mLibraryExchange::ExportDocument(library); }

// A library of five saved templates with user variables, reopened as at a new start; then, not yet
// saved: a new template, a changed one, a changed variable, a deleted template and a deleted
// variable. The template a library is made anew from lies in the program's folder.
void makeLibrary(Fixture& f)
{
    QDir().mkpath(mMain::ProgramFolder());
    if (!QFileInfo(mDatabase::TemplatePath()).isFile())
        QVERIFY(QFile::copy(builtTemplate(), mDatabase::TemplatePath()));
    for (int n = 1; n <= 5; ++n) {
        auto r = f.library().Add();
        fill(*r, {n, 10 + n, 20 + n, 30 + n, 40 + n, 50 + n, n % 3, n, n + 1}, QStringLiteral("Setting %1 \"%2\"").arg(n).arg(n * 11),
             QDateTime(QDate(2003, n, 2 * n), QTime(9, 0)), {n % 2 == 0, n % 3 == 0, true, n == 4});
        r->colUserVar().Item(3)->setsValue(QStringLiteral("%1 C").arg(18 + n));
        r->AddUserVar(QStringLiteral("Barrel length"), QStringLiteral("14\""));
    }
    f.save();
    QVERIFY2(f.ui.errors.isEmpty(), qPrintable(f.firstError()));
    f.restart();
    cColSetsTemplate& library = f.library();
    QCOMPARE(library.Count(), 5);
    auto added = library.Add();
    added->setsName(QStringLiteral("Added after the start"));
    added->AddUserVar(QStringLiteral("Paintball"), QStringLiteral("field grade"));
    library.Item(2)->setlLoadTime(77);
    library.Item(3)->colUserVar().Item(1)->setsValue(QStringLiteral("changed"));
    library.Item(4)->setIsDeleted(true);
    library.Item(5)->colUserVar().Item(2)->setIsDeleted(true);
    QVERIFY(f.app().AnythingNeedSave());
}

const QStringList kStatementWords = {QStringLiteral("INSERT"), QStringLiteral("SELECT"), QStringLiteral("UPDATE"),
                                     QStringLiteral("DELETE"), QStringLiteral("statement")};

// Every error shown names the file and no statement.
void checkErrorsNameFileNotStatement(const ScriptedUi& ui, const QString& path)
{
    for (const MarloError& e : ui.errors) {
        QVERIFY2(e.Number() == 3000, qPrintable(QString::number(e.Number())));
        QVERIFY2(e.Description().contains(native(path)), qPrintable(e.Description()));
        for (const QString& word : kStatementWords)
            QVERIFY2(!e.Description().contains(word, Qt::CaseInsensitive), qPrintable(e.Description()));
    }
}

} // namespace

class tst_libraryFileGone : public QObject {
    Q_OBJECT

private slots:
    void fileTakenAway_data()
    {
        QTest::addColumn<QString>("action");
        QTest::addColumn<Mode>("mode");
        QTest::addColumn<QString>("writtenTo"); // the library afterwards, beside the old one
        QTest::newRow("deleted") << "delete" << Mode::EachStatement << "Marlo.mdb";
        QTest::newRow("deleted, saved as one transaction") << "delete" << Mode::OneTransaction << "Marlo.mdb";
        QTest::newRow("replaced by another library") << "library" << Mode::OneTransaction << "Marlo (2).mdb";
        QTest::newRow("overwritten in place with garbage") << "overwrite" << Mode::EachStatement << "Marlo (2).mdb";
        QTest::newRow("replaced, the next name taken") << "garbage, (2) taken" << Mode::EachStatement << "Marlo (3).mdb";
    }
    void fileTakenAway()
    {
        QFETCH(QString, action);
        QFETCH(Mode, mode);
        QFETCH(QString, writtenTo);
        LIBRARY_FIXTURE(f);
        makeLibrary(f);
        if (QTest::currentTestFailed())
            return;
        const QByteArray expected = inMemory(f.library());
        const QString written = f.dir.filePath(writtenTo);
        const QString taken = f.dir.filePath(QStringLiteral("Marlo (2).mdb"));

        // What lies at the path afterwards must stay exactly as it is.
        QByteArray stranger;
        if (action == QLatin1String("delete")) {
            QVERIFY(QFile::remove(f.path));
        } else if (action.startsWith(QLatin1String("garbage"))) {
            QVERIFY(QFile::remove(f.path));
            stranger = QByteArray("this is no library at all\n").repeated(100);
            writeFile(f.path, stranger);
            if (action.endsWith(QLatin1String("taken")))
                writeFile(taken, "someone else's file");
        } else if (action == QLatin1String("library")) {
            const QString other = f.dir.filePath(QStringLiteral("other.mdb"));
            QVERIFY(QFile::copy(builtTemplate(), other));
            QFile::setPermissions(other, QFile::permissions(other) | QFileDevice::WriteOwner);
            QVERIFY(runSql(other, {templateRow(QStringLiteral("{OTHER}"))}));
            stranger = fileBytes(other);
            QVERIFY(QFile::remove(f.path));
            QVERIFY(QFile::rename(other, f.path));
        } else if (action == QLatin1String("overwrite")) {
            stranger = QByteArray("\x01\x02garbage", 9).repeated(500);
            QFile file(f.path); // the same file, its bytes replaced
            QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
            QCOMPARE(file.write(stranger), stranger.size());
        }

        f.app().SaveLibrary(mode);
        QVERIFY2(f.ui.errors.isEmpty(), qPrintable(f.firstError()));
        QCOMPARE(inFile(written), expected);
        QCOMPARE(f.ui.messages.size(), 1);
        const ScriptedUi::Message message = f.ui.messages.first();
        QCOMPARE(message.title, QStringLiteral("Library file"));
        if (written == f.path) {
            QCOMPARE(message.text, QStringLiteral("The library file \"%1\" had been deleted.\r\n"
                                                  "The whole library was written anew at \"%1\".").arg(native(f.path)));
        } else {
            QCOMPARE(message.text, QStringLiteral("The library file \"%1\" had been replaced by another file, which was left as it is.\r\n"
                                                  "The whole library was written beside it to \"%2\", which is the library from now on.")
                                       .arg(native(f.path), native(written)));
            QCOMPARE(fileBytes(f.path), stranger);
            if (action.endsWith(QLatin1String("taken")))
                QCOMPARE(fileBytes(taken), QByteArray("someone else's file"));
            // The old connection's journal is gone from beside the stranger, where SQLite would
            // otherwise lay it over that file once anyone opens it.
            QVERIFY(!QFile::exists(f.path + QStringLiteral("-wal")) && !QFile::exists(f.path + QStringLiteral("-shm")));
            QCOMPARE(mDatabase::PathOverride(), written);
        }
        QVERIFY(!f.app().AnythingNeedSave());

        // From then on saves are the usual ones, into the new file, without a word.
        f.library().Item(1)->setsName(QStringLiteral("renamed later"));
        f.library().Item(1)->colUserVar().Item(1)->setsValue(QStringLiteral("later"));
        f.app().SaveLibrary(mode);
        QVERIFY2(f.ui.errors.isEmpty(), qPrintable(f.firstError()));
        QCOMPARE(f.ui.messages.size(), 1);
        const QByteArray later = inMemory(f.library());
        QCOMPARE(inFile(written), later);
        if (written != f.path)
            QCOMPARE(fileBytes(f.path), stranger);
        // The next start finds all of it.
        f.restart();
        QCOMPARE(inMemory(f.library()), later);
    }

    void unwritableLibraryKeepsEverything_data()
    {
        QTest::addColumn<QString>("problem");
        QTest::addColumn<QString>("cause"); // in the error's description
        QTest::newRow("file marked read-only") << "read-only file" << "read-only";
        QTest::newRow("deleted, the template missing") << "no template" << "template";
        QTest::newRow("deleted with its folder") << "no folder" << "could not be made";
    }
    void unwritableLibraryKeepsEverything()
    {
        QFETCH(QString, problem);
        QFETCH(QString, cause);
        LIBRARY_FIXTURE(f);
        makeLibrary(f);
        if (QTest::currentTestFailed())
            return;
        const QByteArray expected = inMemory(f.library());
        const QByteArray before = inFile(f.path);
        const QString templateFile = mDatabase::TemplatePath();
        const QString templateAside = templateFile + QStringLiteral(".aside");

        // Break it; the guard mends it whatever happens, so that the folder can be cleaned up.
        bool broken = true;
        const auto mend = [&] {
            if (!broken)
                return;
            broken = false;
            if (problem == QLatin1String("read-only file"))
                QFile::setPermissions(f.path, QFile::permissions(f.path) | QFileDevice::WriteOwner | QFileDevice::WriteUser);
            else if (problem == QLatin1String("no template"))
                QFile::rename(templateAside, templateFile);
            else
                QDir().mkpath(f.dir.path());
        };
        const auto guard = qScopeGuard(mend);
        if (problem == QLatin1String("read-only file")) {
            QVERIFY(QFile::setPermissions(f.path, QFileDevice::ReadOwner | QFileDevice::ReadGroup | QFileDevice::ReadOther));
        } else if (problem == QLatin1String("no template")) {
            QVERIFY(QFile::remove(f.path));
            QVERIFY(QFile::rename(templateFile, templateAside));
        } else {
            QVERIFY(QDir(f.dir.path()).removeRecursively());
        }

        f.app().SaveLibrary();
        QCOMPARE(f.ui.errors.size(), 1);
        checkErrorsNameFileNotStatement(f.ui, f.path);
        QVERIFY2(f.ui.errors.first().Description().contains(cause), qPrintable(f.ui.errors.first().Description()));
        QVERIFY(f.ui.messages.isEmpty());
        // Nothing of the library is lost: it is all still in memory and still to be saved.
        QVERIFY(f.app().AnythingNeedSave());
        QCOMPARE(inMemory(f.library()), expected);
        if (problem == QLatin1String("read-only file"))
            QCOMPARE(inFile(f.path), before);
        else
            QVERIFY(!QFileInfo::exists(f.path));

        // Once it is mended, the next save writes it all.
        mend();
        f.ui.errors.clear();
        f.app().SaveLibrary();
        QVERIFY2(f.ui.errors.isEmpty(), qPrintable(f.firstError()));
        QCOMPARE(inFile(f.path), expected);
        QCOMPARE(f.ui.messages.size(), problem == QLatin1String("read-only file") ? 0 : 1);
        if (!f.ui.messages.isEmpty())
            QVERIFY2(f.ui.messages.first().text.contains(native(f.path)), qPrintable(f.ui.messages.first().text));
        // A library written anew is all written; a usual save leaves a new setting that was
        // edited to be updated once more at the next save, as it always has.
        QCOMPARE(f.app().AnythingNeedSave(), problem == QLatin1String("read-only file"));
    }

    // Garbage found where the library is opened: said by its cause and path, the file left as it
    // is (not written beside), and what was added stays to be saved.
    void damagedLibraryIsReportedByCauseAndPath()
    {
        LIBRARY_FIXTURE(f);
        const QByteArray damaged = QByteArray("INSERT INTO ta_SetsTemplate SELECT nothing;\n").repeated(50);
        writeFile(f.path, damaged);
        f.library().Add()->setsName(QStringLiteral("new"));
        f.app().SaveLibrary();
        QVERIFY(!f.ui.errors.isEmpty());
        checkErrorsNameFileNotStatement(f.ui, f.path);
        QVERIFY2(std::any_of(f.ui.errors.cbegin(), f.ui.errors.cend(),
                             [](const MarloError& e) { return e.Description().contains(QLatin1String("not an SQLite database")); }),
                 qPrintable(f.firstError()));
        QVERIFY(f.ui.messages.isEmpty());
        QVERIFY(f.app().AnythingNeedSave());
        QCOMPARE(fileBytes(f.path), damaged);
    }
};

QTEST_GUILESS_MAIN(tst_libraryFileGone)
#include "tst_libraryFileGone.moc"
