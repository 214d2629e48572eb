#pragma once
// The grip's shot counters: two that the user can reset and a total that cannot be reset.
#include <QByteArray>
#include <QString>

class cGripSession;
class cGunInfo;

class cCounters {
public:
    static inline const QString kClass = QStringLiteral("cCounters");
    static inline const QString kRevision = QStringLiteral("$Revision: 1 $");

    qint32 Counter1() const { return m_counter1; }
    void setCounter1(qint32 value) { m_counter1 = value; }
    qint32 Counter2() const { return m_counter2; }
    void setCounter2(qint32 value) { m_counter2 = value; }
    // Gets the counters from the grip (command 0x15, report "E").
    void Download(cGripSession& session);
    // Resets counter 1 (selector 1), counter 2 (2) or both (3) in the grip (command 0x25).
    void ResetCounter(cGripSession& session, quint8 selector);
    qint32 Total() const { return m_total; }

private:
    void Comm2Obj(const QByteArray& report);
    QByteArray ResetCommand(const cGunInfo& gunInfo, quint8 selector) const;

    qint32 m_counter1 = 0;
    qint32 m_counter2 = 0;
    qint32 m_total = 0;
};
