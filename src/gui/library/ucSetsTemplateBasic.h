#pragma once
// The property editor's basic page: the setting's name and date, which can be changed here, and
// its five timings and rate of fire, shown only.
#include <QWidget>
#include <memory>

class cifSetsTemplate;
class cSetsTemplate;
class QDateEdit;
class QLabel;
class QLineEdit;

class ucSetsTemplateBasic : public QWidget {
    Q_OBJECT
public:
    static inline const QString kForm = QStringLiteral("ucSetsTemplateBasic");
    static inline const QString kRevision = QStringLiteral("$Revision: 1 $");

    explicit ucSetsTemplateBasic(QWidget* parent = nullptr);

    // Binds a record: the controls show it and every edit goes into it.
    void setSetting(const std::shared_ptr<cSetsTemplate>& record);
    std::shared_ptr<cSetsTemplate> Setting() const;

private:
    QLineEdit* txtName = nullptr;
    QDateEdit* dtpDate = nullptr;
    QLabel* lblST = nullptr;
    QLabel* lblDT = nullptr;
    QLabel* lblCTO = nullptr;
    QLabel* lblLT = nullptr;
    QLabel* lblCTC = nullptr;
    QLabel* lblROF = nullptr;
    cifSetsTemplate* m_binder = nullptr;
};
