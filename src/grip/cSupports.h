#pragma once
// The features the connected grip offers, decided by its firmware version. No state of its
// own: every flag reads the firmware build of the gun information afresh.
#include <QString>

class cGunInfo;

class cSupports {
public:
    // The flags of the grip the gun information describes (kept by the caller).
    explicit cSupports(const cGunInfo& gunInfo) : m_gunInfo(gunInfo) {}

    static inline const QString kClass = QStringLiteral("cSupports");
    static inline const QString kRevision = QStringLiteral("$Revision: 1 $");

    bool EyeMounting() const;
    bool LoaderMounting() const;
    bool TriggerFilter() const;
    bool fmodeClassic() const;
    bool fmodeSemiAuto() const;
    bool fmodeFullAuto() const;
    bool fmodeBurst() const;
    bool fmodeTurbo() const;
    bool fmodeSniper() const;
    bool fmodeBurst3() const;
    bool fmodeHyper() const;
    bool fmodeOpenBolt() const;
    bool PreAlert60sec() const;
    bool PreAlert1() const;
    bool PreAlert2() const;
    bool Options() const;
    bool Hyper() const;
    bool NineVolt() const;
    bool hmodeUnlimited() const;
    bool hmodeHundredPercent() const;
    bool hmodeSeventyfivePercent() const;
    bool hmodeFiftyPercent() const;
    bool hmodeThirtythreePercent() const;

private:
    bool firmwareAtLeast(const QString& flag, const QString& threshold) const;

    const cGunInfo& m_gunInfo;
};
