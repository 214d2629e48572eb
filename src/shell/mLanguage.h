#pragma once
// The language the program speaks: its own translation (marlo_LANG.qm) and Qt's (qtbase_LANG.qm,
// the standard buttons and dialogs) for the user's locale, English when there is none. English is
// the language the program is written in, so it needs no file; what goes to files (the traffic
// log, firmware files, the library, JSON) stays English whatever is loaded.
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

namespace mLanguage {

// The languages the user asks for, best first, as gettext reads the environment: LANGUAGE (a
// list separated by ":") unless the messages locale (LC_ALL, else LC_MESSAGES, else LANG) is C or
// POSIX or unset, in which case English; else the messages locale. Encodings and modifiers are
// dropped ("de_DE.UTF-8@euro" is "de_DE").
QStringList WantedLanguages(const QProcessEnvironment& environment = QProcessEnvironment::systemEnvironment());

// The folders that may hold the program's translations: "translations" beside the executable
// (a build tree), then the installed share/marlo/translations.
QStringList TranslationFolders();

// Loads and installs the translation for the first wanted language that has one, before any
// English one ("en..." ends the search: English is built in), together with Qt's own for the same
// language when it can be found. The translators belong to the application object. A missing,
// unreadable or broken file is passed over. Answers the language loaded ("de", "de_AT"), or empty
// for English.
QString Install(const QStringList& wanted = WantedLanguages(), const QStringList& folders = TranslationFolders());

// Removes and deletes the translators Install installed (the program speaks English again).
void Remove();

} // namespace mLanguage
