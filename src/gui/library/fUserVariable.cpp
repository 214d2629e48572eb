#include "gui/library/fUserVariable.h"

#include "gui/common/mLabels.h"
#include "shell/mMain.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

fUserVariable::fUserVariable(QWidget* parent) : QDialog(parent)
{
    setObjectName(kForm);
    setWindowTitle(tr("User variable"));

    auto* lblVarName = new QLabel(tr("&Name:"), this);
    lblVarName->setObjectName(QStringLiteral("lblVarName"));
    txtVarName = new QLineEdit(this);
    txtVarName->setObjectName(QStringLiteral("txtVarName"));
    mLabels::LabelFor(lblVarName, txtVarName);
    auto* lblValue = new QLabel(tr("&Value:"), this);
    lblValue->setObjectName(QStringLiteral("lblValue"));
    txtValue = new QLineEdit(this);
    txtValue->setObjectName(QStringLiteral("txtValue"));
    mLabels::LabelFor(lblValue, txtValue);

    cmdOK = new QPushButton(tr("OK"), this);
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdOK->setDefault(true);
    cmdCancel = new QPushButton(tr("&Cancel"), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));

    auto* grid = new QGridLayout(this);
    grid->addWidget(lblVarName, 0, 0);
    grid->addWidget(txtVarName, 0, 1);
    grid->addWidget(lblValue, 1, 0);
    grid->addWidget(txtValue, 1, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);
    grid->addLayout(buttons, 2, 0, 1, 2);
    grid->setColumnStretch(1, 1);
    grid->setColumnMinimumWidth(1, 260);

    connect(cmdOK, &QPushButton::clicked, this, &fUserVariable::cmdOK_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &fUserVariable::cmdCancel_Click);
}

QString fUserVariable::VarName() const
{
    return txtVarName->text();
}

void fUserVariable::setVarName(const QString& value)
{
    txtVarName->setText(value);
}

QString fUserVariable::Value() const
{
    return txtValue->text();
}

void fUserVariable::setValue(const QString& value)
{
    txtValue->setText(value);
}

void fUserVariable::cmdOK_Click()
{
    ShowErrors(kForm, kRevision, QStringLiteral("cmdOK_Click"), [&] {
        m_ok = true;
        accept();
    });
}

void fUserVariable::cmdCancel_Click()
{
    ShowErrors(kForm, kRevision, QStringLiteral("cmdCancel_Click"), [&] {
        m_ok = false;
        reject();
    });
}
