#pragma once
// A fake port answered by a virtual grip, with per-command replacements, and the grip records as
// text, so that the record tests can be tables.
#include "TestLink.h"

#include "base/MarloError.h"
#include "grip/cGripSession.h"
#include "grip/mGripCommands.h"
#include "link/mAppFunc.h"
#include "link/mCommBasic.h"
#include "sim/Fault.h"
#include "sim/SimOptions.h"
#include "sim/VirtualGrip.h"

#include <QHash>
#include <QSettings>
#include <functional>
#include <optional>

namespace griptest {

using mGripCommands::Direction;
using mGripCommands::GripRecord;

// The frame as the link sends it: the bytes followed by their check byte.
inline QByteArray framed(const QByteArray& bytes)
{
    return bytes + static_cast<char>(mCommBasic::CalcCRC(bytes));
}
inline QByteArray framed(const QString& hex)
{
    return framed(QByteArray::fromHex(hex.toLatin1()));
}

// The grip's negative answer with that error byte, padded to the length of the report the
// command expects: the link waits for that many bytes, and the record sees the same report either way.
inline QByteArray refusal(int command, int errorByte = 1)
{
    return framed(QByteArray("\x50", 1) + char(errorByte)) + QByteArray(qMax(0, mAppFunc::GetFunctionReturnSize(command) - 3), '\0');
}

// The error that run raised, if any (value() of none throws, which fails the test).
inline std::optional<MarloError> errorOf(const std::function<void()>& run)
{
    try { run(); } catch (const MarloError& e) { return e; }
    return std::nullopt;
}

// TestLink with a virtual grip behind the fake port. replies[code] replaces the grip's answer
// to that command (the bytes exactly as given; empty: silence).
class GripHarness {
public:
    explicit GripHarness(const QString& options = QString())
        : grip(gripsim::SimOptions::parse(options).value())
    {
        link.port.setResponder([this](const QByteArray& frame) {
            const quint8 code = static_cast<quint8>(frame.at(0));
            return replies.contains(code) ? replies.value(code) : grip.handleFrame(frame).value_or(QByteArray());
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

    void fault(gripsim::FaultKind kind, int command) { grip.addFault({kind, static_cast<quint8>(command), 0, 1}); }

    TestLink link;
    cGripSession& session = link.session;
    gripsim::VirtualGrip grip;
    QHash<quint8, QByteArray> replies;
};

// Empty preferences, where the options and ramping records keep their values (the other records
// start fresh with every session).
inline void clearPreferences()
{
    QSettings(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("Marlo"), QStringLiteral("Marlo")).clear();
}

// A record's values as text, in the order marlo-cli prints them (timing: the link order;
// battery: the voltage to three decimals).
inline QString fields(cGripSession& session, GripRecord record)
{
    QList<qint32> v;
    const cSettings& t = session.Timing();
    const cOptions& o = session.Options();
    const cCountdownTimer& g = session.CountdownTimer();
    cHyper& h = session.Hyper();
    const cCounters& c = session.Counters();
    switch (record) {
    case GripRecord::Timing: v = {t.ShotTime(), t.Dwelltime(), t.CycleTimeOpen(), t.LoadTime(), t.CycleTimeClose(), t.FiringMode()}; break;
    case GripRecord::Options:
        v = {o.EyeMounted(), o.TriggerFilterOn(), o.EyeCheckMaxTimeOn(), o.UseEye(), o.EyeCheckMaxTime(), o.DefaultLoadTime(),
             o.LoaderOn(), o.LedOn(), o.EyeCheckOKTimeOn(), o.EyeCheckOKTime(), o.CTOAdjust()};
        break;
    case GripRecord::Ramping: v = {h.Shots(), h.HyperTime(), h.HyperMode()}; break;
    case GripRecord::GameTimer: v = {g.CountDownTimer(), g.PreAlert1On(), g.PreAlert1Time(), g.PreAlert2On(), g.PreAlert2Time()}; break;
    case GripRecord::Counters: v = {c.Counter1(), c.Counter2(), c.Total()}; break;
    case GripRecord::Battery: return QString::number(session.Battery().VoltageLevel(), 'f', 3);
    }
    QStringList text;
    for (const qint32 value : v)
        text.append(QString::number(value));
    return text.join(QLatin1Char(' '));
}

// Sets a record's values from text in the order of fields() (counters: the first two).
inline void setFields(cGripSession& session, GripRecord record, const QString& text)
{
    QList<qint32> v;
    for (const QString& word : text.split(QLatin1Char(' ')))
        v.append(word.toInt());
    cOptions& o = session.Options();
    cCountdownTimer& g = session.CountdownTimer();
    cHyper& h = session.Hyper();
    cCounters& c = session.Counters();
    switch (record) {
    case GripRecord::Timing: session.Timing().Assign(v[2], v[4], v[0], v[1], v[3], v[5]); break;
    case GripRecord::Options:
        o.setEyeMounted(v[0]); o.setTriggerFilterOn(v[1]); o.setEyeCheckMaxTimeOn(v[2]); o.setUseEye(v[3]);
        o.setEyeCheckMaxTime(v[4]); o.setDefaultLoadTime(v[5]); o.setLoaderOn(v[6]); o.setLedOn(v[7]);
        o.setEyeCheckOKTimeOn(v[8]); o.setEyeCheckOKTime(v[9]); o.setCTOAdjust(v[10]);
        break;
    case GripRecord::Ramping: h.setShots(v[0]); h.setHyperTime(v[1]); h.setHyperMode(v[2]); break;
    case GripRecord::GameTimer:
        g.setCountDownTimer(v[0]); g.setPreAlert1On(v[1]); g.setPreAlert1Time(v[2]); g.setPreAlert2On(v[3]); g.setPreAlert2Time(v[4]);
        break;
    case GripRecord::Counters: c.setCounter1(v[0]); c.setCounter2(v[1]); break;
    case GripRecord::Battery: break;
    }
}

} // namespace griptest
