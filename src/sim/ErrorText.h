#pragma once

#include <QString>

namespace gripsim {

// Gives the reason for a refusal to a caller that asked for it (error may be null).
inline void setError(QString* error, const QString& text)
{
    if (error)
        *error = text;
}

} // namespace gripsim
