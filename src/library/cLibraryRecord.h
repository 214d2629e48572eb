#pragma once
// What the library's two records share (cSetsTemplate, cUserVar): the keys, the state flags,
// the save rule, and reading, writing and deleting their own row with one statement each.
//
// Derived gives its class name, revision and table (kClass, kRevision, kTable), its insert and
// update statements (SQL with every value bound, mDatabase::Statement), initFieldsOrThrow (its
// fields, new or from a row) and what it owns: saveChildrenOrThrow, loadChildrenOrThrow and
// markChildrenNewForRewrite.
//
// Every operation reports its own errors under Derived's class name and returns normally; the
// *OrThrow forms pass the error on instead, for the owners that must stop at the first failure.
#include "library/cClassErrors.h"
#include "library/mDatabase.h"
#include "library/mGUIDTools.h"

#include <QSqlDatabase>
#include <QSqlRecord>
#include <QString>

template <typename Derived>
class cLibraryRecord : protected cClassErrors<Derived> {
    using Errors = cClassErrors<Derived>;

public:
    // A record about to be read from a row (InitOrThrow with the row follows at once): its
    // constructor skips making what the row replaces anyway.
    struct FromRow {};

    QString ID() const { return m_ID; }
    void setID(const QString& value) { m_ID = value; }
    QString ParentID() const { return m_parentID; }
    void setParentID(const QString& value) { m_parentID = value; }
    QString Version() const { return m_version; }
    void setVersion(const QString& value) { m_version = value; }

    bool IsNew() const { return m_isNew; }
    void setIsNew(bool value) { m_isNew = value; }
    bool IsDeleted() const { return m_isDeleted; }
    void setIsDeleted(bool value) { m_isDeleted = value; }
    bool IsDirtySelf() const { return m_isNew || m_isDeleted || m_changed; }
    void setIsDirtySelf(bool value)
    {
        m_changed = value;
        m_revalidate = true;
    }
    bool IsValid() const
    {
        // No field rules yet: revalidating keeps the flag; this is where field checks would go.
        if (m_revalidate)
            setValid(m_valid);
        return m_valid;
    }

    // The connection is filled with the shared one when it is empty.
    void Save(QSqlDatabase& connection)
    {
        Errors::report(QStringLiteral("Save"), [&] { SaveOrThrow(connection); });
    }
    void Load(QSqlDatabase& connection)
    {
        Errors::report(QStringLiteral("Load"), [&] {
            mDatabase::EnsureConnection(connection);
            readOrThrow(connection);
            self().loadChildrenOrThrow(connection);
        });
    }
    void Read(QSqlDatabase& connection)
    {
        Errors::report(QStringLiteral("Read"), [&] { readOrThrow(connection); });
    }
    void Delete(QSqlDatabase& connection)
    {
        Errors::report(QStringLiteral("Delete"), [&] { deleteOrThrow(connection); });
    }
    void Create(QSqlDatabase& connection)
    {
        Errors::report(QStringLiteral("Create"), [&] { createOrThrow(connection); });
    }
    void Update(QSqlDatabase& connection)
    {
        Errors::report(QStringLiteral("Update"), [&] { updateOrThrow(connection); });
    }
    // As a new record, or from a row of the record's table (columns by name).
    void Init()
    {
        Errors::report(QStringLiteral("Init"), [&] { InitOrThrow(nullptr); });
    }
    void Init(const QSqlRecord& row)
    {
        Errors::report(QStringLiteral("Init"), [&] { InitOrThrow(&row); });
    }

