// The firmware workflows against the virtual grip (behind the fake port): every message with its
// title and icon, the status panels, the progress display, the order of the grip commands, the
// file dialogs and the step names that error reports carry.
#include "FirmwareTestSupport.h"
#include "TestLink.h"
#include "firmware/mFirmwareWorkflows.h"
#include "library/cApplication.h"
#include "link/mErrCodes.h"
#include "shell/mMain.h"

#include <QTemporaryDir>
#include <QtTest>

using fwtest::codes;
using fwtest::Line;

namespace {

// Records which grip command went out last when a message appeared.
class OrderUi : public ScriptedUi {
public:
    explicit OrderUi(FakeCommPort& port) : m_port(port) {}
    void showMessage(const QString& text, const QString& title, MsgIcon icon) override
    {
        lastCommandAtMessage.append(codes(m_port.frames.mid(m_port.frames.size() - 1)));
        ScriptedUi::showMessage(text, title, icon);
    }
    QStringList lastCommandAtMessage;

private:
    FakeCommPort& m_port;
};

// A file that fits a grip with boot code 1.0.0-1.2.0 and hardware 2.1.x.
FirmwareFile smallImage()
{
    FirmwareFile image;
    image.Firmware = QStringLiteral("1.1.80");
    image.Boot = QStringLiteral("1.0.0-1.2.0");
    image.Protocol = QStringLiteral("1.1.1");
    image.Hardware = QStringLiteral("2.1.0");
    image.Segments = {Line(0x40, fwtest::Pattern(1)), Line(0x50, fwtest::Pattern(2)),
                      Line(0x300, fwtest::Pattern(3)), Line(0, {}, 1, 0xFF)};
    return image;
}

QString repeated(const QString& code, int times)
{
    QStringList list;
    for (int i = 0; i < times; ++i)
        list.append(code);
    return list.join(QLatin1Char(' '));
}

void setConfirmations(bool on)
{
    mMain::Application().RegistrySettings().setShowConfirmComm(on);
}

} // namespace

Q_DECLARE_METATYPE(FirmwareResult)

class tst_FirmwareWorkflows : public QObject {
    Q_OBJECT

private slots:
    void init();
    void uploadSucceeds();
    void uploadStopsTheProgramOnlyOutsideBootMode_data();
    void uploadStopsTheProgramOnlyOutsideBootMode();
    void uploadRefusesAFileThatDoesNotFit();
    void failedVerificationStillStartsTheProgram();
    void cancelledDialogsEndSilently_data();
    void cancelledDialogsEndSilently();
    void putFirmwareProgramConfirmsWhateverHappened_data();
    void putFirmwareProgramConfirmsWhateverHappened();
    void putFirmwareProgramCleansUpAfterAnError();
    void downloadSavesTheGripsProgram_data();
    void downloadSavesTheGripsProgram();
    void downloadAsksForTheFile();
    void errorsNameTheStep_data();
    void errorsNameTheStep();

private:
    QString writeFile(const FirmwareFile& image, const QString& name = QStringLiteral("upload.tvf"));
    QTemporaryDir m_dir;
};

void tst_FirmwareWorkflows::init()
{
    setConfirmations(true);
}

QString tst_FirmwareWorkflows::writeFile(const FirmwareFile& image, const QString& name)
{
    const QString path = m_dir.filePath(name);
    mFirmware::SaveFirmwareFile(path, image);
    return path;
}

