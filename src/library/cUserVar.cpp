#include "library/cUserVar.h"

#include "library/mDatabase.h"
#include "library/mGUIDTools.h"
#include "shell/mMain.h"

using namespace mDatabase;

cUserVar::cUserVar()
{
    Init();
}

void cUserVar::setsName(const QString& value)
{
    if (value == m_sName)
        return;
    m_sName = value;
    setIsDirtySelf(true);
}

void cUserVar::setsValue(const QString& value)
{
    if (value == m_sValue)
        return;
    m_sValue = value;
    setIsDirtySelf(true);
}

void cUserVar::setIsDirtySelf(bool value)
{
    m_changed = value;
    m_revalidate = true;
}

void cUserVar::setValid(bool value) const
{
    m_valid = value;
    m_revalidate = false;
}

bool cUserVar::IsValid() const
{
    // No field rules yet: revalidating keeps the flag; this is where field checks would go.
    if (m_revalidate)
        setValid(m_valid);
    return m_valid;
}

QString cUserVar::InsertStatement() const
{
    return QStringLiteral("INSERT INTO ta_UserVar") + QStringLiteral(" (") + QStringLiteral("  ID")
           + QStringLiteral(", ParentID") + QStringLiteral(", Version") + QStringLiteral(", sName")
           + QStringLiteral(", sValue") + QStringLiteral(") ") + QStringLiteral("VALUES (")
           + QStringLiteral("  '") + JetKey(m_ID) + QStringLiteral("'")
           + QStringLiteral(", '") + JetKey(m_parentID) + QStringLiteral("'")
           + QStringLiteral(", '") + JetKey(m_version) + QStringLiteral("'")
           + QStringLiteral(", ") + JetText(m_sName) + QStringLiteral(" ")
           + QStringLiteral(", ") + JetText(m_sValue) + QStringLiteral(" ")
           + QStringLiteral(");");
}

QString cUserVar::UpdateStatement() const
{
    // The version identifier is fixed when the row is made: deliberately never updated.
    return QStringLiteral("UPDATE ta_UserVar ") + QStringLiteral("SET ")
           + QStringLiteral("  ParentID = '") + JetKey(m_parentID) + QStringLiteral("' ")
           + QStringLiteral(", sName = ") + JetText(m_sName) + QStringLiteral(" ")
           + QStringLiteral(", sValue = ") + JetText(m_sValue) + QStringLiteral(" ")
           + QStringLiteral("WHERE ID = '") + JetKey(m_ID) + QStringLiteral("';");
}

QString cUserVar::SelectStatement() const
{
    return QStringLiteral("SELECT * ") + QStringLiteral("FROM ta_UserVar ") + QStringLiteral("WHERE ID = '")
           + JetKey(m_ID) + QStringLiteral("';");
}

QString cUserVar::DeleteStatement() const
{
    return QStringLiteral("DELETE * ") + QStringLiteral("FROM ta_UserVar ") + QStringLiteral("WHERE ID = '")
           + JetKey(m_ID) + QStringLiteral("';");
}

void cUserVar::Init()
{
    ShowErrors(kClass, kRevision, QStringLiteral("Init"), [&] { InitOrThrow(nullptr); });
}

void cUserVar::Init(const QSqlRecord& row)
{
    ShowErrors(kClass, kRevision, QStringLiteral("Init"), [&] { InitOrThrow(&row); });
}

void cUserVar::InitOrThrow(const QSqlRecord* row)
{
    PassErrors(kClass, kRevision, QStringLiteral("Init"), [&] {
        if (!row) {
            m_ID = GetNewGUIDStr();
            m_parentID.clear();
            m_isNew = true;
            m_version = GetNewGUIDStr();
            m_revalidate = true;
            setValid(true);
            setsName(QString());
        } else {
            m_ID = ColumnText(*row, QStringLiteral("ID"));
            m_parentID = ColumnText(*row, QStringLiteral("ParentID"));
            m_version = ColumnText(*row, QStringLiteral("Version"));
            m_isNew = false;
            m_revalidate = true;
            setValid(true);
            setsName(ColumnText(*row, QStringLiteral("sName")));
            setsValue(ColumnText(*row, QStringLiteral("sValue")));
        }
        setIsDirtySelf(false);
        m_isDeleted = false;
    });
}

void cUserVar::Save(QSqlDatabase& connection)
{
    ShowErrors(kClass, kRevision, QStringLiteral("Save"), [&] { SaveOrThrow(connection); });
}

void cUserVar::SaveOrThrow(QSqlDatabase& connection)
{
    PassErrors(kClass, kRevision, QStringLiteral("Save"), [&] {
        EnsureConnection(connection);
        if (m_isNew) {
            if (!m_isDeleted)
                createOrThrow(connection);
        } else if (m_isDeleted) {
            deleteOrThrow(connection);
        } else if (IsDirtySelf()) {
            updateOrThrow(connection);
        }
    });
}

void cUserVar::Load(QSqlDatabase& connection)
{
    ShowErrors(kClass, kRevision, QStringLiteral("Load"), [&] {
        EnsureConnection(connection);
        readOrThrow(connection);
    });
}

void cUserVar::Read(QSqlDatabase& connection)
{
    ShowErrors(kClass, kRevision, QStringLiteral("Read"), [&] { readOrThrow(connection); });
}

void cUserVar::Delete(QSqlDatabase& connection)
{
    ShowErrors(kClass, kRevision, QStringLiteral("Delete"), [&] { deleteOrThrow(connection); });
}

void cUserVar::Create(QSqlDatabase& connection)
{
    ShowErrors(kClass, kRevision, QStringLiteral("Create"), [&] { createOrThrow(connection); });
}

void cUserVar::Update(QSqlDatabase& connection)
{
    ShowErrors(kClass, kRevision, QStringLiteral("Update"), [&] { updateOrThrow(connection); });
}

void cUserVar::readOrThrow(QSqlDatabase& connection)
{
    PassErrors(kClass, kRevision, QStringLiteral("Read"), [&] {
        QSqlQuery query = Execute(connection, SelectStatement());
        if (query.next()) {
            const QSqlRecord row = query.record();
            InitOrThrow(&row);
        }
    });
}

void cUserVar::deleteOrThrow(QSqlDatabase& connection)
{
    PassErrors(kClass, kRevision, QStringLiteral("Delete"), [&] { Execute(connection, DeleteStatement()); });
}

void cUserVar::createOrThrow(QSqlDatabase& connection)
{
    PassErrors(kClass, kRevision, QStringLiteral("Create"), [&] {
        Execute(connection, InsertStatement());
        m_isNew = false;
    });
}

void cUserVar::updateOrThrow(QSqlDatabase& connection)
{
    PassErrors(kClass, kRevision, QStringLiteral("Update"), [&] {
        Execute(connection, UpdateStatement());
        setIsDirtySelf(false);
    });
}
