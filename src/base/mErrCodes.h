#pragma once
// Error numbers and messages of the program, and the long help texts of the link. The messages
// are English here (they are compared and written so); MessageText gives one to raise, which the
// user reads in their language, and the help texts are translated where they are shown.
#include "base/cText.h"

#include <QCoreApplication>
#include <QString>
#include <QStringList>

namespace mErrCodes {

inline const QString kModule = QStringLiteral("mErrCodes");
inline const QString kRevision = QStringLiteral("$Revision: 1 $");
// The context the messages and help texts are translated in.
inline constexpr char kContext[] = "mErrCodes";

// ---- numbers -------------------------------------------------------------------------------
// 100xx: the link and its utility routines
constexpr qint32 ERR_PROGRAM_CONTROL = 10008;  // start/stop program, boot-mode query
constexpr qint32 ERR_VERSION_FORMAT = 10012;
constexpr qint32 ERR_NOT_ENOUGH_DATA = 10020;
constexpr qint32 ERR_DELETE_FACTORY_DEFAULT = 10020;  // the same number, on purpose
// 102xx: downloads
constexpr qint32 ERR_DL_BATTERY = 10200;
constexpr qint32 ERR_DL_GUNINFO = 10201;
constexpr qint32 ERR_DL_COUNTDOWN = 10210;
constexpr qint32 ERR_DL_COUNTERS = 10211;
constexpr qint32 ERR_DL_FIRMWAREDATA = 10212;
constexpr qint32 ERR_DL_TIMING = 10213;
constexpr qint32 ERR_DL_OPTIONS = 10214;
constexpr qint32 ERR_DL_HYPER = 10215;
// 1025x: uploads
constexpr qint32 ERR_UL_COUNTDOWN = 10250;
constexpr qint32 ERR_RESET_COUNTER = 10251;
constexpr qint32 ERR_UL_FIRMWAREDATA = 10252;
constexpr qint32 ERR_UL_TIMING = 10253;
constexpr qint32 ERR_UL_OPTIONS = 10254;
constexpr qint32 ERR_UL_HYPER = 10255;
// 10300: the busy guard
constexpr qint32 ERR_COMM_BUSY = 10300;
// 108xx: firmware transfer
constexpr qint32 ERR_DL_FIRMWARE = 10800;
constexpr qint32 ERR_UL_FIRMWARE = 10801;
// A firmware file the write would fail on, refused before the grip is touched (FirmwareImageText).
constexpr qint32 ERR_FIRMWARE_IMAGE = 10802;

// ---- messages ------------------------------------------------------------------------------
inline const QString MSG_PROGRAM_CONTROL =
    QStringLiteral(QT_TRANSLATE_NOOP("mErrCodes", "An unknown error occurred during download of timing-values."));
inline const QString MSG_VERSION_FORMAT = QStringLiteral(QT_TRANSLATE_NOOP("mErrCodes", 
    "The format of the versionstring passed to the routine was wrong.\r\nThis is due to a "
    "programmingerror. Please contact Tolvane support regarding a fix for this problem.\r\n\r\n"
    "Thank you very much for your patience."));
inline const QString MSG_NOT_ENOUGH_DATA =
    QStringLiteral(QT_TRANSLATE_NOOP("mErrCodes", "There were not enough data in the communication input."));
inline const QString MSG_DELETE_FACTORY_DEFAULT =
    QStringLiteral(QT_TRANSLATE_NOOP("mErrCodes", "It is not possible to delete the factory default setting."));
inline const QString MSG_DL_BATTERY =
    QStringLiteral(QT_TRANSLATE_NOOP("mErrCodes", "An unknown error occurred during download of battery-values."));
inline const QString MSG_DL_GUNINFO =
    QStringLiteral(QT_TRANSLATE_NOOP("mErrCodes", "An unknown error occurred during download of guninfo-values."));
inline const QString MSG_DL_COUNTDOWN =
    QStringLiteral(QT_TRANSLATE_NOOP("mErrCodes", "An unknown error occurred during download of countdown timer-values."));
inline const QString MSG_DL_COUNTERS =
    QStringLiteral(QT_TRANSLATE_NOOP("mErrCodes", "An unknown error occurred during download of counter-values."));
inline const QString MSG_DL_FIRMWAREDATA =
    QStringLiteral(QT_TRANSLATE_NOOP("mErrCodes", "An unknown error occurred during download of firmwaredata."));
inline const QString MSG_DL_TIMING =
    QStringLiteral(QT_TRANSLATE_NOOP("mErrCodes", "An unknown error occurred during download of timing-values."));
inline const QString MSG_DL_OPTIONS =
    QStringLiteral(QT_TRANSLATE_NOOP("mErrCodes", "An unknown error occurred during download of options-values."));
// The ramping messages speak of "options-values": that is the program's wording and stays.
inline const QString MSG_DL_HYPER =
    QStringLiteral(QT_TRANSLATE_NOOP("mErrCodes", "An unknown error occurred during download of options-values."));
inline const QString MSG_UL_COUNTDOWN =
    QStringLiteral(QT_TRANSLATE_NOOP("mErrCodes", "An unknown error occurred during upload of countdown timer-values."));
inline const QString MSG_UL_FIRMWAREDATA =
    QStringLiteral(QT_TRANSLATE_NOOP("mErrCodes", "An unknown error occurred during upload of firmwaredata."));
inline const QString MSG_UL_TIMING =
    QStringLiteral(QT_TRANSLATE_NOOP("mErrCodes", "An unknown error occurred during upload of timing-values."));
inline const QString MSG_UL_OPTIONS =
    QStringLiteral(QT_TRANSLATE_NOOP("mErrCodes", "An unknown error occurred during upload of options-values."));
inline const QString MSG_UL_HYPER =
    QStringLiteral(QT_TRANSLATE_NOOP("mErrCodes", "An unknown error occurred during upload of options-values."));
inline const QString MSG_COMM_BUSY =
    QStringLiteral(QT_TRANSLATE_NOOP("mErrCodes", "Marlo is already communicating with the grip.\r\n\r\nTry again..."));

// One of the messages above, to raise: shown in the user's language.
inline cText MessageText(const QString& message) { return cText(kContext, message); }
// "An unknown error occurred during resetting counter (parameter: N).": in English, and to raise.
QString ResetCounterMessage(qint32 parameter);
cText ResetCounterText(qint32 parameter);
// "Download failed at address: N" / "Upload failed at address: N" (decimal address)
cText DownloadFailedText(qint32 address);
cText UploadFailedText(qint32 address);
// "The firmwarefile cannot be uploaded: line N: <what is wrong>.\r\nNothing was sent to the grip."
cText FirmwareImageText(qint32 line, const cText& problem);

// ---- run-time errors (the numbers the language runtime used) --------------------------------
constexpr qint32 RT_INVALID_CALL = 5;       // invalid procedure call or argument
constexpr qint32 RT_OVERFLOW = 6;
constexpr qint32 RT_SUBSCRIPT = 9;          // subscript out of range
constexpr qint32 RT_TYPE_MISMATCH = 13;
constexpr qint32 RT_OBJECT_NOT_SET = 91;   // object variable not set
constexpr qint32 RT_FILE_NOT_FOUND = 53;
constexpr qint32 RT_FILE_ACCESS = 75;       // path/file access error
constexpr qint32 RT_INVALID_PROPERTY = 380;
constexpr qint32 RT_DUPLICATE_KEY = 457;
constexpr qint32 RT_DEVICE_NOT_OPEN = 8012; // serial control: closing a port that is not open
constexpr qint32 RT_PORT_OPEN_FAILED = 8002; // serial control: invalid port number / cannot open
constexpr qint32 RT_DATABASE = 3000;        // database engine: statement or connection failed
// The run-time error's message in English, and to raise.
QString RuntimeErrorText(qint32 number);
cText RuntimeError(qint32 number);

// ---- long help texts of the link -------------------------------------------------------------
inline const QStringList HELP_TIMEOUT = {
    QStringLiteral(QT_TRANSLATE_NOOP("mErrCodes", "Communication timed out!")),
    QStringLiteral(QT_TRANSLATE_NOOP("mErrCodes", "Check that")),
    QStringLiteral(QT_TRANSLATE_NOOP("mErrCodes", "   - the grip is attached to the COM-port specified in")),
    QStringLiteral(QT_TRANSLATE_NOOP("mErrCodes", "     COM-settings")),
    QStringLiteral(QT_TRANSLATE_NOOP("mErrCodes", "   - the grip is turned on")),
    QStringLiteral(QT_TRANSLATE_NOOP("mErrCodes", "   - the grip is in safe mode")),
    QStringLiteral(QT_TRANSLATE_NOOP("mErrCodes", "   - COM-port is not in use by another program, driver")),
    QStringLiteral(QT_TRANSLATE_NOOP("mErrCodes", "     and/or device (e.g. RAS, modem, Palm Desktop etc.)")),
    QStringLiteral(QT_TRANSLATE_NOOP("mErrCodes", "If all of the above cases are true you might have")),
    QStringLiteral(QT_TRANSLATE_NOOP("mErrCodes", "either the firmware or Marlo")),
    QStringLiteral(QT_TRANSLATE_NOOP("mErrCodes", "encountered an error in the program. In that case please")),
    QStringLiteral(QT_TRANSLATE_NOOP("mErrCodes", "contact Tolvane Products Supportunit for help.")),
};
inline const QStringList HELP_PORT_IN_USE = {
    QStringLiteral(QT_TRANSLATE_NOOP("mErrCodes", "Other applications may be interrupting the communication;")),
    QStringLiteral(QT_TRANSLATE_NOOP("mErrCodes", "close all other applications using the COM-port and try again.")),
};
inline const QStringList HELP_CHECKSUM = {
    QStringLiteral(QT_TRANSLATE_NOOP("mErrCodes", "Checksum error in data communicated from grip!")),
    QStringLiteral(QT_TRANSLATE_NOOP("mErrCodes", "Data read from grip were corrupted. This may be due to")),
    QStringLiteral(QT_TRANSLATE_NOOP("mErrCodes", "noise on the cable (e.g. if the cable is too long or too close")),
    QStringLiteral(QT_TRANSLATE_NOOP("mErrCodes", "to a powerful magnetic source) or due to a programming error in")),
    QStringLiteral(QT_TRANSLATE_NOOP("mErrCodes", "Try communicating again. If the problem persists please contact")),
    QStringLiteral(QT_TRANSLATE_NOOP("mErrCodes", "Tolvane Products Supportunit")),
};
inline const QStringList HELP_BUSY = {
    QStringLiteral(QT_TRANSLATE_NOOP("mErrCodes", "Marlo is already communicating with the grip.")),
    QStringLiteral(QT_TRANSLATE_NOOP("mErrCodes", "Try again...")),
};

} // namespace mErrCodes
