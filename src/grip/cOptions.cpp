#include "grip/cOptions.h"

#include "base/mErrCodes.h"
#include "base/mErrorReport.h"
#include "grip/cStoredValues.h"
#include "grip/cGripSession.h"
#include "grip/mGripReport.h"
#include "link/mAppFunc.h"

#include <iterator>

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

constexpr cStoredValues::tRange kEyeCheckMaxTimeRange{cOptions::EyeCheckMaxTimeMin, cOptions::EyeCheckMaxTimeMax,
                                                      cOptions::EyeCheckMaxTimeDefault};
constexpr cStoredValues::tRange kDefaultLoadTimeRange{cOptions::DefaultLoadTimeMin, cOptions::DefaultLoadTimeMax,
                                                      cOptions::DefaultLoadTimeDefault};
constexpr cStoredValues::tRange kEyeCheckOKTimeRange{cOptions::EyeCheckOKTimeMin, cOptions::EyeCheckOKTimeMax,
                                                     cOptions::EyeCheckOKTimeDefault};

// Where the values are kept. The store keys of the switches differ from the property names in
// places; they are the program's keys. The times are kept under their property names.
struct tSwitchKey {
    const char* property;
    const char* key;
};
enum tSwitch { swEyeMounted, swTriggerFilterOn, swEyeCheckMaxTimeOn, swUseEye, swLoaderOn, swLedOn, swEyeCheckOKTimeOn, swCTOAdjust };
constexpr tSwitchKey kSwitches[] = {
    {"EyeMounted", "EyeMounted"}, {"TriggerFilterOn", "TriggerFilter"}, {"EyeCheckMaxTimeOn", "EyeCheckMax"},
    {"UseEye", "UseEye"},         {"LoaderOn", "Loader"},               {"LedOn", "LED"},
    {"EyeCheckOKTimeOn", "EyeCheckOK"}, {"CTOAdjust", "CTOAdjust"},
};
static_assert(std::size(kSwitches) == swCTOAdjust + 1);
struct tTimeKey {
    const char* property;
    cStoredValues::tRange range;
};
enum tTime { tmEyeCheckMaxTime, tmDefaultLoadTime, tmEyeCheckOKTime };
constexpr tTimeKey kTimes[] = {
    {"EyeCheckMaxTime", kEyeCheckMaxTimeRange}, {"DefaultLoadTime", kDefaultLoadTimeRange}, {"EyeCheckOKTime", kEyeCheckOKTimeRange},
};
static_assert(std::size(kTimes) == tmEyeCheckOKTime + 1);

bool readSwitch(const cStoredValues& store, tSwitch which, tUnreadablePreferences* problems = nullptr)
{
    const tSwitchKey& row = kSwitches[which];
    return store.Switch(QLatin1String(row.property), QLatin1String(row.key), problems);
}

void writeSwitch(cStoredValues& store, tSwitch which, bool value)
{
    const tSwitchKey& row = kSwitches[which];
    store.setSwitch(QLatin1String(row.property), QLatin1String(row.key), value);
}

qint32 readTime(const cStoredValues& store, tTime which, tUnreadablePreferences* problems = nullptr)
{
    return store.Number(QLatin1String(kTimes[which].property), kTimes[which].range, problems);
}

qint32 writeTime(cStoredValues& store, tTime which, qint32 value)
{
    return store.setNumber(QLatin1String(kTimes[which].property), value, kTimes[which].range);
}

} // namespace

cOptions::cOptions(cStoredValues::tKeeping keeping) : m_store(kClass, kRevision, kSection, keeping)
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

tUnreadablePreferences cOptions::UnreadableValues()
{
    tUnreadablePreferences problems;
    const cStoredValues stored(kClass, kRevision, kSection);
    for (int which = 0; which < int(std::size(kSwitches)); ++which)
        readSwitch(stored, static_cast<tSwitch>(which), &problems);
    for (int which = 0; which < int(std::size(kTimes)); ++which)
        readTime(stored, static_cast<tTime>(which), &problems);
    return problems;
}

