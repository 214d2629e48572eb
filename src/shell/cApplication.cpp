#include "shell/cApplication.h"

#include "library/mDatabase.h"
#include "shell/mMain.h"

#include <QDir>
#include <QFileInfo>
#include <utility>

cApplication::cApplication(cRegistrySettings& preferences) : m_preferences(preferences)
{
    mDatabase::SetPreferences(&m_preferences);
}

cApplication::~cApplication()
{
    ShowErrors(kClass, kRevision, QStringLiteral("Class_Terminate"), [this] {
        m_colSetsTemplate.reset();
    });
    mDatabase::SetPreferences(nullptr);
}

cColSetsTemplate& cApplication::colSetsTemplate()
{
    if (!m_colSetsTemplate) {
        m_colSetsTemplate = std::make_unique<cColSetsTemplate>();
        ShowErrors(kClass, kRevision, QStringLiteral("colSetsTemplate"), [this] {
            QSqlDatabase connection;
            m_colSetsTemplate->Load(connection);
        });
    }
    return *m_colSetsTemplate;
}

std::shared_ptr<cSetsTemplate> cApplication::ActiveSetting()
{
    std::shared_ptr<cSetsTemplate> active;
    ShowErrors(kClass, kRevision, QStringLiteral("Get ActiveSetting"), [&] {
        if (!m_activeKey.isEmpty())
            active = colSetsTemplate().Find(m_activeKey);
    });
    return active;
}

void cApplication::setActiveSetting(const std::shared_ptr<cSetsTemplate>& record)
{
    ShowErrors(kClass, kRevision, QStringLiteral("Set ActiveSetting"), [&] {
        if (record && colSetsTemplate().Contains(record->ID()))
            m_activeKey = record->ID();
        else
            m_activeKey.clear();
    });
}

bool cApplication::AnythingNeedSave()
{
    bool needSave = false;
    ShowErrors(kClass, kRevision, QStringLiteral("AnythingNeedSave"), [&] {
        needSave = m_colSetsTemplate && (m_colSetsTemplate->IsDirty() || libraryFileGone());
    });
    return needSave;
}

void cApplication::PromoteSetting(const std::shared_ptr<cSetsTemplate>& record)
{
    ShowErrors(kClass, kRevision, QStringLiteral("PromoteSetting"), [&] {
        colSetsTemplate().AddByObjectOrThrow(record);
        const QString name = record->sName().isEmpty() ? QStringLiteral("[Untitled]") : record->sName();
        record->setsName(name + QStringLiteral(" (promoted from statistic)"));
    });
}

QString cApplication::LibraryDeletedText(const QString& path)
{
    const QString file = QDir::toNativeSeparators(path);
    return tr("The library file \"%1\" had been deleted.\r\nThe whole library was written anew at \"%1\".").arg(file);
}

QString cApplication::LibraryReplacedText(const QString& path, const QString& beside)
{
    return tr("The library file \"%1\" had been replaced by another file, which was left as it is.\r\n"
              "The whole library was written beside it to \"%2\", which is the library from now on.")
        .arg(QDir::toNativeSeparators(path), QDir::toNativeSeparators(beside));
}

void cApplication::SaveLibrary(SaveMode mode)
{
    ShowErrors(kClass, kRevision, QStringLiteral("SaveLibrary"), [&] { SaveLibraryOrThrow(mode); });
}

void cApplication::SaveLibraryOrThrow(SaveMode mode)
{
    PassErrors(kClass, kRevision, QStringLiteral("SaveLibrary"), [&] {
        cColSetsTemplate& library = colSetsTemplate();
        if (keepLibraryFileOrThrow())
            library.MarkAllNew();
        QSqlDatabase connection;
        if (mode == SaveMode::OneTransaction) {
            try {
                mDatabase::RunInTransaction(connection, [&] { library.SaveOrThrow(connection); });
            } catch (...) {
                // Nothing of a library being written anew took effect: all of it is still to write.
                if (!m_libraryNote.isEmpty())
                    library.MarkAllNew();
                throw;
            }
        } else {
            library.SaveOrThrow(connection);
        }
        if (!m_libraryNote.isEmpty())
            mMain::UI().showMessage(std::exchange(m_libraryNote, QString()), cText::Translated("cApplication", kLibraryFileTitle),
                                    MsgIcon::Exclamation);
    });
}

bool cApplication::libraryFileGone()
{
    // Beyond the classic question, which asks only about changes: a library file deleted or
    // replaced while the program ran is to be saved too, or closing would lose the library.
    using mDatabase::LibraryFileCheck;
    try {
        const LibraryFileCheck check = mDatabase::CheckOpenedLibraryFile();
        return check == LibraryFileCheck::Deleted || check == LibraryFileCheck::Replaced;
    } catch (const MarloError&) {
        return true; // the file cannot be reached: the save will say why
    }
}

bool cApplication::keepLibraryFileOrThrow()
{
    using mDatabase::LibraryFileCheck;
    const QString opened = mDatabase::OpenedLibraryPath();
    const LibraryFileCheck check = mDatabase::CheckOpenedLibraryFile();
    QString target;
    switch (check) {
    case LibraryFileCheck::Unopened:
        // Never opened (the reason was shown then): the save reports it again.
        return false;
    case LibraryFileCheck::Same:
        mDatabase::VerifyWritable(opened);
        return false;
    case LibraryFileCheck::Deleted:
        target = opened;
        break;
    case LibraryFileCheck::Replaced:
        // The other file is not ours to write: the library goes beside it.
        target = mDatabase::FreeNameBeside(opened);
        break;
    }
    // The program otherwise never reopens its connection during a run; it does here, so that a
    // library file deleted or replaced while the program ran loses nothing.
    mDatabase::ReopenOnNewLibraryFile(target);
    if (check == LibraryFileCheck::Deleted) {
        m_libraryNote = LibraryDeletedText(target);
    } else {
        switchLibraryPath(opened, target);
        m_libraryNote = LibraryReplacedText(opened, target);
    }
    return true;
}

void cApplication::switchLibraryPath(const QString& from, const QString& to)
{
    // A library given for one run (marlo-cli --db) stays out of the preferences.
    if (!mDatabase::PathOverride().isEmpty()) {
        mDatabase::SetPathOverride(to);
        return;
    }
    // The next start opens the file that holds the library, unless another library was chosen
    // in the options meanwhile: that choice stands.
    const auto same = [](const QString& a, const QString& b) {
        return QDir::cleanPath(QFileInfo(a).absoluteFilePath()) == QDir::cleanPath(QFileInfo(b).absoluteFilePath());
    };
    if (!same(mDatabase::LibraryPath(), from))
        return;
    cRegistrySettings& settings = RegistrySettings();
    const bool changed = settings.DBChanged();
    settings.setDBName(to);
    // Every ID is kept in the new file, so the last active setting is still found there: the
    // change of file must not make the next start forget it.
    settings.setDBChanged(changed);
}