    // Inserts, deletes or updates by the flags, then saves what the record owns.
    void SaveOrThrow(QSqlDatabase& connection)
    {
        Errors::pass(QStringLiteral("Save"), [&] {
            mDatabase::EnsureConnection(connection);
            if (m_isNew) {
                // A new record marked deleted is never inserted, yet what it owns is still saved
                // below: deliberate, kept as it always was.
                if (!m_isDeleted)
                    createOrThrow(connection);
            } else if (m_isDeleted) {
                deleteOrThrow(connection);
            } else if (IsDirtySelf()) {
                updateOrThrow(connection);
            }
            self().saveChildrenOrThrow(connection);
        });
    }
    void InitOrThrow(const QSqlRecord* row)
    {
        Errors::pass(QStringLiteral("Init"), [&] {
            // Read in this order; a null stops here and what was read before keeps its value.
            self().setID(row ? mDatabase::ColumnText(*row, QStringLiteral("ID")) : GetNewGUIDStr());
            m_parentID = row ? mDatabase::ColumnText(*row, QStringLiteral("ParentID")) : QString();
            m_version = row ? mDatabase::ColumnText(*row, QStringLiteral("Version")) : GetNewGUIDStr();
            m_isNew = !row;
            m_revalidate = true;
            setValid(true);
            self().initFieldsOrThrow(row);
            setIsDirtySelf(false);
            m_isDeleted = false;
        });
    }

    // For a library written anew into an empty file: a record not marked deleted becomes new and
    // unchanged (its insert writes every field), and so does everything it owns; a deleted one is
    // left as it is (its delete then matches no row).
    void MarkNewForRewrite()
    {
        if (m_isDeleted)
            return;
        m_isNew = true;
        setIsDirtySelf(false);
        self().markChildrenNewForRewrite();
    }

    // This record's own row, by its ID, read or deleted.
    mDatabase::Statement SelectStatement() const { return {QStringLiteral("SELECT * ") + whereThisID(), {mDatabase::BoundText(m_ID)}}; }
    mDatabase::Statement DeleteStatement() const { return {QStringLiteral("DELETE ") + whereThisID(), {mDatabase::BoundText(m_ID)}}; }

protected:
    cLibraryRecord() = default;
    ~cLibraryRecord() = default;

    // Stores a different value and marks the record changed; the same value does nothing.
    template <typename V>
    void change(V& field, const V& value)
    {
        if (field == value)
            return;
        field = value;
        setIsDirtySelf(true);
    }

private:
    Derived& self() { return static_cast<Derived&>(*this); }
    const Derived& self() const { return static_cast<const Derived&>(*this); }

    static QString whereThisID() { return QStringLiteral("FROM ") + Derived::kTable + QStringLiteral(" WHERE ID = CAST(? AS TEXT)"); }
    void setValid(bool value) const
    {
        m_valid = value;
        m_revalidate = false;
    }

    void readOrThrow(QSqlDatabase& connection)
    {
        Errors::pass(QStringLiteral("Read"), [&] {
            mDatabase::EnsureConnection(connection);
            QSqlQuery query = mDatabase::Execute(connection, SelectStatement());
            if (query.next()) {
                const QSqlRecord row = query.record();
                InitOrThrow(&row);
            }
        });
    }
    void deleteOrThrow(QSqlDatabase& connection)
    {
        Errors::pass(QStringLiteral("Delete"), [&] {
            mDatabase::EnsureConnection(connection);
            mDatabase::Execute(connection, DeleteStatement());
        });
    }
    void createOrThrow(QSqlDatabase& connection)
    {
        Errors::pass(QStringLiteral("Create"), [&] {
            mDatabase::EnsureConnection(connection);
            mDatabase::Execute(connection, self().InsertStatement());
            // The changed flag stays: a record edited after it was made is updated at the next save.
            m_isNew = false;
        });
    }
    void updateOrThrow(QSqlDatabase& connection)
    {
        Errors::pass(QStringLiteral("Update"), [&] {
            mDatabase::EnsureConnection(connection);
            mDatabase::Execute(connection, self().UpdateStatement());
            setIsDirtySelf(false);
        });
    }

    QString m_ID;
    QString m_parentID;
    QString m_version;
    bool m_isNew = false;
    bool m_isDeleted = false;
    bool m_changed = false;
    mutable bool m_valid = false;
    mutable bool m_revalidate = false;
};
