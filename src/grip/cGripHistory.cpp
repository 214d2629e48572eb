#include "grip/cGripHistory.h"

#include "base/mServices.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QJsonDocument>
#include <QSaveFile>
#include <algorithm>

namespace {

const QString kTime = QStringLiteral("time");
const QString kSerial = QStringLiteral("serial");
const QString kFirmware = QStringLiteral("firmware");

QByteArray lineOf(const cGripHistory::tEntry& entry)
{
    return QJsonDocument(entry.ToJson()).toJson(QJsonDocument::Compact) + '\n';
}

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(cGripHistory)
};

} // namespace

QJsonObject cGripHistory::tEntry::ToJson() const
{
    QJsonObject json = values;
    json.insert(kTime, time.toString(Qt::ISODateWithMs));
    json.insert(kSerial, serial);
    json.insert(kFirmware, firmware);
    return json;
}

bool cGripHistory::tEntry::FromJson(const QJsonObject& json, tEntry& entry)
{
    if (!json.value(kTime).isString() || !json.value(kSerial).isString() || !json.value(kFirmware).isString())
        return false;
    entry.time = QDateTime::fromString(json.value(kTime).toString(), Qt::ISODateWithMs);
    if (!entry.time.isValid())
        return false;
    entry.serial = json.value(kSerial).toString();
    entry.firmware = json.value(kFirmware).toString();
    entry.values = QJsonObject();
    for (auto it = json.begin(); it != json.end(); ++it) {
        if (it.value().isObject())
            entry.values.insert(it.key(), it.value());
        else if (it.key() != kTime && it.key() != kSerial && it.key() != kFirmware)
            return false;
    }
    return true;
}

cGripHistory::cGripHistory(QString folder) : m_folder(std::move(folder)) {}

QString cGripHistory::DefaultFolder()
{
    return QDir(mMain::UserFilesFolder()).filePath(kFolderName);
}

QString cGripHistory::FileOf(const QString& serial) const
{
    // A serial number is ten characters of the grip's choosing: what a file name cannot hold as
    // it is goes as its code.
    QString name;
    for (const QChar c : serial) {
        const bool plain = (c >= QLatin1Char('0') && c <= QLatin1Char('9')) || (c >= QLatin1Char('A') && c <= QLatin1Char('Z')) ||
                           (c >= QLatin1Char('a') && c <= QLatin1Char('z')) || c == QLatin1Char('-');
        name += plain ? QString(c) : QStringLiteral("_%1").arg(c.unicode(), 4, 16, QLatin1Char('0'));
    }
    return QDir(m_folder).filePath((name.isEmpty() ? QStringLiteral("_") : name) + QStringLiteral(".jsonl"));
}

bool cGripHistory::Record(const tEntry& entry)
{
    const QString path = FileOf(entry.serial);
    QDir().mkpath(m_folder);
    QByteArray held;
    {
        QFile file(path);
        if (file.exists() && file.open(QIODevice::ReadOnly))
            held = file.readAll();
    }
    // Every entry is an object: anything else at the start is not a history.
    if (!held.isEmpty() && !held.startsWith('{')) {
        SetAside(path);
        held.clear();
    }
    QByteArray line = lineOf(entry);
    if (!held.isEmpty() && !held.endsWith('\n'))
        line.prepend('\n'); // the last entry was cut off: it stays on a line of its own
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Append) || file.write(line) != line.size() || !file.flush()) {
        AddProblem(Texts::tr("The grip history could not be written to %1: %2").arg(QDir::toNativeSeparators(path), file.errorString()));
        return false;
    }
    file.close();
    held += line;
    const qsizetype lines = held.count('\n');
    return lines <= kKeptPerGrip + kSlack || Compact(path, held, lines);
}

QList<cGripHistory::tEntry> cGripHistory::Entries(const QString& serial)
{
    QStringList files;
    if (serial.isEmpty()) {
        for (const QString& name : QDir(m_folder).entryList({QStringLiteral("*.jsonl")}, QDir::Files))
            files.append(QDir(m_folder).filePath(name));
    } else {
        files.append(FileOf(serial));
    }
    QList<tEntry> entries;
    for (const QString& path : files) {
        const tRead read = ReadFile(path);
        if (read.damaged) {
            SetAside(path);
            continue;
        }
        QHash<QString, qsizetype> listed;
        for (auto it = read.entries.crbegin(); it != read.entries.crend(); ++it) {
            if ((serial.isEmpty() || it->serial == serial) && ++listed[it->serial] <= kKeptPerGrip)
                entries.append(*it);
        }
    }
    // Newest first across grips; within a grip the file's order stands for equal times.
    std::stable_sort(entries.begin(), entries.end(), [](const tEntry& a, const tEntry& b) { return a.time > b.time; });
    return entries;
}

QString cGripHistory::TakeProblem()
{
    const QString text = m_problems.join(QLatin1Char('\n'));
    m_told += m_problems;
    m_problems.clear();
    return text;
}

cGripHistory::tRead cGripHistory::ReadFile(const QString& path)
{
    tRead read;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return read;
    const QByteArray text = file.readAll();
    for (const QByteArray& line : text.split('\n')) {
        if (line.trimmed().isEmpty())
            continue;
        const QJsonDocument document = QJsonDocument::fromJson(line);
        tEntry entry;
        if (document.isObject() && tEntry::FromJson(document.object(), entry))
            read.entries.append(entry);
        else if (!line.startsWith('{'))
            read.damaged = true;
        // else: an entry cut off while it was written, dropped.
    }
    return read;
}

void cGripHistory::SetAside(const QString& path)
{
    const QString stamp = QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss"));
    QString aside = path + QStringLiteral(".damaged-") + stamp;
    for (int n = 2; QFileInfo::exists(aside); ++n)
        aside = path + QStringLiteral(".damaged-%1-%2").arg(stamp).arg(n);
    if (QFile::rename(path, aside)) {
        AddProblem(Texts::tr("The grip history %1 could not be read. It was set aside as %2, and a new history was begun.")
                       .arg(QDir::toNativeSeparators(path), QDir::toNativeSeparators(aside)));
    } else {
        AddProblem(Texts::tr("The grip history %1 could not be read, nor set aside; remove or rename it.")
                       .arg(QDir::toNativeSeparators(path)));
    }
}

bool cGripHistory::Compact(const QString& path, const QByteArray& held, qsizetype lines)
{
    // The oldest lines go, by their line ends alone: reading what they hold is the listing's work.
    qsizetype from = 0;
    for (qsizetype drop = lines - kKeptPerGrip; drop > 0 && from >= 0; --drop)
        from = held.indexOf('\n', from) + 1;
    // Written whole to a new file that then takes the old one's place, so that a kill leaves
    // either history, never a part.
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.write(held.mid(from)) == held.size() - from && file.commit())
        return true;
    AddProblem(Texts::tr("The grip history could not be written to %1: %2").arg(QDir::toNativeSeparators(path), file.errorString()));
    return false;
}

void cGripHistory::AddProblem(const QString& text)
{
    if (!m_problems.contains(text) && !m_told.contains(text))
        m_problems.append(text);
}
