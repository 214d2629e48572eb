// The grip-command frame: the boot-mode check, the order of the exchanges of get all, put all
// and the counter reset, the skipped records, refusals, the wait pointer, and how an observer
// of the transfers is told of each and names them in the error trail (where an error stops the
// command). Before them, what the firmware decides: the feature flags at their
// thresholds (and so the version comparison behind them), and the mode tables that follow them.
#include "GripTestSupport.h"

#include "base/mErrCodes.h"
#include "grip/cGunInfo.h"
#include "grip/cModeTables.h"
#include "grip/cSupports.h"
#include "link/cError.h"
#include "shell/mMain.h"

#include <QtTest>

using namespace griptest;
using namespace mGripCommands;

namespace {

using Flag = bool (cSupports::*)() const;
#define FLAG(name) {#name, &cSupports::name}
const QList<QPair<const char*, Flag>> kFlags = {
    FLAG(EyeMounting), FLAG(LoaderMounting), FLAG(TriggerFilter), FLAG(fmodeClassic), FLAG(fmodeSemiAuto),
    FLAG(fmodeFullAuto), FLAG(fmodeBurst), FLAG(fmodeTurbo), FLAG(fmodeSniper), FLAG(fmodeBurst3), FLAG(fmodeHyper),
    FLAG(fmodeOpenBolt), FLAG(PreAlert60sec), FLAG(PreAlert1), FLAG(PreAlert2), FLAG(Options), FLAG(Hyper),
    FLAG(NineVolt), FLAG(hmodeUnlimited), FLAG(hmodeHundredPercent), FLAG(hmodeSeventyfivePercent),
    FLAG(hmodeFiftyPercent), FLAG(hmodeThirtythreePercent)};
#undef FLAG

QString table(const QList<mModes::tModeEntry>& entries)
{
    QStringList text;
    for (const mModes::tModeEntry& e : entries)
        text.append(QStringLiteral("%1=%2%3").arg(e.caption).arg(e.code).arg(e.visible ? "" : " hidden"));
    return text.join(QStringLiteral(", "));
}

QString transferName(GripRecord record, Direction direction)
{
    return (direction == Direction::Get ? QStringLiteral("get ") : QStringLiteral("put ")) + RecordName(record);
}

// Follows a command into one line with the wire: "<get timing" as a transfer starts, ">done"
// (">unsupported", ">refused") as it ended, between the command codes the grip receives.
// Frames: as a front end would name them (the command's own dropped or renamed, each transfer
// "fTest.<transfer>"), or the core's own.
class LoggingObserver : public cTransferObserver {
public:
    enum Frames { Own, Dropped, Renamed };
    LoggingObserver(QStringList& log, Frames frames) : m_log(log), m_frames(frames) {}

    std::function<void(const Transfer&)> ended;

    std::optional<ErrorFrame> CommandFrame(const ErrorFrame& own) const override
    {
        if (m_frames == Own)
            return cTransferObserver::CommandFrame(own);
        if (m_frames == Dropped)
            return std::nullopt;
        return ErrorFrame{QStringLiteral("fTest"), QString(), QStringLiteral("Outer")};
    }
    std::optional<ErrorFrame> TransferFrame(GripRecord record, Direction direction) const override
    {
        if (m_frames == Own)
            return cTransferObserver::TransferFrame(record, direction);
        return ErrorFrame{QStringLiteral("fTest"), QString(), transferName(record, direction)};
    }
    void TransferStarting(GripRecord record, Direction direction) override
    {
        m_log << QLatin1Char('<') + transferName(record, direction);
    }
    void TransferEnded(const Transfer& transfer) override
    {
        const char* const outcomes[] = {">done", ">unsupported", ">refused"};
        m_log << QLatin1String(outcomes[int(transfer.outcome)]);
        if (ended)
            ended(transfer);
    }

private:
    QStringList& m_log;
    Frames m_frames;
};

// Logs the code of every frame the grip receives, and answers as the harness does.
void logFrames(GripHarness& h, QStringList& log)
{
    h.link.port.setResponder([&h, &log](const QByteArray& frame) {
        const quint8 code = static_cast<quint8>(frame.at(0));
        log << QString::number(code, 16);
        return h.replies.contains(code) ? h.replies.value(code) : h.grip.handleFrame(frame).value_or(QByteArray());
    });
}

} // namespace

class TstGripCommands : public QObject {
    Q_OBJECT

private slots:
    void init() { clearPreferences(); }

