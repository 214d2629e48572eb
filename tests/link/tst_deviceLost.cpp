// A device that vanishes during an exchange, as an unplugged USB adapter does: a real
// pseudo-terminal whose other end closes (its device node goes with it) once the command's code
// byte has arrived. The exchange ends without waiting out the time-out, the link names the
// device, the record keeps its own error number and the help says the device was unplugged.
#include "ScriptedUi.h"

#include "base/MarloError.h"
#include "base/mErrCodes.h"
#include "grip/cGripSession.h"
#include "grip/mCommSupportHex.h"
#include "link/cError.h"
#include "link/cLink.h"
#include "link/cPreferencesLinkSettings.h"
#include "link/cSerialPort.h"
#include "link/mLinkHelp.h"
#include "base/cRegistrySettings.h"
#include "shell/mMain.h"

#include <QElapsedTimer>
#include <QtTest>
#include <poll.h>
#include <pty.h>
#include <thread>
#include <unistd.h>

namespace {

// The grip's end of a pseudo-terminal: it reads what arrives and, when told to, hangs up after
// the first byte, like a cable pulled in the middle of a command.
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

class tst_deviceLost : public QObject {
    Q_OBJECT
private slots:
    void init()
    {
        mMain::SetUserInterface(&ui);
    }
    void cleanup() { mMain::SetUserInterface(nullptr); }

    void exchange_data()
    {
        QTest::addColumn<bool>("hangUp");
        QTest::addColumn<int>("outcome");
        QTest::addColumn<QString>("firstHelp");  // %1: the device
        QTest::newRow("unplugged after the code byte") << true << int(cLink::Outcome::DeviceLost)
                                                       << "The serial port %1 vanished during the exchange";
        QTest::newRow("still there, silent") << false << int(cLink::Outcome::Timeout) << mErrCodes::HELP_TIMEOUT.first();
    }
    void exchange()
    {
        QFETCH(bool, hangUp);
        QFETCH(int, outcome);
        QFETCH(QString, firstHelp);
        GripEnd grip(hangUp);
        if (grip.path.isEmpty())
            QSKIP("no pseudo-terminal");
        cSerialPort port;
        cRegistrySettings prefs;
        const cPreferencesLinkSettings settings(prefs);
        cLink link(&port, settings);
        cGripSession session(link);
        prefs.overrideCommDevice(grip.path);

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

private:
    ScriptedUi ui;
};

QTEST_GUILESS_MAIN(tst_deviceLost)
#include "tst_deviceLost.moc"
