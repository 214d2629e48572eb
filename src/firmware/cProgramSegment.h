#pragma once
// One block of the grip's program memory (16 bytes at most), read with command 0x85 and
// written with 0x82 or 0x8A, as the grip's boot code wants it.
#include <QByteArray>
#include <QString>
#include <array>

class cGripSession;
class cGunInfo;

class cProgramSegment {
public:
    static inline const QString kClass = QStringLiteral("cProgramSegment");
    static inline const QString kRevision = QStringLiteral("$Revision: 1 $");
    static constexpr qint32 kBlockSize = 16;

    // The number of data bytes the block carries (at most 16).
    quint8 ByteCount() const { return m_byteCount; }
    void setByteCount(quint8 count) { m_byteCount = count; }
    // The record type of the file line the block came from or goes to (0 for data); kept with
    // the block so that an image can be rebuilt from segments.
    quint8 RecordType() const { return m_recordType; }
    void setRecordType(quint8 type) { m_recordType = type; }

    // Writes the block to the session's grip. True when the grip acknowledged; false after a
    // negative answer, which is recorded in the session's cError. Any other answer raises 10252.
    bool Upload(cGripSession& session);
    // Reads the block into Data. True for a memory report; false after a negative answer
    // (recorded in the session's cError). Any other answer, or a report spoiled on the way,
    // raises 10212.
    bool Download(cGripSession& session);

    // The byte address, as decimal text; the setter takes a decimal text (garbage is a type
    // mismatch) and rebuilds the address text.
    QString Address() const { return QString::number(m_address); }
    void setAddress(const QString& address);
    void setAddress(qint32 address) { m_address = address; }
    qint32 AddressValue() const { return m_address; }
    // Four hex digits, the word address (byte address / 2), high byte first.
    QString AddressText() const;

    // Data bytes 1 to 16; other indexes are "Subscript out of range".
    quint8 Data(qint32 index) const;
    void setData(qint32 index, quint8 value);

    // High and low byte of the byte address (not of the word address).
    quint8 addrHi() const;
    quint8 addrLo() const;
    // The block's own check byte for the grip the gun information describes: the link's
    // checksum over the command byte (old boot code only), the word address, the byte count and
    // the data bytes.
    quint8 Checksum(const cGunInfo& gunInfo) const;

    // True when the grip's boot code is not newer than 1.2.0: it takes 0x8A and a check byte
    // that covers the command byte.
    static bool OldBootCode(const cGunInfo& gunInfo);

private:
    // The word address as the frames carry it: two bytes, high byte first.
    QByteArray addressBytes() const;
    QByteArray payloadWithoutChecksum(bool withCommand, bool oldBootCode) const;

    quint8 m_byteCount = 0;
    quint8 m_recordType = 0;
    qint32 m_address = 0;
    std::array<quint8, kBlockSize> m_data{};
};
