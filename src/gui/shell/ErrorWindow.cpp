#include "gui/shell/ErrorWindow.h"

#include "base/MarloError.h"
#include "gui/common/mLabels.h"

#include <QApplication>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QtMath>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

namespace {

QString plain(const QString& text)
{
    return QString(text).replace(QLatin1String("\r\n"), QLatin1String("\n"));
}

// A text of the window, read as it stands; a caption, when given, is read beside it.
QLabel* textLabel(const QString& text, const QString& name, QWidget* parent, const QString& caption = QString())
{
    auto* label = mLabels::ValueLabel(parent, name, caption, text);
    label->setWordWrap(true);
    label->setTextFormat(Qt::PlainText);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    return label;
}

} // namespace

QString ErrorWindow::DetailsText(const MarloError& error, const QString& version, const QString& title)
{
    QStringList lines;
    lines << tr("Error number: %1").arg(error.Number());
    if (!error.Source().isEmpty())
        lines << tr("Source: %1").arg(error.Source());
    for (const ErrorFrame& frame : error.Trail())
        lines << tr("  in %1.%2 (%3)").arg(frame.module, frame.procedure, frame.revision);
    if (!version.isEmpty())
        lines << tr("%1 %2").arg(title.isEmpty() ? QStringLiteral("Marlo") : title, version);
    return lines.join(QLatin1Char('\n'));
}

ErrorWindow::ErrorWindow(const MarloError& error, const QStringList& whatToDo, const QString& version,
                         const QString& title, QWidget* parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("ErrorWindow"));
    setWindowTitle(title.isEmpty() ? QStringLiteral("Marlo") : title);

    auto* icon = new QLabel(this);
    const int size = style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, this);
    icon->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxCritical, nullptr, this).pixmap(size, size));
    icon->setAlignment(Qt::AlignTop);
    icon->setAccessibleName(tr("Error"));

    auto* message = textLabel(plain(error.ShownDescription()), QStringLiteral("lblMessage"), this);
    auto* number = textLabel(tr("Error %1").arg(error.Number()), QStringLiteral("lblNumber"), this);
    auto* text = new QVBoxLayout;
    text->addWidget(message);
    text->addWidget(number);
    if (!whatToDo.isEmpty()) {
        auto* help = textLabel(whatToDo.join(QLatin1Char('\n')), QStringLiteral("lblWhatToDo"), this, tr("What to do"));
        text->addSpacing(6);
        text->addWidget(help);
    }
    auto* top = new QHBoxLayout;
    top->addWidget(icon);
    top->addLayout(text, 1);

    const QString details = DetailsText(error, version, title);
    m_details = new QPlainTextEdit(details, this);
    m_details->setObjectName(QStringLiteral("txtDetails"));
    m_details->setAccessibleName(tr("Details"));
    m_details->setReadOnly(true);
    m_details->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_details->setVisible(false);
    // Room for ten lines of the trail at least; the window grows when they show and can be
    // made larger still.
    m_details->setMinimumHeight(m_details->fontMetrics().lineSpacing() * 10 + 2 * m_details->frameWidth() +
                                qCeil(2 * m_details->document()->documentMargin()));

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
    m_detailsButton = buttons->addButton(tr("&Details"), QDialogButtonBox::ActionRole);
    m_detailsButton->setObjectName(QStringLiteral("cmdDetails"));
    m_detailsButton->setCheckable(true);
    QPushButton* copy = buttons->addButton(tr("&Copy"), QDialogButtonBox::ActionRole);
    copy->setObjectName(QStringLiteral("cmdCopy"));
    copy->setToolTip(tr("Copy the message and its details, for a support request"));
    buttons->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("cmdOK"));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(m_detailsButton, &QPushButton::toggled, this, [this](bool shown) {
        m_details->setVisible(shown);
        adjustSize();
    });
    connect(copy, &QPushButton::clicked, this, &ErrorWindow::copyToClipboard);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addWidget(m_details, 1);
    layout->addWidget(buttons);
    setSizeGripEnabled(true);
    setMinimumWidth(420);

    QStringList all{plain(error.ShownDescription()), tr("Error %1").arg(error.Number())};
    if (!whatToDo.isEmpty())
        all << QString() << whatToDo.join(QLatin1Char('\n'));
    all << QString() << details;
    m_fullText = all.join(QLatin1Char('\n'));
}

void ErrorWindow::copyToClipboard()
{
    QApplication::clipboard()->setText(m_fullText);
}
