#include "sim/StateFile.h"

#include "sim/ErrorText.h"
#include "sim/GripState.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonParseError>
#include <QSaveFile>

namespace gripsim {

StateFile::StateFile(QString path)
    : m_path(std::move(path))
{
}

bool StateFile::exists() const
{
    return QFileInfo::exists(m_path);
}

bool StateFile::load(GripState& state, QString* error) const
{
    QFile file(m_path);
    if (!file.open(QIODevice::ReadOnly)) {
        setError(error, QStringLiteral("cannot read the grip state %1: %2").arg(m_path, file.errorString()));
        return false;
    }
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &parseError);
    if (parseError.error != QJsonParseError::NoError || !document.isObject()) {
        setError(error,
                 QStringLiteral("the grip state %1 is not a JSON object: %2").arg(m_path, parseError.errorString()));
        return false;
    }
    QString why;
    if (!state.readJson(document.object(), &why)) {
        setError(error, QStringLiteral("the grip state %1: %2").arg(m_path, why));
        return false;
    }
    return true;
}

bool StateFile::save(const GripState& state, QString* error) const
{
    QSaveFile file(m_path);
    if (file.open(QIODevice::WriteOnly)) {
        file.write(QJsonDocument(state.toJson()).toJson(QJsonDocument::Indented));
        if (file.commit())
            return true;
    }
    setError(error, QStringLiteral("cannot write the grip state %1: %2").arg(m_path, file.errorString()));
    return false;
}

} // namespace gripsim
