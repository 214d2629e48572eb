// cmake --install puts the program where a desktop finds it and where the program finds its
// own files: the executables, the library template in the data folder, the desktop entry (valid
// for desktop-file-validate) and the icons in the XDG places. The installed marlo-cli, with no
// $MARLO_HOME, makes its library from the installed template in the per-user data folder.
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

class tst_install : public QObject {
    Q_OBJECT

    QTemporaryDir m_dir;
    QString prefix() const { return m_dir.filePath(QStringLiteral("usr")); }

    // Runs a program; its exit code, with stdout and stderr in *output.
    static int run(const QString& program, const QStringList& arguments, QString* output,
                   const QProcessEnvironment& environment = QProcessEnvironment::systemEnvironment())
    {
        QProcess process;
        process.setProcessEnvironment(environment);
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(program, arguments);
        if (!process.waitForFinished(120000))
            return -1;
        *output = QString::fromLocal8Bit(process.readAll());
        return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    }

private slots:
    void initTestCase()
    {
        QString output;
        const int status = run(QStringLiteral(MARLO_CMAKE),
                               {QStringLiteral("--install"), QStringLiteral(MARLO_BUILD_DIR), QStringLiteral("--prefix"), prefix()}, &output);
        QVERIFY2(status == 0, qPrintable(output));
    }

    void filesInPlace_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<bool>("executable");
        QTest::newRow("desktop program") << "bin/marlo" << true;
        QTest::newRow("command line") << "bin/marlo-cli" << true;
        QTest::newRow("virtual grip") << "bin/marlo-gripsim" << true;
        QTest::newRow("library template") << "share/marlo/instdbxx.tmp" << false;
        QTest::newRow("desktop entry") << "share/applications/marlo.desktop" << false;
        QTest::newRow("scalable icon") << "share/icons/hicolor/scalable/apps/marlo.svg" << false;
        QTest::newRow("256 px icon") << "share/icons/hicolor/256x256/apps/marlo.png" << false;
    }
    void filesInPlace()
    {
        QFETCH(QString, file);
        QFETCH(bool, executable);
        const QFileInfo info(QDir(prefix()).filePath(file));
        QVERIFY2(info.isFile() && info.size() > 0, qPrintable(info.filePath()));
        QCOMPARE(info.isExecutable(), executable);
        // Nothing but the executables in bin: the template lives in the data folder.
        QCOMPARE(QDir(QDir(prefix()).filePath(QStringLiteral("bin"))).entryList(QDir::Files).size(), 3);
    }

    void iconsAreWhatTheyClaim()
    {
        QFile png(QDir(prefix()).filePath(QStringLiteral("share/icons/hicolor/256x256/apps/marlo.png")));
        QVERIFY(png.open(QIODevice::ReadOnly));
        const QByteArray head = png.read(24);
        QVERIFY(head.startsWith("\x89PNG\r\n\x1a\n"));
        const auto bigEndian = [&](int at) {
            return (quint8(head[at]) << 24) | (quint8(head[at + 1]) << 16) | (quint8(head[at + 2]) << 8) | quint8(head[at + 3]);
        };
        QCOMPARE(bigEndian(16), 256u); // width
        QCOMPARE(bigEndian(20), 256u); // height
        QFile svg(QDir(prefix()).filePath(QStringLiteral("share/icons/hicolor/scalable/apps/marlo.svg")));
        QVERIFY(svg.open(QIODevice::ReadOnly));
        QVERIFY(svg.readAll().contains("<svg"));
    }

    void desktopEntryIsValid()
    {
        const QString entry = QDir(prefix()).filePath(QStringLiteral("share/applications/marlo.desktop"));
        QFile file(entry);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QString text = QString::fromUtf8(file.readAll());
        // It starts the installed program with the installed icon.
        for (const QString& line : {QStringLiteral("Exec=marlo"), QStringLiteral("Icon=marlo"), QStringLiteral("Name=Marlo"),
                                    QStringLiteral("Type=Application")})
            QVERIFY2(text.split(QLatin1Char('\n')).contains(line), qPrintable(line));
        QVERIFY(text.contains(QStringLiteral("\nComment=")) && text.contains(QStringLiteral("\nCategories=")));
        const QString validator = QStandardPaths::findExecutable(QStringLiteral("desktop-file-validate"));
        if (validator.isEmpty())
            QSKIP("desktop-file-validate is not installed (package desktop-file-utils)");
        QString output;
        QCOMPARE(run(validator, {entry}, &output), 0);
        QCOMPARE(output.trimmed(), QString());
    }

    void installedProgramUsesThePerUserFolder()
    {
        // A user's environment: no $MARLO_HOME, a home of its own.
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove(QStringLiteral("MARLO_HOME"));
        environment.remove(QStringLiteral("MARLO_TEMPLATE_DIR"));
        const QString data = m_dir.filePath(QStringLiteral("data"));
        const QString config = m_dir.filePath(QStringLiteral("config"));
        environment.insert(QStringLiteral("XDG_DATA_HOME"), data);
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"), config);
        environment.insert(QStringLiteral("HOME"), m_dir.filePath(QStringLiteral("home")));
        QDir().mkpath(config + QStringLiteral("/Marlo"));
        QFile ini(config + QStringLiteral("/Marlo/Marlo.ini"));
        QVERIFY(ini.open(QIODevice::WriteOnly));
        ini.write("[Initialize]\nCommLogToFile=True\n");
        ini.close();

        const QString cli = QDir(prefix()).filePath(QStringLiteral("bin/marlo-cli"));
        QString output;
        QVERIFY2(run(cli, {QStringLiteral("library"), QStringLiteral("list")}, &output, environment) == 0, qPrintable(output));
        QVERIFY2(run(cli, {QStringLiteral("--device"), QStringLiteral("sim:firmware=4.0.5"), QStringLiteral("info")}, &output,
                     environment) == 0, qPrintable(output));
        QVERIFY(output.contains(QStringLiteral("4.0.5")));
        // The library made from the installed template and the traffic log, in ~/.local/share/Marlo.
        const QDir folder(data + QStringLiteral("/Marlo"));
        QVERIFY2(folder.exists(QStringLiteral("Marlo.mdb")), qPrintable(folder.entryList().join(QLatin1Char(' '))));
        QVERIFY(folder.exists(QStringLiteral("komm.log")));
        QCOMPARE(QDir(QDir(prefix()).filePath(QStringLiteral("bin"))).entryList(QDir::Files).size(), 3);
    }
};

QTEST_GUILESS_MAIN(tst_install)
#include "tst_install.moc"
