// Reading a firmware file never crashes: every damaged file ends with either a loaded image or
// a clean error, and a failed load leaves the image as it was.
#include "firmware/mFirmware.h"
#include "link/MarloError.h"
#include "link/mErrCodes.h"

#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QtTest>

namespace {

QByteArray hexByte(int value)
{
    return QByteArray::number(value & 0xFF, 16).rightJustified(2, '0').toUpper();
}

// A well-formed file with the given number of 16-byte blocks from 0x40 upward.
QByteArray wellFormed(int blocks)
{
    QByteArray text = ";-----------------------------------\r\n; Firmware: 1.1.70\r\n; Boot:     1.0.0-1.2.0\r\n"
                      "; Protocol: 1.1.1\r\n; Hardware: 2.1.0\r\n;-----------------------------------\r\n";
    for (int b = 0; b < blocks; ++b) {
        const int address = 0x40 + 16 * b;
        QByteArray line = ":10" + hexByte(address >> 8) + hexByte(address) + "00";
        for (int i = 0; i < 16; ++i)
            line += hexByte(b * 7 + i);
        line += "5A\r\n";
        text += line;
    }
    text += ":00000001FF\r\n";
    return text;
}

FirmwareFile sentinel()
{
    FirmwareFile image;
    image.Firmware = QStringLiteral("sentinel");
    HexLine line;
    line.ByteCount = 1;
    line.Data = {5};
    image.Segments.append(line);
    return image;
}

enum Expect { Loads, Refused, Either };

struct Outcome {
    bool loaded = false;
    qint32 error = 0;
    bool imageKept = false;     // after a refusal: the image is unchanged
    bool countsMatch = true;    // after a load: every record holds ByteCount data bytes
    qsizetype segments = 0;
};

} // namespace

Q_DECLARE_METATYPE(Expect)

class tst_FirmwareCorpus : public QObject {
    Q_OBJECT

private slots:
    void damagedFiles_data();
    void damagedFiles();
    void randomMutations();
    void randomJunk();

private:
    Outcome load(const QByteArray& bytes);
    static void verify(const Outcome& outcome, Expect expect);

    QTemporaryDir m_dir;
};

Outcome tst_FirmwareCorpus::load(const QByteArray& bytes)
{
    const QString path = m_dir.filePath(QStringLiteral("corpus.tvf"));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("cannot write the corpus file");
    file.close();

    Outcome outcome;
    FirmwareFile image = sentinel();
    try {
        mFirmware::LoadFirmwareFile(image, path);
        outcome.loaded = true;
        outcome.segments = image.Segments.size();
        for (const HexLine& line : image.Segments)
            outcome.countsMatch = outcome.countsMatch && line.Data.size() == line.ByteCount;
    } catch (const MarloError& e) {
        outcome.error = e.Number();
        outcome.imageKept = image == sentinel();
    }
    return outcome;
}

void tst_FirmwareCorpus::verify(const Outcome& outcome, Expect expect)
{
    if (outcome.loaded) {
        QVERIFY2(expect != Refused, "a damaged file was accepted");
        QVERIFY(outcome.countsMatch);
    } else {
        QVERIFY2(expect != Loads, qPrintable(QStringLiteral("refused with error %1").arg(outcome.error)));
        QVERIFY(outcome.imageKept);
        // The only way a readable file is refused: a byte that is no hex number.
        QCOMPARE(outcome.error, mErrCodes::RT_TYPE_MISMATCH);
    }
}

