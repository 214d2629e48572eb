#include "base/MarloError.h"

#include "base/mErrCodes.h"

MarloError::MarloError(qint32 number, QString source, cText description)
    : m_number(number), m_source(std::move(source)), m_description(std::move(description)),
      m_what(QStringLiteral("error %1: %2").arg(number).arg(m_description.English()).toStdString())
{
}

void MarloError::addFrame(const QString& module, const QString& revision, const QString& procedure)
{
    m_trail.append({module, revision, procedure});
}

QString MarloError::origin() const
{
    if (m_trail.isEmpty())
        return {};
    const ErrorFrame& first = m_trail.first();
    return first.module + QLatin1Char('.') + first.procedure;
}

void RaiseError(qint32 number, const QString& source, const cText& description)
{
    throw MarloError(number, source, description);
}

void RaiseRuntimeError(qint32 number)
{
    throw MarloError(number, QString(), mErrCodes::RuntimeError(number));
}
