#pragma once
// The grip's battery reading and the voltage it stands for.
#include <QString>

class cGripSession;

class cBattery {
public:
    static inline const QString kClass = QStringLiteral("cBattery");
    static inline const QString kRevision = QStringLiteral("$Revision: 1 $");

    // Volts: a 10-bit reading against a 2.5 V reference behind a 16.2 to 6.2 divider.
    float VoltageLevel() const;
    // Gets the reading from the grip (command 0x17, report "G").
    void Download(cGripSession& session);

private:
    quint8 m_low = 0;
    quint8 m_high = 0;
};
