#pragma once
// The user variables of one settings record, keyed by their IDs, in insertion order.
#include "library/cRecordCollection.h"
#include "library/cUserVar.h"

class cColUserVar : public cRecordCollection<cUserVar, cColUserVar> {
public:
    static inline const QString kClass = QStringLiteral("cColUserVar");
    static inline const QString kRevision = QStringLiteral("$Revision: 1 $");
    static inline const QString kTable = QStringLiteral("ta_UserVar");

private:
    friend class cRecordCollection<cUserVar, cColUserVar>;
    // A user variable owns nothing.
    void loadChildren(cUserVar&, QSqlDatabase&) {}
};
