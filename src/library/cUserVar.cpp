#include "library/cUserVar.h"

#include "library/mDatabase.h"

using namespace mDatabase;

Statement cUserVar::InsertStatement() const
{
    return {QStringLiteral("INSERT INTO ta_UserVar (ID, ParentID, Version, sName, sValue) "
                           "VALUES (CAST(? AS TEXT), CAST(? AS TEXT), CAST(? AS TEXT), CAST(? AS TEXT), CAST(? AS TEXT))"),
            {BoundText(ID()), BoundText(ParentID()), BoundText(Version()), BoundText(m_sName), BoundText(m_sValue)}};
}

Statement cUserVar::UpdateStatement() const
{
    // The version identifier is fixed when the row is made: deliberately never updated.
    return {QStringLiteral("UPDATE ta_UserVar SET ParentID = CAST(? AS TEXT), sName = CAST(? AS TEXT), "
                           "sValue = CAST(? AS TEXT) WHERE ID = CAST(? AS TEXT)"),
            {BoundText(ParentID()), BoundText(m_sName), BoundText(m_sValue), BoundText(ID())}};
}

void cUserVar::initFieldsOrThrow(const QSqlRecord* row)
{
    if (!row) {
        setsName(QString());
        return;
    }
    setsName(ColumnText(*row, QStringLiteral("sName")));
    setsValue(ColumnText(*row, QStringLiteral("sValue")));
}
