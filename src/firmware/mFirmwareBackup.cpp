#include "firmware/mFirmwareBackup.h"

#include "base/cText.h"
#include "base/mErrCodes.h"
#include "base/mErrorReport.h"
#include "base/mServices.h"
#include "firmware/mCommSupport.h"
#include "firmware/mFirmware.h"
#include "grip/cGripSession.h"
#include "grip/cGunInfo.h"
#include "grip/mCommSupportHex.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QTemporaryFile>

namespace mFirmwareBackup {
namespace {

const char* const kContext = "mFirmwareBackup";

// The hints are only ever shown: translated where they are made.
struct Texts {
    Q_DECLARE_TR_FUNCTIONS(mFirmwareBackup)
};

QString notWrittenHint()
{
    return Texts::tr("The grip's firmware could not be backed up, so nothing was written to the grip.");
}

// A serial number or version as part of a file name: letters, digits, "." and "-" stay.
QString namePart(const QString& text)
{
    QString part = text.trimmed();
    for (QChar& c : part) {
        const bool plain = (c >= QLatin1Char('0') && c <= QLatin1Char('9')) || (c >= QLatin1Char('A') && c <= QLatin1Char('Z')) ||
                           (c >= QLatin1Char('a') && c <= QLatin1Char('z')) || c == QLatin1Char('.') || c == QLatin1Char('-');
        if (!plain)
            c = QLatin1Char('_');
    }
    return part.isEmpty() ? QStringLiteral("unknown") : part;
}

QString fileName(const cGunInfo& gunInfo, const QDateTime& time)
{
    return namePart(gunInfo.Serial()) + QLatin1Char('_') + namePart(gunInfo.FirmwareBuild()) + QLatin1Char('_') +
           time.toString(QStringLiteral("yyyyMMdd-HHmmss")) + QStringLiteral(".tvf");
}

// A path in the folder that no file holds yet: two backups within a second keep apart.
QString newFilePath(const QString& folder, const QString& name)
{
    const QDir dir(folder);
    QString path = dir.filePath(name);
    const QString stem = QFileInfo(name).completeBaseName();
    for (int n = 2; QFileInfo::exists(path); ++n)
        path = dir.filePath(QStringLiteral("%1-%2.tvf").arg(stem).arg(n));
    return path;
}

// Why nothing can be saved in the folder; empty when a file can be.
cText folderProblem(const QString& folder)
{
    const QFileInfo info(folder);
    if (info.exists() && !info.isDir())
        return cText(kContext, QT_TRANSLATE_NOOP("mFirmwareBackup", "a file of that name is in the way"));
    if (!QDir().mkpath(folder))
        return cText(kContext, QT_TRANSLATE_NOOP("mFirmwareBackup", "the folder cannot be made"));
    QTemporaryFile probe(QDir(folder).filePath(QStringLiteral(".backup-XXXXXX")));
    return probe.open() ? cText() : cText(probe.errorString());
}

// After a failed backup the grip gets its program back. Should that fail too, the backup's error
// is the one to report; the next command starts the program.
void startProgramAgain(cGripSession& session, MarloError& failure)
{
    try {
        mCommSupportHex::GRIPStartProgram(session);
    } catch (...) {
        failure.addHint(Texts::tr("The grip's program could not be started again; the next command to the grip starts it."));
    }
}

} // namespace

QString DefaultFolder()
{
    return QDir(mMain::UserFilesFolder()).filePath(kFolderName);
}

void PrepareFolder(const QString& folder)
{
    PassErrors(kModule, kRevision, QStringLiteral("PrepareFolder"), [&] {
        const cText problem = folderProblem(folder);
        if (problem.isEmpty())
            return;
        //: A run-time error's message, the folder, then why it cannot take the backup.
        MarloError error(mErrCodes::RT_FILE_ACCESS, QString(),
                         cText(kContext, QT_TRANSLATE_NOOP("mFirmwareBackup", "%1: the backup folder %2 cannot take the backup: %3"),
                               {mErrCodes::RuntimeError(mErrCodes::RT_FILE_ACCESS), QDir::toNativeSeparators(folder), problem}));
        error.addHint(notWrittenHint());
        error.addHint(Texts::tr("Make the folder writable, or write the firmware without a backup."));
        throw error;
    });
}

QString BackUp(cGripSession& session, const QString& folder)
{
    try {
        return PassErrors(kModule, kRevision, QStringLiteral("BackUp"), [&](Procedure& proc) {
            FirmwareFile image;
            mCommSupport::DLFirmware(session, image);
            mFirmware::TakeBuilds(image, session.GunInfo());
            const QString path = newFilePath(folder, fileName(session.GunInfo(), QDateTime::currentDateTime()));
            proc.setName(QStringLiteral("BackUp - save (") + path + QLatin1Char(')'));
            mFirmware::SaveFirmwareFile(path, image);
            return path;
        });
    } catch (MarloError& failure) {
        failure.addHint(notWrittenHint());
        startProgramAgain(session, failure);
        throw;
    }
}

QString BackedUpHint(const QString& path)
{
    return Texts::tr("The grip's firmware as it was before this write is backed up in %1.").arg(QDir::toNativeSeparators(path));
}

} // namespace mFirmwareBackup
