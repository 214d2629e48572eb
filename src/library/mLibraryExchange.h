#pragma once
// The library as a JSON document, for marlo-cli and for moving settings between libraries:
//   {"templates": [ {"ID": ..., "sName": ..., "dtDate": "yyyy-mm-dd", "lShotTime": ..., ...,
//                    "UserVariables": [{"sName": ..., "sValue": ...}]} ]}
// Every stored field of a setting under its own name; yes/no values as JSON booleans.
#include <QByteArray>
#include <QJsonArray>
#include <QJsonObject>
#include <QString>

class cColSetsTemplate;
class cSetsTemplate;

namespace mLibraryExchange {

inline const QString kModule = QStringLiteral("mLibraryExchange");
inline const QString kRevision = QStringLiteral("$Revision: 1 $");

QJsonObject TemplateToJson(cSetsTemplate& record);
// Every member not marked deleted, in library order.
QJsonArray TemplatesToJson(cColSetsTemplate& library);
// {"templates": [...]} as indented UTF-8 text.
QByteArray ExportDocument(cColSetsTemplate& library);
// Writes the document to a file; raises on a file that cannot be written.
void ExportFile(cColSetsTemplate& library, const QString& path);

struct ImportSummary {
    qint32 added = 0;
    qint32 updated = 0;
    qint32 unchanged = 0;
};

// Applies a document to the library in memory (the caller saves, in one transaction): a
// template whose ID is in the library updates that member, any other is added; a missing or
// malformed ID gets a new one. A template carries exactly the user variables the document gives;
// a new one that the document gives none, or leaves a field out of, gets what a new setting
// has. The whole document is checked first: a malformed one (13), or one with a value no grip
// record can carry or a text longer than 65,535 characters (380), raises a clear error naming
// the template and field and changes nothing.
ImportSummary ImportDocument(cColSetsTemplate& library, const QByteArray& document);
// Reads the file and imports it; raises on a file that cannot be read.
ImportSummary ImportFile(cColSetsTemplate& library, const QString& path);

} // namespace mLibraryExchange