void tst_FirmwareWorkflows::uploadSucceeds()
{
    TestLink link;
    OrderUi ui(link.port);
    mMain::SetUserInterface(&ui);
    fwtest::SimGrip sim(QStringLiteral("firmware=1.1.70,boot=1.2.0,hardware=2.1.5"));
    sim.attach(link.port);
    ui.setStatusText(3, QStringLiteral("Ready"));
    ui.statusHistory.clear();
    const FirmwareFile image = smallImage();

    QCOMPARE(mFirmwareWorkflows::UploadFirmware(writeFile(image)), FirmwareResult::Succeeded);

    QCOMPARE(ui.messages.size(), 1);
    QCOMPARE(ui.messages[0].text, QStringLiteral("Firmware uploaded successfully!\r\n"
                                                 "Press OK to start using the newly uploaded firmware."));
    QCOMPARE(ui.messages[0].title, QStringLiteral("Success!"));
    QCOMPARE(ui.messages[0].icon, MsgIcon::Information);
    QCOMPARE(ui.lastCommandAtMessage, QStringList{QStringLiteral("83")});
    QCOMPARE(ui.statusHistory, (QStringList{QStringLiteral("3:Loading firmwarefile to be uploaded"),
                                            QStringLiteral("3:Preparing grip for upload"),
                                            QStringLiteral("3:Uploading firmware..."),
                                            QStringLiteral("3:Verifying uploaded firmware..."),
                                            QStringLiteral("3:Ready"), QStringLiteral("2:1.1.70")}));
    QCOMPARE(ui.progressMaxima, QList<int>{4 + 252});
    QCOMPARE(ui.progressValues.last(), 4 + 252);
    QCOMPARE(ui.progressEnds, 1);
    QVERIFY(ui.errors.isEmpty());

    // Gun information, boot-mode query, stop; the writes; the read-back (old firmware restarts
    // its program at 0x200); the start.
    const int readsBefore200 = (0x200 - 0x40) / 16;
    const QString expected = QStringLiteral("13 13 11 13 81 13 8A 8A 8A 8A 13 ") + repeated(QStringLiteral("85"), readsBefore200) +
                             QStringLiteral(" 13 83 13 81 ") + repeated(QStringLiteral("85"), 252 - readsBefore200) +
                             QStringLiteral(" 13 83");
    QCOMPARE(codes(link.port.frames), expected);
    const gripsim::GripState state = sim.grip->state();
    QVERIFY(!state.bootMode);
    for (const HexLine& line : image.Segments.mid(0, 3))
        QCOMPARE(quint8(state.memory[line.AddrHi * 256 + line.AddrLo + 15]), line.Data[15]);
    QCOMPARE(mMain::MousePointerDepth(), 0);
    QCOMPARE(ui.busyPointer.last(), false);
}

void tst_FirmwareWorkflows::uploadStopsTheProgramOnlyOutsideBootMode_data()
{
    QTest::addColumn<bool>("bootMode");
    QTest::newRow("running its program") << false;
    QTest::newRow("already in boot mode") << true;
}

void tst_FirmwareWorkflows::uploadStopsTheProgramOnlyOutsideBootMode()
{
    QFETCH(bool, bootMode);
    TestLink link;
    fwtest::SimGrip sim(QStringLiteral("firmware=4.0.0,boot=1.1.0,hardware=2.1.0,bootmode=") +
                        (bootMode ? QStringLiteral("1") : QStringLiteral("0")));
    sim.attach(link.port);

    QCOMPARE(mFirmwareWorkflows::UploadFirmware(writeFile(smallImage())), FirmwareResult::Succeeded);
    const QString sent = codes(link.port.frames);
    QCOMPARE(sent.startsWith(QStringLiteral("13 13 11 13 81 13 8A")), !bootMode);
    QCOMPARE(sent.startsWith(QStringLiteral("13 13 11 13 8A")), bootMode);
    QCOMPARE(sent.count(QStringLiteral("81")), bootMode ? 0 : 1);
    QVERIFY(sent.endsWith(QStringLiteral("85 13 83")));
    QVERIFY(!sim.grip->state().bootMode);
}

void tst_FirmwareWorkflows::uploadRefusesAFileThatDoesNotFit()
{
    TestLink link;
    fwtest::SimGrip sim(QStringLiteral("firmware=1.1.70,boot=1.1.5,hardware=2.2.0"));
    sim.attach(link.port);
    link.ui.setStatusText(3, QStringLiteral("Ready"));
    link.ui.statusHistory.clear();
    const QByteArray memory = sim.grip->state().memory;

    QCOMPARE(mFirmwareWorkflows::UploadFirmware(writeFile(smallImage())), FirmwareResult::VersionMismatch);

    QCOMPARE(link.ui.messages.size(), 1);
    QCOMPARE(link.ui.messages[0].text, QStringLiteral("Firmwarefile version does not match the current version of the grip.\r\n"
                                                      "It is not possible to upload this firmwarefile to the grip."));
    QCOMPARE(link.ui.messages[0].title, QStringLiteral("Firmwarefile version error"));
    QCOMPARE(link.ui.messages[0].icon, MsgIcon::Exclamation);
    // Nothing but the gun information was exchanged.
    QCOMPARE(codes(link.port.frames), QStringLiteral("13"));
    QCOMPARE(sim.grip->state().memory, memory);
    QCOMPARE(link.ui.statusHistory, (QStringList{QStringLiteral("3:Loading firmwarefile to be uploaded"),
                                                 QStringLiteral("3:Ready"), QStringLiteral("2:1.1.70")}));
    QVERIFY(link.ui.progressMaxima.isEmpty());
    QCOMPARE(mMain::MousePointerDepth(), 0);
}

