#include "gui/shell/QtUserInterface.h"

#include "base/MarloError.h"
#include "gui/shell/ErrorWindow.h"
#include "gui/shell/fTolvaneMan.h"
#include "link/mLinkHelp.h"

#include <QApplication>
#include <QFileDialog>
#include <QInputDialog>
#include <QMessageBox>
#include <QRegularExpression>

namespace {

QString plain(const QString& text)
{
    return QString(text).replace(QLatin1String("\r\n"), QLatin1String("\n"));
}

QMessageBox::Icon boxIcon(MsgIcon icon)
{
    switch (icon) {
    case MsgIcon::Information: return QMessageBox::Information;
    case MsgIcon::Exclamation: return QMessageBox::Warning;
    case MsgIcon::Critical: return QMessageBox::Critical;
    case MsgIcon::Question: return QMessageBox::Question;
    case MsgIcon::None: break;
    }
    return QMessageBox::NoIcon;
}

// A box that asks the user shows the normal pointer, even inside a busy stretch.
class ArrowWhileAsking {
public:
    ArrowWhileAsking() { QApplication::setOverrideCursor(Qt::ArrowCursor); }
    ~ArrowWhileAsking() { QApplication::restoreOverrideCursor(); }
    ArrowWhileAsking(const ArrowWhileAsking&) = delete;
    ArrowWhileAsking& operator=(const ArrowWhileAsking&) = delete;
};

} // namespace

QWidget* QtUserInterface::dialogParent() const
{
    return m_main && m_main->isVisible() ? m_main.data() : nullptr;
}

void QtUserInterface::setBusyPointer(bool busy)
{
    if (busy == m_busy)
        return;
    m_busy = busy;
    if (busy)
        QApplication::setOverrideCursor(Qt::WaitCursor);
    else
        QApplication::restoreOverrideCursor();
}

bool QtUserInterface::mainWindowVisible() const
{
    return m_main && m_main->isVisible();
}

void QtUserInterface::startProgress(int maximum)
{
    if (m_main)
        m_main->StartProgressBar(maximum);
}

void QtUserInterface::setProgress(int value)
{
    if (m_main)
        m_main->SetProgressValue(value);
}

int QtUserInterface::progress() const
{
    return m_main ? m_main->ProgressValue() : 0;
}

void QtUserInterface::endProgress()
{
    if (m_main)
        m_main->EndProgressBar();
}

QString QtUserInterface::stepText() const
{
    return m_main ? m_main->PanelText(fTolvaneMan::kPanelStep) : m_step;
}

void QtUserInterface::setStepText(const QString& text)
{
    if (m_main)
        m_main->SetPanelText(fTolvaneMan::kPanelStep, text);
    else
        m_step = text;
}

void QtUserInterface::setFirmwareVersion(const QString& version)
{
    if (m_main)
        m_main->SetPanelText(fTolvaneMan::kPanelFirmware, version);
}

void QtUserInterface::showMessage(const QString& text, const QString& title, MsgIcon icon)
{
    ArrowWhileAsking arrow;
    QMessageBox box(boxIcon(icon), title, plain(text), QMessageBox::Ok, dialogParent());
    box.setObjectName(QStringLiteral("MessageBox"));
    box.exec();
}

bool QtUserInterface::askYesNo(const QString& text, const QString& title, MsgIcon icon, bool defaultNo)
{
    ArrowWhileAsking arrow;
    QMessageBox box(boxIcon(icon), title, plain(text), QMessageBox::Yes | QMessageBox::No, dialogParent());
    box.setObjectName(QStringLiteral("QuestionBox"));
    box.setDefaultButton(defaultNo ? QMessageBox::No : QMessageBox::Yes);
    return box.exec() == QMessageBox::Yes;
}

QString QtUserInterface::inputBox(const QString& prompt, const QString& title, const QString& defaultText)
{
    ArrowWhileAsking arrow;
    bool ok = false;
    const QString text = QInputDialog::getText(dialogParent(), title, prompt, QLineEdit::Normal, defaultText, &ok);
    return ok ? text : QString();
}

QStringList QtUserInterface::NameFilters(const QString& filter)
{
    QStringList filters;
    const QStringList parts = filter.split(QLatin1Char('|'));
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        QString description = parts[i].trimmed();
        description.remove(QRegularExpression(QStringLiteral("\\s*\\([^)]*\\)\\s*$")));
        QStringList patterns = parts[i + 1].split(QLatin1Char(';'), Qt::SkipEmptyParts);
        for (QString& pattern : patterns) {
            pattern = pattern.trimmed();
            if (pattern == QLatin1String("*.*"))
                pattern = QStringLiteral("*");
        }
        filters << QStringLiteral("%1 (%2)").arg(description, patterns.join(QLatin1Char(' ')));
    }
    return filters;
}

std::optional<QString> QtUserInterface::fileName(const FileDialogRequest& request, bool save)
{
    ArrowWhileAsking arrow;
    QFileDialog dialog(dialogParent(), request.title);
    dialog.setObjectName(QStringLiteral("cdlFile"));
    dialog.setAcceptMode(save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(save || !request.pathMustExist ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    if (save && !request.overwritePrompt)
        dialog.setOption(QFileDialog::DontConfirmOverwrite);
    const QStringList filters = NameFilters(request.filter);
    if (!filters.isEmpty()) {
        dialog.setNameFilters(filters);
        dialog.selectNameFilter(filters.value(request.filterIndex - 1, filters.first()));
    }
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return std::nullopt;
    return dialog.selectedFiles().first();
}

std::optional<QString> QtUserInterface::openFileName(const FileDialogRequest& request)
{
    return fileName(request, false);
}

std::optional<QString> QtUserInterface::saveFileName(const FileDialogRequest& request)
{
    return fileName(request, true);
}

void QtUserInterface::processEvents()
{
    QCoreApplication::processEvents(QEventLoop::AllEvents);
}

void QtUserInterface::showError(const MarloError& error, const QString& version, const QString& title)
{
    ArrowWhileAsking arrow;
    // What to do follows the last exchange of the main window's link, when there is a window.
    ErrorWindow window(error, mLinkHelp::WhatToDo(error, m_main ? &m_main->Link() : nullptr), version, title, dialogParent());
    window.exec();
}
