#pragma once
// The binder between one user variable and its two text boxes: every edit of a box goes into
// the variable at once, then an event tells the owner.
#include <QObject>
#include <memory>

class cUserVar;
class QLineEdit;

class cifUserVar : public QObject {
    Q_OBJECT
public:
    static inline const QString kClass = QStringLiteral("cifUserVar");
    static inline const QString kRevision = QStringLiteral("$Revision: 1 $");

    // Either box may be absent.
    cifUserVar(QLineEdit* txtsName, QLineEdit* txtsValue, QObject* parent = nullptr);

    const std::shared_ptr<cUserVar>& UserVar() const { return m_variable; }
    // Binds a variable (or none) and fills the boxes from it.
    void setUserVar(const std::shared_ptr<cUserVar>& variable);

signals:
    void txtsNameChange();
    void txtsValueChange();

private:
    QLineEdit* m_txtsName;
    QLineEdit* m_txtsValue;
    std::shared_ptr<cUserVar> m_variable;
};
