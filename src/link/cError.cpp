#include "link/cError.h"

#include "link/mAppFunc.h"

void cError::RecordNegativeAnswer(const QByteArray& report)
{
    // The code is 1 whatever the grip's error byte says; the byte is only kept to be shown.
    m_code = ChecksumError;
    m_answerByte = mAppFunc::FrameByte(report, 2);
}

QString cError::Description() const
{
    switch (m_code) {
    case NoError: return QString();
    case ChecksumError: return QStringLiteral("Checksum error.");
    default: return QStringLiteral("Unknown errorcode.");
    }
}
