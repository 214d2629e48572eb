#include "gui/widgets/fAbout.h"

#include "shell/mMain.h"

#include <QApplication>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QGuiApplication>
#include <QLabel>
#include <QPushButton>
#include <QSysInfo>
#include <QVBoxLayout>
#include <QtGlobal>

QString fAbout::SystemInformation()
{
    return QStringList{
        QStringLiteral("Marlo %1").arg(mMain::ProgramVersion()),
        tr("Qt %1 (built with %2)").arg(QString::fromLatin1(qVersion()), QStringLiteral(QT_VERSION_STR)),
        tr("%1, kernel %2 %3, %4").arg(QSysInfo::prettyProductName(), QSysInfo::kernelType(), QSysInfo::kernelVersion(),
                                       QSysInfo::currentCpuArchitecture()),
        tr("Display: %1").arg(QGuiApplication::platformName()),
    }.join(QLatin1Char('\n'));
}

fAbout::fAbout(QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("fAbout"));
    setWindowTitle(tr("About Tolvane Manager"));

    auto* title = new QLabel(QStringLiteral("Marlo"), this);
    title->setObjectName(QStringLiteral("lblTitle"));
    QFont big = title->font();
    big.setPointSizeF(big.pointSizeF() * 2.0);
    big.setBold(true);
    title->setFont(big);
    auto* version = new QLabel(tr("Version %1").arg(mMain::ProgramVersion()), this);
    version->setObjectName(QStringLiteral("lblVersion"));
    auto* description = new QLabel(
        tr("Marlo configures a Tolvane grip over a serial port: its timing settings, options, "
           "ramping and game timer, its counters and battery, and its firmware. It keeps your "
           "settings as named templates in a library."),
        this);
    description->setObjectName(QStringLiteral("lblDescription"));
    description->setWordWrap(true);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
    buttons->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("cmdOK"));
    QPushButton* copy = buttons->addButton(tr("&Copy system information"), QDialogButtonBox::ActionRole);
    copy->setObjectName(QStringLiteral("cmdSysInfo"));
    copy->setToolTip(tr("Copies the versions of Marlo, Qt and the system, for a support request"));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(copy, &QPushButton::clicked, this, [copy] {
        QApplication::clipboard()->setText(SystemInformation());
        copy->setText(tr("Copied"));
    });

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(title);
    layout->addWidget(version);
    layout->addSpacing(8);
    layout->addWidget(description);
    layout->addStretch(1);
    layout->addWidget(buttons);
    resize(420, 230);
}
