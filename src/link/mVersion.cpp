#include "link/mVersion.h"

#include "base/mErrCodes.h"
#include "base/mErrorReport.h"

#include <QStringList>

namespace mVersion {
namespace {

qint32 toLong(const QString& part)
{
    bool ok = false;
    const double number = part.trimmed().toDouble(&ok);
    if (!ok)
        RaiseRuntimeError(mErrCodes::RT_TYPE_MISMATCH);
    if (number < -2147483648.0 || number > 2147483647.0)
        RaiseRuntimeError(mErrCodes::RT_OVERFLOW);
    return static_cast<qint32>(qRound64(number));
}

// The comparison key: major * 2^26 + minor * 2^16 + revision in signed 32-bit arithmetic.
// Minor numbers above 1023 and revisions above 65535 spill into the next field; that is kept.
qint32 versionKey(const QString& text)
{
    const qint64 key = static_cast<qint64>(GetVersionMajor(text)) * 67108864 +
                       static_cast<qint64>(GetVersionMinor(text)) * 65536 + GetVersionRevision(text);
    if (key < INT32_MIN || key > INT32_MAX)
        RaiseRuntimeError(mErrCodes::RT_OVERFLOW);
    return static_cast<qint32>(key);
}

} // namespace

void GetVersionInfo(const QString& text, qint32& major, qint32& minor, qint32& revision)
{
    PassErrors(kModule, kRevision, QStringLiteral("GetVersionInfo"), [&] {
        const QStringList parts = text.split(QLatin1Char('.'));
        if (parts.size() != 3)
            RaiseError(mErrCodes::ERR_VERSION_FORMAT, QStringLiteral("GetVersionInfo"),
                       mErrCodes::MessageText(mErrCodes::MSG_VERSION_FORMAT));
        qint32* outputs[3] = {&major, &minor, &revision};
        for (int i = 0; i < 3; ++i) {
            if (!parts[i].isEmpty())
                *outputs[i] = toLong(parts[i]);
        }
    });
}

void str2tVersion(const QString& text, tVersion& version)
{
    PassErrors(kModule, kRevision, QStringLiteral("str2tVersion"), [&] {
        qint32 major = 0, minor = 0, revision = 0;
        GetVersionInfo(text, major, minor, revision);
        if (major < 0 || major > 255 || minor < 0 || minor > 255)
            RaiseRuntimeError(mErrCodes::RT_OVERFLOW);
        version.Major = static_cast<quint8>(major);
        version.Minor = static_cast<quint8>(minor);
        version.Revision = revision;
    });
}

qint32 GetVersionMajor(const QString& text)
{
    return PassErrors(kModule, kRevision, QStringLiteral("GetVersionMajor"), [&] {
        qint32 major = 0, minor = 0, revision = 0;
        GetVersionInfo(text, major, minor, revision);
        return major;
    });
}

qint32 GetVersionMinor(const QString& text)
{
    return PassErrors(kModule, kRevision, QStringLiteral("GetVersionMinor"), [&] {
        qint32 major = 0, minor = 0, revision = 0;
        GetVersionInfo(text, major, minor, revision);
        return minor;
    });
}

qint32 GetVersionRevision(const QString& text)
{
    return PassErrors(kModule, kRevision, QStringLiteral("GetVersionRevision"), [&] {
        qint32 major = 0, minor = 0, revision = 0;
        GetVersionInfo(text, major, minor, revision);
        return revision;
    });
}

qint32 VersionCompare(const QString& a, const QString& b)
{
    return PassErrors(kModule, kRevision, QStringLiteral("VersionCompare"), [&] {
        const qint32 keyA = versionKey(a);
        const qint32 keyB = versionKey(b);
        if (keyA > keyB)
            return -1;
        return keyA == keyB ? 0 : 1;
    });
}

bool AtLeast(const QString& version, const QString& threshold)
{
    return VersionCompare(version, threshold) < 1;
}

} // namespace mVersion
