#pragma once
// A text that counts ("3 values differ"), only ever shown. Its plural source is marked with
// QT_TRANSLATE_N_NOOP and translated with the plural forms of the user's language for the count;
// English, which has no translation, says the singular source for one and the plural otherwise.
#include <QString>

namespace mCountedText {

QString Counted(const char* context, const char* plural, const char* singular, int n);

} // namespace mCountedText
