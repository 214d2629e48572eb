#include "gui/library/cifUserVar.h"

#include "library/cUserVar.h"
#include "shell/mMain.h"

#include <QLineEdit>

cifUserVar::cifUserVar(QLineEdit* txtsName, QLineEdit* txtsValue, QObject* parent)
    : QObject(parent), m_txtsName(txtsName), m_txtsValue(txtsValue)
{
    if (m_txtsName) {
        connect(m_txtsName, &QLineEdit::textChanged, this, [this](const QString& text) {
            ShowErrors(kClass, kRevision, QStringLiteral("txtsName_Change"), [&] {
                if (!m_variable)
                    return;
                m_variable->setsName(text);
                emit txtsNameChange();
            });
        });
    }
    if (m_txtsValue) {
        connect(m_txtsValue, &QLineEdit::textChanged, this, [this](const QString& text) {
            ShowErrors(kClass, kRevision, QStringLiteral("txtsValue_Change"), [&] {
                if (!m_variable)
                    return;
                m_variable->setsValue(text);
                emit txtsValueChange();
            });
        });
    }
}

void cifUserVar::setUserVar(const std::shared_ptr<cUserVar>& variable)
{
    PassErrors(kClass, kRevision, QStringLiteral("UserVar"), [&] {
        m_variable = variable;
        if (!m_variable)
            return;
        if (m_txtsName)
            m_txtsName->setText(m_variable->sName());
        if (m_txtsValue)
            m_txtsValue->setText(m_variable->sValue());
    });
}
