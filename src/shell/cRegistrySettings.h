#pragma once
// The user's preferences: read once when made, kept in memory, written at once when set.
// Stored as text in $XDG_CONFIG_HOME/Marlo/Marlo.ini, section "Initialize".
#include <QSettings>
#include <QString>
#include <QVariant>

class cPlacedWindow;

class cRegistrySettings {
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
    // Deliberately answers from the connected grip's firmware version, not from the stored value.
    bool BackwardCompatibleUpload() const;
    void setBackwardCompatibleUpload(bool value);
    // The device to open instead of /dev/ttyS(CommPort-1): a path, or "sim[:KEY=VALUE,...]".
    QString CommDevice() const { return m_commDevice; }
    void setCommDevice(const QString& value);
    // Uses another device for this run only, without writing the preference (marlo-cli --device).
    void overrideCommDevice(const QString& value) { m_commDevice = value; }

    // The value stored for BackwardCompatibleUpload (what its getter does not answer).
    bool StoredBackwardCompatibleUpload() const { return m_backwardCompatibleUpload; }

    // The default library path: the program's folder and "Marlo.mdb".
    static QString DefaultDBName();

    // Text forms of the store: booleans "True"/"False", numbers in decimal. Conversions of stored
    // text raise the type-mismatch error.
    static QString BoolText(bool value);
    static bool TextToBool(const QVariant& stored);
    static qint32 TextToLong(const QVariant& stored);
    static QString StoredText(const QVariant& stored);

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
};
