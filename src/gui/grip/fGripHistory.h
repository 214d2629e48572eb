#pragma once
// "Grip history": what the grips held after every get and put of their settings, newest first,
// for the grip at hand or for every grip; the selected entry's values beside the list. "Use"
// closes the window with that entry chosen: the main window makes a new template of it. The
// window reads the history file when it opens and never asks the grip.
#include "grip/cGripHistory.h"

#include <QDialog>
#include <optional>

class cRegistrySettings;

class cGripSession;
class QComboBox;
class QLabel;
class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;

class fGripHistory : public QDialog {
    Q_OBJECT
public:
    static inline const QString kForm = QStringLiteral("fGripHistory");
    static inline const QString kRevision = QStringLiteral("$Revision: 1 $");

    // The list's columns, in order.
    enum Column { ColTime, ColSerial, ColFirmware, ColSummary, ColumnCount };
    // The choice of entries.
    enum Show { ShowThisGrip, ShowAllGrips };

    // The entries of the session's history; "This grip" is the grip of the session's gun
    // information (all grips are shown first when no grip has been read yet).
    // The window remembers its place in the given preferences.
    fGripHistory(cGripSession& session, cRegistrySettings& preferences, QWidget* parent = nullptr);

    // The entry "Use" chose; none until then.
    const std::optional<cGripHistory::tEntry>& ChosenEntry() const { return m_chosen; }
    // The selected entry, or none.
    const cGripHistory::tEntry* SelectedEntry() const;

public slots:
    void cboShow_Click();
    void lvwHistory_SelectionChanged();
    void cmdUse_Click();

public:
    void done(int result) override;

private:
    void createControls();
    void connectHandlers();
    void Form_Load();
    void Form_Unload();
    // Reads the entries for the choice and lists them.
    void ListEntries();
    void ShowValues(const cGripHistory::tEntry* entry);
    void SetStatus(const QString& text);

    cGripSession& m_session;
    cRegistrySettings& m_preferences;
    QList<cGripHistory::tEntry> m_entries; // as listed; each row keeps its index here
    std::optional<cGripHistory::tEntry> m_chosen;
    bool m_unloaded = false;

    QLabel* lblShow = nullptr;
    QComboBox* cboShow = nullptr;
    QTreeWidget* lvwHistory = nullptr;
    QTreeWidget* lvwValues = nullptr;
    QLabel* lblStatus = nullptr;
    QPushButton* cmdUse = nullptr;
    QPushButton* cmdClose = nullptr;
};
