#pragma once
// The options dialog: the preferences on two pages, "General" (splash, confirmations, the
// firmware backup, the library file) and "Communication" (traffic logs, the serial port and the
// device to open),
// written back with Apply or OK.
#include "link/mSerialDevices.h"

#include <QDialog>
#include <QList>
#include <functional>

class QCheckBox;
class cGunInfo;
class cRegistrySettings;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QStackedWidget;
class QTabBar;

class fOptions : public QDialog {
    Q_OBJECT
public:
    static inline const QString kForm = QStringLiteral("fOptions");
    static inline const QString kRevision = QStringLiteral("$Revision: 1 $");
    static inline const QString kVirtualGripText = QStringLiteral("Virtual grip (demo)");

    // Where the serial ports come from and how a device is checked; tests give their own.
    using PortLister = std::function<QList<mSerialDevices::PortEntry>()>;
    using DeviceChecker = std::function<QString(const QString& path)>;

    // Builds the dialog and loads the preferences into it (Form_Load); OK writes them back.
    // BackwardCompatibleUpload shows the answer of the grip the gun information describes. The
    // caller keeps both.
    fOptions(const cGunInfo& gunInfo, cRegistrySettings& preferences, QWidget* parent = nullptr);

    void setPortLister(PortLister lister);
    void setDeviceChecker(DeviceChecker checker);

    // True when the library path names an existing file that is a Marlo library.
    bool ValidateChanges();
    // Writes the dialog into the preferences; false when the path was refused (then nothing is
    // written).
    bool ApplyChanges();

    // Fills the device list again: the ports present, then the virtual grip; the text typed or
    // chosen stays.
    void RefreshDeviceList();
    // The device the list stands for: a port's path, "sim", the text typed, or empty.
    QString ChosenDevice() const;
    // Whatever keeps the chosen device from opening, as shown on the page; empty when none.
    QString DeviceProblem() const;

public slots:
    void tbsOptions_Click();
    void cmdOK_Click();
    void cmdCancel_Click();
    void cmdApply_Click();
    void cmdBrowseDBPath_Click();

protected:
    void showEvent(QShowEvent* event) override;

private:
    const cGunInfo& m_gunInfo;
    cRegistrySettings& m_preferences;
    void createGeneralPage(QWidget* page);
    void createCommunicationPage(QWidget* page);
    void connectHandlers();
    void Form_Load();
    bool Form_KeyDown(int key, Qt::KeyboardModifiers modifiers);
    void selectCommSettings(const QString& settings);
    void CheckDevice();
    void FitDeviceProblem();
    QString refusalDetail() const;

    PortLister m_portLister;
    DeviceChecker m_deviceChecker;
    QString m_pathProblem; // why the last path checked is not a library (an existing file)

    QTabBar* tbsOptions = nullptr;
    QStackedWidget* m_pages = nullptr;
    QList<QWidget*> picOptions;

    QCheckBox* chkShowSplash = nullptr;
    QCheckBox* chkConfirm = nullptr;
    QCheckBox* chkBackwardCompatibleUpload = nullptr;
    QCheckBox* chkFirmwareBackup = nullptr;
    QGroupBox* fraDataPath = nullptr;
    QLineEdit* txtDBPath = nullptr;
    QPushButton* cmdBrowseDBPath = nullptr;
    QGroupBox* fraGripSync = nullptr;
    QCheckBox* chkSettingsGet = nullptr;
    QCheckBox* chkAutoDetect = nullptr;
    QLineEdit* txtAutocheckInterval = nullptr;

    QCheckBox* chkLogCommToFile = nullptr;
    QCheckBox* chkLogCommToConsole = nullptr;
    QGroupBox* fraComm = nullptr;
    QComboBox* cboPort = nullptr;
    QComboBox* cboBaud = nullptr;
    QComboBox* cboParity = nullptr;
    QComboBox* cboBits = nullptr;
    QComboBox* cboStopBits = nullptr;
    QComboBox* cboDevice = nullptr;
    QLabel* lblDeviceProblemIcon = nullptr;
    QLabel* lblDeviceProblem = nullptr;

    QPushButton* cmdOK = nullptr;
    QPushButton* cmdCancel = nullptr;
    QPushButton* cmdApply = nullptr;
};
