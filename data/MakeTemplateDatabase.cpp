// Build tool: makes the empty library template (instdbxx.tmp) from schema.sql.
//   MakeTemplateDatabase SCHEMA.sql OUTPUT
// The file is written beside OUTPUT first and renamed into place, so a failed build never
// leaves a half-made template behind.
#include <QCoreApplication>
#include <QFile>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QStringList>
#include <QTextStream>

namespace {

// The schema's statements: comments dropped, split at the semicolons (the schema holds no
// texts in which a semicolon could stand).
QStringList statements(const QString& schema)
{
    QString code;
    for (const QString& line : schema.split(QLatin1Char('\n'))) {
        const qsizetype comment = line.indexOf(QLatin1String("--"));
        code += (comment >= 0 ? line.left(comment) : line) + QLatin1Char('\n');
    }
    QStringList result;
    for (const QString& part : code.split(QLatin1Char(';'))) {
        if (!part.trimmed().isEmpty())
            result.append(part.trimmed());
    }
    return result;
}

int make(const QString& schemaPath, const QString& outputPath, QTextStream& err)
{
    QFile schemaFile(schemaPath);
    if (!schemaFile.open(QIODevice::ReadOnly | QIODevice::Text)) {
        err << "cannot read " << schemaPath << ": " << schemaFile.errorString() << '\n';
        return 1;
    }
    const QString schema = QString::fromUtf8(schemaFile.readAll());
    const QString partial = outputPath + QStringLiteral(".part");
    QFile::remove(partial);
    bool ok = true;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("template"));
        db.setDatabaseName(partial);
        if (!db.open()) {
            err << "cannot create " << partial << ": " << db.lastError().text() << '\n';
            ok = false;
        }
        for (const QString& statement : statements(schema)) {
            if (!ok)
                break;
            QSqlQuery query(db);
            if (!query.exec(statement)) {
                err << "schema statement failed: " << query.lastError().text() << '\n' << statement << '\n';
                ok = false;
            }
        }
        db.close();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("template"));
    if (!ok) {
        QFile::remove(partial);
        return 1;
    }
    QFile::remove(outputPath);
    if (!QFile::rename(partial, outputPath)) {
        err << "cannot write " << outputPath << '\n';
        QFile::remove(partial);
        return 1;
    }
    return 0;
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QTextStream err(stderr);
    const QStringList args = app.arguments();
    if (args.size() != 3) {
        err << "usage: MakeTemplateDatabase SCHEMA.sql OUTPUT\n";
        return 2;
    }
    return make(args[1], args[2], err);
}
