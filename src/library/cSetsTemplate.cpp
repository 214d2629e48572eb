#include "library/cSetsTemplate.h"

#include "grip/cSettings.h"
#include "library/mDatabase.h"
#include "library/mTemplateRecords.h"

#include <cmath>

using namespace mDatabase;

namespace {

// The annotations a player notes with every new setting.
const char* const kStandardUserVars[] = {"Name", "Date", "Temperature", "Humidity", "Sun", "Barrel", "Paint"};

} // namespace

cSetsTemplate::cSetsTemplate()
{
    Init();
}

cSetsTemplate::cSetsTemplate(FromRow) {}

cSetsTemplate::~cSetsTemplate() = default;

void cSetsTemplate::setID(const QString& value)
{
    cLibraryRecord::setID(value);
    if (m_colUserVar)
        m_colUserVar->setParentID(value);
}

void cSetsTemplate::setlShotTime(qint32 value) { change(m_lShotTime, value); }
void cSetsTemplate::setlDwellTime(qint32 value) { change(m_lDwellTime, value); }
void cSetsTemplate::setlCycleTimeOpen(qint32 value) { change(m_lCycleTimeOpen, value); }
void cSetsTemplate::setlLoadTime(qint32 value) { change(m_lLoadTime, value); }
void cSetsTemplate::setlCycleTimeClose(qint32 value) { change(m_lCycleTimeClose, value); }
void cSetsTemplate::setlFiringMode(qint32 value) { change(m_lFiringMode, value); }
void cSetsTemplate::setlGameTime(qint32 value) { change(m_lGameTime, value); }
void cSetsTemplate::setlAlertOne(qint32 value) { change(m_lAlertOne, value); }
void cSetsTemplate::setlAlertTwo(qint32 value) { change(m_lAlertTwo, value); }
void cSetsTemplate::setbAlertOne(bool value) { change(m_bAlertOne, value); }
void cSetsTemplate::setbAlertTwo(bool value) { change(m_bAlertTwo, value); }
void cSetsTemplate::setbCTCLikeCTO(bool value) { change(m_bCTCLikeCTO, value); }
void cSetsTemplate::setbExpertMode(bool value) { change(m_bExpertMode, value); }
void cSetsTemplate::setdtDate(const QDateTime& value) { change(m_dtDate, value); }
void cSetsTemplate::setsName(const QString& value) { change(m_sName, value); }
void cSetsTemplate::setlShots(qint32 value) { change(m_lShots, value); }
void cSetsTemplate::setlHyperTime(qint32 value) { change(m_lHyperTime, value); }
void cSetsTemplate::setlHyperMode(qint32 value) { change(m_lHyperMode, value); }

cColUserVar& cSetsTemplate::colUserVar()
{
    if (!m_colUserVar) {
        m_colUserVar = std::make_unique<cColUserVar>();
        m_colUserVar->setParentID(ID());
    }
    return *m_colUserVar;
}

bool cSetsTemplate::IsDirty() const
{
    return IsDirtySelf() || (m_colUserVar && m_colUserVar->IsDirty());
}

Statement cSetsTemplate::InsertStatement() const
{
    return {QStringLiteral("INSERT INTO ta_SetsTemplate (ID, ParentID, Version, lShotTime, lDwellTime, lCycleTimeOpen, "
                           "lLoadTime, lCycleTimeClose, lGameTime, lFiringMode, sName, dtDate, bCTCLikeCTO, bExpertMode, "
                           "bAlertOne, bAlertTwo, lAlertOne, lAlertTwo) "
                           "VALUES (CAST(? AS TEXT), CAST(? AS TEXT), CAST(? AS TEXT), ?, ?, ?, ?, ?, ?, ?, CAST(? AS TEXT), "
                           "?, ?, ?, ?, ?, ?, ?)"),
            {BoundText(ID()), BoundText(ParentID()), BoundText(Version()), m_lShotTime, m_lDwellTime, m_lCycleTimeOpen,
             m_lLoadTime, m_lCycleTimeClose, m_lGameTime, m_lFiringMode, BoundText(m_sName), BoundDate(m_dtDate),
             int(m_bCTCLikeCTO), int(m_bExpertMode), int(m_bAlertOne), int(m_bAlertTwo), m_lAlertOne, m_lAlertTwo}};
}

Statement cSetsTemplate::UpdateStatement() const
{
    // The version identifier is fixed when the row is made: deliberately never updated.
    return {QStringLiteral("UPDATE ta_SetsTemplate SET ParentID = CAST(? AS TEXT), lShotTime = ?, lDwellTime = ?, "
                           "lCycleTimeOpen = ?, lLoadTime = ?, lCycleTimeClose = ?, lGameTime = ?, lFiringMode = ?, "
                           "sName = CAST(? AS TEXT), dtDate = ?, bCTCLikeCTO = ?, bExpertMode = ?, bAlertOne = ?, "
                           "bAlertTwo = ?, lAlertOne = ?, lAlertTwo = ? WHERE ID = CAST(? AS TEXT)"),
            {BoundText(ParentID()), m_lShotTime, m_lDwellTime, m_lCycleTimeOpen, m_lLoadTime, m_lCycleTimeClose, m_lGameTime,
             m_lFiringMode, BoundText(m_sName), BoundDate(m_dtDate), int(m_bCTCLikeCTO), int(m_bExpertMode),
             int(m_bAlertOne), int(m_bAlertTwo), m_lAlertOne, m_lAlertTwo, BoundText(ID())}};
}

