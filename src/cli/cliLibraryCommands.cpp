// marlo-cli: library list | show ID | export FILE | import FILE | delete ID
#include "cli/CliContext.h"

#include "base/mErrCodes.h"
#include "library/mDatabase.h"
#include "library/mLibraryExchange.h"
#include "shell/cApplication.h"
#include "shell/mMain.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QLocale>

namespace {

// Passes every service on to the terminal and counts the errors reported on the way, so that a
// command stops at the first one (already shown) instead of going on with a half-read library.
class CountingUi : public cUserInterface {
public:
    explicit CountingUi(cUserInterface& inner) : m_inner(inner) {}
    int errors = 0;

    void setBusyPointer(bool busy) override { m_inner.setBusyPointer(busy); }
    bool mainWindowVisible() const override { return m_inner.mainWindowVisible(); }
    void startProgress(int maximum) override { m_inner.startProgress(maximum); }
    void setProgress(int value) override { m_inner.setProgress(value); }
    int progress() const override { return m_inner.progress(); }
    void endProgress() override { m_inner.endProgress(); }
    QString stepText() const override { return m_inner.stepText(); }
    void setStepText(const QString& text) override { m_inner.setStepText(text); }
    void setFirmwareVersion(const QString& version) override { m_inner.setFirmwareVersion(version); }
    void showMessage(const QString& text, const QString& title, MsgIcon icon) override
    {
        m_inner.showMessage(text, title, icon);
    }
    bool askYesNo(const QString& text, const QString& title, MsgIcon icon, bool defaultNo) override
    {
        return m_inner.askYesNo(text, title, icon, defaultNo);
    }
    QString inputBox(const QString& prompt, const QString& title, const QString& defaultText) override
    {
        return m_inner.inputBox(prompt, title, defaultText);
    }
    std::optional<QString> openFileName(const FileDialogRequest& request) override
    {
        return m_inner.openFileName(request);
    }
    std::optional<QString> saveFileName(const FileDialogRequest& request) override
    {
        return m_inner.saveFileName(request);
    }
    void processEvents() override { m_inner.processEvents(); }
    void showError(const MarloError& error, const QString& version, const QString& title) override
    {
        ++errors;
        // A row that could not be read was left out of the library; the rest is usable.
        for (const ErrorFrame& frame : error.Trail()) {
            if (frame.procedure == QLatin1String("Init")) {
                ++rowErrors;
                break;
            }
        }
        m_inner.showError(error, version, title);
    }
    int rowErrors = 0;

private:
    cUserInterface& m_inner;
};

// One run against the library: the --db file in force, errors counted, the connection closed
// and the services restored at the end.
class LibraryRun {
public:
    explicit LibraryRun(const CliContext& ctx) : m_application(*ctx.application), m_previous(mMain::UI()), m_ui(m_previous)
    {
        if (!ctx.db.isEmpty())
            mDatabase::SetPathOverride(QFileInfo(ctx.db).absoluteFilePath());
        mMain::SetUserInterface(&m_ui);
    }
    ~LibraryRun()
    {
        mDatabase::DisconnectDB();
        mDatabase::SetPathOverride(QString());
        mMain::SetUserInterface(&m_previous);
    }
    LibraryRun(const LibraryRun&) = delete;
    LibraryRun& operator=(const LibraryRun&) = delete;

    bool failed() const { return m_ui.errors > 0; }

