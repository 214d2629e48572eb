#pragma once
// A history of what the grips held: one entry for every successful get or put of settings, with
// the time, the grip's serial number and firmware version, and the values that command knew, under
// the record and field names of marlo-cli's JSON. Kept in a folder with a file for each grip, one
// JSON object a line, so that an entry is added with one write and no exchange with the grip:
// - a write cut off by a kill leaves a broken last line, which is dropped and never spoils the rest;
// - at most kKeptPerGrip entries of a grip are listed; the file drops the oldest in batches;
// - a damaged file is set aside (renamed) and a new one started; the problem is told once.
// Nothing here raises: a history that cannot be written never stops a get or a put.
#include <QDateTime>
#include <QJsonObject>
#include <QList>
#include <QString>

class cGripHistory {
public:
    static constexpr qsizetype kKeptPerGrip = 1000;
    // How many entries of a grip beyond the kept ones the file may hold before it is rewritten.
    static constexpr qsizetype kSlack = 100;
    static inline const QString kFolderName = QStringLiteral("GripHistory");

    struct tEntry {
        QDateTime time;
        QString serial;
        QString firmware;
        QJsonObject values; // record name -> {field name -> value}

        QJsonObject ToJson() const;
        // False when the object is not an entry.
        static bool FromJson(const QJsonObject& json, tEntry& entry);
    };

    explicit cGripHistory(QString folder);
    // The history of this user: in the per-user data folder, or in $MARLO_HOME when it is set.
    static QString DefaultFolder();
    QString Folder() const { return m_folder; }
    // The file of one grip's entries.
    QString FileOf(const QString& serial) const;

    // Adds an entry; false (and a problem to tell) when it could not be written.
    bool Record(const tEntry& entry);
    // The entries, newest first: of one grip, or of all when serial is empty.
    QList<tEntry> Entries(const QString& serial = QString());
    // What went wrong since the last call (a damaged file set aside, a write that failed), each
    // told once for the life of this object (a full disk is not told at every get); empty when
    // nothing new did.
    QString TakeProblem();

private:
    struct tRead {
        QList<tEntry> entries; // oldest first
        bool damaged = false;
    };
    static tRead ReadFile(const QString& path);
    void SetAside(const QString& path);
    bool Compact(const QString& path, const QByteArray& held, qsizetype lines);
    void AddProblem(const QString& text);

    QString m_folder;
    QStringList m_problems;
    QStringList m_told;
};
