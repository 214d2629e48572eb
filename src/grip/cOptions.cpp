#include "grip/cOptions.h"

#include "grip/cStoredValues.h"
#include "grip/mGripReport.h"
#include "link/cSupports.h"
#include "link/mAppFunc.h"
#include "link/mErrCodes.h"
#include "shell/mMain.h"

using namespace mAppFunc;

namespace {

// The bits of the options byte.
constexpr quint8 kEyeMounted = 0x01;
constexpr quint8 kLoaderOn = 0x02;
constexpr quint8 kTriggerFilterOn = 0x04;
constexpr quint8 kLedOn = 0x08;
constexpr quint8 kEyeCheckMaxTimeOn = 0x10;
constexpr quint8 kEyeCheckOKTimeOn = 0x20;
constexpr quint8 kUseEye = 0x40;
constexpr quint8 kCTOAdjust = 0x80;

const cStoredValues& store()
{
    static const cStoredValues values(cOptions::kClass, cOptions::kRevision, cOptions::kSection);
    return values;
}

constexpr cStoredValues::tRange kEyeCheckMaxTimeRange{cOptions::EyeCheckMaxTimeMin, cOptions::EyeCheckMaxTimeMax,
                                                      cOptions::EyeCheckMaxTimeDefault};
constexpr cStoredValues::tRange kDefaultLoadTimeRange{cOptions::DefaultLoadTimeMin, cOptions::DefaultLoadTimeMax,
                                                      cOptions::DefaultLoadTimeDefault};
constexpr cStoredValues::tRange kEyeCheckOKTimeRange{cOptions::EyeCheckOKTimeMin, cOptions::EyeCheckOKTimeMax,
                                                     cOptions::EyeCheckOKTimeDefault};

} // namespace

cOptions::cOptions()
{
    Load();
}

void cOptions::Save()
{
    // Deliberately empty: the values already live in the preferences.
}

void cOptions::Load()
{
    // Deliberately empty: every read goes to the preferences.
}

void cOptions::Assign(bool, bool, bool, bool, qint32, qint32, bool, bool, bool, qint32, bool)
{
    // Deliberately does nothing: the options change only through the properties and Download.
}

void cOptions::AssignDefaults()
{
    // Has no effect, as Assign does nothing; kept so.
    Assign(false, false, false, false, 0, 45, false, false, false, 0, false);
}

// The store keys differ from the property names in places; they are the program's keys.
bool cOptions::EyeMounted() const { return store().Switch(QStringLiteral("EyeMounted"), QStringLiteral("EyeMounted")); }
void cOptions::setEyeMounted(bool value) { store().setSwitch(QStringLiteral("EyeMounted"), QStringLiteral("EyeMounted"), value); }
bool cOptions::TriggerFilterOn() const { return store().Switch(QStringLiteral("TriggerFilterOn"), QStringLiteral("TriggerFilter")); }
void cOptions::setTriggerFilterOn(bool value) { store().setSwitch(QStringLiteral("TriggerFilterOn"), QStringLiteral("TriggerFilter"), value); }
bool cOptions::EyeCheckMaxTimeOn() const { return store().Switch(QStringLiteral("EyeCheckMaxTimeOn"), QStringLiteral("EyeCheckMax")); }
void cOptions::setEyeCheckMaxTimeOn(bool value) { store().setSwitch(QStringLiteral("EyeCheckMaxTimeOn"), QStringLiteral("EyeCheckMax"), value); }
bool cOptions::UseEye() const { return store().Switch(QStringLiteral("UseEye"), QStringLiteral("UseEye")); }
void cOptions::setUseEye(bool value) { store().setSwitch(QStringLiteral("UseEye"), QStringLiteral("UseEye"), value); }
qint32 cOptions::EyeCheckMaxTime() const { return store().Number(QStringLiteral("EyeCheckMaxTime"), kEyeCheckMaxTimeRange); }
qint32 cOptions::setEyeCheckMaxTime(qint32 value) { return store().setNumber(QStringLiteral("EyeCheckMaxTime"), value, kEyeCheckMaxTimeRange); }
qint32 cOptions::DefaultLoadTime() const { return store().Number(QStringLiteral("DefaultLoadTime"), kDefaultLoadTimeRange); }
qint32 cOptions::setDefaultLoadTime(qint32 value) { return store().setNumber(QStringLiteral("DefaultLoadTime"), value, kDefaultLoadTimeRange); }
bool cOptions::LoaderOn() const { return store().Switch(QStringLiteral("LoaderOn"), QStringLiteral("Loader")); }
void cOptions::setLoaderOn(bool value) { store().setSwitch(QStringLiteral("LoaderOn"), QStringLiteral("Loader"), value); }
bool cOptions::LedOn() const { return store().Switch(QStringLiteral("LedOn"), QStringLiteral("LED")); }
void cOptions::setLedOn(bool value) { store().setSwitch(QStringLiteral("LedOn"), QStringLiteral("LED"), value); }
bool cOptions::EyeCheckOKTimeOn() const { return store().Switch(QStringLiteral("EyeCheckOKTimeOn"), QStringLiteral("EyeCheckOK")); }
void cOptions::setEyeCheckOKTimeOn(bool value) { store().setSwitch(QStringLiteral("EyeCheckOKTimeOn"), QStringLiteral("EyeCheckOK"), value); }
qint32 cOptions::EyeCheckOKTime() const { return store().Number(QStringLiteral("EyeCheckOKTime"), kEyeCheckOKTimeRange); }
qint32 cOptions::setEyeCheckOKTime(qint32 value) { return store().setNumber(QStringLiteral("EyeCheckOKTime"), value, kEyeCheckOKTimeRange); }
bool cOptions::CTOAdjust() const { return store().Switch(QStringLiteral("CTOAdjust"), QStringLiteral("CTOAdjust")); }
void cOptions::setCTOAdjust(bool value) { store().setSwitch(QStringLiteral("CTOAdjust"), QStringLiteral("CTOAdjust"), value); }

