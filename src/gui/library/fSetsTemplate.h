#pragma once
// The property editor of one setting: "Basic information" (name, date, the timing values and
// the rate of fire) and "User variables", each page made when its tab is chosen. Every edit goes
// into the record as it is typed; OK and Cancel both only close the editor.
#include <QDialog>
#include <memory>

class cSetsTemplate;
class QFrame;
class QPushButton;
class QTabBar;
class QVBoxLayout;

class fSetsTemplate : public QDialog {
    Q_OBJECT
public:
    static inline const QString kForm = QStringLiteral("fSetsTemplate");
    static inline const QString kRevision = QStringLiteral("$Revision: 1 $");

    explicit fSetsTemplate(QWidget* parent = nullptr);

    // Shows the record, captioned "Settings #" and its number, on the Basic page.
    void Open(const std::shared_ptr<cSetsTemplate>& record, const QString& number);

    const std::shared_ptr<cSetsTemplate>& Setting() const { return m_record; }
    // The page on show (ucSetsTemplateBasic or ucUserVariables), or none.
    QWidget* Page() const { return m_page; }

public slots:
    void tbsSettings_Click();
    void cmdOK_Click();
    void cmdCancel_Click();

private:
    // Replaces the page by a new one for the selected tab, bound to the record.
    void ShowPage();

    std::shared_ptr<cSetsTemplate> m_record;
    QTabBar* tbsSettings = nullptr;
    QFrame* m_pageArea = nullptr;
    QVBoxLayout* m_pageLayout = nullptr;
    QWidget* m_page = nullptr;
    QPushButton* cmdOK = nullptr;
    QPushButton* cmdCancel = nullptr;
};
