#include "link/cError.h"

#include "link/mAppFunc.h"

#include <QCoreApplication>

void cError::RecordNegativeAnswer(const QByteArray& report)
{
    // The code is 1 whatever the grip's error byte says; the byte is only kept to be shown.
    m_code = ChecksumError;
    m_answerByte = mAppFunc::FrameByte(report, 2);
}

cText cError::Text() const
{
    switch (m_code) {
    case NoError: return cText();
    case ChecksumError: return cText("cError", QT_TRANSLATE_NOOP("cError", "Checksum error."));
    default: return cText("cError", QT_TRANSLATE_NOOP("cError", "Unknown errorcode."));
    }
}
