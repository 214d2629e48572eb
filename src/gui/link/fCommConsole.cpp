#include "gui/link/fCommConsole.h"

#include "base/mErrCodes.h"
#include "shell/cApplication.h"
#include "shell/mMain.h"

#include <QCloseEvent>
#include <QFile>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTimer>
#include <QVBoxLayout>

namespace {

const QString kLineBreak = QStringLiteral("\r\n");

} // namespace

fCommConsole::fCommConsole(QWidget* parent) : QWidget(parent, Qt::Window)
{
    setObjectName(kForm);
    setWindowTitle(tr("Communication log"));

    txtLog = new QPlainTextEdit(this);
    txtLog->setObjectName(QStringLiteral("txtLog"));
    txtLog->setAccessibleName(tr("Communication log"));
    txtLog->setReadOnly(true);
    txtLog->setLineWrapMode(QPlainTextEdit::NoWrap);
    txtLog->setUndoRedoEnabled(false);
    txtLog->setMaximumBlockCount(kMaxLines);
    txtLog->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    txtLog->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);

    cmdClear = new QPushButton(tr("C&lear"), this);
    cmdClear->setObjectName(QStringLiteral("cmdClear"));
    cmdSaveAs = new QPushButton(tr("&Save as..."), this);
    cmdSaveAs->setObjectName(QStringLiteral("cmdSaveAs"));
    cmdClose = new QPushButton(tr("Close"), this);
    cmdClose->setObjectName(QStringLiteral("cmdClose"));

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(cmdClear);
    buttons->addWidget(cmdSaveAs);
    buttons->addStretch(1);
    buttons->addWidget(cmdClose);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(txtLog, 1);
    layout->addLayout(buttons);

    const int columns = txtLog->fontMetrics().horizontalAdvance(QString(100, QLatin1Char('0')));
    resize(columns + 60, 420);

    // The view follows the end until the user scrolls back to read, and again once the user
    // scrolls to the end.
    QScrollBar* bar = txtLog->verticalScrollBar();
    // Only the user's own scrolling counts (wheel, keys, the bar): new lines and resizing change
    // the range and the value on their own.
    connect(bar, &QScrollBar::actionTriggered, this, [this, bar] { m_following = bar->sliderPosition() >= bar->maximum(); });

    m_batch = new QTimer(this);
    m_batch->setSingleShot(true);
    m_batch->setInterval(kBatchMs);
    connect(m_batch, &QTimer::timeout, this, &fCommConsole::flush);
    connect(cmdClear, &QPushButton::clicked, this, &fCommConsole::cmdClear_Click);
    connect(cmdSaveAs, &QPushButton::clicked, this, &fCommConsole::cmdSaveAs_Click);
    connect(cmdClose, &QPushButton::clicked, this, &QWidget::close);
}

void fCommConsole::appendEntry(const QString& entry)
{
    m_pending.append(entry);
    if (!m_batch->isActive())
        m_batch->start();
}

void fCommConsole::flush()
{
    m_batch->stop();
    if (m_pending.isEmpty())
        return;
    // Entries come only while logging to the console is on; the user's closing turns it off,
    // so an entry for a hidden window means it was turned on again: show the window.
    if (!isVisible())
        show();
    QString text = m_pending.join(kLineBreak);
    m_pending.clear();
    txtLog->appendPlainText(text.replace(kLineBreak, QStringLiteral("\n")));
    if (m_following)
        scrollToEnd();
}

void fCommConsole::scrollToEnd()
{
    // The document is laid out lazily and a window just shown may not have its size yet, so the
    // scroll bar's range can be an old one: the cursor at the end brings the last line into view.
    txtLog->moveCursor(QTextCursor::End);
    txtLog->ensureCursorVisible();
    QScrollBar* bar = txtLog->verticalScrollBar();
    bar->setValue(bar->maximum());
}

QString fCommConsole::LogText() const
{
    QString text = txtLog->toPlainText();
    if (text.isEmpty())
        return text;
    return text.replace(QLatin1Char('\n'), kLineBreak) + kLineBreak;
}

void fCommConsole::setTransferRunning(bool running)
{
    cmdSaveAs->setEnabled(!running);
}

void fCommConsole::cmdClear_Click()
{
    m_pending.clear();
    txtLog->clear();
}

void fCommConsole::cmdSaveAs_Click()
{
    ShowErrors(kForm, kRevision, QStringLiteral("cmdSaveAs_Click"), [&] {
        if (!cmdSaveAs->isEnabled())
            return;
        flush();
        FileDialogRequest request;
        request.title = tr("Save communication log");
        request.filter = tr("Log files (*.log)|*.log|Text files (*.txt)|*.txt|All (*.*)|*.*");
        request.filterIndex = 1;
        request.overwritePrompt = true;
        request.pathMustExist = true;
        const std::optional<QString> path = mMain::UI().saveFileName(request);
        if (!path || path->isEmpty())
            return;
        QFile file(*path);
        if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(LogText().toLocal8Bit()) < 0 || !file.flush())
            RaiseError(mErrCodes::RT_FILE_ACCESS, kForm,
                       tr("The communication log could not be saved to %1: %2").arg(*path, file.errorString()));
    });
}

void fCommConsole::closeEvent(QCloseEvent* event)
{
    QWidget::closeEvent(event);
    if (event->isAccepted())
        emit closedByUser();
}

void fCommConsole::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    // Once the view inside has its new size too.
    QTimer::singleShot(0, this, [this] {
        if (m_following)
            scrollToEnd();
    });
}

void fCommConsole::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    if (m_following)
        scrollToEnd();
    emit visibilityChanged(true);
}

void fCommConsole::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    emit visibilityChanged(false);
}