    // The library, loaded; nothing when it could not be found or read (the reason is shown).
    cColSetsTemplate* open()
    {
        if (!mMain::CheckForDB(m_application.RegistrySettings())) {
            if (failed())
                return nullptr; // the reason is shown already
            RaiseError(mErrCodes::RT_FILE_NOT_FOUND, mMain::kModule, cText(mDatabase::kContext, mDatabase::kCannotContinueText));
        }
        if (failed())
            return nullptr;
        if (!mMain::ConnectDB().isOpen() || failed())
            return nullptr;
        cColSetsTemplate& library = m_application.colSetsTemplate();
        // Rows that could not be read are reported and left out; any other failure of the load
        // leaves no library to work on.
        return m_ui.errors > m_ui.rowErrors ? nullptr : &library;
    }

private:
    cApplication& m_application;
    cUserInterface& m_previous;
    CountingUi m_ui;
};

std::shared_ptr<cSetsTemplate> findTemplate(cColSetsTemplate& library, const QString& which)
{
    // A plain number is the position shown by "library list".
    bool isNumber = false;
    const int position = which.toInt(&isNumber);
    std::shared_ptr<cSetsTemplate> record;
    if (isNumber) {
        int n = 0;
        for (const auto& member : library) {
            if (!member->IsDeleted() && ++n == position)
                record = member;
        }
    } else {
        record = library.Find(which);
        if (record && record->IsDeleted())
            record.reset();
    }
    if (!record)
        RaiseError(mErrCodes::RT_INVALID_CALL, QStringLiteral("marlo-cli"),
                   cText("CliTexts", QT_TRANSLATE_NOOP("CliTexts", "The library holds no template \"%1\"."), {which}));
    return record;
}

void printList(CliContext& ctx, cColSetsTemplate& library)
{
    if (ctx.json) {
        PrintJson(ctx, mLibraryExchange::TemplatesToJson(library));
        return;
    }
    const QStringList header = {QStringLiteral("#"), QStringLiteral("ID"), CliTexts::tr("Name"),
                                CliTexts::tr("Date"), CliTexts::tr("ROF bps"), CliTexts::tr("ST ms"),
                                CliTexts::tr("DT ms"), CliTexts::tr("CTO ms"), CliTexts::tr("LT ms"),
                                CliTexts::tr("CTC ms")};
    // Left-aligned: ID, name and date; the numbers are right-aligned.
    const QList<bool> left = {false, true, true, true, false, false, false, false, false, false};
    QList<QStringList> rows{header};
    int n = 0;
    for (const auto& record : library) {
        if (record->IsDeleted())
            continue;
        rows.append({QString::number(++n), CliText(record->ID()), CliText(record->sName()),
                     QLocale::c().toString(record->dtDate().date(), QStringLiteral("dd-MMM-yyyy")),
                     record->sROF(), QString::number(record->lShotTime()), QString::number(record->lDwellTime()),
                     QString::number(record->lCycleTimeOpen()), QString::number(record->lLoadTime()),
                     QString::number(record->lCycleTimeClose())});
    }
    QList<qsizetype> widths(header.size(), 0);
    for (const QStringList& row : rows) {
        for (qsizetype c = 0; c < row.size(); ++c)
            widths[c] = qMax(widths[c], row[c].size());
    }
    for (const QStringList& row : rows) {
        QString line;
        for (qsizetype c = 0; c < row.size(); ++c) {
            if (c > 0)
                line += QStringLiteral("  ");
            line += left[c] ? row[c].leftJustified(widths[c]) : row[c].rightJustified(widths[c]);
        }
        *ctx.out << line.trimmed() << '\n';
    }
    ctx.out->flush();
}

void printTemplate(CliContext& ctx, cSetsTemplate& record)
{
    const QJsonObject object = mLibraryExchange::TemplateToJson(record);
    if (ctx.json) {
        PrintJson(ctx, object);
        return;
    }
    CliFields fields;
    for (const QString& name : {QStringLiteral("ID"), QStringLiteral("ParentID"), QStringLiteral("Version"),
                                QStringLiteral("sName"), QStringLiteral("dtDate")})
        fields.append({name, CliText(object.value(name).toString())});
    for (const QString& name : {QStringLiteral("lShotTime"), QStringLiteral("lDwellTime"),
                                QStringLiteral("lCycleTimeOpen"), QStringLiteral("lLoadTime"),
                                QStringLiteral("lCycleTimeClose"), QStringLiteral("lFiringMode"),
                                QStringLiteral("lGameTime")})
        fields.append({name, object.value(name).toInt()});
    for (const QString& name : {QStringLiteral("bCTCLikeCTO"), QStringLiteral("bExpertMode"),
                                QStringLiteral("bAlertOne"), QStringLiteral("bAlertTwo")})
        fields.append({name, object.value(name).toBool()});
    fields.append({QStringLiteral("lAlertOne"), object.value(QStringLiteral("lAlertOne")).toInt()});
    fields.append({QStringLiteral("lAlertTwo"), object.value(QStringLiteral("lAlertTwo")).toInt()});
    fields.append({QStringLiteral("ROF"), record.sROF()});
    PrintFields(ctx, fields);
    const QJsonArray vars = object.value(QStringLiteral("UserVariables")).toArray();
    *ctx.out << "UserVariables: " << vars.size() << '\n';
    for (const QJsonValue& var : vars)
        *ctx.out << "  " << CliText(var[QLatin1String("sName")].toString()) << ": "
                 << CliText(var[QLatin1String("sValue")].toString()) << '\n';
    ctx.out->flush();
}

void checkArguments(const CliContext& ctx, const QString& command, const QString& argument)
{
    const qsizetype expected = argument.isEmpty() ? 1 : 2;
    if (ctx.words.size() != expected)
        throw CliUsageError(argument.isEmpty() ? CliTexts::tr("library %1 takes no arguments").arg(command)
                                               : CliTexts::tr("library %1 needs %2").arg(command, argument));
}

} // namespace