bool cOptions::EyeMounted() const { return readSwitch(m_store, swEyeMounted); }
void cOptions::setEyeMounted(bool value) { writeSwitch(m_store, swEyeMounted, value); }
bool cOptions::TriggerFilterOn() const { return readSwitch(m_store, swTriggerFilterOn); }
void cOptions::setTriggerFilterOn(bool value) { writeSwitch(m_store, swTriggerFilterOn, value); }
bool cOptions::EyeCheckMaxTimeOn() const { return readSwitch(m_store, swEyeCheckMaxTimeOn); }
void cOptions::setEyeCheckMaxTimeOn(bool value) { writeSwitch(m_store, swEyeCheckMaxTimeOn, value); }
bool cOptions::UseEye() const { return readSwitch(m_store, swUseEye); }
void cOptions::setUseEye(bool value) { writeSwitch(m_store, swUseEye, value); }
qint32 cOptions::EyeCheckMaxTime() const { return readTime(m_store, tmEyeCheckMaxTime); }
qint32 cOptions::setEyeCheckMaxTime(qint32 value) { return writeTime(m_store, tmEyeCheckMaxTime, value); }
qint32 cOptions::DefaultLoadTime() const { return readTime(m_store, tmDefaultLoadTime); }
qint32 cOptions::setDefaultLoadTime(qint32 value) { return writeTime(m_store, tmDefaultLoadTime, value); }
bool cOptions::LoaderOn() const { return readSwitch(m_store, swLoaderOn); }
void cOptions::setLoaderOn(bool value) { writeSwitch(m_store, swLoaderOn, value); }
bool cOptions::LedOn() const { return readSwitch(m_store, swLedOn); }
void cOptions::setLedOn(bool value) { writeSwitch(m_store, swLedOn, value); }
bool cOptions::EyeCheckOKTimeOn() const { return readSwitch(m_store, swEyeCheckOKTimeOn); }
void cOptions::setEyeCheckOKTimeOn(bool value) { writeSwitch(m_store, swEyeCheckOKTimeOn, value); }
qint32 cOptions::EyeCheckOKTime() const { return readTime(m_store, tmEyeCheckOKTime); }
qint32 cOptions::setEyeCheckOKTime(qint32 value) { return writeTime(m_store, tmEyeCheckOKTime, value); }
bool cOptions::CTOAdjust() const { return readSwitch(m_store, swCTOAdjust); }
void cOptions::setCTOAdjust(bool value) { writeSwitch(m_store, swCTOAdjust, value); }

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

QByteArray cOptions::Obj2Comm() const
{
    return PassErrors(kClass, kRevision, QStringLiteral("Obj2Comm"), [&] {
        return FrameBytes({CMD_UL_OPTIONS, OptionsByte(), EyeCheckMaxTime(), EyeCheckOKTime(), DefaultLoadTime()});
    });
}

void cOptions::Comm2Obj(const QByteArray& report)
{
    PassErrors(kClass, kRevision, QStringLiteral("Comm2Obj"), [&] {
        const quint8 bits = FrameByte(report, 2);
        setEyeMounted(bits & kEyeMounted);
        setLoaderOn(bits & kLoaderOn);
        setTriggerFilterOn(bits & kTriggerFilterOn);
        setLedOn(bits & kLedOn);
        setEyeCheckMaxTimeOn(bits & kEyeCheckMaxTimeOn);
        setEyeCheckOKTimeOn(bits & kEyeCheckOKTimeOn);
        setUseEye(bits & kUseEye);
        setCTOAdjust(bits & kCTOAdjust);
        // Through the properties, so out-of-range times from the grip get their defaults.
        setEyeCheckMaxTime(FrameByte(report, 3));
        setEyeCheckOKTime(FrameByte(report, 4));
        setDefaultLoadTime(FrameByte(report, 5));
        Save();
    });
}

void cOptions::Upload(cGripSession& session)
{
    PassErrors(kClass, kRevision, QStringLiteral("Upload"), [&] {
        mGripReport::RecordUpload(session, [&] { return Obj2Comm(); }, mErrCodes::ERR_UL_OPTIONS, mErrCodes::MessageText(mErrCodes::MSG_UL_OPTIONS),
                                  [&] { return session.Supports().Options(); });
    });
}

void cOptions::Download(cGripSession& session)
{
    PassErrors(kClass, kRevision, QStringLiteral("Download"), [&] {
        mGripReport::RecordDownload(session, CMD_DL_OPTIONS, REP_OPTIONS, [&](const QByteArray& report) { Comm2Obj(report); },
                                    mErrCodes::ERR_DL_OPTIONS, mErrCodes::MessageText(mErrCodes::MSG_DL_OPTIONS), [&] { return session.Supports().Options(); });
    });
}
