// cmake --install puts the program where a desktop finds it and where the program finds its
// own files: the executables, the library template in the data folder, the desktop entry (valid
// for desktop-file-validate) and the AppStream metainfo in the XDG places, the manual pages and
// the copyright file and changelog that Debian asks for. The installed marlo-cli, with
// no $MARLO_HOME, makes its library from the installed template in the per-user data folder.
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
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

    QString installed(const QString& file) const { return QDir(prefix()).filePath(file); }
    // An installed file's text (empty when it cannot be read).
    QString textOf(const QString& file) const
    {
        QFile f(installed(file));
        return f.open(QIODevice::ReadOnly) ? QString::fromUtf8(f.readAll()) : QString();
    }

    // A gzip file's text, by the gzip program.
    static QString gunzip(const QString& file)
    {
        QString text;
        return run(QStringLiteral("gzip"), {QStringLiteral("-dc"), file}, &text) == 0 ? text : QString();
    }

    // A manual page's words as a reader types them: font changes and non-breaking marks gone,
    // escaped dashes and spaces plain.
    static QString plainRoff(QString roff)
    {
        static const QRegularExpression fonts(QStringLiteral("\\\\f[BIRP]"));
        roff.remove(fonts);
        roff.remove(QStringLiteral("\\%"));
        roff.remove(QStringLiteral("\\&"));
        roff.replace(QStringLiteral("\\-"), QStringLiteral("-"));
        roff.replace(QStringLiteral("\\ "), QStringLiteral(" "));
        return roff;
    }

