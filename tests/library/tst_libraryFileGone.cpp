// The library file taken from under the running program: deleted, moved away, replaced by
// another file or overwritten; made unwritable; damaged. A save writes the whole library again
// where it may and says where; what it cannot write stays in memory for the next save; what is
// wrong with a file is said by its cause and path, never with a statement.
#include "LibraryTestSupport.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QtTest>
#include <unistd.h>

using namespace LibraryTest;
using Mode = cApplication::SaveMode;

namespace {

QString native(const QString& path) { return QDir::toNativeSeparators(path); }

// Every stored field of a template, and of a user variable, as one line.
QString templateLine(const QStringList& fields) { return QStringLiteral("T|") + fields.join(QLatin1Char('|')); }
QString variableLine(const QStringList& fields) { return QStringLiteral("V|") + fields.join(QLatin1Char('|')); }

// What the library in memory holds (what a save must leave in the file), sorted.
QStringList rowsInMemory(cColSetsTemplate& library)
{
    QStringList rows;
    for (const auto& r : library) {
        if (r->IsDeleted())
            continue;
        QStringList fields{r->ID(), r->ParentID(), r->Version()};
        for (qint32 v : {r->lShotTime(), r->lDwellTime(), r->lCycleTimeOpen(), r->lLoadTime(), r->lCycleTimeClose(),
                         r->lGameTime(), r->lFiringMode()})
            fields << QString::number(v);
        fields << r->sName() << r->dtDate().date().toString(Qt::ISODate);
        for (bool b : {r->bCTCLikeCTO(), r->bExpertMode(), r->bAlertOne(), r->bAlertTwo()})
            fields << QString::number(b ? 1 : 0);
        fields << QString::number(r->lAlertOne()) << QString::number(r->lAlertTwo());
        rows << templateLine(fields);
        for (const auto& v : r->colUserVar()) {
            if (!v->IsDeleted())
                rows << variableLine({v->ID(), v->ParentID(), v->Version(), v->sName(), v->sValue()});
        }
    }
    rows.sort();
    return rows;
}

// What the file at path holds, in the same lines, sorted; "(no file)" when there is none.
// ownedOnly: without the user variables of settings deleted by a usual save, which stay as rows
// of nobody's.
QStringList rowsInFile(const QString& path, bool ownedOnly = false)
{
    if (!QFileInfo(path).isFile())
        return {QStringLiteral("(no file)")};
    QStringList rows;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("look"));
        db.setDatabaseName(path);
        if (!db.open())
            return {QStringLiteral("(cannot open)")};
        QSqlQuery q(db);
        q.exec(QStringLiteral("SELECT ID, ParentID, Version, lShotTime, lDwellTime, lCycleTimeOpen, lLoadTime, lCycleTimeClose, "
                              "lGameTime, lFiringMode, sName, dtDate, bCTCLikeCTO, bExpertMode, bAlertOne, bAlertTwo, "
                              "lAlertOne, lAlertTwo FROM ta_SetsTemplate"));
        while (q.next()) {
            QStringList fields;
            for (int i = 0; i < 18; ++i)
                fields << q.value(i).toString();
            rows << templateLine(fields);
        }
        q.exec(QStringLiteral("SELECT ID, ParentID, Version, sName, sValue FROM ta_UserVar")
               + (ownedOnly ? QStringLiteral(" WHERE ParentID IN (SELECT ID FROM ta_SetsTemplate)") : QString()));
        while (q.next())
            rows << variableLine({q.value(0).toString(), q.value(1).toString(), q.value(2).toString(),
                                  q.value(3).toString(), q.value(4).toString()});
    }
    QSqlDatabase::removeDatabase(QStringLiteral("look"));
    rows.sort();
    return rows;
}

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
        QTest::newRow("moved away") << "move" << Mode::EachStatement << "Marlo.mdb";
        QTest::newRow("replaced by garbage") << "garbage" << Mode::EachStatement << "Marlo (2).mdb";
        QTest::newRow("replaced by another library") << "library" << Mode::OneTransaction << "Marlo (2).mdb";
        QTest::newRow("overwritten in place with garbage") << "overwrite" << Mode::EachStatement << "Marlo (2).mdb";
        QTest::newRow("emptied in place") << "empty" << Mode::EachStatement << "Marlo (2).mdb";
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
        const QStringList expected = rowsInMemory(f.library());
        QCOMPARE(expected.filter(QRegularExpression(QStringLiteral("^T\\|"))).size(), 5); // four kept and one added
        const QString written = f.dir.filePath(writtenTo);
        const QString taken = f.dir.filePath(QStringLiteral("Marlo (2).mdb"));

        // What lies at the path afterwards must stay exactly as it is.
        QByteArray stranger;
        if (action == QLatin1String("delete")) {
            QVERIFY(QFile::remove(f.path));
        } else if (action == QLatin1String("move")) {
            QVERIFY(QFile::rename(f.path, f.dir.filePath(QStringLiteral("elsewhere.mdb"))));
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
        } else if (action == QLatin1String("overwrite") || action == QLatin1String("empty")) {
            stranger = action == QLatin1String("empty") ? QByteArray() : QByteArray("\x01\x02garbage", 9).repeated(500);
            QFile file(f.path); // the same file, its bytes replaced
            QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
            QCOMPARE(file.write(stranger), stranger.size());
        }

        f.app().SaveLibrary(mode);
        QVERIFY2(f.ui.errors.isEmpty(), qPrintable(f.firstError()));
        QCOMPARE(rowsInFile(written), expected);
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
        const QStringList later = rowsInMemory(f.library());
        QCOMPARE(rowsInFile(written), later);
        if (written != f.path)
            QCOMPARE(fileBytes(f.path), stranger);
        // The next start finds all of it.
        f.restart();
        QCOMPARE(rowsInMemory(f.library()), later);
    }

    void unwritableLibraryKeepsEverything_data()
    {
        QTest::addColumn<QString>("problem");
        QTest::addColumn<QString>("cause");     // in the error's description
        QTest::addColumn<QString>("writtenTo"); // where the save goes once the problem is gone
        QTest::addColumn<bool>("permissions");  // a folder's permissions, which root is not held to
        QTest::newRow("file marked read-only") << "read-only file" << "read-only" << "Marlo.mdb" << false;
        QTest::newRow("deleted, the template missing") << "no template" << "template" << "Marlo.mdb" << false;
        QTest::newRow("deleted with its folder") << "no folder" << "could not be made" << "Marlo.mdb" << false;
        QTest::newRow("deleted, folder read-only") << "read-only folder" << "could not be made" << "Marlo.mdb" << true;
        QTest::newRow("replaced, folder read-only") << "replaced, read-only folder" << "could not be made" << "Marlo (2).mdb" << true;
    }
    void unwritableLibraryKeepsEverything()
    {
        QFETCH(QString, problem);
        QFETCH(QString, cause);
        QFETCH(QString, writtenTo);
        QFETCH(bool, permissions);
        if (permissions && ::geteuid() == 0)
            QSKIP("root writes into read-only folders: the permissions cannot be enforced");
        LIBRARY_FIXTURE(f);
        makeLibrary(f);
        if (QTest::currentTestFailed())
            return;
        const QStringList expected = rowsInMemory(f.library());
        const QStringList before = rowsInFile(f.path, true);
        const QString written = f.dir.filePath(writtenTo);
        const QString folder = f.dir.path();
        const QString templateFile = mDatabase::TemplatePath();
        const QString templateAside = templateFile + QStringLiteral(".aside");
        const QFileDevice::Permissions folderPermissions = QFile::permissions(folder);

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
            else if (problem == QLatin1String("no folder"))
                QDir().mkpath(folder);
            else
                QFile::setPermissions(folder, folderPermissions);
        };
        const auto guard = qScopeGuard(mend);
        QByteArray stranger;
        if (problem == QLatin1String("read-only file")) {
            QVERIFY(QFile::setPermissions(f.path, QFileDevice::ReadOwner | QFileDevice::ReadGroup | QFileDevice::ReadOther));
        } else if (problem == QLatin1String("no template")) {
            QVERIFY(QFile::remove(f.path));
            QVERIFY(QFile::rename(templateFile, templateAside));
        } else if (problem == QLatin1String("no folder")) {
            QVERIFY(QDir(folder).removeRecursively());
        } else {
            QVERIFY(QFile::remove(f.path));
            if (problem.startsWith(QLatin1String("replaced"))) {
                stranger = "not a library";
                writeFile(f.path, stranger);
            }
            QVERIFY(QFile::setPermissions(folder, QFileDevice::ReadOwner | QFileDevice::ExeOwner));
        }

        f.app().SaveLibrary();
        QCOMPARE(f.ui.errors.size(), 1);
        checkErrorsNameFileNotStatement(f.ui, written);
        QVERIFY2(f.ui.errors.first().Description().contains(cause), qPrintable(f.ui.errors.first().Description()));
        QVERIFY(f.ui.messages.isEmpty());
        // Nothing of the library is lost: it is all still in memory and still to be saved.
        QVERIFY(f.app().AnythingNeedSave());
        QCOMPARE(rowsInMemory(f.library()), expected);
        if (problem == QLatin1String("read-only file"))
            QCOMPARE(rowsInFile(f.path, true), before);
        else if (!stranger.isNull())
            QCOMPARE(fileBytes(f.path), stranger);
        else
            QVERIFY(!QFileInfo::exists(f.path));
        // Nothing half-made is left where the library goes.
        if (written != f.path)
            QVERIFY(!QFileInfo::exists(written));

        // Once it is mended, the next save writes it all.
        mend();
        f.ui.errors.clear();
        f.app().SaveLibrary();
        QVERIFY2(f.ui.errors.isEmpty(), qPrintable(f.firstError()));
        QCOMPARE(rowsInFile(written, true), expected);
        QCOMPARE(f.ui.messages.size(), problem == QLatin1String("read-only file") ? 0 : 1);
        if (!f.ui.messages.isEmpty())
            QVERIFY2(f.ui.messages.first().text.contains(native(written)), qPrintable(f.ui.messages.first().text));
        // A library written anew is all written; a usual save leaves a new setting that was
        // edited to be updated once more at the next save, as it always has.
        QCOMPARE(f.app().AnythingNeedSave(), problem == QLatin1String("read-only file"));
    }

    void damagedLibraryIsReportedByCauseAndPath_data()
    {
        QTest::addColumn<QString>("damage");
        QTest::addColumn<QString>("cause");
        QTest::addColumn<bool>("atOpen"); // found when the library is opened, else at a save
        QTest::newRow("garbage bytes") << "garbage" << "not an SQLite database" << true;
        QTest::newRow("SQLite without the tables") << "no tables" << "has no table ta_SetsTemplate" << true;
        QTest::newRow("pages overwritten") << "pages" << "damaged" << true;
        QTest::newRow("a table dropped while open") << "dropped" << "no such table: ta_UserVar" << false;
    }
    void damagedLibraryIsReportedByCauseAndPath()
    {
        QFETCH(QString, damage);
        QFETCH(QString, cause);
        QFETCH(bool, atOpen);
        LIBRARY_FIXTURE(f);
        const auto harm = [&] {
            if (damage == QLatin1String("garbage")) {
                writeFile(f.path, QByteArray("INSERT INTO ta_SetsTemplate SELECT nothing;\n").repeated(50));
            } else if (damage == QLatin1String("no tables")) {
                QVERIFY(QFile::remove(f.path));
                QVERIFY(runSql(f.path, {QStringLiteral("CREATE TABLE notes (x TEXT)")}));
            } else if (damage == QLatin1String("pages")) {
                QVERIFY(runSql(f.path, {templateRow(QStringLiteral("{A}"))}));
                QByteArray bytes = fileBytes(f.path);
                QVERIFY(bytes.size() > 1000);
                for (qsizetype i = 100; i < bytes.size(); ++i)
                    bytes[i] = char(0xA5);
                writeFile(f.path, bytes);
            } else {
                QVERIFY(f.exec(QStringLiteral("DROP TABLE ta_UserVar")));
            }
        };
        QByteArray damaged;
        if (atOpen) {
            harm();
            damaged = fileBytes(f.path);
        }
        f.library().Add()->setsName(QStringLiteral("new"));
        if (!atOpen)
            harm();
        f.app().SaveLibrary();
        QVERIFY(!f.ui.errors.isEmpty());
        checkErrorsNameFileNotStatement(f.ui, f.path);
        bool named = false;
        for (const MarloError& e : f.ui.errors)
            named = named || e.Description().contains(cause);
        QVERIFY2(named, qPrintable(f.firstError()));
        QVERIFY(f.ui.messages.isEmpty());
        QVERIFY(f.app().AnythingNeedSave());
        if (atOpen)
            QCOMPARE(fileBytes(f.path), damaged);
    }
};

QTEST_GUILESS_MAIN(tst_libraryFileGone)
#include "tst_libraryFileGone.moc"
