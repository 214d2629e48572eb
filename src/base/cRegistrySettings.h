#pragma once
// The user's preferences: read once when made, kept in memory, written at once when set.
// Stored as text in $XDG_CONFIG_HOME/Marlo/Marlo.ini, section "Initialize".
#include <QCoreApplication>
#include <QList>
#include <QSettings>
#include <QString>
#include <QVariant>

class cPlacedWindow;

// A stored value that cannot be read as its preference's type. The preference's default is used
// instead, and start-up says so once, naming the file and the key.
struct tUnreadablePreference {
    enum tReason { NotTrueOrFalse, NotANumber, OutOfRange };
    QString section;
    QString key;
    QString text; // as stored
    tReason reason = NotANumber;
    double min = 0; // OutOfRange: the numbers the value may take
    double max = 0;
    friend bool operator==(const tUnreadablePreference&, const tUnreadablePreference&) = default;
};
using tUnreadablePreferences = QList<tUnreadablePreference>;

class cRegistrySettings {
    Q_DECLARE_TR_FUNCTIONS(cRegistrySettings)

public:
    static inline const QString kClass = QStringLiteral("cRegistrySettings");
    static inline const QString kRevision = QStringLiteral("$Revision: 1 $");
    static inline const QString kSection = QStringLiteral("Initialize");

    cRegistrySettings();

    // Window placement, in a section named after the window's form name.
    void WindowState(cPlacedWindow& window, bool position, bool size);
    void SaveWindowState(cPlacedWindow& window, bool position, bool size);

    qint32 CommPort() const { return m_commPort; }
    void setCommPort(qint32 value);
    QString CommSettings() const { return m_commSettings; }
    void setCommSettings(const QString& value);
    qint32 CommInputMode() const { return m_commInputMode; }
    void setCommInputMode(qint32 value);
    bool CommLogToFile() const { return m_commLogToFile; }
    void setCommLogToFile(bool value);
    bool CommLogToConsole() const { return m_commLogToConsole; }
    void setCommLogToConsole(bool value);
    QString LastKey() const { return m_lastKey; }
    void setLastKey(const QString& value);
    QString DBName() const { return m_dbName; }
    void setDBName(const QString& value);
    bool DBChanged() const { return m_dbChanged; }
    void setDBChanged(bool value);
    bool GripEye() const { return m_gripEye; }
    void setGripEye(bool value);
    bool ShowSplash() const { return m_showSplash; }
    void setShowSplash(bool value);
    bool ShowConfirmComm() const { return m_showConfirmComm; }
    void setShowConfirmComm(bool value);
    bool ShowLogToFile() const { return m_showLogToFile; }
    void setShowLogToFile(bool value);
    // BackwardCompatibleUpload is stored and written here, but deliberately answered from the
    // connected grip's firmware version, not from the stored value: the grip session's gun
    // information answers it (cGunInfo::BackwardCompatibleUpload), asked where it is needed.
    void setBackwardCompatibleUpload(bool value);
    // Back up the grip's firmware before writing new firmware (the desktop program's writes).
    bool FirmwareBackup() const { return m_firmwareBackup; }
    void setFirmwareBackup(bool value);
    // The device to open instead of /dev/ttyS(CommPort-1): a path, or "sim[:KEY=VALUE,...]".
    QString CommDevice() const { return m_commDevice; }
    void setCommDevice(const QString& value);
    // Uses another device for this run only, without writing the preference (marlo-cli --device).
    void overrideCommDevice(const QString& value) { m_commDevice = value; }

    // The value stored for BackwardCompatibleUpload (what the grip's answer does not depend on).
    bool StoredBackwardCompatibleUpload() const { return m_backwardCompatibleUpload; }

    // The default library path: the program's folder and "Marlo.mdb".
    static QString DefaultDBName();

    // The values of section Initialize that could not be read when the object was made.
    const tUnreadablePreferences& Unreadable() const { return m_unreadable; }
    // The placement values of every window section of the store that cannot be read.
    static tUnreadablePreferences UnreadablePlacements();
    // The full path of the preferences file.
    static QString FileName();
    // One unreadable value as a line of text: [Initialize] CommPort = "abc" (not a number)
    static QString ProblemText(const tUnreadablePreference& problem); // in the user's language

    // Text forms of the store: booleans "True"/"False" (a number reads as true unless 0), numbers
    // in decimal.
    static QString BoolText(bool value);
    static QString StoredText(const QVariant& stored);

    // Reading one value of any section: the default when nothing is stored, and also when the
    // stored text cannot be read as the type, which is then added to problems (when given).
    // A whole number outside min..max cannot be read either.
    static bool ReadBool(const QString& section, const QString& key, bool def,
                         tUnreadablePreferences* problems = nullptr);
    static qint32 ReadLong(const QString& section, const QString& key, qint32 def, qint32 min, qint32 max,
                           tUnreadablePreferences* problems = nullptr);
    static float ReadSingle(const QString& section, const QString& key, float def,
                            tUnreadablePreferences* problems = nullptr);

    // Reading and writing any section of the store (used by the records that keep their
    // values here).
    static QVariant GetSetting(const QString& section, const QString& key, const QVariant& def);
    static void SaveSetting(const QString& section, const QString& key, const QString& value);

private:
    void readAll();
    void write(const QString& key, const QString& value);

    bool m_backwardCompatibleUpload = false;
    bool m_showSplash = false;
    bool m_showConfirmComm = false;
    bool m_showLogToFile = false;
    bool m_gripEye = false;
    QString m_dbName;
    bool m_dbChanged = false;
    QString m_lastKey;
    qint32 m_commPort = 0;
    QString m_commSettings;
    qint32 m_commInputMode = 0;
    bool m_commLogToFile = false;
    bool m_commLogToConsole = false;
    QString m_commDevice;
    bool m_firmwareBackup = false;
    tUnreadablePreferences m_unreadable;
};
