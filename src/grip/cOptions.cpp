#include "grip/cOptions.h"

#include "grip/cGunInfo.h"
#include "grip/mGripReport.h"
#include "link/cError.h"
#include "link/cSupports.h"
#include "link/mAppFunc.h"
#include "link/mCommBasic.h"
#include "link/mErrCodes.h"
#include "shell/cRegistrySettings.h"
#include "shell/mMain.h"

#include <memory>

using namespace mAppFunc;

namespace {

std::unique_ptr<cOptions>& instance()
{
    static std::unique_ptr<cOptions> record;
    return record;
}

// The bits of the options byte.
constexpr quint8 kEyeMounted = 0x01;
constexpr quint8 kLoaderOn = 0x02;
constexpr quint8 kTriggerFilterOn = 0x04;
constexpr quint8 kLedOn = 0x08;
constexpr quint8 kEyeCheckMaxTimeOn = 0x10;
constexpr quint8 kEyeCheckOKTimeOn = 0x20;
constexpr quint8 kUseEye = 0x40;
constexpr quint8 kCTOAdjust = 0x80;

// Writes a value to the store only when it differs from what is stored: the same text again
// changes nothing, and every write costs the store a write to disk.
void saveIfChanged(const QString& section, const QString& key, const QString& text)
{
    const QVariant current = cRegistrySettings::GetSetting(section, key, QVariant());
    if (current.isValid() && cRegistrySettings::StoredText(current) == text)
        return;
    cRegistrySettings::SaveSetting(section, key, text);
}

// The store keys differ from the property names in places; they are the program's keys.
bool readSwitch(const QString& property, const QString& key)
{
    return PassErrors(cOptions::kClass, cOptions::kRevision, property, [&] {
        return cRegistrySettings::TextToBool(
            cRegistrySettings::GetSetting(cOptions::kSection, key, cRegistrySettings::BoolText(false)));
    });
}

void writeSwitch(const QString& property, const QString& key, bool value)
{
    PassErrors(cOptions::kClass, cOptions::kRevision, property, [&] {
        saveIfChanged(cOptions::kSection, key, cRegistrySettings::BoolText(value));
    });
}

qint32 inRange(qint32 value, qint32 min, qint32 max, qint32 replacement)
{
    return value < min || value > max ? replacement : value;
}

qint32 readTime(const QString& property, const QString& key, qint32 min, qint32 max, qint32 def)
{
    return PassErrors(cOptions::kClass, cOptions::kRevision, property, [&] {
        const qint32 stored = cRegistrySettings::TextToLong(
            cRegistrySettings::GetSetting(cOptions::kSection, key, QString::number(def)));
        return inRange(stored, min, max, def);
    });
}

qint32 writeTime(const QString& property, const QString& key, qint32 value, qint32 min, qint32 max, qint32 def)
{
    return PassErrors(cOptions::kClass, cOptions::kRevision, property, [&] {
        const qint32 kept = inRange(value, min, max, def);
        saveIfChanged(cOptions::kSection, key, QString::number(kept));
        return kept;
    });
}

} // namespace

cOptions& OptionsRecord()
{
    auto& record = instance();
    if (!record)
        record = std::make_unique<cOptions>();
    return *record;
}

void ResetOptionsRecord()
{
    instance().reset();
}

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

bool cOptions::EyeMounted() const { return readSwitch(QStringLiteral("EyeMounted"), QStringLiteral("EyeMounted")); }
void cOptions::setEyeMounted(bool value) { writeSwitch(QStringLiteral("EyeMounted"), QStringLiteral("EyeMounted"), value); }
bool cOptions::TriggerFilterOn() const { return readSwitch(QStringLiteral("TriggerFilterOn"), QStringLiteral("TriggerFilter")); }
void cOptions::setTriggerFilterOn(bool value) { writeSwitch(QStringLiteral("TriggerFilterOn"), QStringLiteral("TriggerFilter"), value); }
bool cOptions::EyeCheckMaxTimeOn() const { return readSwitch(QStringLiteral("EyeCheckMaxTimeOn"), QStringLiteral("EyeCheckMax")); }
void cOptions::setEyeCheckMaxTimeOn(bool value) { writeSwitch(QStringLiteral("EyeCheckMaxTimeOn"), QStringLiteral("EyeCheckMax"), value); }
bool cOptions::UseEye() const { return readSwitch(QStringLiteral("UseEye"), QStringLiteral("UseEye")); }
void cOptions::setUseEye(bool value) { writeSwitch(QStringLiteral("UseEye"), QStringLiteral("UseEye"), value); }

