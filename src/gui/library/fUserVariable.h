#pragma once
// The small dialog in which one user variable's name and value are typed; it remembers whether
// it was closed with OK.
#include <QDialog>

class QLineEdit;
class QPushButton;

class fUserVariable : public QDialog {
    Q_OBJECT
public:
    static inline const QString kForm = QStringLiteral("fUserVariable");
    static inline const QString kRevision = QStringLiteral("$Revision: 1 $");

    explicit fUserVariable(QWidget* parent = nullptr);

    QString VarName() const;
    void setVarName(const QString& value);
    QString Value() const;
    void setValue(const QString& value);
    // True when the dialog was closed with OK.
    bool OK() const { return m_ok; }

public slots:
    void cmdOK_Click();
    void cmdCancel_Click();

private:
    QLineEdit* txtVarName = nullptr;
    QLineEdit* txtValue = nullptr;
    QPushButton* cmdOK = nullptr;
    QPushButton* cmdCancel = nullptr;
    bool m_ok = false;
};
