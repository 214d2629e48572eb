// The main window's way into the settings library: the library browser, the property editor of
// the active setting, the grip history and the options dialog.
#include "gui/shell/fTolvaneMan.h"

#include "gui/grip/fGripHistory.h"
#include "gui/library/fSetsTemplate.h"
#include "gui/shell/fLibSets.h"
#include "gui/shell/fOptions.h"
#include "library/cSetsTemplate.h"
#include "library/mTemplateRecords.h"
#include "shell/cApplication.h"
#include "shell/mMain.h"


void fTolvaneMan::ShowLibraryBrowser()
{
    PassErrors(kForm, kRevision, QStringLiteral("ShowLibraryBrowser"), [&] {
        fLibSets browser(m_application, this);
        const auto active = ActiveSetting();
        browser.ActivateItem(active ? active->ID() : QString());
        browser.exec();
        // The active setting's name may have changed in the browser's property editor.
        SetCaption();
    });
}

void fTolvaneMan::ShowPropertyEditor()
{
    PassErrors(kForm, kRevision, QStringLiteral("ShowPropertyEditor"), [&] {
        const auto active = ActiveSetting();
        if (!active)
            return;
        // The number the browser shows for the setting: its place among the library's settings.
        QString number;
        int running = 0;
        for (const auto& record : m_application.colSetsTemplate()) {
            if (record->IsDeleted())
                continue;
            ++running;
            if (record == active) {
                number = QString::number(running);
                break;
            }
        }
        fSetsTemplate editor(this);
        editor.Open(active, number);
        editor.exec();
        SetCaption();
    });
}

void fTolvaneMan::mnuGripHistory_Click()
{
    Handle(QStringLiteral("mnuGripHistory_Click"), [&] { ShowGripHistory(); });
}

void fTolvaneMan::ShowGripHistory()
{
    PassErrors(kForm, kRevision, QStringLiteral("ShowGripHistory"), [&] {
        fGripHistory history(m_session, m_application.RegistrySettings(), this);
        if (history.exec() != QDialog::Accepted || !history.ChosenEntry())
            return;
        const cGripHistory::tEntry& entry = *history.ChosenEntry();
        // A new template each time, as the factory default of the library browser makes one.
        const auto setting = m_application.colSetsTemplate().AddOrThrow();
        // The name goes into the library, which is never translated.
        setting->setsName(QStringLiteral("Grip %1 on %2").arg(entry.serial, entry.time.toString(QStringLiteral("yyyy-MM-dd HH:mm"))));
        mTemplateRecords::HistoryToTemplate(entry.values, m_session, *setting);
        ChangeTemplate(setting, true);
    });
}

void fTolvaneMan::mnuOptions_Click()
{
    Handle(QStringLiteral("mnuOptions_Click"), [&] {
        fOptions options(m_session.GunInfo(), m_application.RegistrySettings(), this);
        options.exec();
    });
}