qint32 cOptions::EyeCheckMaxTime() const
{
    return readTime(QStringLiteral("EyeCheckMaxTime"), QStringLiteral("EyeCheckMaxTime"),
                    EyeCheckMaxTimeMin, EyeCheckMaxTimeMax, EyeCheckMaxTimeDefault);
}

qint32 cOptions::setEyeCheckMaxTime(qint32 value)
{
    return writeTime(QStringLiteral("EyeCheckMaxTime"), QStringLiteral("EyeCheckMaxTime"), value,
                     EyeCheckMaxTimeMin, EyeCheckMaxTimeMax, EyeCheckMaxTimeDefault);
}

qint32 cOptions::DefaultLoadTime() const
{
    return readTime(QStringLiteral("DefaultLoadTime"), QStringLiteral("DefaultLoadTime"),
                    DefaultLoadTimeMin, DefaultLoadTimeMax, DefaultLoadTimeDefault);
}

qint32 cOptions::setDefaultLoadTime(qint32 value)
{
    return writeTime(QStringLiteral("DefaultLoadTime"), QStringLiteral("DefaultLoadTime"), value,
                     DefaultLoadTimeMin, DefaultLoadTimeMax, DefaultLoadTimeDefault);
}

bool cOptions::LoaderOn() const { return readSwitch(QStringLiteral("LoaderOn"), QStringLiteral("Loader")); }
void cOptions::setLoaderOn(bool value) { writeSwitch(QStringLiteral("LoaderOn"), QStringLiteral("Loader"), value); }
bool cOptions::LedOn() const { return readSwitch(QStringLiteral("LedOn"), QStringLiteral("LED")); }
void cOptions::setLedOn(bool value) { writeSwitch(QStringLiteral("LedOn"), QStringLiteral("LED"), value); }
bool cOptions::EyeCheckOKTimeOn() const { return readSwitch(QStringLiteral("EyeCheckOKTimeOn"), QStringLiteral("EyeCheckOK")); }
void cOptions::setEyeCheckOKTimeOn(bool value) { writeSwitch(QStringLiteral("EyeCheckOKTimeOn"), QStringLiteral("EyeCheckOK"), value); }

qint32 cOptions::EyeCheckOKTime() const
{
    return readTime(QStringLiteral("EyeCheckOKTime"), QStringLiteral("EyeCheckOKTime"),
                    EyeCheckOKTimeMin, EyeCheckOKTimeMax, EyeCheckOKTimeDefault);
}

qint32 cOptions::setEyeCheckOKTime(qint32 value)
{
    return writeTime(QStringLiteral("EyeCheckOKTime"), QStringLiteral("EyeCheckOKTime"), value,
                     EyeCheckOKTimeMin, EyeCheckOKTimeMax, EyeCheckOKTimeDefault);
}

bool cOptions::CTOAdjust() const { return readSwitch(QStringLiteral("CTOAdjust"), QStringLiteral("CTOAdjust")); }
void cOptions::setCTOAdjust(bool value) { writeSwitch(QStringLiteral("CTOAdjust"), QStringLiteral("CTOAdjust"), value); }

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
        WaitPointerScope wait;
        RefreshGunInfo(true);
        if (!Supports().Options())
            return;
        const QString report = mCommBasic::CommHexData(Obj2Comm(), true);
        switch (mGripReport::ReportType(report)) {
        case REP_ACK: break;
        case REP_NEGATIVE: GripError().RecordNegativeAnswer(report); break;
        default: RaiseError(mErrCodes::ERR_UL_OPTIONS, QString(), mErrCodes::MSG_UL_OPTIONS);
        }
    });
}

void cOptions::Download()
{
    PassErrors(kClass, kRevision, QStringLiteral("Download"), [&] {
        WaitPointerScope wait;
        RefreshGunInfo(true);
        if (!Supports().Options())
            return;
        const QString report = mGripReport::RequestReport(CMD_DL_OPTIONS);
        switch (mGripReport::ReportType(report)) {
        case REP_OPTIONS: Comm2Obj(report); break;
        case REP_NEGATIVE: GripError().RecordNegativeAnswer(report); break;
        default: RaiseError(mErrCodes::ERR_DL_OPTIONS, QString(), mErrCodes::MSG_DL_OPTIONS);
        }
    });
}
