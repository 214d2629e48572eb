#include "grip/mModes.h"

#include "base/mErrorReport.h"
#include "grip/cSupports.h"

namespace mModes {

void CreateFiringModeConst(tModeEntry& entry, const QString& caption, qint32 code, const cSupports& supports)
{
    PassErrors(kModule, kRevision, QStringLiteral("CreateFiringModeConst"), [&] {
        entry.caption = caption;
        entry.code = code;
        entry.visible = FiringModeVisible(code, supports);
    });
}

void CreateHyperModeConst(tModeEntry& entry, const QString& caption, qint32 code, const cSupports& supports)
{
    PassErrors(kModule, kRevision, QStringLiteral("CreateHyperModeConst"), [&] {
        entry.caption = caption;
        entry.code = code;
        entry.visible = HyperModeVisible(code, supports);
    });
}

bool FiringModeVisible(qint32 code, const cSupports& supports)
{
    return PassErrors(kModule, kRevision, QStringLiteral("FiringModeVisible"), [&] {
        switch (code) {
        case 0: return supports.fmodeClassic();
        case 1: return supports.fmodeSemiAuto();
        case 2: return supports.fmodeBurst();
        case 3: return supports.fmodeTurbo();
        case 4: return supports.fmodeFullAuto();
        case 5: return supports.fmodeOpenBolt();
        case 6: return supports.fmodeSniper();
        case 8: return supports.fmodeBurst3();
        case 16: return supports.fmodeHyper();
        default: return false;
        }
    });
}

bool HyperModeVisible(qint32 code, const cSupports& supports)
{
    return PassErrors(kModule, kRevision, QStringLiteral("HyperModeVisible"), [&] {
        switch (code) {
        case 1: return supports.hmodeUnlimited();
        case 2: return supports.hmodeHundredPercent();
        case 4: return supports.hmodeSeventyfivePercent();
        case 8: return supports.hmodeFiftyPercent();
        case 16: return supports.hmodeThirtythreePercent();
        default: return false;
        }
    });
}

} // namespace mModes