private slots:
    void initTestCase()
    {
        QString output;
        const int status = run(QStringLiteral(MARLO_CMAKE),
                               {QStringLiteral("--install"), QStringLiteral(MARLO_BUILD_DIR), QStringLiteral("--prefix"), prefix()}, &output);
        QVERIFY2(status == 0, qPrintable(output));
    }

    // Only the three programs are executable, and they alone are in bin: the template lives in
    // the data folder. (Each other file is read, run or validated by the tests below.)
    void onlyTheProgramsAreExecutable()
    {
        QStringList executables;
        for (QDirIterator it(prefix(), QDir::Files, QDirIterator::Subdirectories); it.hasNext();) {
            const QFileInfo file(it.next());
            if (file.isExecutable() || file.path().endsWith(QLatin1String("/bin")))
                executables << QDir(prefix()).relativeFilePath(file.filePath());
        }
        executables.sort();
        QCOMPARE(executables, (QStringList{"bin/marlo", "bin/marlo-cli", "bin/marlo-gripsim"}));
    }

    void desktopEntryIsValid()
    {
        const QString entry = installed(QStringLiteral("share/applications/marlo.desktop"));
        const QString text = textOf(QStringLiteral("share/applications/marlo.desktop"));
        // It starts the installed program with the installed icon.
        for (const QString& line : {QStringLiteral("Exec=marlo"), QStringLiteral("Icon=marlo"), QStringLiteral("Name=Marlo"),
                                    QStringLiteral("Type=Application")})
            QVERIFY2(text.split(QLatin1Char('\n')).contains(line), qPrintable(line));
        const QString validator = QStandardPaths::findExecutable(QStringLiteral("desktop-file-validate"));
        if (validator.isEmpty())
            QSKIP("desktop-file-validate is not installed (package desktop-file-utils)");
        QString output;
        QCOMPARE(run(validator, {entry}, &output), 0);
        QCOMPARE(output.trimmed(), QString());
    }

    // Each page names every command, option and field its program's --help prints, so that the
    // page and the program cannot disagree; and it is a manual page man can show without a
    // complaint.
    void manualPagesMatchThePrograms_data()
    {
        QTest::addColumn<QString>("program");
        QTest::newRow("marlo") << "marlo";
        QTest::newRow("marlo-cli") << "marlo-cli";
        QTest::newRow("marlo-gripsim") << "marlo-gripsim";
    }
    void manualPagesMatchThePrograms()
    {
        QFETCH(QString, program);
        QString help;
        QCOMPARE(run(installed(QStringLiteral("bin/") + program), {QStringLiteral("--help")}, &help), 0);
        const QString roff = gunzip(installed(QStringLiteral("share/man/man1/%1.1.gz").arg(program)));
        QVERIFY(roff.contains(QStringLiteral("\n.TH %1 1 ").arg(QString(program.toUpper()).replace(QLatin1Char('-'), QLatin1String("\\-")))));
        QVERIFY(roff.contains(QStringLiteral("\n.SH NAME\n%1 \\- ").arg(QString(program).replace(QLatin1Char('-'), QLatin1String("\\-")))));
        const QString page = plainRoff(roff);

        // Every option of the help (--device, --ShotTime, -F, ...) and every KEY= of the virtual grip.
        QStringList words;
        static const QRegularExpression option(QStringLiteral("(?:^|[\\s\\[,])(--?[A-Za-z][A-Za-z0-9-]*)"));
        static const QRegularExpression key(QStringLiteral("^  ([a-z]+)="), QRegularExpression::MultilineOption);
        for (const auto& re : {option, key})
            for (auto it = re.globalMatch(help); it.hasNext();)
                words.append(it.next().captured(1));
        // Every command: the first word of each line of the commands list.
        const qsizetype commands = help.indexOf(QStringLiteral("\nCommands:\n"));
        if (commands >= 0) {
            const QString list = help.mid(commands + 11, help.indexOf(QStringLiteral("\n\n"), commands + 11) - commands - 11);
            static const QRegularExpression command(QStringLiteral("^  ([a-z][a-z-]*)"), QRegularExpression::MultilineOption);
            for (auto it = command.globalMatch(list); it.hasNext();)
                words.append(it.next().captured(1));
        }
        words.removeDuplicates();
        QVERIFY2(words.size() >= 3, qPrintable(words.join(QLatin1Char(' '))));
        if (program == QLatin1String("marlo-cli"))
            for (const char* expected : {"--ShotTime", "--DefaultLoadTime", "--PreAlert2Time", "--device", "put", "library"})
                QVERIFY2(words.contains(QLatin1String(expected)), expected);
        for (const QString& word : std::as_const(words))
            QVERIFY2(page.contains(word), qPrintable(program + QStringLiteral(": ") + word));

        const QString groff = QStandardPaths::findExecutable(QStringLiteral("groff"));
        if (groff.isEmpty())
            QSKIP("groff is not installed");
        QProcess process;
        process.start(groff, {QStringLiteral("-man"), QStringLiteral("-Tutf8"), QStringLiteral("-ww"), QStringLiteral("-z")});
        process.write(roff.toUtf8());
        process.closeWriteChannel();
        QVERIFY(process.waitForFinished(30000));
        QCOMPARE(QString::fromLocal8Bit(process.readAllStandardError()), QString());
        QCOMPARE(process.exitCode(), 0);
    }

    // The metainfo names the installed desktop entry and this version, and appstreamcli accepts it.
    void metainfoDescribesThisProgram()
    {
        const QString path = installed(QStringLiteral("share/metainfo/io.github.marlo_grip.marlo.metainfo.xml"));
        const QString xml = textOf(QStringLiteral("share/metainfo/io.github.marlo_grip.marlo.metainfo.xml"));
        QVERIFY(xml.contains(QStringLiteral("<id>io.github.marlo_grip.marlo</id>")));
        static const QRegularExpression launchable(QStringLiteral("<launchable type=\"desktop-id\">([^<]+)</launchable>"));
        const auto l = launchable.match(xml);
        QVERIFY(l.hasMatch());
        QVERIFY2(QFileInfo::exists(installed(QStringLiteral("share/applications/") + l.captured(1))), qPrintable(l.captured(1)));
        static const QRegularExpression release(QStringLiteral("<release version=\"([^\"]+)\" date=\"(\\d{4}-\\d{2}-\\d{2})\""));
        QCOMPARE(release.match(xml).captured(1), QStringLiteral(MARLO_VERSION));

        const QString validator = QStandardPaths::findExecutable(QStringLiteral("appstreamcli"));
        if (validator.isEmpty())
            QSKIP("appstreamcli is not installed (package appstream)");
        QString output;
        QVERIFY2(run(validator, {QStringLiteral("validate"), QStringLiteral("--no-net"), QStringLiteral("--pedantic"), path}, &output) == 0,
                 qPrintable(output));
        QVERIFY2(output.contains(QStringLiteral("Validation was successful")) && !output.contains(QStringLiteral("W:")), qPrintable(output));
    }

    // The copyright file is in Debian's machine-readable format and covers every file; the
    // changelog's entry is this version's.
    void copyrightAndChangelogAreDebians()
    {
        const QString text = textOf(QStringLiteral("share/doc/marlo/copyright"));
        QVERIFY(text.startsWith(QStringLiteral("Format: https://www.debian.org/doc/packaging-manuals/copyright-format/1.0/\n")));
        static const QRegularExpression everyFile(QStringLiteral("\n\nFiles: \\*\nCopyright: \\S.*\nLicense: \\S+\n \\S"));
        QVERIFY2(everyFile.match(text).hasMatch(), qPrintable(text));

        const QStringList changelog = gunzip(installed(QStringLiteral("share/doc/marlo/changelog.Debian.gz"))).split(QLatin1Char('\n'));
        const QRegularExpression first(QStringLiteral("^marlo \\(%1\\) [a-z-]+; urgency=(low|medium|high|emergency|critical)$")
                                           .arg(QRegularExpression::escape(QStringLiteral(MARLO_DEB_VERSION))));
        QVERIFY2(first.match(changelog.first()).hasMatch(), qPrintable(changelog.first()));
        QVERIFY(QStringLiteral(MARLO_DEB_VERSION).startsWith(QStringLiteral(MARLO_VERSION "-")));
    }

    // The installed program finds its installed translation.
    void installedProgramSpeaksGerman()
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove(QStringLiteral("LC_ALL"));
        environment.insert(QStringLiteral("LANG"), QStringLiteral("de_DE.UTF-8"));
        environment.insert(QStringLiteral("LANGUAGE"), QStringLiteral("de"));
        QString help;
        QCOMPARE(run(installed(QStringLiteral("bin/marlo-cli")), {QStringLiteral("--help")}, &help, environment), 0);
        QVERIFY2(help.contains(QStringLiteral("\nBefehle:\n")), qPrintable(help));
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

        const QString cli = installed(QStringLiteral("bin/marlo-cli"));
        QString output;
        QVERIFY2(run(cli, {QStringLiteral("library"), QStringLiteral("list")}, &output, environment) == 0, qPrintable(output));
        QVERIFY2(run(cli, {QStringLiteral("--device"), QStringLiteral("sim:firmware=4.0.5"), QStringLiteral("info")}, &output,
                     environment) == 0, qPrintable(output));
        QVERIFY(output.contains(QStringLiteral("4.0.5")));
        // The library made from the installed template and the traffic log, in ~/.local/share/Marlo.
        const QDir folder(data + QStringLiteral("/Marlo"));
        QVERIFY2(folder.exists(QStringLiteral("Marlo.mdb")), qPrintable(folder.entryList().join(QLatin1Char(' '))));
        QVERIFY(folder.exists(QStringLiteral("komm.log")));
    }
};

QTEST_GUILESS_MAIN(tst_install)
#include "tst_install.moc"
