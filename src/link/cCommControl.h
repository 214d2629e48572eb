#pragma once
// The serial-port control as the link sees it: the properties of the classic serial control
// (CommPort, Settings, InputMode, PortOpen, InBufferCount, InputLen, Input, Output) plus a
// blocking wait for input, so that waiting for the grip never spins the CPU.
// cSerialPort implements it on QSerialPort; the tests use an in-memory fake.
#include <QByteArray>
#include <QString>

class cCommControl {
public:
    static constexpr qint32 InputModeText = 0;
    static constexpr qint32 InputModeBinary = 1;

    virtual ~cCommControl() = default;

    qint16 CommPort() const { return m_commPort; }
    virtual void setCommPort(qint16 port) { m_commPort = port; }
    QString Settings() const { return m_settings; }
    // "9600,N,8,1": baud rate, parity letter, data bits, stop bits. A malformed text raises the
    // control's "Invalid property value".
    virtual void setSettings(const QString& settings);
    qint32 InputMode() const { return m_inputMode; }
    virtual void setInputMode(qint32 mode) { m_inputMode = mode; }
    qint32 InputLen() const { return m_inputLen; }
    void setInputLen(qint32 length) { m_inputLen = length; }

    // The device named by the preference CommDevice (empty: the port number decides).
    virtual void setDevice(const QString& device) { m_device = device; }
    QString device() const { return m_device; }

    virtual bool PortOpen() const = 0;
    // Opening failures raise an error whose description says what went wrong.
    virtual void setPortOpen(bool open) = 0;
    // Bytes waiting to be read.
    virtual qint32 InBufferCount() = 0;
    // Reads up to InputLen bytes (0: everything waiting).
    virtual QByteArray Input() = 0;
    virtual void setOutput(const QByteArray& bytes) = 0;
    // Blocks until input arrives or the time is up; returns at once when input is waiting.
    virtual void waitForInput(qint32 msecs) = 0;
    // The device opened last, when it has vanished since (unplugged); empty while it is there.
    virtual QString LostDevice() const { return QString(); }

    // Parsed form of Settings.
    struct LineSettings {
        qint32 baudRate = 9600;
        QChar parity = QLatin1Char('N');
        qint32 dataBits = 8;
        QString stopBits = QStringLiteral("1");
    };
    const LineSettings& lineSettings() const { return m_line; }
    static bool ParseSettings(const QString& text, LineSettings& out);

private:
    qint16 m_commPort = 1;
    QString m_settings = QStringLiteral("9600,N,8,1");
    qint32 m_inputMode = InputModeBinary;
    qint32 m_inputLen = 0;
    LineSettings m_line;
    QString m_device;
};
