#include "base/mErrCodes.h"

namespace mErrCodes {

QString ResetCounterMessage(qint32 parameter)
{
    return QStringLiteral("An unknown error occurred during resetting counter (parameter: %1).")
        .arg(parameter);
}

QString DownloadFailedText(qint32 address)
{
    return QStringLiteral("Download failed at address: %1").arg(address);
}

QString UploadFailedText(qint32 address)
{
    return QStringLiteral("Upload failed at address: %1").arg(address);
}

QString FirmwareImageText(qint32 line, const QString& problem)
{
    return QStringLiteral("The firmwarefile cannot be uploaded: line %1: %2.\r\nNothing was sent to the grip.")
        .arg(line)
        .arg(problem);
}

QString RuntimeErrorText(qint32 number)
{
    switch (number) {
    case RT_INVALID_CALL: return QStringLiteral("Invalid procedure call or argument");
    case RT_OVERFLOW: return QStringLiteral("Overflow");
    case RT_SUBSCRIPT: return QStringLiteral("Subscript out of range");
    case RT_TYPE_MISMATCH: return QStringLiteral("Type mismatch");
    case RT_OBJECT_NOT_SET: return QStringLiteral("Object variable or With block variable not set");
    case RT_FILE_NOT_FOUND: return QStringLiteral("File not found");
    case RT_FILE_ACCESS: return QStringLiteral("Path/File access error");
    case RT_INVALID_PROPERTY: return QStringLiteral("Invalid property value");
    case RT_DUPLICATE_KEY:
        return QStringLiteral("This key is already associated with an element of this collection");
    case RT_DEVICE_NOT_OPEN: return QStringLiteral("Port not open");
    case RT_PORT_OPEN_FAILED: return QStringLiteral("Invalid port number");
    case RT_DATABASE: return QStringLiteral("Database error");
    default: return QStringLiteral("Application-defined or object-defined error");
    }
}

} // namespace mErrCodes
