#pragma once
// The grip's last negative answer (report 0x50). It is recorded here, never raised.
#include <QString>

class cError {
public:
    static constexpr qint32 NoError = 0;
    static constexpr qint32 ChecksumError = 1;

    qint32 ErrorCode() const { return m_code; }
    void setErrorCode(qint32 code) { m_code = code; }
    // Records a negative answer: the code becomes 1 whatever the answer's data byte says.
    void RecordNegativeAnswer(const QString& report);
    QString Description() const;
    void Clear() { m_code = NoError; }

private:
    qint32 m_code = NoError;
};

// The one global instance, created on first use.
cError& GripError();