    void flags_data()
    {
        QTest::addColumn<QString>("firmware");
        QTest::addColumn<QString>("on"); // in interface order
        const QString modes = QStringLiteral("fmodeClassic fmodeSemiAuto fmodeFullAuto fmodeSniper");
        const QString v1170 = QStringLiteral("EyeMounting LoaderMounting TriggerFilter ") + modes + " PreAlert60sec Options";
        const QString v2020 = QStringLiteral("EyeMounting LoaderMounting TriggerFilter ") + modes +
                              " fmodeBurst3 fmodeHyper PreAlert60sec Options";
        const QString ramping = QStringLiteral(" hmodeUnlimited hmodeHundredPercent hmodeSeventyfivePercent "
                                               "hmodeFiftyPercent hmodeThirtythreePercent");
        QTest::newRow("1.1.3") << "1.1.3" << "fmodeClassic fmodeSemiAuto";
        QTest::newRow("1.1.9: mode 4, not 6") << "1.1.9" << "fmodeClassic fmodeSemiAuto fmodeFullAuto";
        QTest::newRow("1.1.10") << "1.1.10" << modes;
        QTest::newRow("1.1.69") << "1.1.69" << modes;
        QTest::newRow("1.1.70: newer than 1.1.4") << "1.1.70" << v1170;
        QTest::newRow("2.0.19") << "2.0.19" << v1170;
        QTest::newRow("2.0.20: older than 4.0.0") << "2.0.20" << v2020;
        QTest::newRow("4.0.0: equal counts") << "4.0.0" << v2020 + " Hyper" + ramping;
        QTest::newRow("4.0.5: nine volt") << "4.0.5" << v2020 + " Hyper NineVolt" + ramping;
        QTest::newRow("4.0.6") << "4.0.6" << v2020 + " Hyper" + ramping;
    }

    void flags()
    {
        // Rows run one after another: a flag that kept an earlier grip's answer shows.
        QFETCH(QString, firmware);
        QFETCH(QString, on);
        GripHarness h(QStringLiteral("firmware=") + firmware);
        RefreshGunInfo(h.session, true);
        QStringList set;
        for (const auto& [name, flag] : kFlags)
            if ((h.session.Supports().*flag)())
                set.append(QLatin1String(name));
        QCOMPARE(set.join(QLatin1Char(' ')), on);
    }

    // The flags are read as the tables are filled, not when they are read.
    void modeTables()
    {
        GripHarness h(QStringLiteral("firmware=4.0.0"));
        RefreshGunInfo(h.session, true);
        cModeTables& modes = h.session.Modes();
        modes.FiringModesGlobalArraySet();
        modes.HyperModesGlobalArraySet();
        h.session.GunInfo() = cGunInfo(); // another grip: the tables keep what they were filled with
        QCOMPARE(table(modes.FiringModes()), QStringLiteral("SemiAuto=1, Classic=0, Sniper=6, Turbo=3 hidden, Burst=2 hidden, "
                                                            "NXL Full Auto=4, Open Bolt=5 hidden, Burst 3=8, Ramping=16"));
        QCOMPARE(table(modes.HyperModes()),
                 QStringLiteral("Unlimited Ramping=1, 100% Ramping=2, 75% Ramping=4, 50% Ramping=8, 33% Ramping=16"));
        // Codes that name no mode are never visible.
        const cSupports& flags = h.session.Supports();
        QVERIFY(!mModes::FiringModeVisible(7, flags) && !mModes::FiringModeVisible(17, flags) && !mModes::HyperModeVisible(3, flags));
    }

    // A refused boot-mode query is not forgotten when the transfers go well.
    void refusedBootCheck()
    {
        GripHarness h;
        h.replies = {{0x11, refusal(0x11)}};
        const CommandResult result = GetRecord(h.session, GripRecord::Timing);
        QVERIFY(result.bootCheckRefused && result.refused());
        QCOMPARE(result.outcomeOf(GripRecord::Timing), Outcome::Done);
        QCOMPARE(h.session.GripError().ErrorCode(), 1);
        h.replies.clear();
        GetRecord(h.session, GripRecord::Timing); // a new command starts with a clean error record
        QCOMPARE(h.session.GripError().ErrorCode(), cError::NoError);
    }

