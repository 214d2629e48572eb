#include "base/mErrCodes.h"

namespace mErrCodes {

QString ResetCounterMessage(qint32 parameter)
{
    return ResetCounterText(parameter).English();
}

cText ResetCounterText(qint32 parameter)
{
    return cText(kContext, QT_TRANSLATE_NOOP("mErrCodes", "An unknown error occurred during resetting counter (parameter: %1)."),
                 {QString::number(parameter)});
}

cText DownloadFailedText(qint32 address)
{
    return cText(kContext, QT_TRANSLATE_NOOP("mErrCodes", "Download failed at address: %1"), {QString::number(address)});
}

cText UploadFailedText(qint32 address)
{
    return cText(kContext, QT_TRANSLATE_NOOP("mErrCodes", "Upload failed at address: %1"), {QString::number(address)});
}

cText FirmwareImageText(qint32 line, const cText& problem)
{
    return cText(kContext,
                 QT_TRANSLATE_NOOP("mErrCodes", "The firmwarefile cannot be uploaded: line %1: %2.\r\nNothing was sent to the grip."),
                 {QString::number(line), problem});
}

namespace {

const char* runtimeErrorSource(qint32 number)
{
    switch (number) {
    case RT_INVALID_CALL: return QT_TRANSLATE_NOOP("mErrCodes", "Invalid procedure call or argument");
    case RT_OVERFLOW: return QT_TRANSLATE_NOOP("mErrCodes", "Overflow");
    case RT_SUBSCRIPT: return QT_TRANSLATE_NOOP("mErrCodes", "Subscript out of range");
    case RT_TYPE_MISMATCH: return QT_TRANSLATE_NOOP("mErrCodes", "Type mismatch");
    case RT_OBJECT_NOT_SET: return QT_TRANSLATE_NOOP("mErrCodes", "Object variable or With block variable not set");
    case RT_FILE_NOT_FOUND: return QT_TRANSLATE_NOOP("mErrCodes", "File not found");
    case RT_FILE_ACCESS: return QT_TRANSLATE_NOOP("mErrCodes", "Path/File access error");
    case RT_INVALID_PROPERTY: return QT_TRANSLATE_NOOP("mErrCodes", "Invalid property value");
    case RT_DUPLICATE_KEY: return QT_TRANSLATE_NOOP("mErrCodes", "This key is already associated with an element of this collection");
    case RT_DEVICE_NOT_OPEN: return QT_TRANSLATE_NOOP("mErrCodes", "Port not open");
    case RT_PORT_OPEN_FAILED: return QT_TRANSLATE_NOOP("mErrCodes", "Invalid port number");
    case RT_DATABASE: return QT_TRANSLATE_NOOP("mErrCodes", "Database error");
    default: return QT_TRANSLATE_NOOP("mErrCodes", "Application-defined or object-defined error");
    }
}

} // namespace

QString RuntimeErrorText(qint32 number)
{
    return QString::fromUtf8(runtimeErrorSource(number));
}

cText RuntimeError(qint32 number)
{
    return cText(kContext, RuntimeErrorText(number));
}

} // namespace mErrCodes
