#pragma once
// The serial-port control on QSerialPort. Which device it opens: the device set with setDevice
// (from the preference CommDevice: a path, or "sim[:KEY=VALUE,...]" resolved by the installed
// device resolver), else /dev/ttyS(CommPort-1).
#include "link/cCommControl.h"
#include "link/mLinkHelp.h"

#include <QSerialPort>
#include <functional>

class cSerialPort : public cCommControl {
public:
    // Turns a device text such as "sim:firmware=1.1.70" into a device path; an empty path, with
    // the reason in *error, when it cannot.
    using DeviceResolver = std::function<QString(const QString& device, QString* error)>;
    static void SetDeviceResolver(DeviceResolver resolver);

    cSerialPort();
    ~cSerialPort() override;

    // The path that opening will use.
    QString devicePath() const;

    bool PortOpen() const override;
    void setPortOpen(bool open) override;
    qint32 InBufferCount() override;
    QByteArray Input() override;
    void setOutput(const QByteArray& bytes) override;
    void waitForInput(qint32 msecs) override;
    QString LostDevice() const override;

    // What is known about a failed open: the kind of failure and, for a port in use, the lock
    // file and the program that keep it (mLinkHelp turns it into the cause and the help).
    static mLinkHelp::PortFailure OpenFailure(const QString& path, QSerialPort::SerialPortError error,
                                              const QString& systemText);

private:
    void open();
    void applyLineSettings();
    void pollInput();

    QSerialPort m_port;
    QString m_openedPath; // the device opened last, kept after closing
};
