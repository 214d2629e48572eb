#include "gui/library/ucSetsTemplateBasic.h"

#include "gui/common/mLabels.h"
#include "gui/library/cifSetsTemplate.h"
#include "library/cSetsTemplate.h"
#include "shell/mMain.h"

#include <QDateEdit>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>

namespace {

// The shown values: the value label's name, its caption and its unit.
struct ValueRow {
    QLabel* ucSetsTemplateBasic::*label;
    const char* name;
    const char* caption;
    const char* unit;
};

} // namespace

ucSetsTemplateBasic::ucSetsTemplateBasic(QWidget* parent) : QWidget(parent)
{
    setObjectName(kForm);
    auto* grid = new QGridLayout(this);

    auto* lblName = new QLabel(tr("&Name:"), this);
    lblName->setObjectName(QStringLiteral("lblName"));
    txtName = new QLineEdit(this);
    txtName->setObjectName(QStringLiteral("txtName"));
    mLabels::LabelFor(lblName, txtName);
    auto* lblDate = new QLabel(tr("&Date:"), this);
    lblDate->setObjectName(QStringLiteral("lblDate"));
    dtpDate = new QDateEdit(this);
    dtpDate->setObjectName(QStringLiteral("dtpDate"));
    dtpDate->setCalendarPopup(true);
    // The date as the library shows it: 01-Aug-2001.
    dtpDate->setLocale(QLocale::c());
    dtpDate->setDisplayFormat(QStringLiteral("dd-MMM-yyyy"));
    mLabels::LabelFor(lblDate, dtpDate);
    grid->addWidget(lblName, 0, 0);
    grid->addWidget(txtName, 0, 1, 1, 2);
    grid->addWidget(lblDate, 1, 0);
    grid->addWidget(dtpDate, 1, 1);
    grid->setRowMinimumHeight(2, 10);

    const ValueRow rows[] = {
        {&ucSetsTemplateBasic::lblST, "lblST", QT_TR_NOOP("Shot time:"), QT_TR_NOOP("ms")},
        {&ucSetsTemplateBasic::lblDT, "lblDT", QT_TR_NOOP("Dwell time:"), QT_TR_NOOP("ms")},
        {&ucSetsTemplateBasic::lblCTO, "lblCTO", QT_TR_NOOP("Cycle time open:"), QT_TR_NOOP("ms")},
        {&ucSetsTemplateBasic::lblLT, "lblLT", QT_TR_NOOP("Loading time max:"), QT_TR_NOOP("ms")},
        {&ucSetsTemplateBasic::lblCTC, "lblCTC", QT_TR_NOOP("Cycle time close:"), QT_TR_NOOP("ms")},
        {&ucSetsTemplateBasic::lblROF, "lblROF", QT_TR_NOOP("Rate of fire:"), QT_TR_NOOP("bps")},
    };
    int line = 3;
    for (const ValueRow& row : rows) {
        const QString name = QLatin1String(row.name);
        auto* caption = new QLabel(tr(row.caption), this);
        caption->setObjectName(name + QStringLiteral("txt"));
        auto* value = mLabels::ValueLabel(this, name, caption->text());
        value->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        value->setMinimumWidth(value->fontMetrics().horizontalAdvance(QStringLiteral("00000.0")));
        value->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
        auto* unit = new QLabel(tr(row.unit), this);
        unit->setObjectName(name + QStringLiteral("unit"));
        grid->addWidget(caption, line, 0);
        grid->addWidget(value, line, 1, Qt::AlignRight);
        grid->addWidget(unit, line, 2);
        this->*row.label = value;
        ++line;
    }
    grid->setColumnStretch(2, 1);
    grid->setRowStretch(line, 1);

    cifSetsTemplate::Controls controls;
    controls.txtsName = txtName;
    controls.dtpdtDate = dtpDate;
    controls.lblShotTime = lblST;
    controls.lblDwellTime = lblDT;
    controls.lblCycleTimeOpen = lblCTO;
    controls.lblLoadTime = lblLT;
    controls.lblCycleTimeClose = lblCTC;
    controls.lblROF = lblROF;
    m_binder = new cifSetsTemplate(controls, nullptr, this);
}

void ucSetsTemplateBasic::setSetting(const std::shared_ptr<cSetsTemplate>& record)
{
    PassErrors(kForm, kRevision, QStringLiteral("Setting"), [&] { m_binder->setSetsTemplate(record); });
}

std::shared_ptr<cSetsTemplate> ucSetsTemplateBasic::Setting() const
{
    return m_binder->SetsTemplate();
}
