#include "link/cError.h"

void cError::RecordNegativeAnswer(const QString& report)
{
    Q_UNUSED(report); // the grip's error byte is not looked at: every negative answer is code 1
    m_code = ChecksumError;
}

QString cError::Description() const
{
    switch (m_code) {
    case NoError: return QString();
    case ChecksumError: return QStringLiteral("Checksum error.");
    default: return QStringLiteral("Unknown errorcode.");
    }
}

cError& GripError()
{
    static cError instance;
    return instance;
}
