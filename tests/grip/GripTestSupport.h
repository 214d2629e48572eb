#pragma once
// A fake port answered by a virtual grip, with per-command replacements, for the record tests.
#include "TestLink.h"

#include "link/mAppFunc.h"
#include "link/mCommBasic.h"
#include "sim/Fault.h"
#include "sim/SimOptions.h"
#include "sim/VirtualGrip.h"

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QSettings>
#include <QStandardPaths>
#include <QString>

namespace griptest {

// The bytes of a hex text.
inline QByteArray bytes(const QString& hex)
{
    return mAppFunc::HexToBytes(hex);
}

// The frame as the link sends it: the bytes followed by their check byte.
inline QByteArray framed(const QString& hex)
{
    return bytes(hex + mAppFunc::LZ(2, QString::number(mCommBasic::CalcCRC(hex), 16).toUpper()));
}

inline gripsim::SimOptions simOptions(const QString& text)
{
    QString error;
    const auto options = gripsim::SimOptions::parse(text, &error);
    if (!options)
        qFatal("bad sim options %s: %s", qPrintable(text), qPrintable(error));
    return *options;
}

// TestLink with a virtual grip behind the fake port. replies[code] replaces the grip's answer
// to that command (the bytes exactly as given; empty: silence).
class GripHarness {
public:
    explicit GripHarness(const QString& options = QString())
        : grip(simOptions(options))
    {
        link.port.setResponder([this](const QByteArray& frame) -> QByteArray {
            const quint8 code = static_cast<quint8>(frame.at(0));
            if (replies.contains(code))
                return replies.value(code);
            return grip.handleFrame(frame).value_or(QByteArray());
        });
    }

    // The command code of every frame sent, in order.
    QList<int> codes() const
    {
        QList<int> list;
        for (const QByteArray& frame : link.port.frames)
            list.append(static_cast<quint8>(frame.at(0)));
        return list;
    }

    // Frames of one command code, as hex text without the check byte.
    QStringList payloads(int code) const
    {
        QStringList list;
        for (const QByteArray& frame : link.port.frames)
            if (static_cast<quint8>(frame.at(0)) == code)
                list.append(mAppFunc::BytesToHex(frame.chopped(1)));
        return list;
    }

    void fault(gripsim::FaultKind kind, quint8 command)
    {
        gripsim::FaultRule rule;
        rule.kind = kind;
        rule.command = command;
        rule.count = 1;
        grip.addFault(rule);
    }

    TestLink link;
    gripsim::VirtualGrip grip;
    QHash<quint8, QByteArray> replies;
};

// Empties the preferences file of this test program.
inline void clearPreferences()
{
    QSettings store(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("Marlo"), QStringLiteral("Marlo"));
    store.clear();
    store.sync();
}

} // namespace griptest
