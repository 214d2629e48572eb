#pragma once
// One user variable: a free name/value pair noted with a setting (temperature, barrel, ...),
// one row of ta_UserVar. Knows whether it is new, changed or to be deleted, and writes itself
// with one statement.
//
// Every operation reports its own errors and returns normally; the *OrThrow forms pass the
// error on instead, for the owners that must stop at the first failure.
#include <QSqlDatabase>
#include <QSqlRecord>
#include <QString>

class cUserVar {
public:
    static inline const QString kClass = QStringLiteral("cUserVar");
    static inline const QString kRevision = QStringLiteral("$Revision: 1 $");

    // A new variable: fresh identifiers, empty name and value.
    cUserVar();
    // A variable about to be read from a row (InitOrThrow with the row follows at once): skips
    // making identifiers that the row replaces anyway.
    struct FromRow {};
    explicit cUserVar(FromRow) {}

    QString ID() const { return m_ID; }
    void setID(const QString& value) { m_ID = value; }
    QString ParentID() const { return m_parentID; }
    void setParentID(const QString& value) { m_parentID = value; }
    QString Version() const { return m_version; }
    void setVersion(const QString& value) { m_version = value; }
    QString sName() const { return m_sName; }
    void setsName(const QString& value);
    QString sValue() const { return m_sValue; }
    void setsValue(const QString& value);

    bool IsNew() const { return m_isNew; }
    void setIsNew(bool value) { m_isNew = value; }
    bool IsDeleted() const { return m_isDeleted; }
    void setIsDeleted(bool value) { m_isDeleted = value; }
    bool IsDirtySelf() const { return m_isNew || m_isDeleted || m_changed; }
    void setIsDirtySelf(bool value);
    bool IsDirty() const { return IsDirtySelf(); }
    bool IsValid() const;

    // The connection is filled with the shared one when it is empty.
    void Save(QSqlDatabase& connection);
    void Load(QSqlDatabase& connection);
    void Read(QSqlDatabase& connection);
    void Delete(QSqlDatabase& connection);
    void Create(QSqlDatabase& connection);
    void Update(QSqlDatabase& connection);
    // As a new variable, or from a row of ta_UserVar (columns by name).
    void Init();
    void Init(const QSqlRecord& row);

    void SaveOrThrow(QSqlDatabase& connection);
    void InitOrThrow(const QSqlRecord* row);

    // The statements, in the library's Jet dialect.
    QString InsertStatement() const;
    QString UpdateStatement() const;
    QString SelectStatement() const;
    QString DeleteStatement() const;

private:
    void readOrThrow(QSqlDatabase& connection);
    void deleteOrThrow(QSqlDatabase& connection);
    void createOrThrow(QSqlDatabase& connection);
    void updateOrThrow(QSqlDatabase& connection);
    void setValid(bool value) const;

    QString m_ID;
    QString m_parentID;
    QString m_version;
    QString m_sName;
    QString m_sValue;
    bool m_isNew = false;
    bool m_isDeleted = false;
    bool m_changed = false;
    mutable bool m_valid = false;
    mutable bool m_revalidate = false;
};
