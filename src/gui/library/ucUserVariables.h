#pragma once
// The property editor's page of user variables: the setting's name/value pairs in a list, with
// Add, Edit and Remove as buttons and in a pop-up menu. Changes go into the record at once and
// reach the library file when the library is saved.
#include <QWidget>
#include <memory>

class cSetsTemplate;
class cUserVar;
class QAction;
class QMenu;
class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;

class ucUserVariables : public QWidget {
    Q_OBJECT
public:
    static inline const QString kForm = QStringLiteral("ucUserVariables");
    static inline const QString kRevision = QStringLiteral("$Revision: 1 $");

    explicit ucUserVariables(QWidget* parent = nullptr);

    // Binds a record and lists its variables.
    void setSetting(const std::shared_ptr<cSetsTemplate>& record);
    const std::shared_ptr<cSetsTemplate>& Setting() const { return m_record; }

    // Lists the record's variables again.
    void Fill();
    QTreeWidgetItem* SelectedRow() const;

public slots:
    void cmdAdd_Click();
    void cmdEdit_Click();
    void cmdRemove_Click();
    void mnuAdd_Click();
    void mnuEdit_Click();
    void mnuRemove_Click();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void AddVariable();
    void EditVariable(QTreeWidgetItem* row);
    void RemoveVariable(QTreeWidgetItem* row);
    std::shared_ptr<cUserVar> variableOf(const QTreeWidgetItem* row) const;
    void showRow(QTreeWidgetItem* row, const cUserVar& variable);

    std::shared_ptr<cSetsTemplate> m_record;
    QTreeWidget* lvwUserVariables = nullptr;
    QPushButton* cmdAdd = nullptr;
    QPushButton* cmdEdit = nullptr;
    QPushButton* cmdRemove = nullptr;
    QMenu* mnuPopup = nullptr;
    QAction* mnuAdd = nullptr;
    QAction* mnuEdit = nullptr;
    QAction* mnuRemove = nullptr;
};
