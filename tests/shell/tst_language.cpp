// The language the programs speak: which one the environment asks for, what is loaded (and what
// is not: a missing or broken file, a language without a translation, a right-to-left one, whose
// layout stays left to right), and that a message is shown translated while what is written
// keeps it English.
#include "base/MarloError.h"
#include "base/mErrCodes.h"
#include "firmware/mCommSupport.h"
#include "shell/mLanguage.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

class tst_language : public QObject {
    Q_OBJECT
private slots:
    void cleanup() { mLanguage::Remove(); }

    void wantedLanguages_data()
    {
        QTest::addColumn<QStringList>("environment"); // NAME=VALUE
        QTest::addColumn<QStringList>("wanted");
        QTest::newRow("nothing set") << QStringList{} << QStringList{"en"};
        QTest::newRow("LANG, its modifier dropped") << QStringList{"LANG=de_DE.UTF-8@euro"} << QStringList{"de_DE"};
        QTest::newRow("LANGUAGE before LANG") << QStringList{"LANG=fr_FR.UTF-8", "LANGUAGE=de:fr"} << QStringList{"de", "fr"};
        QTest::newRow("LC_MESSAGES before LANG") << QStringList{"LANG=fr_FR", "LC_MESSAGES=de_AT"} << QStringList{"de_AT"};
        QTest::newRow("LC_ALL before all") << QStringList{"LANG=fr_FR", "LC_MESSAGES=fr_FR", "LC_ALL=de_CH.UTF-8"} << QStringList{"de_CH"};
        // As gettext has it: the C locale is English whatever LANGUAGE says.
        QTest::newRow("C locale ignores LANGUAGE") << QStringList{"LC_ALL=C.UTF-8", "LANG=de_DE", "LANGUAGE=de"} << QStringList{"en"};
    }
    void wantedLanguages()
    {
        QFETCH(QStringList, environment);
        QFETCH(QStringList, wanted);
        QProcessEnvironment env;
        for (const QString& pair : environment)
            env.insert(pair.section(QLatin1Char('='), 0, 0), pair.section(QLatin1Char('='), 1));
        QCOMPARE(mLanguage::WantedLanguages(env), wanted);
    }

    void install_data()
    {
        QTest::addColumn<QStringList>("wanted");
        QTest::addColumn<QString>("folder"); // "build": the build's translations; "broken": a garbage marlo_de.qm
        QTest::addColumn<QString>("loaded");
        QTest::addColumn<QString>("overflow"); // mErrCodes "Overflow" as shown
        QTest::newRow("Austrian falls back to German") << QStringList{"de_AT"} << "build" << "de" << QString::fromUtf8("Überlauf");
        QTest::newRow("first language without a file") << QStringList{"fr", "de"} << "build" << "de" << QString::fromUtf8("Überlauf");
        QTest::newRow("English before German") << QStringList{"en_GB", "de"} << "build" << QString() << "Overflow";
        QTest::newRow("right to left") << QStringList{"ar_EG", "he"} << "build" << QString() << "Overflow";
        QTest::newRow("missing file") << QStringList{"de"} << "empty" << QString() << "Overflow";
        QTest::newRow("broken file") << QStringList{"de"} << "broken" << QString() << "Overflow";
    }
    void install()
    {
        QFETCH(QStringList, wanted);
        QFETCH(QString, folder);
        QFETCH(QString, loaded);
        QFETCH(QString, overflow);
        QTemporaryDir scratch;
        QStringList folders = mLanguage::TranslationFolders();
        if (folder != QLatin1String("build")) {
            folders = {scratch.path()};
            if (folder == QLatin1String("broken")) {
                QFile file(QDir(scratch.path()).filePath(QStringLiteral("marlo_de.qm")));
                QVERIFY(file.open(QIODevice::WriteOnly));
                file.write(QByteArray("\x3c\xb8\x64\x18\xca\xef\x9c\x95\xcd\x21\x1c\xbf\x60\xa1\xbd\xdd", 16) + QByteArray(200, '\xff'));
            }
        }
        QCOMPARE(mLanguage::Install(wanted, folders), loaded);
        QCOMPARE(mErrCodes::RuntimeError(mErrCodes::RT_OVERFLOW).Shown(), overflow);
        // Qt's own comes only with the program's: a language the program does not speak leaves
        // the layout left to right.
        const QString direction = QCoreApplication::translate("QGuiApplication", "QT_LAYOUT_DIRECTION");
        QCOMPARE(direction, loaded.isEmpty() ? QStringLiteral("QT_LAYOUT_DIRECTION") : QStringLiteral("LTR"));
    }

    // An error is shown in the user's language, every part of it, and written in English.
    void shownTranslatedWrittenInEnglish()
    {
        QCOMPARE(mLanguage::Install({QStringLiteral("de")}), QStringLiteral("de"));
        FirmwareFile image;
        HexLine line;
        line.ByteCount = 40;
        line.Data = QList<quint8>(40, 0);
        line.FileLine = 7;
        image.Segments << line;
        MarloError error(0, QString(), QString());
        try {
            mCommSupport::CheckFirmwareImage(image);
            QFAIL("a record of 40 bytes was taken");
        } catch (const MarloError& e) {
            error = e;
        }
        QCOMPARE(error.Description(), QStringLiteral("The firmwarefile cannot be uploaded: line 7: the record holds 40 data bytes, but a "
                                                     "memory block holds at most 16.\r\nNothing was sent to the grip."));
        QCOMPARE(error.ShownDescription(),
                 QString::fromUtf8("Die Firmware-Datei kann nicht übertragen werden: Zeile 7: der Datensatz enthält 40 Datenbytes, ein "
                                   "Speicherblock fasst aber höchstens 16.\r\nAn den Griff wurde nichts gesendet."));
        QCOMPARE(QString::fromLatin1(error.what()), QStringLiteral("error 10802: ") + error.Description());
        // An argument holding a placeholder is never filled in again.
        QCOMPARE(cText(mErrCodes::kContext, "Upload failed at address: %1", {QStringLiteral("%1")}).Shown(),
                 QString::fromUtf8("Übertragen fehlgeschlagen an Adresse: %1"));
        mLanguage::Remove();
        QCOMPARE(error.ShownDescription(), error.Description());
    }
};

QTEST_GUILESS_MAIN(tst_language)
#include "tst_language.moc"
