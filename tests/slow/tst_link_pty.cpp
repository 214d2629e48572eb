// The link over a real pseudo-terminal against the virtual grip, with the real pause.
#include "ScriptedUi.h"

#include "base/MarloError.h"
#include "base/mErrCodes.h"
#include "grip/cGunInfo.h"
#include "grip/mCommSupportHex.h"
#include "grip/cGripSession.h"
#include "link/cLink.h"
#include "link/cPreferencesLinkSettings.h"
#include "link/cSerialPort.h"
#include "base/cRegistrySettings.h"
#include "shell/mMain.h"
#include "sim/Fault.h"
#include "sim/PtyServer.h"
#include "sim/TrafficLog.h"

#include <QtTest>

namespace {
const QByteArray kBootModeQuery("\x11");
using Outcome = cLink::Outcome;
} // namespace

class tst_link_pty : public QObject {
    Q_OBJECT
private slots:

    void init()
    {
        server = std::make_unique<gripsim::PtyServer>();
        QString error;
        QVERIFY2(server->start(&error), qPrintable(error));
        port = std::make_unique<cSerialPort>();
        link = std::make_unique<cLink>(port.get(), settings);
        session = std::make_unique<cGripSession>(*link);
        mMain::SetUserInterface(&ui);
        prefs.overrideCommDevice(server->devicePath());
    }
    void cleanup()
    {
        session.reset();
        link.reset();
        port.reset();
        server.reset();
        mMain::SetUserInterface(nullptr);
    }
    void exchangeWithThePause()
    {
        const QByteArray report = link->CommHexData(kBootModeQuery, true);
        QCOMPARE(report, QByteArray::fromHex("4100BF"));
        QCOMPARE(int(link->LastOutcome()), int(Outcome::Ok));
        QVERIFY(!port->PortOpen());
        const QList<qint64> pauses = gripsim::pausesAfterCodeNs(server->grip().traffic());
        QCOMPARE(pauses.size(), 1);
        // The grip stamps bytes when its thread reads them, so a loaded machine can shorten the
        // recorded pause by a few milliseconds; without the pause it would be well under 1 ms.
        QVERIFY2(pauses.first() >= 90'000'000, qPrintable(QString::number(pauses.first())));
    }
    void answersInPiecesAreAssembled()
    {
        QString error;
        server->grip().addFault(*gripsim::FaultRule::parse(QStringLiteral("pieces@13*1"), &error));
        session->GunInfo().Download(*link, session->GripError());
        QCOMPARE(int(link->LastOutcome()), int(Outcome::Ok));
        QCOMPARE(session->GunInfo().Serial(), QStringLiteral("SIM0000001"));
    }
    void faultsGiveEmptyOrUnexpectedReports_data()
    {
        // How a spoiled answer to the boot-mode query ends over a real port: the link returns what
        // came, the request decides by the report's first byte. (Each outcome of a report is
        // pinned with the fake port by tst_mCommBasic.)
        QTest::addColumn<QString>("fault");
        QTest::addColumn<int>("outcome");
        QTest::addColumn<QString>("ending");
        QTest::newRow("silent") << "silent@11*1" << int(Outcome::Timeout) << "error";
        QTest::newRow("long: the extra bytes stay behind") << "long@11*1" << int(Outcome::WrongLength) << "answered";
    }
    void faultsGiveEmptyOrUnexpectedReports()
    {
        QFETCH(QString, fault);
        QFETCH(int, outcome);
        QFETCH(QString, ending);
        QString error;
        server->grip().addFault(*gripsim::FaultRule::parse(fault, &error));
        QString ended = QStringLiteral("answered");
        try {
            mCommSupportHex::GRIPIsBootmode(*session, false);
        } catch (const MarloError& e) {
            QVERIFY2(e.Number() == mErrCodes::ERR_PROGRAM_CONTROL, qPrintable(e.Description())); // the request's own error
            ended = QStringLiteral("error");
        }
        QCOMPARE(ended, ending);
        QCOMPARE(int(link->LastOutcome()), outcome);
        QVERIFY(!port->PortOpen());
        QVERIFY(!link->CommBusy());
        // The link is usable again at once.
        QVERIFY(!mCommSupportHex::GRIPIsBootmode(*session, false));
        QCOMPARE(int(link->LastOutcome()), int(Outcome::Ok));
    }

private:
    ScriptedUi ui;
    std::unique_ptr<gripsim::PtyServer> server;
    std::unique_ptr<cSerialPort> port;
    cRegistrySettings prefs;
    cPreferencesLinkSettings settings{prefs};
    std::unique_ptr<cLink> link;
    std::unique_ptr<cGripSession> session;
};

QTEST_GUILESS_MAIN(tst_link_pty)
#include "tst_link_pty.moc"
