// What a front end says about an error of the link, cause first: a port that does not exist,
// permission denied (the dialout group), a port in use by which program or locked by which stale
// lock file (found on a real pseudo-terminal with a real lock file), a silent grip, a device
// unplugged during the exchange. The unplugged device is a real pseudo-terminal whose other end
// closes (its device node goes with it) once the command's code byte has arrived: the exchange
// ends without waiting out the time-out, and the record keeps its own error number.
#include "FakeSystem.h"
#include "TestFiles.h"
#include "TestLink.h"

#include "base/MarloError.h"
#include "base/mErrCodes.h"
#include "grip/mCommSupportHex.h"
#include "link/cSerialPort.h"
#include "link/cLink.h"
#include "link/cSystemFacts.h"
#include "link/mLinkHelp.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QtTest>
#include <poll.h>
#include <pty.h>
#include <thread>
#include <unistd.h>

using mLinkHelp::PortFailure;
using Kind = PortFailure::Kind;

Q_DECLARE_METATYPE(PortFailure)
using Scene = std::function<void(FakeSystem&)>;
Q_DECLARE_METATYPE(Scene)

namespace {

// Where Qt's serial port keeps its lock files: the first of its folders that may be written.
QString qtLockFolder()
{
    for (const char* folder : {"/var/lock", "/etc/locks", "/var/spool/locks", "/var/spool/uucp", "/tmp"}) {
        const QFileInfo info(QString::fromLatin1(folder));
        if (info.isDir() && info.isReadable() && info.isWritable())
            return info.filePath();
    }
    return {};
}

// The grip's end of a pseudo-terminal, a real serial device that nobody else uses: it reads what
// arrives and, when told to, hangs up after the first byte, like a cable pulled in the middle of
// a command.
class GripEnd {
public:
    explicit GripEnd(bool hangUp) : m_hangUp(hangUp)
    {
        char name[256] = {};
        int slave = -1;
        if (openpty(&m_master, &slave, name, nullptr, nullptr) != 0)
            return;
        ::close(slave);
        path = QString::fromLocal8Bit(name);
        m_thread = std::thread([this] { serve(); });
    }
    ~GripEnd()
    {
        m_stop = true;
        if (m_thread.joinable())
            m_thread.join();
        if (m_master >= 0)
            ::close(m_master);
    }
    GripEnd(const GripEnd&) = delete;
    GripEnd& operator=(const GripEnd&) = delete;

    QString path;

private:
    void serve()
    {
        while (!m_stop) {
            pollfd wait{m_master, POLLIN, 0};
            if (::poll(&wait, 1, 20) <= 0 || !(wait.revents & POLLIN))
                continue;
            char byte = 0;
            if (::read(m_master, &byte, 1) == 1 && m_hangUp) {
                ::close(m_master);
                m_master = -1;
                return;
            }
        }
    }

    bool m_hangUp;
    int m_master = -1;
    std::atomic<bool> m_stop{false};
    std::thread m_thread;
};

} // namespace

class tst_linkHelp : public QObject {
    Q_OBJECT

private slots:
    void portFailures_data()
    {
        QTest::addColumn<PortFailure>("failure");
        QTest::addColumn<QString>("cause");
        QTest::addColumn<QString>("help");  // the start of the first line of help
        QTest::newRow("does not exist") << PortFailure{Kind::NotFound, "/dev/ttyUSB9", "No such file or directory", {}, 0, {}}
                                        << "The serial port /dev/ttyUSB9 does not exist." << "Check the port number or the device";
        QTest::newRow("permission denied") << PortFailure{Kind::PermissionDenied, "/dev/ttyS0", "Permission denied", {}, 0, {}}
                                           << "Permission denied opening /dev/ttyS0."
                                           << "Your user must be in the 'dialout' group to use serial ports: run 'sudo usermod -aG dialout $USER'";
        QTest::newRow("in use, nobody found") << PortFailure{Kind::InUse, "/dev/ttyUSB0", "Device or resource busy", {}, 0, {}}
                                              << "The serial port /dev/ttyUSB0 is in use by another program (Device or resource busy)."
                                              << mErrCodes::HELP_PORT_IN_USE.first();
        QTest::newRow("anything else") << PortFailure{Kind::Other, "/dev/ttyUSB0", "I/O error", {}, 0, {}}
                                       << "The serial port /dev/ttyUSB0 cannot be opened: I/O error" << "Check the port number or the device";
    }
    void portFailures()
    {
        QFETCH(PortFailure, failure);
        QFETCH(QString, cause);
        QFETCH(QString, help);
        QVERIFY2(mLinkHelp::PortFailureText(failure).startsWith(cause), qPrintable(mLinkHelp::PortFailureText(failure)));
        QVERIFY2(mLinkHelp::PortFailureHelp(failure).value(0).startsWith(help), qPrintable(mLinkHelp::PortFailureHelp(failure).join('\n')));
    }

