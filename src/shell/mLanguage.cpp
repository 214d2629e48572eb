#include "shell/mLanguage.h"

#include "base/mServices.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLibraryInfo>
#include <QTranslator>
#include <memory>

namespace mLanguage {
namespace {

const QString kProgramTranslator = QStringLiteral("marlo");
const QString kQtTranslator = QStringLiteral("qtbase");

// "de_DE.UTF-8@euro" -> "de_DE"; "de-DE" -> "de_DE".
QString languageOf(QString locale)
{
    locale = locale.section(QLatin1Char('@'), 0, 0).section(QLatin1Char('.'), 0, 0).trimmed();
    return locale.replace(QLatin1Char('-'), QLatin1Char('_'));
}

bool isCLocale(const QString& language)
{
    return language.isEmpty() || language == QLatin1String("C") || language == QLatin1String("POSIX");
}

bool isEnglish(const QString& language)
{
    return isCLocale(language) || language == QLatin1String("en") || language.startsWith(QLatin1String("en_"));
}

// A translator of the application object loaded from name_language.qm (or, for "de_DE", from
// name_de.qm) in the first folder that has a good one; nothing when none has.
QTranslator* load(const QString& name, const QString& language, const QStringList& folders)
{
    auto translator = std::make_unique<QTranslator>();
    for (const QString& folder : folders) {
        if (!folder.isEmpty() && translator->load(name + QLatin1Char('_') + language, folder)) {
            translator->setObjectName(name);
            translator->setParent(QCoreApplication::instance());
            return translator.release();
        }
    }
    return nullptr;
}

} // namespace

QStringList WantedLanguages(const QProcessEnvironment& environment)
{
    QString messages;
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        messages = environment.value(QString::fromLatin1(variable));
        if (!messages.isEmpty())
            break;
    }
    if (isCLocale(languageOf(messages)))
        return {QStringLiteral("en")};
    QStringList wanted;
    const QStringList listed = environment.value(QStringLiteral("LANGUAGE")).split(QLatin1Char(':'), Qt::SkipEmptyParts);
    for (const QString& entry : listed.isEmpty() ? QStringList{messages} : listed) {
        const QString language = languageOf(entry);
        if (!language.isEmpty() && !wanted.contains(language))
            wanted << language;
    }
    return wanted;
}

QStringList TranslationFolders()
{
    if (!QCoreApplication::instance())
        return {};
    const QDir executable(QCoreApplication::applicationDirPath());
    return {executable.filePath(QStringLiteral("translations")),
            QDir::cleanPath(executable.filePath(mMain::kInstalledDataFolder + QStringLiteral("/translations")))};
}

QString Install(const QStringList& wanted, const QStringList& folders)
{
    if (!QCoreApplication::instance())
        return {};
    for (const QString& language : wanted) {
        if (isEnglish(language))
            return {};
        QTranslator* own = load(kProgramTranslator, language, folders);
        if (!own)
            continue;
        // Qt's own only with the program's: a language the program does not speak (a right-to-left
        // one included) leaves the whole window English, left to right.
        if (QTranslator* qt = load(kQtTranslator, language, {QLibraryInfo::path(QLibraryInfo::TranslationsPath)}))
            QCoreApplication::installTranslator(qt);
        QCoreApplication::installTranslator(own);
        // The language of the file found: "de" for a wanted "de_DE" that marlo_de.qm serves.
        return QFileInfo(own->filePath()).completeBaseName().mid(kProgramTranslator.size() + 1);
    }
    return {};
}

void Remove()
{
    if (!QCoreApplication::instance())
        return;
    const QList<QTranslator*> translators =
        QCoreApplication::instance()->findChildren<QTranslator*>(QString(), Qt::FindDirectChildrenOnly);
    for (QTranslator* translator : translators) {
        if (translator->objectName() == kProgramTranslator || translator->objectName() == kQtTranslator) {
            QCoreApplication::removeTranslator(translator);
            delete translator;
        }
    }
}

} // namespace mLanguage
