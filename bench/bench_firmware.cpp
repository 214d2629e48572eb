// Firmware transfer against the virtual grip over a pseudo-terminal, paced at 9600 baud,
// through the real serial port: a full read (the "get firmware" workflow) and a full write with
// its read-back verification (the upload workflow), each compared with the floor the protocol
// sets: per exchange the 100 ms pause after the code byte, the wire time of command and report
// (10 bits a byte) and any 500 ms retry pause; the gun-information refreshes and the program
// start/stop exchanges are exchanges like the others. Then the speed of reading and writing a
// firmware file of 10 MB.
//   bench_firmware            all of it
//   bench_firmware parse      only the file figures
#include "GripFloor.h"
#include "firmware/mFirmware.h"
#include "firmware/mFirmwareWorkflows.h"
#include "grip/cGripSession.h"
#include "link/cLink.h"
#include "link/cPreferencesLinkSettings.h"
#include "link/cSerialPort.h"
#include "base/cRegistrySettings.h"
#include "shell/mMain.h"
#include "sim/PtyServer.h"
#include "sim/SimOptions.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTextStream>

namespace {

constexpr int kBaud = 9600;
constexpr double kGoal = 1.02;
// Old firmware, so that the program restarts in mid-transfer are part of the run.
const QString kGrip = QStringLiteral("firmware=1.1.70,boot=1.2.0,hardware=2.1.0,pace=1,baud=%1");

// A headless user who answers nothing and shows nothing; the workflows' messages are counted.
class QuietUi : public cHeadlessUserInterface {
public:
    void showMessage(const QString& text, const QString& title, MsgIcon) override { last = title + QStringLiteral(": ") + text; }
    QString last;
};

FirmwareFile fullImage()
{
    FirmwareFile image;
    image.Firmware = QStringLiteral("1.1.71");
    image.Boot = QStringLiteral("1.0.0-1.2.0");
    image.Protocol = QStringLiteral("1.1.1");
    image.Hardware = QStringLiteral("2.1.0");
    for (int address = 0x40; address < 0xFFF; address += 16) {
        HexLine line;
        line.ByteCount = 16;
        line.AddrHi = static_cast<quint8>(address >> 8);
        line.AddrLo = static_cast<quint8>(address & 0xFF);
        for (int i = 0; i < 16; ++i)
            line.Data.append(static_cast<quint8>((address * 13 + i * 29) & 0xFF));
        image.Segments.append(line);
    }
    HexLine end;
    end.RecordType = 1;
    end.Checksum = 0xFF;
    image.Segments.append(end);
    return image;
}

// How long a piece of work takes, in milliseconds.
template <typename Work>
double millisecondsOf(Work work)
{
    QElapsedTimer timer;
    timer.start();
    work();
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

template <typename Work>
void measureTransfer(QTextStream& out, const QString& name, gripsim::PtyServer& server, Work work)
{
    server.grip().clearTraffic();
    QString outcome;
    const double elapsed = millisecondsOf([&] { outcome = work(); });
    const benchfloor::Floor f = benchfloor::FloorOf(server.grip().traffic(), kBaud);
    const int exchanges = f.exchanges;
    const int retries = f.retries;
    const double paced = f.pacedMs;
    const double floor = f.ms;
    const double ratio = elapsed / floor;
    out << QStringLiteral("bench_firmware: %1 %2 ms, floor %3 ms (%4 exchanges, %5 retry pauses, %6 baud), "
                          "ratio %7 (goal <= %8)%9; without the unpaced command bytes %10 ms, ratio %11, "
                          "%12 ms over it per exchange%13\n")
               .arg(name).arg(elapsed, 0, 'f', 0).arg(floor, 0, 'f', 0).arg(exchanges).arg(retries).arg(kBaud)
               .arg(ratio, 0, 'f', 4).arg(kGoal, 0, 'f', 2)
               .arg(ratio <= kGoal ? QString() : QStringLiteral(" OVER GOAL"))
               .arg(paced, 0, 'f', 0).arg(elapsed / paced, 0, 'f', 4).arg((elapsed - paced) / exchanges, 0, 'f', 2)
               .arg(outcome.isEmpty() ? QString() : QStringLiteral(" [") + outcome + QLatin1Char(']'));
    out.flush();
}

int transfers(QTextStream& out, const QString& folder)
{
    QString error;
    gripsim::PtyServer server(*gripsim::SimOptions::parse(kGrip.arg(kBaud), &error));
    if (!server.start(&error)) {
        out << "bench_firmware: cannot start the virtual grip: " << error << '\n';
        return 1;
    }
    cRegistrySettings prefs;
    const cPreferencesLinkSettings linkSettings(prefs);
    cSerialPort port;
    cLink link(&port, linkSettings);
    cGripSession session(link);
    prefs.overrideCommDevice(server.devicePath());
    prefs.setShowConfirmComm(false);
    QuietUi ui;
    mMain::SetUserInterface(&ui);
    const QString fetched = folder + QStringLiteral("/fetched.tvf");
    const QString upload = folder + QStringLiteral("/upload.tvf");
    mFirmware::SaveFirmwareFile(upload, fullImage());

    int status = 0;
    try {
        measureTransfer(out, QStringLiteral("full read (252 blocks)"), server, [&] {
            return mFirmwareWorkflows::DownloadFirmware(session, prefs, fetched, {QStringLiteral("bench"), QString(), QStringLiteral("download")}) == FirmwareResult::Succeeded ? QString()
                                                                                              : QStringLiteral("not read");
        });
        measureTransfer(out, QStringLiteral("full write + verification (253 lines, 252 blocks)"), server, [&] {
            return mFirmwareWorkflows::UploadFirmware(session, upload, {QStringLiteral("bench"), QString(), QStringLiteral("upload")}) == FirmwareResult::Succeeded ? QString() : ui.last;
        });
    } catch (const MarloError& e) {
        out << "bench_firmware: transfer failed: error " << e.Number() << ": " << e.Description() << '\n';
        status = 1;
    }
    mMain::SetUserInterface(nullptr);
    server.stop();
    return status;
}

void parsing(QTextStream& out, const QString& folder)
{
    // About 10 MB of 16-byte records.
    FirmwareFile image = fullImage();
    const HexLine end = image.Segments.takeLast();
    const QList<HexLine> block = image.Segments;
    while (image.Segments.size() * 45 < 10 * 1000 * 1000)
        image.Segments += block;
    image.Segments.append(end);
    const QString path = folder + QStringLiteral("/big.tvf");

    const double saveMs = millisecondsOf([&] { mFirmware::SaveFirmwareFile(path, image); });
    const double megabytes = static_cast<double>(QFile(path).size()) / 1e6;

    // The floor: reading the same bytes from the file, without looking at them.
    QByteArray bytes;
    const double rawMs = millisecondsOf([&] {
        QFile raw(path);
        raw.open(QIODevice::ReadOnly);
        bytes = raw.readAll();
    });

    FirmwareFile loaded;
    const double loadMs = millisecondsOf([&] { mFirmware::LoadFirmwareFile(loaded, path); });

    out << QStringLiteral("bench_firmware: parse %1 MB firmware file (%2 lines) in %3 ms = %4 MB/s, floor %5 ms "
                          "(plain read of the bytes); save %6 ms = %7 MB/s%8\n")
               .arg(megabytes, 0, 'f', 1).arg(loaded.Segments.size()).arg(loadMs, 0, 'f', 0)
               .arg(megabytes / loadMs * 1000.0, 0, 'f', 1).arg(rawMs, 0, 'f', 1).arg(saveMs, 0, 'f', 0)
               .arg(megabytes / saveMs * 1000.0, 0, 'f', 1)
               .arg(loaded.Segments == image.Segments && !bytes.isEmpty() ? QString() : QStringLiteral(" [MISMATCH]"));
    out.flush();
}

} // namespace

int main(int argc, char* argv[])
{
    // Preferences and program folder of this run only, so the user's port settings stay out.
    QTemporaryDir home;
    qputenv("XDG_CONFIG_HOME", home.path().toLocal8Bit());
    qputenv("MARLO_HOME", home.path().toLocal8Bit());
    QCoreApplication app(argc, argv);
    QTextStream out(stdout);
    const bool parseOnly = argc > 1 && QByteArray(argv[1]) == "parse";

    int status = 0;
    try {
        parsing(out, home.path());
    } catch (const MarloError& e) {
        out << "bench_firmware: parsing failed: error " << e.Number() << ": " << e.Description() << '\n';
        status = 1;
    }
    if (!parseOnly)
        status = transfers(out, home.path()) || status;
    return status;
}