void tst_FirmwareWorkflows::failedVerificationStillStartsTheProgram()
{
    TestLink link;
    OrderUi ui(link.port);
    mMain::SetUserInterface(&ui);
    fwtest::SimGrip sim(QStringLiteral("firmware=4.0.0,boot=1.2.0,hardware=2.1.0"));
    sim.attach(link.port);
    // The second line overwrites the first, so the read-back cannot match the first line.
    FirmwareFile image = smallImage();
    image.Segments.insert(1, Line(0x40, fwtest::Pattern(9)));

    QCOMPARE(mFirmwareWorkflows::UploadFirmware(writeFile(image)), FirmwareResult::VerifyFailed);

    QCOMPARE(ui.messages.size(), 1);
    QCOMPARE(ui.messages[0].text,
             QStringLiteral("Firmware uploaded failed!\r\n"
                            "You should reset you grip (turn it off and then back on) and try uploading again.\r\n"
                            "If the problem persists, please contact Tolvane Products' supportunit."));
    QCOMPARE(ui.messages[0].title, QStringLiteral("Failure!"));
    QCOMPARE(ui.messages[0].icon, MsgIcon::Information);
    QCOMPARE(ui.lastCommandAtMessage, QStringList{QStringLiteral("83")});
    QVERIFY(!sim.grip->state().bootMode);
    QVERIFY(ui.errors.isEmpty());
    QCOMPARE(ui.progressEnds, 1);
}

void tst_FirmwareWorkflows::cancelledDialogsEndSilently_data()
{
    QTest::addColumn<bool>("upload");
    QTest::newRow("open dialog") << true;
    QTest::newRow("save dialog") << false;
}

void tst_FirmwareWorkflows::cancelledDialogsEndSilently()
{
    QFETCH(bool, upload);
    TestLink link;
    fwtest::SimGrip sim(QStringLiteral("firmware=4.0.0"));
    sim.attach(link.port);

    const FirmwareResult result = upload ? mFirmwareWorkflows::UploadFirmware(QString())
                                         : mFirmwareWorkflows::DownloadFirmware(QString());
    QCOMPARE(result, FirmwareResult::Cancelled);
    QVERIFY(link.port.frames.isEmpty());
    QVERIFY(link.ui.messages.isEmpty());
    QVERIFY(link.ui.errors.isEmpty());
    QVERIFY(link.ui.statusHistory.isEmpty());
    QCOMPARE(mMain::MousePointerDepth(), 0);

    QCOMPARE(link.ui.fileRequests.size(), 1);
    const FileDialogRequest& request = link.ui.fileRequests[0];
    QCOMPARE(request.filter, QStringLiteral("All (*.*)|*.*|Tolvane Firmware (*.tvf)|*.tvf"));
    QCOMPARE(request.filterIndex, 2);
    QVERIFY(request.pathMustExist);
    QVERIFY(request.overwritePrompt);
    QCOMPARE(request.hideReadOnly, !upload);
}

void tst_FirmwareWorkflows::putFirmwareProgramConfirmsWhateverHappened_data()
{
    QTest::addColumn<bool>("confirm");
    QTest::addColumn<bool>("cancel");
    QTest::addColumn<FirmwareResult>("result");
    QTest::addColumn<int>("messages");

    QTest::newRow("cancelled, confirmations on") << true << true << FirmwareResult::Cancelled << 1;
    QTest::newRow("cancelled, confirmations off") << false << true << FirmwareResult::Cancelled << 0;
    QTest::newRow("refused file, confirmations on") << true << false << FirmwareResult::VersionMismatch << 2;
    QTest::newRow("refused file, confirmations off") << false << false << FirmwareResult::VersionMismatch << 1;
}

void tst_FirmwareWorkflows::putFirmwareProgramConfirmsWhateverHappened()
{
    QFETCH(bool, confirm);
    QFETCH(bool, cancel);
    QFETCH(FirmwareResult, result);
    QFETCH(int, messages);
    TestLink link;
    setConfirmations(confirm);
    fwtest::SimGrip sim(QStringLiteral("firmware=4.0.0,boot=2.0.0"));
    sim.attach(link.port);
    link.ui.fileAnswers.enqueue(cancel ? std::optional<QString>() : std::optional<QString>(writeFile(smallImage())));

    QCOMPARE(mFirmwareWorkflows::PutFirmwareProgram(), result);
    QCOMPARE(link.ui.messages.size(), messages);
    if (confirm) {
        QCOMPARE(link.ui.messages.last().text, QStringLiteral("Firmware was put."));
        QCOMPARE(link.ui.messages.last().title, QStringLiteral("Confirmation"));
        QCOMPARE(link.ui.messages.last().icon, MsgIcon::Information);
    }
    QCOMPARE(mMain::MousePointerDepth(), 0);
}

