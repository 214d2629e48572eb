#pragma once
// Version texts "major.minor.revision" and their numeric comparison.
#include <QString>

namespace mVersion {

inline const QString kModule = QStringLiteral("mVersion");
inline const QString kRevision = QStringLiteral("$Revision: 10 $");

struct tVersion {
    quint8 Major = 0;
    quint8 Minor = 0;
    qint32 Revision = 0;
};

// Splits a version text into its three numbers; raises 10012 unless there are exactly three
// parts. An empty part leaves its output unchanged; a part that is no number is a type mismatch.
void GetVersionInfo(const QString& text, qint32& major, qint32& minor, qint32& revision);
// Major and minor as bytes (above 255 is an overflow), revision as an integer.
void str2tVersion(const QString& text, tVersion& version);
qint32 GetVersionMajor(const QString& text);
qint32 GetVersionMinor(const QString& text);
qint32 GetVersionRevision(const QString& text);
// -1 when a is newer than b, 0 when equal, 1 when b is newer.
qint32 VersionCompare(const QString& a, const QString& b);
// True when version is at least threshold (VersionCompare(version, threshold) < 1).
bool AtLeast(const QString& version, const QString& threshold);

} // namespace mVersion
