#include "gui/grip/fBuildInfo.h"

#include "grip/cGunInfo.h"
#include "shell/mMain.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

// The boxes top to bottom, as the form lists them, with the record's text that fills each.
struct BuildRow {
    const char* box;
    const char* label;
    const char* caption;
    QString (*value)(const cGunInfo&);
};

const BuildRow kRows[] = {
    {"txtSerialNo", "lblSerialNo", QT_TRANSLATE_NOOP("fBuildInfo", "Serial No.:"), [](const cGunInfo& g) { return g.Serial(); }},
    {"txtFirmwareBuild", "lblFirmwareBuild", QT_TRANSLATE_NOOP("fBuildInfo", "Firmware Build:"), [](const cGunInfo& g) { return g.FirmwareBuild(); }},
    {"txtBootCodeBuild", "lblBootCodeBuild", QT_TRANSLATE_NOOP("fBuildInfo", "Boot Code Build:"), [](const cGunInfo& g) { return g.BootBuild(); }},
    {"txtProtocolBuild", "lblProtocolBuild", QT_TRANSLATE_NOOP("fBuildInfo", "Protocol Build:"), [](const cGunInfo& g) { return g.ProtocolBuild(); }},
    {"txtHardwareBuild", "lblHardwareBuild", QT_TRANSLATE_NOOP("fBuildInfo", "Hardware Build:"), [](const cGunInfo& g) { return g.HardwareBuild(); }},
};

} // namespace

fBuildInfo::fBuildInfo(const cGunInfo& gunInfo, QWidget* parent) : QDialog(parent), m_gunInfo(gunInfo)
{
    setObjectName(kForm);
    setWindowTitle(tr("Gun Build Info"));
    auto* form = new QFormLayout;
    QLineEdit** boxes[] = {&txtSerialNo, &txtFirmwareBuild, &txtBootCodeBuild, &txtProtocolBuild, &txtHardwareBuild};
    for (int i = 0; i < 5; ++i) {
        const BuildRow& row = kRows[i];
        auto* box = new QLineEdit(this);
        box->setObjectName(QLatin1String(row.box));
        box->setReadOnly(true);
        box->setMinimumWidth(box->fontMetrics().horizontalAdvance(QString(16, QLatin1Char('0'))));
        auto* label = new QLabel(tr(row.caption), this);
        label->setObjectName(QLatin1String(row.label));
        label->setBuddy(box);
        form->addRow(label, box);
        *boxes[i] = box;
    }
    auto* buttons = new QDialogButtonBox(this);
    QPushButton* cmdOK = buttons->addButton(QDialogButtonBox::Ok);
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdOK->setDefault(true);
    connect(cmdOK, &QPushButton::clicked, this, &fBuildInfo::cmdOK_Click);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(buttons);
    Form_Load();
}

void fBuildInfo::Form_Load()
{
    ShowErrors(kForm, kRevision, QStringLiteral("Form_Load"), [&] {
        const cGunInfo& info = m_gunInfo;
        QLineEdit* boxes[] = {txtSerialNo, txtFirmwareBuild, txtBootCodeBuild, txtProtocolBuild, txtHardwareBuild};
        for (int i = 0; i < 5; ++i)
            boxes[i]->setText(kRows[i].value(info));
    });
}

void fBuildInfo::cmdOK_Click()
{
    accept();
}