void tst_FirmwareWorkflows::putFirmwareProgramCleansUpAfterAnError()
{
    TestLink link;
    fwtest::SimGrip sim(QStringLiteral("firmware=4.0.0,boot=1.2.0,hardware=2.1.0,failblock=50*3"));
    sim.attach(link.port);
    link.ui.setStatusText(3, QStringLiteral("Ready"));
    link.ui.fileAnswers.enqueue(writeFile(smallImage()));

    try {
        mFirmwareWorkflows::PutFirmwareProgram();
        QFAIL("the failed block went unreported");
    } catch (const MarloError& e) {
        QCOMPARE(e.Number(), mErrCodes::ERR_UL_FIRMWARE);
        QCOMPARE(e.Description(), QStringLiteral("Upload failed at address: 80 (1) Checksum error."));
    }
    QCOMPARE(link.ui.statusText(3), QStringLiteral("Ready"));
    QCOMPARE(link.ui.progressMaxima.size(), 1);
    QVERIFY(link.ui.progressEnds >= 1);
    QVERIFY(link.ui.messages.isEmpty()); // no confirmation after an error
    QCOMPARE(mMain::MousePointerDepth(), 0);
    // The grip stays in its boot code; the next command will start its program.
    QVERIFY(sim.grip->state().bootMode);
}

void tst_FirmwareWorkflows::downloadSavesTheGripsProgram_data()
{
    QTest::addColumn<bool>("confirm");
    QTest::newRow("confirmations on") << true;
    QTest::newRow("confirmations off") << false;
}

void tst_FirmwareWorkflows::downloadSavesTheGripsProgram()
{
    QFETCH(bool, confirm);
    TestLink link;
    setConfirmations(confirm);
    fwtest::SimGrip sim(QStringLiteral("firmware=2.0.20,boot=1.2.1,protocol=1.1.2,hardware=2.1.3"));
    sim.attach(link.port);
    const QByteArray memory = sim.grip->state().memory;
    const QString path = m_dir.filePath(QStringLiteral("fetched.tvf"));

    QCOMPARE(mFirmwareWorkflows::DownloadFirmware(path), FirmwareResult::Succeeded);

    FirmwareFile saved;
    mFirmware::LoadFirmwareFile(saved, path);
    QCOMPARE(saved.Firmware, QStringLiteral(" 2.0.20"));
    QCOMPARE(saved.Boot, QStringLiteral("     1.2.1"));
    QCOMPARE(saved.Protocol, QStringLiteral(" 1.1.2"));
    QCOMPARE(saved.Hardware, QStringLiteral(" 2.1.3"));
    QCOMPARE(saved.Segments.size(), 252);
    for (const HexLine& line : saved.Segments) {
        const int address = line.AddrHi * 256 + line.AddrLo;
        for (int i = 0; i < 16; ++i)
            QCOMPARE(line.Data[i], quint8(memory[address + i]));
    }
    QCOMPARE(codes(link.port.frames),
             QStringLiteral("13 11 13 81 13 ") + repeated(QStringLiteral("85"), 252) + QStringLiteral(" 13 13 83"));
    QVERIFY(!sim.grip->state().bootMode);
    QCOMPARE(link.ui.progressMaxima, QList<int>{252});
    QCOMPARE(link.ui.progressEnds, 1);
    if (confirm) {
        QCOMPARE(link.ui.messages.size(), 1);
        QCOMPARE(link.ui.messages[0].text, QStringLiteral("Firmware was fetched."));
        QCOMPARE(link.ui.messages[0].title, QStringLiteral("Confirmation"));
    } else {
        QVERIFY(link.ui.messages.isEmpty());
    }
    QCOMPARE(mMain::MousePointerDepth(), 0);
}

void tst_FirmwareWorkflows::downloadAsksForTheFile()
{
    TestLink link;
    fwtest::SimGrip sim(QStringLiteral("firmware=4.0.0,bootmode=1"));
    sim.attach(link.port);
    const QString path = m_dir.filePath(QStringLiteral("chosen.tvf"));
    link.ui.fileAnswers.enqueue(path);

    QCOMPARE(mFirmwareWorkflows::DownloadFirmware(QString()), FirmwareResult::Succeeded);
    QCOMPARE(link.ui.fileRequests.size(), 1);
    QVERIFY(QFile::exists(path));
    // Already in boot mode: no stop command, but the start at the end.
    QVERIFY(!codes(link.port.frames).contains(QStringLiteral("81")));
    QVERIFY(codes(link.port.frames).endsWith(QStringLiteral("13 83")));
}