quint8 cOptions::OptionsByte() const
{
    return PassErrors(kClass, kRevision, QStringLiteral("OptionsByte"), [&] {
        quint8 bits = 0;
        if (EyeMounted()) bits |= kEyeMounted;
        if (LoaderOn()) bits |= kLoaderOn;
        if (TriggerFilterOn()) bits |= kTriggerFilterOn;
        if (LedOn()) bits |= kLedOn;
        if (EyeCheckMaxTimeOn()) bits |= kEyeCheckMaxTimeOn;
        if (EyeCheckOKTimeOn()) bits |= kEyeCheckOKTimeOn;
        if (UseEye()) bits |= kUseEye;
        if (CTOAdjust()) bits |= kCTOAdjust;
        return bits;
    });
}

QString cOptions::Obj2Comm() const
{
    return PassErrors(kClass, kRevision, QStringLiteral("Obj2Comm"), [&] {
        return HexByte(CMD_UL_OPTIONS) + HexByte(OptionsByte()) + HexByte(EyeCheckMaxTime()) +
               HexByte(EyeCheckOKTime()) + HexByte(DefaultLoadTime());
    });
}

void cOptions::Comm2Obj(const QString& report)
{
    PassErrors(kClass, kRevision, QStringLiteral("Comm2Obj"), [&] {
        const quint8 bits = GetByteFromHexstring(report, 2);
        setEyeMounted(bits & kEyeMounted);
        setLoaderOn(bits & kLoaderOn);
        setTriggerFilterOn(bits & kTriggerFilterOn);
        setLedOn(bits & kLedOn);
        setEyeCheckMaxTimeOn(bits & kEyeCheckMaxTimeOn);
        setEyeCheckOKTimeOn(bits & kEyeCheckOKTimeOn);
        setUseEye(bits & kUseEye);
        setCTOAdjust(bits & kCTOAdjust);
        // Through the properties, so out-of-range times from the grip get their defaults.
        setEyeCheckMaxTime(GetByteFromHexstring(report, 3));
        setEyeCheckOKTime(GetByteFromHexstring(report, 4));
        setDefaultLoadTime(GetByteFromHexstring(report, 5));
        Save();
    });
}

void cOptions::Upload()
{
    PassErrors(kClass, kRevision, QStringLiteral("Upload"), [&] {
        mGripReport::RecordUpload([&] { return Obj2Comm(); }, mErrCodes::ERR_UL_OPTIONS, mErrCodes::MSG_UL_OPTIONS,
                                  [] { return Supports().Options(); });
    });
}

void cOptions::Download()
{
    PassErrors(kClass, kRevision, QStringLiteral("Download"), [&] {
        mGripReport::RecordDownload(CMD_DL_OPTIONS, REP_OPTIONS, [&](const QString& report) { Comm2Obj(report); },
                                    mErrCodes::ERR_DL_OPTIONS, mErrCodes::MSG_DL_OPTIONS, [] { return Supports().Options(); });
    });
}