std::shared_ptr<cUserVar> cSetsTemplate::AddUserVar(const QString& name, const QString& value)
{
    std::shared_ptr<cUserVar> variable;
    report(QStringLiteral("AddUserVar"), [&] {
        variable = colUserVar().AddOrThrow();
        variable->setsName(name);
        variable->setsValue(value);
    });
    return variable;
}

void cSetsTemplate::initFieldsOrThrow(const QSqlRecord* row)
{
    if (!row) {
        cColUserVar& vars = colUserVar();
        for (const char* name : kStandardUserVars)
            vars.AddOrThrow()->setsName(QString::fromLatin1(name));
        setbAlertOne(false);
        setbAlertTwo(false);
        setbCTCLikeCTO(false);
        setbExpertMode(false);
        setdtDate(QDateTime::currentDateTime());
        setlGameTime(10);
        setlAlertOne(1);
        setlAlertTwo(1);
        // A new setting starts from what a freshly made timing record holds.
        mTemplateRecords::TimingToTemplate(cSettings(), *this);
        setsName(QString());
        return;
    }
    // After the keys, in this order; a null stops here and what was read before keeps its value.
    setbAlertOne(ColumnBool(*row, QStringLiteral("bAlertOne")));
    setbAlertTwo(ColumnBool(*row, QStringLiteral("bAlertTwo")));
    setbCTCLikeCTO(ColumnBool(*row, QStringLiteral("bCTCLikeCTO")));
    setbExpertMode(ColumnBool(*row, QStringLiteral("bExpertMode")));
    setdtDate(ColumnDate(*row, QStringLiteral("dtDate")));
    setlAlertOne(ColumnLong(*row, QStringLiteral("lAlertOne")));
    setlAlertTwo(ColumnLong(*row, QStringLiteral("lAlertTwo")));
    setlCycleTimeClose(ColumnLong(*row, QStringLiteral("lCycleTimeClose")));
    setlCycleTimeOpen(ColumnLong(*row, QStringLiteral("lCycleTimeOpen")));
    setlDwellTime(ColumnLong(*row, QStringLiteral("lDwellTime")));
    setlGameTime(ColumnLong(*row, QStringLiteral("lGameTime")));
    setlLoadTime(ColumnLong(*row, QStringLiteral("lLoadTime")));
    setlShotTime(ColumnLong(*row, QStringLiteral("lShotTime")));
    const bool noFiringMode = IsNullColumn(*row, QStringLiteral("lFiringMode"));
    setlFiringMode(noFiringMode ? 0 : ColumnLong(*row, QStringLiteral("lFiringMode")));
    setsName(ColumnText(*row, QStringLiteral("sName")));
    // Not stored, so a record read from the library has none (intended).
    setlShots(0);
    setlHyperTime(0);
    setlHyperMode(0);
    // The stored variables replace the seven standard ones the record was made with.
    colUserVar().Clear();
}

void cSetsTemplate::LoadUserVarsOrThrow(QSqlDatabase& connection)
{
    // A record without an ID (only in a file made elsewhere) has no variables of its own: the
    // load statement without a parent would select every variable of the library.
    if (ID().isEmpty())
        return;
    colUserVar().LoadOrThrow(connection);
}

float cSetsTemplate::rofOrThrow() const
{
    // The timing record sums in 16 bits and overflows beyond; a row of a library made elsewhere
    // may hold any whole numbers, and reading a library must never fail on them.
    return cSettings::RateOfFire(m_lDwellTime, m_lCycleTimeOpen, m_lLoadTime, m_lCycleTimeClose, cSettings::Arithmetic::Wide);
}

float cSetsTemplate::ROF()
{
    float rof = 0.0F;
    report(QStringLiteral("ROF"), [&] { rof = rofOrThrow(); });
    return rof;
}

QString cSetsTemplate::sROF()
{
    QString text;
    report(QStringLiteral("sROF"), [&] {
        // The pattern ".0": one decimal, rounded half away from zero, no digit before the
        // point when the whole part is 0.
        const double tenths = std::round(static_cast<double>(rofOrThrow()) * 10.0);
        text = QString::number(tenths / 10.0, 'f', 1);
        if (text.startsWith(QLatin1String("0.")))
            text.remove(0, 1);
        else if (text.startsWith(QLatin1String("-0.")))
            text.remove(1, 1);
    });
    return text;
}
