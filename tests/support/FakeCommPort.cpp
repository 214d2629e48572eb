#include "FakeCommPort.h"

#include "base/MarloError.h"
#include "base/mErrCodes.h"
#include "link/mAppFunc.h"

#include <QThread>

void FakeCommPort::setPortOpen(bool open)
{
    if (open == m_open) {
        if (!open)
            RaiseError(mErrCodes::RT_DEVICE_NOT_OPEN, QStringLiteral("FakeCommPort"), QStringLiteral("Port not open"));
        return;
    }
    if (open && m_openFailure) {
        MarloError error(mErrCodes::RT_PORT_OPEN_FAILED, QStringLiteral("FakeCommPort"), *m_openFailure);
        for (const QString& hint : m_openHints)
            error.addHint(hint);
        throw error;
    }
    m_open = open;
    if (open) {
        ++opens;
    } else {
        ++closes;
        m_pending.clear();
    }
}

QByteArray FakeCommPort::Input()
{
    const qsizetype n = InputLen() > 0 ? qMin<qsizetype>(InputLen(), m_input.size()) : m_input.size();
    const QByteArray out = m_input.left(n);
    m_input.remove(0, n);
    return out;
}

void FakeCommPort::setOutput(const QByteArray& bytes)
{
    writes.append(bytes);
    m_pending += bytes;
    completeFrames();
}

void FakeCommPort::completeFrames()
{
    while (!m_pending.isEmpty()) {
        const qint32 code = static_cast<quint8>(m_pending.at(0));
        qint32 size = mAppFunc::GetFunctionInputSize(code);
        if (code == mAppFunc::CMD_WRITE_BLOCK || code == mAppFunc::CMD_WRITE_BLOCK_OLD)
            size = m_pending.size() >= 4 ? 5 + static_cast<quint8>(m_pending.at(3)) : 1 << 20;
        if (size <= 0)
            size = 1;
        if (m_pending.size() < size)
            return;
        const QByteArray frame = m_pending.left(size);
        m_pending.remove(0, size);
        frames.append(frame);
        if (m_responder)
            m_input += m_responder(frame);
    }
}

void FakeCommPort::waitForInput(qint32 msecs)
{
    // Nothing will arrive that is not there already: sleep, as a real port would.
    if (m_input.isEmpty() && msecs > 0)
        QThread::msleep(static_cast<unsigned long>(msecs));
}
