#pragma once
// One setting of the library, one row of ta_SetsTemplate: the grip's timing values, the game
// alerts, a date, a name and the free user variables. Knows whether it is new, changed or to be
// deleted, writes itself with one statement (cLibraryRecord) and computes its rate of fire.
#include "library/cColUserVar.h"
#include "library/cLibraryRecord.h"

#include <QDateTime>
#include <QSqlDatabase>
#include <QSqlRecord>
#include <QString>
#include <memory>

class cSetsTemplate : public cLibraryRecord<cSetsTemplate> {
public:
    static inline const QString kClass = QStringLiteral("cSetsTemplate");
    static inline const QString kRevision = QStringLiteral("$Revision: 1 $");
    static inline const QString kTable = QStringLiteral("ta_SetsTemplate");

    // A complete new record: fresh identifiers, default values, the seven standard variables.
    cSetsTemplate();
    // A record about to be read from a row: without the standard variables.
    explicit cSetsTemplate(FromRow);
    ~cSetsTemplate();
    cSetsTemplate(const cSetsTemplate&) = delete;
    cSetsTemplate& operator=(const cSetsTemplate&) = delete;

    // Also the parent of the user variables.
    void setID(const QString& value);

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

    // The record itself or any of its user variables.
    bool IsDirty() const;

    std::shared_ptr<cUserVar> AddUserVar(const QString& name, const QString& value);

    // Rate of fire in shots per second, as the grip's timing record computes it.
    float ROF();
    // ROF with one decimal and no leading zero: 9.7, 14.3, .5, .0
    QString sROF();

    void LoadUserVarsOrThrow(QSqlDatabase& connection);

    // The insert and update of this record's row, every value bound.
    mDatabase::Statement InsertStatement() const;
    mDatabase::Statement UpdateStatement() const;

private:
    friend class cLibraryRecord<cSetsTemplate>;
    void initFieldsOrThrow(const QSqlRecord* row);
    // Deleting the setting leaves its variables' rows: they are never loaded again.
    void saveChildrenOrThrow(QSqlDatabase& connection) { colUserVar().SaveOrThrow(connection); }
    void loadChildrenOrThrow(QSqlDatabase& connection) { LoadUserVarsOrThrow(connection); }
    void markChildrenNewForRewrite() { colUserVar().MarkAllNew(); }
    float rofOrThrow() const;

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
};