std::shared_ptr<cSetsTemplate> FindLibraryTemplate(CliContext& ctx, const QString& which)
{
    LibraryRun run(ctx);
    cColSetsTemplate* library = run.open();
    if (!library)
        return nullptr;
    return findTemplate(*library, which);
}

int RunLibraryCommand(CliContext& ctx)
{
    if (ctx.words.isEmpty())
        throw CliUsageError(CliTexts::tr("library needs a command: list | show ID | export FILE | import FILE | delete ID"));
    const QString command = ctx.words.first();
    if (command == QLatin1String("list"))
        checkArguments(ctx, command, QString());
    else if (command == QLatin1String("show") || command == QLatin1String("delete"))
        checkArguments(ctx, command, CliTexts::tr("an ID"));
    else if (command == QLatin1String("export") || command == QLatin1String("import"))
        checkArguments(ctx, command, QStringLiteral("a FILE"));
    else
        throw CliUsageError(CliTexts::tr("unknown library command '%1' (list | show ID | export FILE | import FILE | delete ID)").arg(command));

    LibraryRun run(ctx);
    cColSetsTemplate* library = run.open();
    if (!library)
        return ExitError;

    if (command == QLatin1String("list")) {
        printList(ctx, *library);
    } else if (command == QLatin1String("show")) {
        printTemplate(ctx, *findTemplate(*library, ctx.words[1]));
    } else if (command == QLatin1String("export")) {
        const QString file = ctx.words[1];
        if (file == QLatin1String("-")) {
            *ctx.out << mLibraryExchange::ExportDocument(*library);
            ctx.out->flush();
        } else {
            mLibraryExchange::ExportFile(*library, file);
        }
    } else {
        cApplication& application = *ctx.application;
        if (command == QLatin1String("delete")) {
            findTemplate(*library, ctx.words[1])->setIsDeleted(true);
            application.SaveLibraryOrThrow();
        } else {
            const auto summary = mLibraryExchange::ImportFile(*library, ctx.words[1]);
            // All or nothing: an error, or a kill at any moment, leaves the library as it was.
            application.SaveLibraryOrThrow(cApplication::SaveMode::OneTransaction);
            PrintFields(ctx, {{QStringLiteral("added"), summary.added},
                              {QStringLiteral("updated"), summary.updated},
                              {QStringLiteral("unchanged"), summary.unchanged}});
        }
    }
    return run.failed() ? ExitError : ExitOk;
}