void tst_FirmwareWorkflows::errorsNameTheStep_data()
{
    QTest::addColumn<bool>("upload");
    QTest::addColumn<QString>("options");
    QTest::addColumn<QString>("file"); // "%1": a fitting file in the test folder
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("procedure");
    QTest::addColumn<bool>("leftInBootMode");

    const QString fits = QStringLiteral("firmware=4.0.0,boot=1.2.0,hardware=2.1.0");
    QTest::newRow("upload: file missing")
        << true << fits << "%1/missing.tvf" << mErrCodes::RT_FILE_NOT_FOUND
        << "UploadFirmware - load firmware file (%1/missing.tvf)" << false;
    QTest::newRow("upload: boot-mode query unanswered")
        << true << fits + ",fault=silent@11" << "%1/upload.tvf" << mErrCodes::ERR_PROGRAM_CONTROL
        << "UploadFirmware - Check bootmode" << false;
    QTest::newRow("upload: stop unanswered")
        << true << fits + ",fault=silent@81" << "%1/upload.tvf" << mErrCodes::ERR_PROGRAM_CONTROL
        << "UploadFirmware - stop program for upload" << false;
    QTest::newRow("upload: block refused, grip was running")
        << true << fits + ",failblock=40*3" << "%1/upload.tvf" << mErrCodes::ERR_UL_FIRMWARE
        << "UploadFirmware - stop program for upload" << true;
    QTest::newRow("upload: block refused, grip was in boot mode")
        << true << fits + ",bootmode=1,failblock=40*3" << "%1/upload.tvf" << mErrCodes::ERR_UL_FIRMWARE
        << "UploadFirmware - Check bootmode" << true;
    QTest::newRow("download: boot-mode query unanswered")
        << false << fits + ",fault=silent@11" << "%1/out.tvf" << mErrCodes::ERR_PROGRAM_CONTROL
        << "mnuDLFirmware_Click - Check bootmode" << false;
    QTest::newRow("download: stop unanswered")
        << false << fits + ",fault=silent@81" << "%1/out.tvf" << mErrCodes::ERR_PROGRAM_CONTROL
        << "mnuDLFirmware_Click - stop program for download" << false;
    QTest::newRow("download: block refused")
        << false << fits + ",failblock=FF0*3" << "%1/out.tvf" << mErrCodes::ERR_DL_FIRMWARE
        << "mnuDLFirmware_Click - stop program for download" << true;
    QTest::newRow("download: folder missing")
        << false << fits << "%1/no/such/out.tvf" << mErrCodes::RT_FILE_ACCESS
        << "mnuDLFirmware_Click - stop program for download" << true;
}

void tst_FirmwareWorkflows::errorsNameTheStep()
{
    QFETCH(bool, upload);
    QFETCH(QString, options);
    QFETCH(QString, file);
    QFETCH(int, number);
    QFETCH(QString, procedure);
    QFETCH(bool, leftInBootMode);
    TestLink link;
    fwtest::SimGrip sim(options);
    sim.attach(link.port);
    writeFile(smallImage());
    file = file.arg(m_dir.path());
    procedure = procedure.arg(m_dir.path());

    try {
        upload ? mFirmwareWorkflows::UploadFirmware(file) : mFirmwareWorkflows::DownloadFirmware(file);
        QFAIL("the workflow ended without an error");
    } catch (const MarloError& e) {
        QCOMPARE(e.Number(), number);
        QCOMPARE(e.Trail().last().module, QStringLiteral("fTolvaneMan"));
        QCOMPARE(e.Trail().last().revision, QStringLiteral("$Revision: 1 $"));
        QCOMPARE(e.Trail().last().procedure, procedure);
    }
    QCOMPARE(sim.grip->state().bootMode, leftInBootMode);
    QCOMPARE(link.ui.progressEnds, link.ui.progressMaxima.size());
    QVERIFY(link.ui.messages.isEmpty());
    QVERIFY(link.ui.errors.isEmpty()); // passed on, not shown: the caller reports it
    QCOMPARE(mMain::MousePointerDepth(), 0);
}

QTEST_GUILESS_MAIN(tst_FirmwareWorkflows)
#include "tst_firmwareworkflows.moc"
