// The two central routines, the grip's error record, the nested wait pointer and the progress
// display. (The error trail: tst_gripCommands; a step named in it: tst_firmwareworkflows.)
#include "ScriptedUi.h"

#include "base/MarloError.h"
#include "base/mErrCodes.h"
#include "link/cError.h"
#include "shell/mMain.h"

#include <QtTest>

namespace {
void inner() { RaiseError(10213, QString(), mErrCodes::MSG_DL_TIMING); }
void middle() { PassErrors(QStringLiteral("cSettings"), QStringLiteral("$Revision: 1 $"), QStringLiteral("Download"), [] { inner(); }); }
} // namespace

class tst_errorsAndServices : public QObject {
    Q_OBJECT
private slots:
    void init()
    {
        ui = ScriptedUi();
        mMain::SetUserInterface(&ui);
        mMain::ResetMousePointer();
        ui.busyPointer.clear();
    }
    void cleanup() { mMain::SetUserInterface(nullptr); }

    void gripErrorRecord_data()
    {
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("description");
        QTest::newRow("none") << 0 << "";
        QTest::newRow("checksum") << 1 << "Checksum error.";
        QTest::newRow("other") << 2 << "Unknown errorcode.";
    }
    void gripErrorRecord()
    {
        QFETCH(int, code);
        QFETCH(QString, description);
        cError record;
        record.setErrorCode(code);
        QCOMPARE(record.Description(), description);
        record.RecordNegativeAnswer(QByteArray::fromHex("5007A9")); // the error byte does not matter
        QCOMPARE(record.ErrorCode(), 1);
        QCOMPARE(record.AnswerByte(), quint8(0x07)); // but it is kept, to be shown
        record.Clear();
        QCOMPARE(record.ErrorCode(), 0);
    }
    void foreignExceptionsBecomeErrors()
    {
        const bool ok = ShowErrors(QStringLiteral("m"), QStringLiteral("r"), QStringLiteral("p"), [] { throw std::runtime_error("boom"); });
        QVERIFY(!ok);
        QCOMPARE(ui.errors.size(), 1);
        QCOMPARE(ui.errors.first().Description(), QStringLiteral("boom"));
    }
    // The wait pointer nests: only the outermost restore takes it away, or an error shown.
    void waitPointerNests()
    {
        mMain::WaitMousePointer();
        mMain::WaitMousePointer();
        mMain::RestoreMousePointer();
        QCOMPARE(ui.busyPointer, (QList<bool>{true, true}));
        mMain::RestoreMousePointer();
        QCOMPARE(ui.busyPointer, (QList<bool>{true, true, false}));
        mMain::WaitMousePointer();
        mMain::WaitMousePointer();
        const bool ok = ShowErrors(QStringLiteral("fTolvaneMan"), QStringLiteral("$Revision: 2 $"), QStringLiteral("mnuDLTiming_Click"), [] { middle(); });
        QVERIFY(!ok);
        QCOMPARE(mMain::MousePointerDepth(), 0);
        QCOMPARE(ui.busyPointer.last(), false);
        QCOMPARE(ui.errors.size(), 1);
        QCOMPARE(ui.errors.first().Trail().last().procedure, QStringLiteral("mnuDLTiming_Click"));
        QVERIFY(ShowErrors(QStringLiteral("m"), QStringLiteral("r"), QStringLiteral("p"), [] {}));
        QCOMPARE(ui.errors.size(), 1);
    }
    // While the program shows no window, neither the wait pointer nor the progress reaches it.
    void pointerAndProgressOnlyWhenVisible()
    {
        ui.visible = false;
        mMain::WaitMousePointer();
        mMain::RestoreMousePointer();
        QVERIFY(ui.busyPointer.isEmpty());
        QCOMPARE(mMain::MousePointerDepth(), 0);
        mMain::StartProgress(10);
        QVERIFY(ui.progressMaxima.isEmpty());
        ui.visible = true;
        mMain::StartProgress(264);
        QCOMPARE(ui.progressMaxima, QList<int>{264});
        mMain::EndProgress();
        QCOMPARE(ui.progressEnds, 1);
    }

private:
    ScriptedUi ui;
};

QTEST_GUILESS_MAIN(tst_errorsAndServices)
#include "tst_errorsAndServices.moc"
