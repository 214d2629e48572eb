#include "grip/cHyper.h"

#include "base/mErrCodes.h"
#include "base/mErrorReport.h"
#include "grip/cStoredValues.h"
#include "grip/cGripSession.h"
#include "grip/mGripReport.h"
#include "link/mAppFunc.h"

#include <iterator>
#include <limits>

using namespace mAppFunc;

namespace {

constexpr cStoredValues::tRange kShotsRange{cHyper::ShotsMin, cHyper::ShotsMax, cHyper::ShotsDefault};
constexpr cStoredValues::tRange kHyperTimeRange{cHyper::HyperTimeMin, cHyper::HyperTimeMax, cHyper::HyperTimeDefault};
// The mode is not checked: every number stands.
constexpr cStoredValues::tRange kHyperModeRange{std::numeric_limits<qint32>::min(), std::numeric_limits<qint32>::max(),
                                                cHyper::HyperModeDefault};

// The values, each kept under its property's name.
struct tNumberKey {
    const char* property;
    cStoredValues::tRange range;
};
enum tNumber { nbShots, nbHyperTime, nbHyperMode };
constexpr tNumberKey kNumbers[] = {{"Shots", kShotsRange}, {"HyperTime", kHyperTimeRange}, {"HyperMode", kHyperModeRange}};
static_assert(std::size(kNumbers) == nbHyperMode + 1);

qint32 readNumber(const cStoredValues& store, tNumber which, tUnreadablePreferences* problems = nullptr)
{
    return store.Number(QLatin1String(kNumbers[which].property), kNumbers[which].range, problems);
}

qint32 writeNumber(cStoredValues& store, tNumber which, qint32 value)
{
    return store.setNumber(QLatin1String(kNumbers[which].property), value, kNumbers[which].range);
}

} // namespace

cHyper::cHyper(cStoredValues::tKeeping keeping) : m_store(kClass, kRevision, kSection, keeping)
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

tUnreadablePreferences cHyper::UnreadableValues()
{
    tUnreadablePreferences problems;
    const cStoredValues stored(kClass, kRevision, kSection);
    for (int which = 0; which < int(std::size(kNumbers)); ++which)
        readNumber(stored, static_cast<tNumber>(which), &problems);
    return problems;
}

qint32 cHyper::Shots() const { return readNumber(m_store, nbShots); }
qint32 cHyper::setShots(qint32 value) { return writeNumber(m_store, nbShots, value); }
qint32 cHyper::HyperTime() const { return readNumber(m_store, nbHyperTime); }
qint32 cHyper::setHyperTime(qint32 value) { return writeNumber(m_store, nbHyperTime, value); }
qint32 cHyper::HyperMode() const { return readNumber(m_store, nbHyperMode); }
qint32 cHyper::setHyperMode(qint32 value) { return writeNumber(m_store, nbHyperMode, value); }

QByteArray cHyper::Obj2Comm() const
{
    return PassErrors(kClass, kRevision, QStringLiteral("Obj2Comm"), [&] {
        return FrameBytes({CMD_UL_HYPER, Shots(), HyperTime(), HyperMode()});
    });
}

void cHyper::Comm2Obj(const QByteArray& report)
{
    PassErrors(kClass, kRevision, QStringLiteral("Comm2Obj"), [&] {
        // Through the properties, so the range rules and the preferences apply.
        setShots(FrameByte(report, 2));
        setHyperTime(FrameByte(report, 3));
        setHyperMode(FrameByte(report, 4));
        Save();
    });
}

void cHyper::Upload(cGripSession& session)
{
    PassErrors(kClass, kRevision, QStringLiteral("Upload"), [&] {
        mGripReport::RecordUpload(session, [&] { return Obj2Comm(); }, mErrCodes::ERR_UL_HYPER, mErrCodes::MessageText(mErrCodes::MSG_UL_HYPER),
                                  [&] { return session.Supports().Hyper(); });
    });
}

void cHyper::Download(cGripSession& session)
{
    PassErrors(kClass, kRevision, QStringLiteral("Download"), [&] {
        mGripReport::RecordDownload(session, CMD_DL_HYPER, REP_HYPER, [&](const QByteArray& report) { Comm2Obj(report); },
                                    mErrCodes::ERR_DL_HYPER, mErrCodes::MessageText(mErrCodes::MSG_DL_HYPER), [&] { return session.Supports().Hyper(); });
    });
}