    void theObserverFollowsEachTransfer_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QString>("options");
        QTest::addColumn<int>("refused"); // the command code the grip refuses; 0 none
        QTest::addColumn<QString>("log");
        // Every transfer is reported as soon as it ended, before the next one is exchanged; the
        // boot-mode check comes before the first, and a grip in boot mode has its program started.
        QTest::newRow("get all") << "get all" << "firmware=4.0.5" << 0
                                 << "13 11 <get timing 13 14 >done <get counters 13 15 >done <get gametimer 13 16 >done "
                                    "<get battery 13 17 >done <get options 13 18 >done <get ramping 13 19 >done";
        QTest::newRow("get all, no options or ramping") << "get all" << "firmware=1.1.69" << 0
                                 << "13 11 <get timing 13 14 >done <get counters 13 15 >done <get gametimer 13 16 >done "
                                    "<get battery 13 17 >done <get options 13 >unsupported <get ramping 13 >unsupported";
        QTest::newRow("put all, game timer refused") << "put all" << "firmware=4.0.5" << 0x26
                                 << "13 11 <put timing 13 24 >done <put gametimer 13 26 >refused <put options 13 28 >done "
                                    "<put ramping 13 29 >done";
        QTest::newRow("put all 1.1.4 from boot mode") << "put all" << "firmware=1.1.4,bootmode=1" << 0
                                 << "13 11 13 83 <put timing 13 24 >done <put gametimer 13 26 >done <put options 13 >unsupported "
                                    "<put ramping 13 >unsupported";
        QTest::newRow("reset from boot mode (no observer)") << "reset 3" << "firmware=1.1.70,bootmode=1" << 0 << "13 11 13 83 13 25";
        QTest::newRow("get counters refused") << "get counters" << "" << 0x15 << "13 11 <get counters 13 15 >refused";
    }
    void theObserverFollowsEachTransfer()
    {
        QFETCH(QString, command);
        QFETCH(QString, options);
        QFETCH(int, refused);
        QFETCH(QString, log);
        GripHarness h(options);
        if (refused)
            h.replies[quint8(refused)] = refusal(refused);
        QStringList events;
        logFrames(h, events);
        LoggingObserver observer(events, LoggingObserver::Own);
        const QStringList words = command.split(QLatin1Char(' '));
        GripRecord record = GripRecord::Timing;
        RecordFromName(words[1], record);
        const bool reset = words[0] == QLatin1String("reset");
        const CommandResult result = command == QLatin1String("get all")   ? GetAll(h.session, &observer)
                                     : command == QLatin1String("put all") ? PutAll(h.session, &observer)
                                     : reset                               ? ResetCounter(h.session, quint8(words[1].toInt()))
                                     : words[0] == QLatin1String("get")    ? GetRecord(h.session, record, &observer)
                                                                           : PutRecord(h.session, record, &observer);
        QCOMPARE(events.join(QLatin1Char(' ')), log);
        // The result tells the same transfers.
        QStringList told;
        for (const Transfer& t : result.transfers)
            told << transferName(t.record, t.direction);
        QStringList reported;
        for (const QString& event : events)
            if (event.startsWith(QLatin1Char('<')))
                reported << event.mid(1);
        QCOMPARE(told, reset ? QStringList{"put counters"} : reported);
        QCOMPARE(result.refused(), refused != 0);
        QCOMPARE(result.programStarted, options.contains(QLatin1String("bootmode")));
        // The wait pointer went on and off once, outermost around the whole command; no message.
        QCOMPARE(h.link.ui.busyPointer.count(false), 1);
        QCOMPARE(h.link.ui.busyPointer.last(), false);
        QVERIFY(h.link.ui.messages.isEmpty());
    }

    void theObserverNamesTheFrames_data()
    {
        QTest::addColumn<int>("frames");
        QTest::addColumn<bool>("observerFails"); // the report of the timing raises, not the grip
        QTest::addColumn<QString>("trail");      // from the failing procedure outwards
        QTest::addColumn<QString>("log");
        const QString countersFail = QStringLiteral("<get timing >done <get counters");
        QTest::newRow("the core's own") << int(LoggingObserver::Own) << false
                                        << "cCounters.Download mGripCommands.TransferRecord(get counters) mGripCommands.GetAll" << countersFail;
        QTest::newRow("the command renamed")
            << int(LoggingObserver::Renamed) << false
            << "cCounters.Download mGripCommands.TransferRecord(get counters) fTest.get counters fTest.Outer" << countersFail;
        // The observer's own work runs in the transfer's frame; an error there ends the command.
        QTest::newRow("the observer fails") << int(LoggingObserver::Dropped) << true << "fTest.get timing" << "<get timing >done";
    }
    void theObserverNamesTheFrames()
    {
        QFETCH(int, frames);
        QFETCH(bool, observerFails);
        QFETCH(QString, trail);
        QFETCH(QString, log);
        GripHarness h(QStringLiteral("firmware=4.0.5"));
        if (!observerFails)
            h.fault(gripsim::FaultKind::Garbage, 0x15);
        QStringList events;
        LoggingObserver observer(events, LoggingObserver::Frames(frames));
        if (observerFails)
            observer.ended = [](const Transfer&) { RaiseRuntimeError(mErrCodes::RT_INVALID_PROPERTY); };
        const MarloError e = errorOf([&] { GetAll(h.session, &observer); }).value();
        QCOMPARE(e.Number(), observerFails ? mErrCodes::RT_INVALID_PROPERTY : mErrCodes::ERR_DL_COUNTERS);
        QStringList procedures;
        for (const ErrorFrame& frame : e.Trail())
            procedures << frame.module + QLatin1Char('.') + frame.procedure;
        QCOMPARE(procedures.join(QLatin1Char(' ')), trail);
        // Nothing after the failure was exchanged or reported.
        QCOMPARE(events.join(QLatin1Char(' ')), log);
        QCOMPARE(h.codes().last(), observerFails ? 0x14 : 0x15);
        QCOMPARE(mMain::MousePointerDepth(), 0);
    }

    // Counters and battery are only read.
    void batteryCannotBePut()
    {
        GripHarness h;
        QCOMPARE(errorOf([&] { PutRecord(h.session, GripRecord::Battery); }).value().Number(), mErrCodes::RT_INVALID_CALL);
        QVERIFY(!h.codes().contains(0x27));
    }
};

QTEST_GUILESS_MAIN(TstGripCommands)
#include "tst_gripCommands.moc"
