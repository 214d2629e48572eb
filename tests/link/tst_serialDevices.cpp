// The serial devices a user can choose: how a port is described, which path a device text and a
// port number stand for, and what keeps a device from opening.
#include "link/mSerialDevices.h"

#include <QtTest>

using mSerialDevices::PortEntry;

class tst_serialDevices : public QObject {
    Q_OBJECT
private slots:
    void displayText_data()
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
    void displayText()
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
    void effectivePath_data()
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
    void effectivePath()
    {
        QFETCH(QString, device);
        QFETCH(int, port);
        QFETCH(QString, path);
        QCOMPARE(mSerialDevices::EffectivePath(device, port), path);
    }
};

QTEST_MAIN(tst_serialDevices)
#include "tst_serialDevices.moc"
