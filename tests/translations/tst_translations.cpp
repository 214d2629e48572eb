// Every translation is complete for the sources as they are now: lupdate is run over the sources
// into a copy of each translations/marlo_LANG.ts, and no entry may be left unfinished (a text
// added to the program without its translation fails here). Each translation keeps the
// placeholders of its English text and, where the English has a keyboard mnemonic, has one too.
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <QXmlStreamReader>
#include <QtTest>

namespace {

struct Entry {
    QString context;
    QString source;
    QString translation;
    bool finished = false;
};

// The entries of a .ts file; a <byte value="xd"/> in a text is the carriage return it stands for.
QList<Entry> readEntries(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QList<Entry> entries;
    QXmlStreamReader xml(&file);
    QString context;
    QString* text = nullptr;
    while (!xml.atEnd()) {
        xml.readNext();
        const auto name = xml.name();
        if (xml.isStartElement()) {
            if (name == QLatin1String("name"))
                context = xml.readElementText();
            else if (name == QLatin1String("message"))
                entries.append({context, {}, {}, false});
            else if (name == QLatin1String("source"))
                text = &entries.last().source;
            else if (name == QLatin1String("translation")) {
                text = &entries.last().translation;
                const auto type = xml.attributes().value(QLatin1String("type"));
                entries.last().finished = type != QLatin1String("unfinished") && type != QLatin1String("vanished") &&
                                          type != QLatin1String("obsolete");
            } else if (name == QLatin1String("byte") && text)
                *text += QChar(xml.attributes().value(QLatin1String("value")).mid(1).toInt(nullptr, 16));
        } else if (xml.isCharacters() && text) {
            *text += xml.text();
        } else if (xml.isEndElement() && (name == QLatin1String("source") || name == QLatin1String("translation"))) {
            text = nullptr;
        }
    }
    return entries;
}

QSet<QString> placeholders(const QString& text)
{
    static const QRegularExpression pattern(QStringLiteral("%\\d"));
    QSet<QString> found;
    for (auto it = pattern.globalMatch(text); it.hasNext();)
        found.insert(it.next().captured());
    return found;
}

// Mnemonics: "&" before anything but another "&" or a space.
int mnemonics(const QString& text)
{
    static const QRegularExpression pattern(QStringLiteral("&(?!&|\\s)"));
    return static_cast<int>(text.count(pattern) - text.count(QLatin1String("&&")));
}

QString describe(const Entry& entry) { return entry.context + QStringLiteral(": ") + entry.source; }

} // namespace

class tst_translations : public QObject {
    Q_OBJECT
private slots:
    void initTestCase()
    {
        const QDir sources(QStringLiteral(MARLO_SOURCE_DIR));
        for (const QString& name : QDir(sources.filePath(QStringLiteral("translations"))).entryList({QStringLiteral("marlo_*.ts")})) {
            const QString copy = m_dir.filePath(name);
            QVERIFY(QFile::copy(sources.filePath(QStringLiteral("translations/") + name), copy));
            m_files << copy;
        }
        QVERIFY2(!m_files.isEmpty(), "no translations/marlo_*.ts");
        QProcess lupdate;
        lupdate.setWorkingDirectory(sources.path());
        lupdate.start(QStringLiteral(MARLO_LUPDATE), QStringList{"-silent", "-locations", "none", "-no-obsolete", "src", "-ts"} + m_files);
        QVERIFY(lupdate.waitForFinished(120000));
        QVERIFY2(lupdate.exitStatus() == QProcess::NormalExit && lupdate.exitCode() == 0, lupdate.readAllStandardError().constData());
    }

    void everyTextIsTranslated_data()
    {
        QTest::addColumn<QString>("file");
        for (const QString& file : m_files)
            QTest::newRow(qPrintable(QFileInfo(file).fileName())) << file;
    }
    void everyTextIsTranslated()
    {
        QFETCH(QString, file);
        const QList<Entry> entries = readEntries(file);
        QVERIFY(entries.size() > 500);
        QStringList wrong;
        for (const Entry& entry : entries) {
            if (!entry.finished || entry.translation.isEmpty()) {
                wrong << QStringLiteral("unfinished: ") + describe(entry);
                continue;
            }
            if (placeholders(entry.source) != placeholders(entry.translation))
                wrong << QStringLiteral("placeholders: ") + describe(entry);
            if (mnemonics(entry.source) != mnemonics(entry.translation))
                wrong << QStringLiteral("mnemonic: ") + describe(entry);
        }
        // Run scripts/update-translations.sh and translate what it lists.
        QCOMPARE(wrong, QStringList());
    }

private:
    QTemporaryDir m_dir;
    QStringList m_files;
};

QTEST_GUILESS_MAIN(tst_translations)
#include "tst_translations.moc"