    void lockFiles_data()
    {
        QTest::addColumn<QByteArray>("content");  // of the lock file; "<child>": a running program's
        QTest::addColumn<QString>("cause");       // %1 the device, %2 the lock file, %3 the program's process
        QTest::addColumn<QString>("help");
        QTest::newRow("empty lock file of a killed run") << QByteArray() << "The serial port %1 is locked by the lock file %2"
                                                         << "Remove the stale lock file and try again: rm %2";
        QTest::newRow("a running program's lock") << QByteArray("<child>") << "The serial port %1 is in use by sleep (process %3)."
                                                  << "Close sleep (process %3), or wait until it has finished, and try again.";
    }
    // A real device: the lock file that keeps it is named, with what to do about it.
    void lockFiles()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, cause);
        QFETCH(QString, help);
        GripEnd pty(false);
        const QString folder = qtLockFolder();
        if (pty.path.isEmpty() || folder.isEmpty())
            QSKIP("no pseudo-terminal or no lock folder to write");
        const QString lock = folder + QStringLiteral("/LCK..") + pty.path.mid(5).replace(QLatin1Char('/'), QLatin1Char('_'));
        QVERIFY(!QFileInfo::exists(lock));
        QProcess child;
        if (content == "<child>") {
            child.start(QStringLiteral("sleep"), {QStringLiteral("30")});
            QVERIFY(child.waitForStarted());
            content = QByteArray::number(child.processId()) + "\nsleep\n" + QSysInfo::machineHostName().toLocal8Bit() + "\n";
        }
        writeFile(lock, content);
        cSerialPort port;
        port.setDevice(pty.path);
        QString description;
        QStringList hints;
        try {
            port.setPortOpen(true);
        } catch (const MarloError& e) {
            QCOMPARE(e.Number(), mErrCodes::RT_PORT_OPEN_FAILED);
            description = e.Description();
            hints = e.Hints();
        }
        if (port.PortOpen())
            port.setPortOpen(false);
        const qint64 holder = child.processId();
        child.kill();
        child.waitForFinished();
        QVERIFY(QFile::remove(lock));
        const auto fill = [&](const QString& text) { return QString(text).replace("%1", pty.path).replace("%2", lock).replace("%3", QString::number(holder)); };
        QVERIFY2(description.startsWith(fill(cause)), qPrintable(description));
        QCOMPARE(hints.value(0), fill(help));
    }

    void doctorHints_data()
    {
        QTest::addColumn<Kind>("kind");
        QTest::addColumn<QString>("path");
        QTest::addColumn<Scene>("scene");
        QTest::addColumn<QString>("hint");  // the start of the one hint added; empty: none
        const uint dialout = FakeSystem::fileGroup();
        const uint player = FakeSystem::fileOwner() + 1000;
        const Scene brltty = [](FakeSystem& s) {
            QVERIFY(s.usbAdapter(QStringLiteral("1-3"), 0x1a86, 0x7523, QString(), QStringLiteral("usbfs")));
            QVERIFY(s.process(612, QStringLiteral("brltty")));
        };
        const Scene joinedLate = [=](FakeSystem& s) {
            QVERIFY(s.group(QStringLiteral("dialout"), dialout, {QStringLiteral("player")}));
            QVERIFY(s.user(player, {player}));
            QVERIFY(s.node(QStringLiteral("/dev/ttyUSB0"), 0660));
        };
        const Scene modemManager = [=](FakeSystem& s) {
            QVERIFY(s.user(player, {player}));
            QVERIFY(s.node(QStringLiteral("/dev/ttyACM0"), 0666));
            QVERIFY(s.process(800, QStringLiteral("ModemManager")));
        };
        QTest::newRow("missing: the adapter brltty took") << Kind::NotFound << "/dev/ttyUSB0" << brltty << "A USB serial adapter (QinHeng CH340";
        QTest::newRow("denied: joined after logging in") << Kind::PermissionDenied << "/dev/ttyUSB0" << joinedLate
                                                        << "Permission denied: /dev/ttyUSB0 belongs to the group 'dialout', which you were added to";
        QTest::newRow("in use: ModemManager probes it") << Kind::InUse << "/dev/ttyACM0" << modemManager << "ModemManager (process 800)";
        QTest::newRow("missing: ModemManager does not matter") << Kind::NotFound << "/dev/ttyACM1" << modemManager << "";
    }
    // What the port doctor adds to the help of a port that cannot be opened.
    void doctorHints()
    {
        QFETCH(Kind, kind);
        QFETCH(QString, path);
        QFETCH(Scene, scene);
        QFETCH(QString, hint);
        FakeSystem system;
        scene(system);
        const cSystemFacts facts(system.root());
        const QStringList hints = mLinkHelp::DoctorHints(PortFailure{kind, path, {}, {}, 0, {}}, facts);
        QCOMPARE(hints.size(), hint.isEmpty() ? 0 : 1);
        if (!hint.isEmpty())
            QVERIFY2(hints.first().startsWith(hint), qPrintable(hints.first()));
    }

    void whatToDo_data()
    {
        QTest::addColumn<QString>("outcome");  // port, lost (unplugged) or ok
        QTest::addColumn<bool>("hint");        // the error carries a hint of its own
        QTest::addColumn<QStringList>("lines");
        const QStringList port{"The serial port /dev/x does not exist.", "Check it."};
        QTest::newRow("hint first, then the port") << "port" << true << (QStringList{"own hint"} + port);
        const QStringList lost{"The serial port /dev/ttyUSB0 vanished during the exchange: the grip's cable or USB adapter "
                               "was unplugged, or the adapter lost its connection.",
                               "Plug it in again and retry. Check the device in the options: a USB adapter may come back "
                               "under another name (such as /dev/ttyUSB1)."};
        QTest::newRow("hint first, then the unplugged device") << "lost" << true << (QStringList{"own hint"} + lost);
        QTest::newRow("answered: the hint only") << "ok" << true << QStringList{"own hint"};
    }
    // The lines of help for an error, cause first: its own hints, then what the link knows.
    void whatToDo()
    {
        QFETCH(QString, outcome);
        QFETCH(bool, hint);
        QFETCH(QStringList, lines);
        TestLink link;
        link.port.setResponder([&](const QByteArray&) { return outcome == QLatin1String("ok") ? QByteArray("\x42\xBE", 2) : QByteArray(); });
        if (outcome == QLatin1String("port")) {
            // The serial port raises its cause with the help as hints; the link keeps both.
            link.port.setOpenFailure(QStringLiteral("The serial port /dev/x does not exist."));
            link.port.setOpenHints({QStringLiteral("Check it.")});
        }
        if (outcome == QLatin1String("lost"))
            link.port.setVanishesAs(QStringLiteral("/dev/ttyUSB0"));
        link.link.CommHexData(QByteArray("\x24"), true);
        MarloError error(mErrCodes::ERR_DL_GUNINFO, QString(), mErrCodes::MSG_DL_GUNINFO);
        if (hint)
            error.addHint(QStringLiteral("own hint"));
        QCOMPARE(mLinkHelp::WhatToDo(error, link.link), lines);
        QCOMPARE(mLinkHelp::WhatToDo(error, &link.link), lines);
        // Without a link, only the error's own hints.
        QCOMPARE(mLinkHelp::WhatToDo(error, nullptr), hint ? QStringList{"own hint"} : QStringList{});
    }

    void realDevice_data()
    {
        QTest::addColumn<bool>("hangUp");
        QTest::addColumn<int>("outcome");
        QTest::addColumn<QString>("firstHelp");  // %1: the device
        QTest::newRow("unplugged after the code byte") << true << int(cLink::Outcome::DeviceLost)
                                                       << "The serial port %1 vanished during the exchange";
        QTest::newRow("still there, silent") << false << int(cLink::Outcome::Timeout) << mErrCodes::HELP_TIMEOUT.first();
    }
    void realDevice()
    {
        QFETCH(bool, hangUp);
        QFETCH(int, outcome);
        QFETCH(QString, firstHelp);
        GripEnd grip(hangUp);
        if (grip.path.isEmpty())
            QSKIP("no pseudo-terminal");
        TestLink test; // its preferences and its scripted user
        cSerialPort port;
        cLink link(&port, test.settings);
        cGripSession session(link);
        test.prefs.overrideCommDevice(grip.path);

        // A grip command over the link (the gun information is asked first): the record's own
        // error for the empty report, as always.
        QElapsedTimer clock;
        clock.start();
        std::optional<MarloError> error;
        try {
            mCommSupportHex::GRIPIsBootmode(session, true);
        } catch (const MarloError& e) {
            error = e;
        }
        const qint64 elapsed = clock.elapsed();
        QVERIFY(error.has_value());
        QCOMPARE(error->Number(), mErrCodes::ERR_DL_GUNINFO);
        QCOMPARE(int(link.LastOutcome()), outcome);
        QCOMPARE(link.LastLostDevice(), hangUp ? grip.path : QString());
        QVERIFY(!port.PortOpen());
        const QStringList help = mLinkHelp::WhatToDo(*error, link);
        QVERIFY2(help.value(0).startsWith(QString(firstHelp).replace(QLatin1String("%1"), grip.path)), qPrintable(help.join('\n')));
        // A silent grip is given up on after at least a second; a vanished one is not waited for.
        if (hangUp)
            QVERIFY2(elapsed < 1000, qPrintable(QString::number(elapsed)));
        else
            QVERIFY2(elapsed >= 1000, qPrintable(QString::number(elapsed)));
    }
};

QTEST_GUILESS_MAIN(tst_linkHelp)
#include "tst_linkHelp.moc"
