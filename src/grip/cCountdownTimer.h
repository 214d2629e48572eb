#pragma once
// The grip's game (countdown) timer and its two pre-alerts, held in the object itself.
#include <QByteArray>
#include <QString>

class cGripSession;

class cCountdownTimer {
public:
    // Errors name the class "cCountDownTimer", with a capital D: the program's own spelling, kept.
    static inline const QString kClass = QStringLiteral("cCountDownTimer");
    static inline const QString kRevision = QStringLiteral("$Revision: 1 $");

    cCountdownTimer();

    // Gets the timers from the grip (command 0x16, report "F").
    void Download(cGripSession& session);
    // Puts them to the grip (command 0x26).
    void Upload(cGripSession& session);
    // Intentionally empty hooks.
    void Save();
    void Load();
    void Assign(qint32 CountDownTimer, bool PreAlert1On, qint32 PreAlert1Time, bool PreAlert2On,
                qint32 PreAlert2Time);
    void AssignDefaults();

    qint32 CountDownTimer() const { return m_countDownTimer; }
    void setCountDownTimer(qint32 value);
    qint32 PreAlert1Time() const { return m_preAlert1Time; }
    void setPreAlert1Time(qint32 value);
    bool PreAlert1On() const { return m_preAlert1On; }
    void setPreAlert1On(bool value);
    qint32 PreAlert2Time() const { return m_preAlert2Time; }
    void setPreAlert2Time(qint32 value);
    bool PreAlert2On() const { return m_preAlert2On; }
    void setPreAlert2On(bool value);

    // The upload command with the record's values; a value that does not fit what the record
    // carries on the wire raises the error of the upload, and nothing is sent.
    QByteArray Obj2Comm() const;

private:
    void Comm2Obj(const QByteArray& report);

    qint32 m_countDownTimer = 0;
    bool m_preAlert1On = false;
    qint32 m_preAlert1Time = 0;
    bool m_preAlert2On = false;
    qint32 m_preAlert2Time = 0;
};
