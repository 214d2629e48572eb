#include "grip/cSupports.h"

#include "base/mErrorReport.h"
#include "grip/cGunInfo.h"
#include "link/mVersion.h"

namespace {

const QString kEyeAndOptions = QStringLiteral("1.1.70");
const QString kRamping = QStringLiteral("4.0.0");

} // namespace

// True when the grip's firmware is the threshold version or newer.
bool cSupports::firmwareAtLeast(const QString& flag, const QString& threshold) const
{
    return PassErrors(kClass, kRevision, flag, [&] {
        return mVersion::VersionCompare(m_gunInfo.FirmwareBuild(), threshold) < 1;
    });
}

bool cSupports::EyeMounting() const { return firmwareAtLeast(QStringLiteral("EyeMounting"), kEyeAndOptions); }
bool cSupports::LoaderMounting() const { return firmwareAtLeast(QStringLiteral("LoaderMounting"), kEyeAndOptions); }
bool cSupports::TriggerFilter() const { return firmwareAtLeast(QStringLiteral("TriggerFilter"), kEyeAndOptions); }
bool cSupports::fmodeClassic() const { return true; }
bool cSupports::fmodeSemiAuto() const { return true; }
bool cSupports::fmodeFullAuto() const { return firmwareAtLeast(QStringLiteral("fmodeFullAuto"), QStringLiteral("1.1.4")); }
bool cSupports::fmodeBurst() const { return false; }
bool cSupports::fmodeTurbo() const { return false; }
bool cSupports::fmodeSniper() const { return firmwareAtLeast(QStringLiteral("fmodeSniper"), QStringLiteral("1.1.10")); }
bool cSupports::fmodeBurst3() const { return firmwareAtLeast(QStringLiteral("fmodeBurst3"), QStringLiteral("2.0.20")); }
bool cSupports::fmodeHyper() const { return firmwareAtLeast(QStringLiteral("fmodeHyper"), QStringLiteral("2.0.20")); }
bool cSupports::fmodeOpenBolt() const { return false; }
bool cSupports::PreAlert60sec() const { return firmwareAtLeast(QStringLiteral("PreAlert60sec"), kEyeAndOptions); }
bool cSupports::PreAlert1() const { return false; }
bool cSupports::PreAlert2() const { return false; }
bool cSupports::Options() const { return firmwareAtLeast(QStringLiteral("Options"), kEyeAndOptions); }
bool cSupports::Hyper() const { return firmwareAtLeast(QStringLiteral("Hyper"), kRamping); }

bool cSupports::NineVolt() const
{
    // Only the one firmware 4.0.5, not everything from it on: deliberate.
    return PassErrors(kClass, kRevision, QStringLiteral("NineVolt"), [&] {
        return mVersion::VersionCompare(m_gunInfo.FirmwareBuild(), QStringLiteral("4.0.5")) == 0;
    });
}

bool cSupports::hmodeUnlimited() const { return firmwareAtLeast(QStringLiteral("hmodeUnlimited"), kRamping); }
bool cSupports::hmodeHundredPercent() const { return firmwareAtLeast(QStringLiteral("hmodeHundredPercent"), kRamping); }
bool cSupports::hmodeSeventyfivePercent() const { return firmwareAtLeast(QStringLiteral("hmodeSeventyfivePercent"), kRamping); }
bool cSupports::hmodeFiftyPercent() const { return firmwareAtLeast(QStringLiteral("hmodeFiftyPercent"), kRamping); }
bool cSupports::hmodeThirtythreePercent() const { return firmwareAtLeast(QStringLiteral("hmodeThirtythreePercent"), kRamping); }
