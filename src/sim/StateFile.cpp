#include "sim/StateFile.h"

#include "sim/GripState.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonParseError>
#include <QSaveFile>

namespace gripsim {

namespace {

void fail(QString* error, const QString& text)
{
    if (error)
        *error = text;
}

} // namespace

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
        fail(error, QStringLiteral("cannot read the grip state %1: %2").arg(m_path, file.errorString()));
        return false;
    }
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &parseError);
    if (parseError.error != QJsonParseError::NoError || !document.isObject()) {
        fail(error, QStringLiteral("the grip state %1 is not a JSON object: %2").arg(m_path, parseError.errorString()));
        return false;
    }
    QString why;
    if (!state.readJson(document.object(), &why)) {
        fail(error, QStringLiteral("the grip state %1: %2").arg(m_path, why));
        return false;
    }
    return true;
}

bool StateFile::save(const GripState& state, QString* error) const
{
    QSaveFile file(m_path);
    if (!file.open(QIODevice::WriteOnly)) {
        fail(error, QStringLiteral("cannot write the grip state %1: %2").arg(m_path, file.errorString()));
        return false;
    }
    file.write(QJsonDocument(state.toJson()).toJson(QJsonDocument::Indented));
    if (!file.commit()) {
        fail(error, QStringLiteral("cannot write the grip state %1: %2").arg(m_path, file.errorString()));
        return false;
    }
    return true;
}

} // namespace gripsim
