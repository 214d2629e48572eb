#pragma once
// One user variable: a free name/value pair noted with a setting (temperature, barrel, ...),
// one row of ta_UserVar. Knows whether it is new, changed or to be deleted, and writes itself
// with one statement (cLibraryRecord).
#include "library/cLibraryRecord.h"

#include <QSqlDatabase>
#include <QSqlRecord>
#include <QString>

class cUserVar : public cLibraryRecord<cUserVar> {
public:
    static inline const QString kClass = QStringLiteral("cUserVar");
    static inline const QString kRevision = QStringLiteral("$Revision: 1 $");
    static inline const QString kTable = QStringLiteral("ta_UserVar");

    // A new variable: fresh identifiers, empty name and value.
    cUserVar() { Init(); }
    explicit cUserVar(FromRow) {}

    QString sName() const { return m_sName; }
    void setsName(const QString& value) { change(m_sName, value); }
    QString sValue() const { return m_sValue; }
    void setsValue(const QString& value) { change(m_sValue, value); }

    // A user variable owns nothing.
    bool IsDirty() const { return IsDirtySelf(); }

    // The insert and update of this record's row, every value bound.
    mDatabase::Statement InsertStatement() const;
    mDatabase::Statement UpdateStatement() const;

private:
    friend class cLibraryRecord<cUserVar>;
    void initFieldsOrThrow(const QSqlRecord* row);
    void saveChildrenOrThrow(QSqlDatabase&) {}
    void loadChildrenOrThrow(QSqlDatabase&) {}
    void markChildrenNewForRewrite() {}

    QString m_sName;
    QString m_sValue;
};
