#pragma once
// "Gun Build Info": what the grip last said about itself (serial number and the builds of its
// firmware, boot code, protocol and hardware), from the gun information as it stands; the
// dialog does not ask the grip.
#include <QDialog>

class QLineEdit;
class cGunInfo;

class fBuildInfo : public QDialog {
    Q_OBJECT

public:
    static inline const QString kForm = QStringLiteral("fBuildInfo");
    static inline const QString kRevision = QStringLiteral("$Revision: 1 $");

    // Shows the gun information given (the caller keeps it).
    explicit fBuildInfo(const cGunInfo& gunInfo, QWidget* parent = nullptr);

    // Fills the boxes from the gun information (done when the dialog loads, and by the main
    // window whenever the gun information is read while the dialog is open).
    void Form_Load();

public slots:
    void cmdOK_Click();

private:
    const cGunInfo& m_gunInfo;
    QLineEdit* txtSerialNo = nullptr;
    QLineEdit* txtFirmwareBuild = nullptr;
    QLineEdit* txtBootCodeBuild = nullptr;
    QLineEdit* txtProtocolBuild = nullptr;
    QLineEdit* txtHardwareBuild = nullptr;
};
