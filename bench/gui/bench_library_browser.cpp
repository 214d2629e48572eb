// The library browser with 1,000 templates, offscreen: opening it (making the window, listing
// every template, selecting the active one and painting it once) and sorting it by each column,
// both ways. The library is loaded before the clock starts, and the library file is made
// unreachable first: the browser works from the library in memory only.
#include "gui/shell/fLibSets.h"
#include "library/mDatabase.h"
#include "shell/cApplication.h"
#include "shell/mMain.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QHeaderView>
#include <QTemporaryDir>
#include <QTreeWidget>
#include <algorithm>
#include <cstdio>

namespace {

constexpr int kTemplates = 1000;
constexpr int kRounds = 5;
constexpr double kOpenGoalMs = 300.0;
constexpr double kSortGoalMs = 100.0;

double ms(const QElapsedTimer& timer)
{
    return timer.nsecsElapsed() / 1e6;
}

void settle()
{
    QApplication::processEvents();
    QApplication::processEvents();
}

} // namespace

int main(int argc, char** argv)
{
    QTemporaryDir home;
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("XDG_CONFIG_HOME", home.filePath(QStringLiteral("config")).toLocal8Bit());
    qputenv("MARLO_HOME", home.filePath(QStringLiteral("prog")).toLocal8Bit());
    QApplication app(argc, argv);
    QDir().mkpath(mMain::ProgramFolder());
    const QString templ = QDir(qEnvironmentVariable("MARLO_TEMPLATE_DIR", QCoreApplication::applicationDirPath()))
                              .filePath(mDatabase::kTemplateFileName);
    QFile::copy(templ, mMain::ProgramFile(mDatabase::kTemplateFileName));
    cRegistrySettings prefs;
    auto application = std::make_unique<cApplication>(prefs);
    if (!mMain::CheckForDB(prefs)) {
        std::fprintf(stderr, "no library template at %s\n", qPrintable(templ));
        return 1;
    }

    // 1,000 templates with varied texts and numbers, written to the file and read back.
    for (int n = 0; n < kTemplates; ++n) {
        const auto record = application->colSetsTemplate().Add();
        record->setsName(QStringLiteral("Template %1 \"%2\"").arg(n).arg(QChar(0x3b1 + n % 20)));
        record->setdtDate(QDateTime(QDate(2001, 8, 1).addDays(n * 7), QTime(12, 0)));
        record->setlShotTime(n % 20 + 1);
        record->setlDwellTime(5 + n % 30);
        record->setlCycleTimeOpen(20 + n % 40);
        record->setlLoadTime(30 + n % 25);
        record->setlCycleTimeClose(15 + n % 35);
    }
    {
        QSqlDatabase connection;
        application->colSetsTemplate().Save(connection);
    }
    application = std::make_unique<cApplication>(prefs); // as the next start
    QElapsedTimer load;
    load.start();
    auto& library = application->colSetsTemplate();
    const double loadMs = ms(load);
    const QString active = library.Item(kTemplates / 2)->ID();
    mDatabase::DisconnectDB();
    mDatabase::SetPathOverride(home.filePath(QStringLiteral("unreachable/Marlo.mdb")));

    QList<double> opens;
    double worstSort = 0.0;
    int worstColumn = 0;
    int rows = 0;
    for (int round = 0; round < kRounds; ++round) {
        QElapsedTimer timer;
        timer.start();
        fLibSets browser(*application);
        browser.ActivateItem(active);
        browser.show();
        settle();
        opens << ms(timer);
        auto* list = browser.findChild<QTreeWidget*>(QStringLiteral("lvwLib"));
        rows = list->topLevelItemCount();
        for (int column = fLibSets::ColNumber; column < fLibSets::ColumnCount; ++column) {
            for (int way = 0; way < 2; ++way) { // ascending, then flipped
                QElapsedTimer sort;
                sort.start();
                browser.lvwLib_ColumnClick(column);
                settle();
                if (ms(sort) > worstSort) {
                    worstSort = ms(sort);
                    worstColumn = column;
                }
            }
        }
        browser.reject();
    }
    const double cold = opens.first();
    const double warm = *std::min_element(opens.begin() + 1, opens.end());
    const double worstOpen = *std::max_element(opens.begin(), opens.end());
    std::printf("library load before the browser (not part of it): %.1f ms for %d templates\n", loadMs, kTemplates);
    std::printf("browser open with %d rows: first %.1f ms, best %.1f ms, worst %.1f ms (goal <= %.0f ms) %s\n", rows, cold,
                warm, worstOpen, kOpenGoalMs, worstOpen <= kOpenGoalMs ? "ok" : "SLOW");
    std::printf("browser sort by any column, both ways: worst %.1f ms (column %d) (goal <= %.0f ms) %s\n", worstSort,
                worstColumn, kSortGoalMs, worstSort <= kSortGoalMs ? "ok" : "SLOW");
    return 0;
}
