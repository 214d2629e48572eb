#include "grip/cHyper.h"

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

std::unique_ptr<cHyper>& instance()
{
    static std::unique_ptr<cHyper> record;
    return record;
}

// Writes a value to the store only when it differs from what is stored: the same text again
// changes nothing, and every write costs the store a write to disk.
void saveIfChanged(const QString& section, const QString& key, const QString& text)
{
    const QVariant current = cRegistrySettings::GetSetting(section, key, QVariant());
    if (current.isValid() && cRegistrySettings::StoredText(current) == text)
        return;
    cRegistrySettings::SaveSetting(section, key, text);
}

qint32 inRange(qint32 value, qint32 min, qint32 max, qint32 replacement)
{
    return value < min || value > max ? replacement : value;
}

qint32 readValue(const QString& key, qint32 def)
{
    return PassErrors(cHyper::kClass, cHyper::kRevision, key, [&] {
        return cRegistrySettings::TextToLong(cRegistrySettings::GetSetting(cHyper::kSection, key, QString::number(def)));
    });
}

qint32 writeValue(const QString& key, qint32 value)
{
    return PassErrors(cHyper::kClass, cHyper::kRevision, key, [&] {
        saveIfChanged(cHyper::kSection, key, QString::number(value));
        return value;
    });
}

} // namespace

cHyper& HyperRecord()
{
    auto& record = instance();
    if (!record)
        record = std::make_unique<cHyper>();
    return *record;
}

void ResetHyperRecord()
{
    instance().reset();
}

cHyper::cHyper()
{
    Load();
}

void cHyper::Save()
{
    // Deliberately empty: the values already live in the preferences.
}

void cHyper::Load()
{
    // Deliberately empty: every read goes to the preferences.
}

void cHyper::Assign(qint32, qint32, qint32)
{
    // Deliberately does nothing: the values change only through the properties and Download.
}

void cHyper::AssignDefaults()
{
    // Has no effect, as Assign does nothing (and the 255 is not the stored default); kept so.
    Assign(3, 100, 255);
}

qint32 cHyper::Shots() const
{
    return inRange(readValue(QStringLiteral("Shots"), ShotsDefault), ShotsMin, ShotsMax, ShotsDefault);
}

qint32 cHyper::setShots(qint32 value)
{
    return writeValue(QStringLiteral("Shots"), inRange(value, ShotsMin, ShotsMax, ShotsDefault));
}

qint32 cHyper::HyperTime() const
{
    return inRange(readValue(QStringLiteral("HyperTime"), HyperTimeDefault), HyperTimeMin, HyperTimeMax,
                   HyperTimeDefault);
}

qint32 cHyper::setHyperTime(qint32 value)
{
    return writeValue(QStringLiteral("HyperTime"), inRange(value, HyperTimeMin, HyperTimeMax, HyperTimeDefault));
}

qint32 cHyper::HyperMode() const
{
    return readValue(QStringLiteral("HyperMode"), HyperModeDefault);
}

qint32 cHyper::setHyperMode(qint32 value)
{
    return writeValue(QStringLiteral("HyperMode"), value);
}

QString cHyper::Obj2Comm() const
{
    return PassErrors(kClass, kRevision, QStringLiteral("Obj2Comm"), [&] {
        return HexByte(CMD_UL_HYPER) + HexByte(Shots()) + HexByte(HyperTime()) + HexByte(HyperMode());
    });
}

void cHyper::Comm2Obj(const QString& report)
{
    PassErrors(kClass, kRevision, QStringLiteral("Comm2Obj"), [&] {
        // Through the properties, so the range rules and the preferences apply.
        setShots(GetByteFromHexstring(report, 2));
        setHyperTime(GetByteFromHexstring(report, 3));
        setHyperMode(GetByteFromHexstring(report, 4));
        Save();
    });
}

void cHyper::Upload()
{
    PassErrors(kClass, kRevision, QStringLiteral("Upload"), [&] {
        WaitPointerScope wait;
        RefreshGunInfo(true);
        if (!Supports().Hyper())
            return;
        const QString report = mCommBasic::CommHexData(Obj2Comm(), true);
        switch (mGripReport::ReportType(report)) {
        case REP_ACK: break;
        case REP_NEGATIVE: GripError().RecordNegativeAnswer(report); break;
        default: RaiseError(mErrCodes::ERR_UL_HYPER, QString(), mErrCodes::MSG_UL_HYPER);
        }
    });
}

void cHyper::Download()
{
    PassErrors(kClass, kRevision, QStringLiteral("Download"), [&] {
        WaitPointerScope wait;
        RefreshGunInfo(true);
        if (!Supports().Hyper())
            return;
        const QString report = mGripReport::RequestReport(CMD_DL_HYPER);
        switch (mGripReport::ReportType(report)) {
        case REP_HYPER: Comm2Obj(report); break;
        case REP_NEGATIVE: GripError().RecordNegativeAnswer(report); break;
        default: RaiseError(mErrCodes::ERR_DL_HYPER, QString(), mErrCodes::MSG_DL_HYPER);
        }
    });
}
