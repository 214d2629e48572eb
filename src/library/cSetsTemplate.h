#pragma once
// One setting of the library, one row of ta_SetsTemplate: the grip's timing values, the game
// alerts, a date, a name and the free user variables. Knows whether it is new, changed or to be
// deleted, writes itself with one statement and computes its rate of fire.
//
// Every operation reports its own errors and returns normally; the *OrThrow forms pass the
// error on instead, for the owners that must stop at the first failure.
#include "library/cColUserVar.h"

#include <QDateTime>
#include <QSqlDatabase>
#include <QSqlRecord>
#include <QString>
#include <memory>

class cSetsTemplate {
public:
    static inline const QString kClass = QStringLiteral("cSetsTemplate");
    static inline const QString kRevision = QStringLiteral("$Revision: 1 $");

    // A complete new record: fresh identifiers, default values, the seven standard variables.
    cSetsTemplate();
    // A record about to be read from a row (InitOrThrow with the row follows at once): skips the
    // identifiers and standard variables that the row replaces anyway.
    struct FromRow {};
    explicit cSetsTemplate(FromRow);
    ~cSetsTemplate();
    cSetsTemplate(const cSetsTemplate&) = delete;
    cSetsTemplate& operator=(const cSetsTemplate&) = delete;

    QString ID() const { return m_ID; }
    void setID(const QString& value);
    QString ParentID() const { return m_parentID; }
    void setParentID(const QString& value) { m_parentID = value; }
    QString Version() const { return m_version; }
    void setVersion(const QString& value) { m_version = value; }

    qint32 lShotTime() const { return m_lShotTime; }
    void setlShotTime(qint32 value);
    qint32 lDwellTime() const { return m_lDwellTime; }
    void setlDwellTime(qint32 value);
    qint32 lCycleTimeOpen() const { return m_lCycleTimeOpen; }
    void setlCycleTimeOpen(qint32 value);
    qint32 lLoadTime() const { return m_lLoadTime; }
    void setlLoadTime(qint32 value);
    qint32 lCycleTimeClose() const { return m_lCycleTimeClose; }
    void setlCycleTimeClose(qint32 value);
    qint32 lFiringMode() const { return m_lFiringMode; }
    void setlFiringMode(qint32 value);
    qint32 lGameTime() const { return m_lGameTime; }
    void setlGameTime(qint32 value);
    qint32 lAlertOne() const { return m_lAlertOne; }
    void setlAlertOne(qint32 value);
    qint32 lAlertTwo() const { return m_lAlertTwo; }
    void setlAlertTwo(qint32 value);
    bool bAlertOne() const { return m_bAlertOne; }
    void setbAlertOne(bool value);
    bool bAlertTwo() const { return m_bAlertTwo; }
    void setbAlertTwo(bool value);
    bool bCTCLikeCTO() const { return m_bCTCLikeCTO; }
    void setbCTCLikeCTO(bool value);
    bool bExpertMode() const { return m_bExpertMode; }
    void setbExpertMode(bool value);
    QDateTime dtDate() const { return m_dtDate; }
    void setdtDate(const QDateTime& value);
    QString sName() const { return m_sName; }
    void setsName(const QString& value);
    // Kept in memory only: never written to the library (intended).
    qint32 lShots() const { return m_lShots; }
    void setlShots(qint32 value);
    qint32 lHyperTime() const { return m_lHyperTime; }
    void setlHyperTime(qint32 value);
    qint32 lHyperMode() const { return m_lHyperMode; }
    void setlHyperMode(qint32 value);

    // The record's user variables, made on first access with this record's ID as parent.
    cColUserVar& colUserVar();

    bool IsNew() const { return m_isNew; }
    void setIsNew(bool value) { m_isNew = value; }
    bool IsDeleted() const { return m_isDeleted; }
    void setIsDeleted(bool value) { m_isDeleted = value; }
    bool IsDirtySelf() const { return m_isNew || m_isDeleted || m_changed; }
    void setIsDirtySelf(bool value);
    bool IsDirty() const;
    bool IsValid() const;

    // The connection is filled with the shared one when it is empty.
    void Save(QSqlDatabase& connection);
    void Load(QSqlDatabase& connection);
    void Read(QSqlDatabase& connection);
    void Delete(QSqlDatabase& connection);
    void Create(QSqlDatabase& connection);
    void Update(QSqlDatabase& connection);
    // As a new record, or from a row of ta_SetsTemplate (columns by name).
    void Init();
    void Init(const QSqlRecord& row);
    std::shared_ptr<cUserVar> AddUserVar(const QString& name, const QString& value);

    // Rate of fire in shots per second, as the grip's timing record computes it.
    float ROF();
    // ROF with one decimal and no leading zero: 9.7, 14.3, .5, .0
    QString sROF();

    void SaveOrThrow(QSqlDatabase& connection);
    void InitOrThrow(const QSqlRecord* row);
    void LoadUserVarsOrThrow(QSqlDatabase& connection);

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
    float rofOrThrow() const;
    void setValid(bool value) const;
    template <typename V>
    void change(V& field, const V& value);

    QString m_ID;
    QString m_parentID;
    QString m_version;
    qint32 m_lShotTime = 0;
    qint32 m_lDwellTime = 0;
    qint32 m_lCycleTimeOpen = 0;
    qint32 m_lLoadTime = 0;
    qint32 m_lCycleTimeClose = 0;
    qint32 m_lFiringMode = 0;
    qint32 m_lGameTime = 0;
    qint32 m_lAlertOne = 0;
    qint32 m_lAlertTwo = 0;
    bool m_bAlertOne = false;
    bool m_bAlertTwo = false;
    bool m_bCTCLikeCTO = false;
    bool m_bExpertMode = false;
    QDateTime m_dtDate;
    QString m_sName;
    qint32 m_lShots = 0;
    qint32 m_lHyperTime = 0;
    qint32 m_lHyperMode = 0;
    std::unique_ptr<cColUserVar> m_colUserVar;
    bool m_isNew = false;
    bool m_isDeleted = false;
    bool m_changed = false;
    mutable bool m_valid = false;
    mutable bool m_revalidate = false;
};
