#pragma once
// Identifiers of the library: GUIDs in their registry text form, the only kind of key the
// library makes.
#include <QString>

namespace mGUIDTools {

inline const QString kModule = QStringLiteral("mGUIDTools");
inline const QString kRevision = QStringLiteral("$Revision: 1 $");

// True for the 38-character registry form: "{", 8-4-4-4-12 upper-case hexadecimal digits, "}".
bool IsGUIDString(const QString& text);

} // namespace mGUIDTools

// A new random identifier in registry form, e.g. "{3F2504E0-4F89-41D3-9A0C-0305E82C3301}".
QString GetNewGUIDStr();
