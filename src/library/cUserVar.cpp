#include "library/cUserVar.h"

#include "library/mDatabase.h"

using namespace mDatabase;

QString cUserVar::InsertStatement() const
{
    return QStringLiteral("INSERT INTO ta_UserVar") + QStringLiteral(" (") + QStringLiteral("  ID")
           + QStringLiteral(", ParentID") + QStringLiteral(", Version") + QStringLiteral(", sName")
           + QStringLiteral(", sValue") + QStringLiteral(") ") + QStringLiteral("VALUES (")
           + QStringLiteral("  '") + JetKey(ID()) + QStringLiteral("'")
           + QStringLiteral(", '") + JetKey(ParentID()) + QStringLiteral("'")
           + QStringLiteral(", '") + JetKey(Version()) + QStringLiteral("'")
           + QStringLiteral(", ") + JetText(m_sName) + QStringLiteral(" ")
           + QStringLiteral(", ") + JetText(m_sValue) + QStringLiteral(" ")
           + QStringLiteral(");");
}

QString cUserVar::UpdateStatement() const
{
    // The version identifier is fixed when the row is made: deliberately never updated.
    return QStringLiteral("UPDATE ta_UserVar ") + QStringLiteral("SET ")
           + QStringLiteral("  ParentID = '") + JetKey(ParentID()) + QStringLiteral("' ")
           + QStringLiteral(", sName = ") + JetText(m_sName) + QStringLiteral(" ")
           + QStringLiteral(", sValue = ") + JetText(m_sValue) + QStringLiteral(" ")
           + QStringLiteral("WHERE ID = '") + JetKey(ID()) + QStringLiteral("';");
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
