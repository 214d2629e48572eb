#pragma once
// What the grip says about itself: serial number and the builds of its firmware, boot code,
// protocol and hardware. The grip session holds one; every grip exchange refreshes it first.
#include <QByteArray>
#include <QString>
#include <functional>

class cError;
class cGripSession;
class cLink;

class cGunInfo {
public:
    static inline const QString kClass = QStringLiteral("cGunInfo");
    static inline const QString kRevision = QStringLiteral("$Revision: 1 $");

    // Reads a gun-information report into the record.
    void Comm2Obj(const QByteArray& report);
    // Downloads the record over the link (command 0x13); a negative answer is recorded in
    // refusal, not raised.
    void Download(cLink& link, cError& refusal);
    // Called after every report read into the record, so that a window showing the builds
    // follows the grip (empty: no one is told).
    void setReadHandler(std::function<void()> handler) { m_readHandler = std::move(handler); }

    quint8 FirmwareBuildMajor() const { return m_firmwareMajor; }
    quint8 FirmwareBuildMinor() const { return m_firmwareMinor; }
    qint32 FirmwareBuildRevision() const { return m_firmwareRevision; }
    quint8 BootBuildMajor() const { return m_bootMajor; }
    quint8 BootBuildMinor() const { return m_bootMinor; }
    qint32 BootBuildRevision() const { return m_bootRevision; }
    quint8 ProtocolBuildMajor() const { return m_protocolMajor; }
    quint8 ProtocolBuildMinor() const { return m_protocolMinor; }
    qint32 ProtocolBuildRevision() const { return m_protocolRevision; }
    quint8 HardwareBuildMajor() const { return m_hardwareMajor; }
    quint8 HardwareBuildMinor() const { return m_hardwareMinor; }
    qint32 HardwareBuildRevision() const { return m_hardwareRevision; }
    QString Serial() const { return m_serial; }
    QString FirmwareBuild() const;
    QString BootBuild() const;
    QString ProtocolBuild() const;
    QString HardwareBuild() const;

    // The answer of the preferences' BackwardCompatibleUpload: yes when this grip's firmware is
    // older than 1.2.0. Deliberately not the stored preference, which is only kept and shown.
    bool BackwardCompatibleUpload() const;

private:
    QString m_serial;
    quint8 m_firmwareMajor = 4;
    quint8 m_firmwareMinor = 0;
    qint32 m_firmwareRevision = 0;
    quint8 m_protocolMajor = 1;
    quint8 m_protocolMinor = 1;
    qint32 m_protocolRevision = 1;
    quint8 m_bootMajor = 1;
    quint8 m_bootMinor = 1;
    qint32 m_bootRevision = 1;
    quint8 m_hardwareMajor = 1;
    quint8 m_hardwareMinor = 1;
    qint32 m_hardwareRevision = 1;
    std::function<void()> m_readHandler;
};

// Downloads the session's gun information when none is held yet or when refresh is set; always
// true.
bool RefreshGunInfo(cGripSession& session, bool& refresh);
bool RefreshGunInfo(cGripSession& session, bool&& refresh = true);
