#pragma once
// What the library's two collections share (cColUserVar, cColSetsTemplate): a parent key and
// an ordered, keyed list of records, each keyed by its ID; saving every member and then
// dropping the deleted ones; loading one record per row of the table.
//
// Every operation reports its own errors under the collection's class name and returns
// normally; the *OrThrow forms pass the error on to an owner that must stop at it.
#include "library/cClassErrors.h"
#include "library/cKeyedList.h"
#include "library/mDatabase.h"

#include <QList>
#include <QSqlDatabase>
#include <QSqlRecord>
#include <QString>
#include <memory>

template <typename T, typename Derived>
class cRecordCollection : protected cClassErrors<Derived> {
    using cClassErrors<Derived>::report;
    using cClassErrors<Derived>::pass;

public:
    using Member = std::shared_ptr<T>;

    QString ParentID() const { return m_parentID; }
    void setParentID(const QString& value) { m_parentID = value; }

    // A new record, already a member (under its ID), belonging to this collection's parent.
    Member Add()
    {
        Member member;
        report(QStringLiteral("Add"), [&] { member = AddOrThrow(); });
        return member;
    }
    Member AddOrThrow()
    {
        return pass(QStringLiteral("Add"), [&] {
            auto member = std::make_shared<T>();
            member->setParentID(m_parentID);
            m_items.add(member->ID(), member);
            return member;
        });
    }
    // Adopts a record under its ID; a taken ID fails (duplicate key) and changes nothing.
    Member AddByObject(const Member& member)
    {
        Member added;
        report(QStringLiteral("AddByObject"), [&] { added = AddByObjectOrThrow(member); });
        return added;
    }
    Member AddByObjectOrThrow(const Member& member)
    {
        return pass(QStringLiteral("AddByObject"), [&] {
            if (!member)
                RaiseRuntimeError(mErrCodes::RT_INVALID_CALL);
            if (m_items.contains(member->ID()))
                RaiseRuntimeError(mErrCodes::RT_DUPLICATE_KEY);
            member->setParentID(m_parentID);
            m_items.add(member->ID(), member);
            return member;
        });
    }
    // Removes and answers the member at a position (from 1) or under a key.
    Member Remove(qint32 position)
    {
        Member removed;
        report(QStringLiteral("Remove"), [&] { removed = m_items.removeAt(position); });
        return removed;
    }
    Member Remove(const QString& key)
    {
        Member removed;
        report(QStringLiteral("Remove"), [&] { removed = m_items.removeKey(key); });
        return removed;
    }
    // The member at a position (from 1) or under a key; an unknown one is reported (nothing).
    Member Item(qint32 position)
    {
        Member member;
        report(QStringLiteral("Item"), [&] { member = m_items.at(position); });
        return member;
    }
    Member Item(const QString& key)
    {
        Member member;
        report(QStringLiteral("Item"), [&] { member = m_items.byKey(key); });
        return member;
    }
    // The member under a key, or nothing, without any report.
    Member Find(const QString& key) const { return m_items.find(key); }
    bool Contains(const QString& key) const { return m_items.contains(key); }
    qint32 Count() const { return m_items.count(); }
    // The members in order (a snapshot: changing the collection does not disturb a walk).
    QList<Member> NewEnum() const { return m_items.members(); }
    auto begin() const { return m_items.members().cbegin(); }
    auto end() const { return m_items.members().cend(); }
    // Drops every member; the database is not touched.
    void Clear() { m_items.clear(); }

    bool IsDirty() const
    {
        for (const Member& member : m_items.members()) {
            if (member->IsDirty())
                return true;
        }
        return false;
    }

    // Every member not marked deleted, and what it owns, becomes new, so that the next save
    // inserts the whole collection into a library file that was made anew.
    void MarkAllNew()
    {
        for (const Member& member : m_items.members())
            member->MarkNewForRewrite();
    }

    void Save(QSqlDatabase& connection)
    {
        report(QStringLiteral("Save"), [&] { SaveOrThrow(connection); });
    }
    // Saves every member in order, then drops the deleted ones from the last position to the
    // first. The first failure stops the walk: earlier members are written, later ones stay
    // dirty for the next save.
    void SaveOrThrow(QSqlDatabase& connection)
    {
        pass(QStringLiteral("Save"), [&] {
            mDatabase::EnsureConnection(connection);
            const QList<Member> snapshot = m_items.members();
            for (const Member& member : snapshot)
                member->SaveOrThrow(connection);
            for (qint32 position = Count(); position >= 1; --position) {
                if (m_items.at(position)->IsDeleted())
                    m_items.removeAt(position);
            }
        });
    }

    // Every row of the table; for a collection with a parent, the rows of that parent only.
    mDatabase::Statement LoadStatement() const
    {
        mDatabase::Statement statement{QStringLiteral("SELECT * FROM ") + Derived::kTable, {}};
        if (m_parentID.size() >= 1) {
            statement.sql += QStringLiteral(" WHERE ParentID = CAST(? AS TEXT)");
            statement.values.append(mDatabase::BoundText(m_parentID));
        }
        return statement;
    }
    void Load(QSqlDatabase& connection)
    {
        report(QStringLiteral("Load"), [&] { LoadOrThrow(connection); });
    }
    // Adds one member per row, without clearing first: a row whose ID is already a member stops
    // the load at the duplicate key; the members added before it stay. A row that cannot be read
    // (a null where none may be, a value that does not fit) is reported with its column and ID
    // and left out; the rows after it still load, so that one bad row never hides a library.
    void LoadOrThrow(QSqlDatabase& connection)
    {
        pass(QStringLiteral("Load"), [&] {
            mDatabase::EnsureConnection(connection);
            // A library that could not be opened was reported when it was opened: loading it
            // says nothing more and leaves the collection empty.
            if (!connection.isOpen())
                return;
            QSqlQuery query = mDatabase::Execute(connection, LoadStatement());
            while (query.next()) {
                const QSqlRecord row = query.record();
                auto member = std::make_shared<T>(typename T::FromRow{});
                if (!report(QStringLiteral("Load"), [&] { member->InitOrThrow(&row); }))
                    continue;
                static_cast<Derived*>(this)->loadChildren(*member, connection);
                AddByObjectOrThrow(member);
            }
        });
    }

private:
    QString m_parentID;
    cKeyedList<T> m_items;
};
