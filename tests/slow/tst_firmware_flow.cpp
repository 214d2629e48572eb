// A whole firmware upload in real time: write, read back, verify and start, through the real
// serial port and the virtual grip on a pseudo-terminal, paced at 9600 baud with the real
// 100 ms pause. Then the grip's program is fetched back into a file.
#include "../firmware/FirmwareTestSupport.h"
#include "ScriptedUi.h"
#include "firmware/mFirmwareWorkflows.h"
#include "grip/cGunInfo.h"
#include "library/cApplication.h"
#include "link/cError.h"
#include "link/cSerialPort.h"
#include "link/mCommBasic.h"
#include "shell/mMain.h"
#include "sim/PtyServer.h"

#include <QTemporaryDir>
#include <QtTest>

namespace {

// The real link against a served virtual grip, for one test.
struct PtyLink {
    explicit PtyLink(const QString& options)
        : server(*gripsim::SimOptions::parse(options))
    {
        QString why;
        started = server.start(&why);
        if (!started)
            qWarning("virtual grip did not start: %s", qPrintable(why));
        mMain::Application().RegistrySettings().overrideCommDevice(server.devicePath());
        mCommBasic::objComm = &port;
        mCommBasic::bCommBusy = false;
        mMain::SetUserInterface(&ui);
        ResetGunInfo();
        GripError().Clear();
    }
    ~PtyLink()
    {
        mCommBasic::objComm = nullptr;
        mMain::SetUserInterface(nullptr);
        server.stop();
        ResetGunInfo();
    }

    QList<QByteArray> commands() const
    {
        QList<QByteArray> list;
        for (const gripsim::TrafficEvent& event : server.grip().traffic())
            if (event.kind == gripsim::TrafficEvent::Kind::Command)
                list.append(event.bytes);
        return list;
    }

    gripsim::PtyServer server;
    bool started = false;
    cSerialPort port;
    ScriptedUi ui;
};

} // namespace

class tst_FirmwareFlow : public QObject {
    Q_OBJECT

private slots:
    void writeVerifyStartThenFetch();

private:
    QTemporaryDir m_dir;
};

void tst_FirmwareFlow::writeVerifyStartThenFetch()
{
    // Old firmware: its program is restarted in mid-transfer (0xF50 writing, 0x200 reading).
    PtyLink link(QStringLiteral("firmware=1.1.70,boot=1.2.0,hardware=2.1.4,pace=1,baud=9600"));
    QVERIFY(link.started);
    const FirmwareFile image = fwtest::FullImage(42);
    const QString upload = m_dir.filePath(QStringLiteral("upload.tvf"));
    mFirmware::SaveFirmwareFile(upload, image);
    link.ui.setStatusText(3, QStringLiteral("Ready"));

    QCOMPARE(mFirmwareWorkflows::UploadFirmware(upload), FirmwareResult::Succeeded);

    QCOMPARE(link.ui.messages.size(), 1);
    QCOMPARE(link.ui.messages[0].title, QStringLiteral("Success!"));
    QVERIFY(link.ui.errors.isEmpty());
    QCOMPARE(link.ui.progressMaxima, QList<int>{253 + 252});
    QCOMPARE(link.ui.progressValues.last(), 253 + 252);
    QCOMPARE(link.ui.statusText(3), QStringLiteral("Ready"));
    QCOMPARE(link.ui.statusText(2), QStringLiteral("1.1.70"));

    const gripsim::GripState state = link.server.grip().state();
    QVERIFY(!state.bootMode);
    for (const HexLine& line : image.Segments.mid(0, 252)) {
        const int address = line.AddrHi * 256 + line.AddrLo;
        for (int i = 0; i < 16; ++i)
            QCOMPARE(quint8(state.memory[address + i]), line.Data[i]);
    }
    const QList<QByteArray> commands = link.commands();
    QCOMPARE(fwtest::codes(commands.mid(commands.size() - 2)), QStringLiteral("13 83"));
    QCOMPARE(fwtest::codes(commands).count(QStringLiteral("83")), 3); // two restarts, the final start
    QCOMPARE(fwtest::codes(commands).count(QStringLiteral("8A")), 253);
    QCOMPARE(fwtest::codes(commands).count(QStringLiteral("85")), 252);

    // And back into a file: the same program with the grip's builds.
    link.server.grip().clearTraffic();
    const QString fetched = m_dir.filePath(QStringLiteral("fetched.tvf"));
    QCOMPARE(mFirmwareWorkflows::DownloadFirmware(fetched), FirmwareResult::Succeeded);
    FirmwareFile saved;
    mFirmware::LoadFirmwareFile(saved, fetched);
    QCOMPARE(saved.Firmware, QStringLiteral(" 1.1.70"));
    QCOMPARE(saved.Hardware, QStringLiteral(" 2.1.4"));
    QCOMPARE(saved.Segments.size(), 252);
    for (int i = 0; i < 252; ++i)
        QCOMPARE(saved.Segments[i].Data, image.Segments[i].Data);
    QVERIFY(!link.server.grip().state().bootMode);
}

QTEST_GUILESS_MAIN(tst_FirmwareFlow)
#include "tst_firmware_flow.moc"
