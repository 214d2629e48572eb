// The serial devices a user can choose: how a port is described, which path a device text and a
// port number stand for, and what keeps a device from opening.
#include "link/mSerialDevices.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>
#include <unistd.h>

using mSerialDevices::PortEntry;

class tst_serialDevices : public QObject {
    Q_OBJECT
private slots:
    void displayText_data();
    void displayText();
    void effectivePath_data();
    void effectivePath();
    void accessProblem();
    void permissionDeniedNamesDialout();
};

void tst_serialDevices::displayText_data()
{
    QTest::addColumn<QString>("description");
    QTest::addColumn<QString>("manufacturer");
    QTest::addColumn<int>("vendor"); // -1: unknown
    QTest::addColumn<int>("product");
    QTest::addColumn<QString>("text");
    QTest::newRow("everything known") << "FT232R USB UART" << "FTDI" << 0x0403 << 0x6001
                                      << "/dev/ttyX - FT232R USB UART (FTDI, USB 0403:6001)";
    QTest::newRow("nothing known") << "" << "" << -1 << -1 << "/dev/ttyX";
    QTest::newRow("vendor only") << "" << "" << 0x2341 << -1 << "/dev/ttyX (USB vendor 2341)";
    QTest::newRow("maker is the description") << "Prolific" << "Prolific" << 0x067b << 0x2303
                                              << "/dev/ttyX - Prolific (USB 067b:2303)";
}

void tst_serialDevices::displayText()
{
    QFETCH(QString, description);
    QFETCH(QString, manufacturer);
    QFETCH(int, vendor);
    QFETCH(int, product);
    QFETCH(QString, text);
    PortEntry port{QStringLiteral("/dev/ttyX"), description, manufacturer, std::nullopt, std::nullopt};
    if (vendor >= 0)
        port.vendor = quint16(vendor);
    if (product >= 0)
        port.product = quint16(product);
    QCOMPARE(mSerialDevices::DisplayText(port), text);
}

void tst_serialDevices::effectivePath_data()
{
    QTest::addColumn<QString>("device");
    QTest::addColumn<int>("port");
    QTest::addColumn<QString>("path");
    QTest::newRow("no device: port 1") << "" << 1 << "/dev/ttyS0";
    QTest::newRow("no device: port 4") << "  " << 4 << "/dev/ttyS3";
    QTest::newRow("a path") << "/dev/ttyUSB0" << 1 << "/dev/ttyUSB0";
    QTest::newRow("virtual grip") << "sim" << 1 << "";
    QTest::newRow("virtual grip with options") << "sim:firmware=1.1.70" << 2 << "";
    QTest::newRow("a name that only begins with sim") << "simple" << 1 << "simple";
}

void tst_serialDevices::effectivePath()
{
    QFETCH(QString, device);
    QFETCH(int, port);
    QFETCH(QString, path);
    QCOMPARE(mSerialDevices::EffectivePath(device, port), path);
}

void tst_serialDevices::accessProblem()
{
    QTemporaryDir folder;
    const QString device = folder.filePath(QStringLiteral("ttyFake0"));
    QVERIFY(mSerialDevices::AccessProblem(device).contains(QLatin1String("does not exist")));
    QFile file(device);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.close();
    QCOMPARE(mSerialDevices::AccessProblem(device), QString());
    QCOMPARE(mSerialDevices::AccessProblem(QString()), QString());
}

void tst_serialDevices::permissionDeniedNamesDialout()
{
    if (::geteuid() == 0)
        QSKIP("the superuser may open any device, so no permission can be denied");
    QTemporaryDir folder;
    const QString device = folder.filePath(QStringLiteral("ttyLocked0"));
    QFile file(device);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.close();
    QVERIFY(file.setPermissions(QFileDevice::ReadOwner));
    const QString problem = mSerialDevices::AccessProblem(device);
    QVERIFY2(problem.contains(QLatin1String("dialout")), qPrintable(problem));
    QVERIFY(problem.contains(device));
}

QTEST_MAIN(tst_serialDevices)
#include "tst_serialDevices.moc"
