#include "ScriptedUi.h"

#include <QtTest>

void ScriptedUi::startProgress(int maximum)
{
    progressMaxima.append(maximum);
    m_progress = 0;
}

void ScriptedUi::setProgress(int value)
{
    progressValues.append(value);
    m_progress = value;
}

void ScriptedUi::setStepText(const QString& text)
{
    m_step = text;
    statusHistory.append(QStringLiteral("step:") + text);
}

void ScriptedUi::setFirmwareVersion(const QString& version)
{
    statusHistory.append(QStringLiteral("version:") + version);
}

void ScriptedUi::showMessage(const QString& text, const QString& title, MsgIcon icon)
{
    messages.append({text, title, icon});
}

bool ScriptedUi::askYesNo(const QString& text, const QString& title, MsgIcon icon, bool defaultNo)
{
    questions.append({text, title, icon, defaultNo});
    if (yesNoAnswers.isEmpty()) {
        QTest::qFail("unexpected yes/no question", __FILE__, __LINE__);
        return false;
    }
    return yesNoAnswers.dequeue();
}

QString ScriptedUi::inputBox(const QString& prompt, const QString& title, const QString&)
{
    questions.append({prompt, title, MsgIcon::None});
    if (inputAnswers.isEmpty()) {
        QTest::qFail("unexpected input box", __FILE__, __LINE__);
        return QString();
    }
    return inputAnswers.dequeue();
}

std::optional<QString> ScriptedUi::openFileName(const FileDialogRequest& request)
{
    fileRequests.append(request);
    return fileAnswers.isEmpty() ? std::nullopt : fileAnswers.dequeue();
}

std::optional<QString> ScriptedUi::saveFileName(const FileDialogRequest& request)
{
    fileRequests.append(request);
    return fileAnswers.isEmpty() ? std::nullopt : fileAnswers.dequeue();
}

void ScriptedUi::processEvents()
{
    if (onProcessEvents)
        onProcessEvents();
}

void ScriptedUi::showError(const MarloError& error, const QString&, const QString&)
{
    errors.append(error);
}
