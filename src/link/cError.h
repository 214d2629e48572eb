#pragma once
// The grip's last negative answer (report 0x50). It is recorded here, never raised; the grip
// session keeps one.
#include "base/cText.h"

#include <QByteArray>
#include <QString>

class cError {
public:
    static constexpr qint32 NoError = 0;
    static constexpr qint32 ChecksumError = 1;

    qint32 ErrorCode() const { return m_code; }
    void setErrorCode(qint32 code) { m_code = code; }
    // Records a negative answer: the code becomes 1 whatever the answer's data byte says.
    void RecordNegativeAnswer(const QByteArray& report);
    // What the answer means: in English (Description), and to show (Text).
    QString Description() const { return Text().English(); }
    cText Text() const;
    void Clear() { m_code = NoError; m_answerByte = 0; }
    // The data byte of the last negative answer (0 when it had none), for telling the user.
    quint8 AnswerByte() const { return m_answerByte; }

private:
    qint32 m_code = NoError;
    quint8 m_answerByte = 0;
};
