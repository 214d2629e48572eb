#pragma once
// An in-memory serial control for unit tests. Every complete command frame written to it is
// handed to a responder, whose answer becomes the input the link reads.
#include "link/cCommControl.h"

#include <QByteArray>
#include <QList>
#include <QStringList>
#include <functional>
#include <optional>

class FakeCommPort : public cCommControl {
public:
    // Given a complete command frame, answers the report bytes (empty: the grip stays silent).
    using Responder = std::function<QByteArray(const QByteArray& frame)>;

    void setResponder(Responder responder) { m_responder = std::move(responder); }
    // Makes every open fail with this description (nullopt: opening works).
    void setOpenFailure(std::optional<QString> description) { m_openFailure = std::move(description); }
    // The lines of help that failure carries, as the serial port gives them.
    void setOpenHints(const QStringList& hints) { m_openHints = hints; }
    // Bytes that are waiting before the next exchange starts.
    void queueInput(const QByteArray& bytes) { m_input += bytes; }
    // Makes the device vanish (unplugged) as soon as a complete frame was written; empty: never.
    void setVanishesAs(const QString& path) { m_vanishesAs = path; }

    bool PortOpen() const override { return m_open; }
    void setPortOpen(bool open) override;
    qint32 InBufferCount() override { return static_cast<qint32>(m_input.size()); }
    QByteArray Input() override;
    void setOutput(const QByteArray& bytes) override;
    void waitForInput(qint32 msecs) override;
    QString LostDevice() const override { return frames.isEmpty() ? QString() : m_vanishesAs; }

    // What happened, for the tests to look at.
    QList<QByteArray> writes;  // each write, as given
    QList<QByteArray> frames;  // each complete command frame
    int opens = 0;
    int closes = 0;

private:
    void completeFrames();

    Responder m_responder;
    std::optional<QString> m_openFailure;
    QStringList m_openHints;
    QByteArray m_input;
    QByteArray m_pending;
    bool m_open = false;
    QString m_vanishesAs;
};
