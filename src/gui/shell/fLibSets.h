#pragma once
// The library browser: every setting of the library in a list, with the built-in factory
// default first. A setting is used (loaded into the main window's timing editor), deleted
// (marked, and dropped from the file at the next library save) or opened in the property editor.
// The browser keeps no records of its own and never reads the library file: the list is made
// from the library held in memory.
#include <QCollator>
#include <QDialog>
#include <QPointer>
#include <memory>

class cApplication;
class cSetsTemplate;
class fTolvaneMan;
class QAction;
class QMenu;
class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;

class fLibSets : public QDialog {
    Q_OBJECT
public:
    static inline const QString kForm = QStringLiteral("fLibSets");
    static inline const QString kRevision = QStringLiteral("$Revision: 1 $");
    // The tag of the factory default row.
    static inline const QString kFactoryDefaultTag = QStringLiteral("FactoryDefault");

    // The list's columns, in order.
    enum Column { ColKey, ColNumber, ColName, ColDate, ColROF, ColST, ColDT, ColCTO, ColLT, ColCTC, ColumnCount };
    // A column's header text, its documented width in twips and its alignment.
    struct ColumnSpec {
        const char* header;
        int twips;
        bool rightAligned;
    };

    // Builds the window and loads it (Form_Load) from the application's library: owner receives
    // the setting the user chooses (none: using a setting only closes the browser). The caller
    // keeps the application object.
    explicit fLibSets(cApplication& application, fTolvaneMan* owner = nullptr);

    // The built-in setting: defaults, named "Factory Default", dated 1 August 2001; made afresh
    // each time and never part of the library.
    static std::shared_ptr<cSetsTemplate> MakeFactoryDefault();

    // Selects the row of the setting with this ID; an unknown or empty key changes nothing.
    void ActivateItem(const QString& key);
    // Columns 2 to 9 of a row from a record.
    void InitListitem(QTreeWidgetItem* row, cSetsTemplate& record);
    // The three actions on a row; each does nothing for no row.
    void OpenSetting(QTreeWidgetItem* row);
    void ShowSettings(QTreeWidgetItem* row);
    void DelSetting(QTreeWidgetItem* row);

    // The selected row, or none.
    QTreeWidgetItem* SelectedRow() const;
    static bool IsFactoryDefault(const QTreeWidgetItem* row);
    static QString RowKey(const QTreeWidgetItem* row);

public slots:
    void cmdUse_Click();
    void cmdDelete_Click();
    void cmdProperties_Click();
    void cmdClose_Click();
    void mnuUse_Click();
    void mnuDelete_Click();
    void mnuProperties_Click();
    void lvwLib_ColumnClick(int column);

public:
    void done(int result) override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void createControls();
    void createPopup();
    void connectHandlers();
    void Form_Load();
    void Form_Unload();
    bool Form_KeyDown(int key, Qt::KeyboardModifiers modifiers);
    void lvwLib_MouseDown(const QPoint& position);
    void lvwLib_MouseUp(Qt::MouseButton button, const QPoint& globalPosition);
    void lvwLib_DblClick();
    void showPopup(const QPoint& globalPosition);
    // The library record of a row (its key must be in the library).
    std::shared_ptr<cSetsTemplate> recordOf(const QTreeWidgetItem* row) const;
    QTreeWidgetItem* newRow(const QString& key, const QString& number);
    void fitFixedColumns();

    cApplication& m_application;
    QPointer<fTolvaneMan> m_owner;
    QTreeWidget* lvwLib = nullptr;
    QPushButton* cmdUse = nullptr;
    QPushButton* cmdDelete = nullptr;
    QPushButton* cmdProperties = nullptr;
    QPushButton* cmdClose = nullptr;
    QMenu* mnuPopup = nullptr;
    QAction* mnuUse = nullptr;
    QAction* mnuDelete = nullptr;
    QAction* mnuProperties = nullptr;

    // The row under the pointer where a mouse button last went down.
    QTreeWidgetItem* m_downRow = nullptr;
    // Sorting: by which column and which way, once the user sorted.
    bool m_sorted = false;
    int m_sortColumn = 0;
    Qt::SortOrder m_sortOrder = Qt::AscendingOrder;
    // The order of names: the user's language, whatever the case.
    QCollator m_nameOrder;
    bool m_unloaded = false;
};
