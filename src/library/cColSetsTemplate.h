#pragma once
// The library in memory: settings records keyed by their IDs, in the order the database gave
// them and then in the order they were added. An empty ParentID means every row when loading
// and makes every record added a top-level template.
#include "library/cRecordCollection.h"
#include "library/cSetsTemplate.h"

class cColSetsTemplate : public cRecordCollection<cSetsTemplate, cColSetsTemplate> {
public:
    static inline const QString kClass = QStringLiteral("cColSetsTemplate");
    static inline const QString kRevision = QStringLiteral("$Revision: 1 $");
    static inline const QString kTable = QStringLiteral("ta_SetsTemplate");

private:
    friend class cRecordCollection<cSetsTemplate, cColSetsTemplate>;
    // Each loaded setting brings its stored user variables.
    void loadChildren(cSetsTemplate& record, QSqlDatabase& connection) { record.LoadUserVarsOrThrow(connection); }
};
