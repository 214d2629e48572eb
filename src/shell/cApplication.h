#pragma once
// The application object: the root of shared state for the whole run. The program builds it over
// the preferences store it built, and hands both down; the application object owns the library
// collection (loaded on first use) and the key of the active setting.
#include "base/cRegistrySettings.h"
#include "library/cColSetsTemplate.h"

#include <QString>
#include <memory>

class cApplication {
    Q_DECLARE_TR_FUNCTIONS(cApplication)

public:
    static inline const QString kClass = QStringLiteral("cApplication");
    static inline const QString kRevision = QStringLiteral("$Revision: 1 $");

    // The caller keeps the preferences, which must outlive the application object; they name the
    // library file for as long as it lives.
    explicit cApplication(cRegistrySettings& preferences);
    // Drops the library collection, without saving.
    ~cApplication();
    cApplication(const cApplication&) = delete;
    cApplication& operator=(const cApplication&) = delete;

    // The preferences it was built over.
    cRegistrySettings& RegistrySettings() { return m_preferences; }

    // The library: made on first access and loaded with every row of the library file.
    cColSetsTemplate& colSetsTemplate();
    // True once the library was opened (nothing is loaded by asking).
    bool LibraryMade() const { return m_colSetsTemplate != nullptr; }

    // The library member whose ID is the active key; nothing when there is none (a key that is
    // not in the library is not reported).
    std::shared_ptr<cSetsTemplate> ActiveSetting();
    // Only a member of the library can be active: any other record leaves no active setting.
    void setActiveSetting(const std::shared_ptr<cSetsTemplate>& record);

    // False while the library was never opened; otherwise whether anything in it changed, or
    // its file was deleted or replaced meanwhile.
    bool AnythingNeedSave();

    // How a save writes: statement by statement, each standing alone (the window), or all of
    // it as one transaction (marlo-cli's import).
    enum class SaveMode { EachStatement, OneTransaction };
    // Saves the library: its collection's Save on the shared connection, after making sure the
    // file the connection opened is still at its path. A library file deleted meanwhile is made
    // anew at that path; one replaced by another file is left alone and the library is written
    // beside it, which is the library from then on. Either way every template and user variable
    // in memory is written and the user is told where (once that save has gone through). A
    // library that cannot be written is the database error, and everything stays in memory to
    // be saved again.
    void SaveLibrary(SaveMode mode = SaveMode::EachStatement);
    void SaveLibraryOrThrow(SaveMode mode = SaveMode::EachStatement);

    // Makes a record that is not in the library a named template of it: added (its ParentID
    // becomes empty) and renamed "<name or [Untitled]> (promoted from statistic)". A record
    // already in the library fails at the duplicate key and is not renamed.
    void PromoteSetting(const std::shared_ptr<cSetsTemplate>& record);

    // The message of a library written anew (in the user's language), and its title (in English).
    static QString LibraryDeletedText(const QString& path);
    static QString LibraryReplacedText(const QString& path, const QString& beside);
    static inline const QString kLibraryFileTitle = QStringLiteral(QT_TRANSLATE_NOOP("cApplication", "Library file"));

private:
    // Reopens the connection on a new file when the opened one was deleted or replaced; true
    // when it did (the whole library is then to be written).
    bool keepLibraryFileOrThrow();
    bool libraryFileGone();
    void switchLibraryPath(const QString& from, const QString& to);

    cRegistrySettings& m_preferences;
    std::unique_ptr<cColSetsTemplate> m_colSetsTemplate;
    QString m_activeKey;
    // Said once the library written anew is all written (a failed save leaves it to the next).
    QString m_libraryNote;
};