void tst_FirmwareCorpus::damagedFiles_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<Expect>("expect");
    QTest::addColumn<int>("segments"); // -1: any

    const QByteArray good = wellFormed(20);
    QTest::newRow("well formed") << good << Loads << 21;
    QTest::newRow("empty file") << QByteArray() << Loads << 0;
    QTest::newRow("only CR") << QByteArray(5000, '\r') << Loads << 0;
    QTest::newRow("only LF") << QByteArray(5000, '\n') << Loads << 0;
    QTest::newRow("only CR LF") << QByteArray("\r\n").repeated(5000) << Loads << 0;
    QTest::newRow("only NUL bytes") << QByteArray(5000, '\0') << Loads << 0;
    QTest::newRow("only colons") << QByteArray(":\r\n").repeated(100) << Loads << 100;
    QTest::newRow("huge byte count, no data") << QByteArray(":FF004000\r\n") << Loads << 1;
    QTest::newRow("huge byte count, odd digit") << QByteArray(":FF0040001\r\n") << Loads << 1;
    QTest::newRow("every line cut in half") << [&] {
        QByteArray cut;
        for (const QByteArray& line : good.split('\n'))
            cut += line.left(line.size() / 2) + "\r\n";
        return cut;
    }() << Loads << -1;
    QTest::newRow("file cut mid-record") << good.left(good.size() / 2) << Loads << -1;
    QTest::newRow("LF line ends") << QByteArray(good).replace("\r\n", "\n") << Loads << 0;
    QTest::newRow("CR line ends") << QByteArray(good).replace("\r\n", "\r") << Loads << 0;
    QTest::newRow("LF line ends, records only")
        << QByteArray(good.mid(good.indexOf("\r\n:") + 2)).replace("\r\n", "\n") << Loads << 1;
    QTest::newRow("bad hex digit in the last line") << good + ":0000000GFF\r\n" << Refused << -1;
    QTest::newRow("NUL inside a record") << QByteArray(good).replace(":10004000", QByteArray(":1000\0" "000", 9))
                                         << Refused << -1;
    QTest::newRow("NUL after the records") << good + QByteArray(100, '\0') << Loads << 21;
    QTest::newRow("high bytes in comments") << QByteArray("; Firmware: \xff\xfe\x80\r\n") + good << Loads << 21;
    QTest::newRow("one long line without end") << QByteArray(":10") + QByteArray(1 << 20, 'A') << Loads << 1;
    QTest::newRow("one long comment") << QByteArray(";") + QByteArray(1 << 20, ':') << Loads << 0;
    QTest::newRow("ten megabytes") << wellFormed(10 * 1024 * 1024 / 44) << Loads << 10 * 1024 * 1024 / 44 + 1;
}

void tst_FirmwareCorpus::damagedFiles()
{
    QFETCH(QByteArray, bytes);
    QFETCH(Expect, expect);
    QFETCH(int, segments);
    const Outcome outcome = load(bytes);
    verify(outcome, expect);
    if (outcome.loaded && segments >= 0)
        QCOMPARE(outcome.segments, qsizetype(segments));
}

void tst_FirmwareCorpus::randomMutations()
{
    // Bytes of a good file flipped, dropped, doubled or replaced by line ends, many times over.
    const QByteArray good = wellFormed(8);
    QRandomGenerator random(20260421);
    int loaded = 0;
    int refused = 0;
    for (int round = 0; round < 1500; ++round) {
        QByteArray bytes = good;
        const int edits = 1 + static_cast<int>(random.bounded(8));
        for (int e = 0; e < edits && !bytes.isEmpty(); ++e) {
            const qsizetype at = static_cast<qsizetype>(random.bounded(static_cast<quint32>(bytes.size())));
            switch (random.bounded(5)) {
            case 0: bytes[at] = static_cast<char>(random.bounded(256)); break;
            case 1: bytes.remove(at, 1 + static_cast<qsizetype>(random.bounded(40))); break;
            case 2: bytes.insert(at, bytes.mid(at, 1 + static_cast<qsizetype>(random.bounded(40)))); break;
            case 3: bytes.insert(at, random.bounded(2) ? "\r\n" : "\n"); break;
            default: bytes.truncate(at); break;
            }
        }
        const Outcome outcome = load(bytes);
        verify(outcome, Either);
        if (QTest::currentTestFailed())
            return;
        outcome.loaded ? ++loaded : ++refused;
    }
    // Both ways out are exercised.
    QVERIFY(loaded > 0);
    QVERIFY(refused > 0);
}

void tst_FirmwareCorpus::randomJunk()
{
    QRandomGenerator random(4711);
    for (int round = 0; round < 300; ++round) {
        QByteArray bytes(static_cast<qsizetype>(random.bounded(4096)), '\0');
        for (char& c : bytes)
            c = static_cast<char>(random.bounded(256));
        // Some junk looks like records and comments.
        if (round % 3 == 0)
            bytes.replace('\n', QByteArray("\r\n:"));
        if (round % 3 == 1)
            bytes.replace('\n', QByteArray("\r\n;Boot:"));
        verify(load(bytes), Either);
        if (QTest::currentTestFailed())
            return;
    }
}

QTEST_GUILESS_MAIN(tst_FirmwareCorpus)
#include "tst_firmwarecorpus.moc"
