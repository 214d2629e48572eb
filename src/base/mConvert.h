#pragma once
// The two conversions of text to numbers that the windows and the preferences use, with the
// rules of the language the program grew up in: CLng refuses what is not a number, Val takes the
// leading number of any text.
#include <QString>

namespace mConvert {

// The text as a whole number: blanks around it are ignored, a fraction rounds half to even.
// Raises "Type mismatch" for text that is not a number (the empty text included) and "Overflow"
// outside 32 bits.
qint32 CLng(const QString& text);
// The number at the start of the text (after blanks), 0 when there is none: "12ms" is 12,
// "abc" and "" are 0.
double Val(const QString& text);
// Val as a whole number (half to even); "Overflow" outside 32 bits.
qint32 ValLong(const QString& text);

} // namespace mConvert
