#include "grip/cGunInfo.h"

#include "base/mErrCodes.h"
#include "base/mErrorReport.h"
#include "grip/cGripSession.h"
#include "link/cError.h"
#include "link/cLink.h"
#include "link/mAppFunc.h"
#include "link/mVersion.h"

using namespace mAppFunc;

namespace {

QString buildText(quint8 major, quint8 minor, qint32 revision)
{
    return QStringLiteral("%1.%2.%3").arg(major).arg(minor).arg(revision);
}

qint32 word(const QByteArray& report, qint32 low)
{
    return FrameByte(report, low) + 256 * FrameByte(report, low + 1);
}

} // namespace

QString cGunInfo::FirmwareBuild() const { return buildText(m_firmwareMajor, m_firmwareMinor, m_firmwareRevision); }
QString cGunInfo::BootBuild() const { return buildText(m_bootMajor, m_bootMinor, m_bootRevision); }
QString cGunInfo::ProtocolBuild() const { return buildText(m_protocolMajor, m_protocolMinor, m_protocolRevision); }
QString cGunInfo::HardwareBuild() const { return buildText(m_hardwareMajor, m_hardwareMinor, m_hardwareRevision); }

bool cGunInfo::BackwardCompatibleUpload() const
{
    return mVersion::VersionCompare(QStringLiteral("1.2.0"), FirmwareBuild()) < 0;
}

void cGunInfo::Comm2Obj(const QByteArray& report)
{
    PassErrors(kClass, kRevision, QStringLiteral("Comm2Obj"), [&] {
        QString serial;
        for (qint32 n = 2; n <= 11; ++n)
            serial.append(QChar(FrameByte(report, n)));
        m_serial = serial;
        m_firmwareMajor = FrameByte(report, 12);
        m_firmwareMinor = FrameByte(report, 13);
        m_firmwareRevision = word(report, 14);
        // On the link the protocol build comes before the boot build.
        m_protocolMajor = FrameByte(report, 16);
        m_protocolMinor = FrameByte(report, 17);
        m_protocolRevision = word(report, 18);
        m_bootMajor = FrameByte(report, 20);
        m_bootMinor = FrameByte(report, 21);
        m_bootRevision = word(report, 22);
        m_hardwareMajor = FrameByte(report, 24);
        m_hardwareMinor = FrameByte(report, 25);
        m_hardwareRevision = word(report, 26);
        if (m_readHandler)
            m_readHandler();
    });
}

void cGunInfo::Download(cLink& link, cError& refusal)
{
    PassErrors(kClass, kRevision, QStringLiteral("Download"), [&] {
        const QByteArray report = link.CommHexData(FrameBytes({CMD_DL_GUNINFO}), true);
        switch (FrameByte(report, 1)) {
        case REP_GUNINFO: Comm2Obj(report); break;
        case REP_NEGATIVE: refusal.RecordNegativeAnswer(report); break;
        default: RaiseError(mErrCodes::ERR_DL_GUNINFO, QString(), mErrCodes::MessageText(mErrCodes::MSG_DL_GUNINFO));
        }
    });
}

bool RefreshGunInfo(cGripSession& session, bool& refresh)
{
    return PassErrors(QStringLiteral("cGunInfo"), cGunInfo::kRevision, QStringLiteral("RefreshGunInfo"), [&] {
        cGunInfo& info = session.GunInfo();
        if (info.FirmwareBuild().isEmpty() || refresh)
            info.Download(session.Link(), session.GripError());
        return true;
    });
}

bool RefreshGunInfo(cGripSession& session, bool&& refresh)
{
    bool flag = refresh;
    return RefreshGunInfo(session, flag);
}
