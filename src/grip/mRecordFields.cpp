#include "grip/mRecordFields.h"

#include "grip/cGripSession.h"

#include <functional>
#include <type_traits>

using mGripCommands::GripRecord;

namespace mRecordFields {

namespace {

// Floats as the shortest decimal that reads back the same, so JSON shows 9.71, not 9.7100000381.
double displayNumber(float value)
{
    return QString::number(static_cast<double>(value), 'g', 6).toDouble();
}

// Reads and writes one property of a record of the session, for the field tables below.
template <auto record>
struct Of {
    template <auto getter>
    static QVariant read(cGripSession& session)
    {
        const auto value = std::invoke(getter, std::invoke(record, session));
        if constexpr (std::is_floating_point_v<decltype(value)>)
            return displayNumber(value);
        else
            return QVariant::fromValue(value);
    }
    template <auto setter>
    static qint32 write(cGripSession& session, qint32 value)
    {
        auto& target = std::invoke(record, session);
        if constexpr (std::is_void_v<decltype(std::invoke(setter, target, value))>) {
            std::invoke(setter, target, value);
            return value;
        } else {
            return std::invoke(setter, target, value);
        }
    }
};

} // namespace

const QList<tTable>& Tables()
{
    using F = tField;
    using T = Of<&cGripSession::Timing>;
    using O = Of<&cGripSession::Options>;
    using H = Of<&cGripSession::Hyper>;
    using G = Of<&cGripSession::CountdownTimer>;
    using C = Of<&cGripSession::Counters>;
    using B = Of<&cGripSession::Battery>;
    using S = cSettings;
    static const QList<tTable> tables = {
        {GripRecord::Timing,
         {{QStringLiteral("ShotTime"), F::Byte, T::read<&S::ShotTime>, T::write<&S::setShotTime>, {{S::ShotTimeMin(), S::ShotTimeMax()}}},
          {QStringLiteral("Dwelltime"), F::Byte, T::read<&S::Dwelltime>, T::write<&S::setDwelltime>, {{S::DwelltimeMin(), S::DwelltimeMax()}}},
          {QStringLiteral("CycleTimeOpen"), F::Byte, T::read<&S::CycleTimeOpen>, T::write<&S::setCycleTimeOpen>,
           {{S::CycleTimeOpenMin(), S::CycleTimeOpenMax()}}},
          {QStringLiteral("LoadTime"), F::Byte, T::read<&S::LoadTime>, T::write<&S::setLoadTime>, {{S::LoadTimeMin(), S::LoadTimeMax()}}},
          {QStringLiteral("CycleTimeClose"), F::Byte, T::read<&S::CycleTimeClose>, T::write<&S::setCycleTimeClose>,
           {{S::CycleTimeCloseMin(), S::CycleTimeCloseMax()}}},
          {QStringLiteral("FiringMode"), F::Byte, T::read<&S::FiringMode>, T::write<&S::setFiringMode>},
          {QStringLiteral("ROF"), F::ReadOnly, T::read<&S::ROF>}}},
        {GripRecord::Options,
         {{QStringLiteral("EyeMounted"), F::Switch, O::read<&cOptions::EyeMounted>, O::write<&cOptions::setEyeMounted>},
          {QStringLiteral("TriggerFilterOn"), F::Switch, O::read<&cOptions::TriggerFilterOn>, O::write<&cOptions::setTriggerFilterOn>},
          {QStringLiteral("EyeCheckMaxTimeOn"), F::Switch, O::read<&cOptions::EyeCheckMaxTimeOn>, O::write<&cOptions::setEyeCheckMaxTimeOn>},
          {QStringLiteral("UseEye"), F::Switch, O::read<&cOptions::UseEye>, O::write<&cOptions::setUseEye>},
          {QStringLiteral("EyeCheckMaxTime"), F::Byte, O::read<&cOptions::EyeCheckMaxTime>, O::write<&cOptions::setEyeCheckMaxTime>},
          {QStringLiteral("DefaultLoadTime"), F::Byte, O::read<&cOptions::DefaultLoadTime>, O::write<&cOptions::setDefaultLoadTime>},
          {QStringLiteral("LoaderOn"), F::Switch, O::read<&cOptions::LoaderOn>, O::write<&cOptions::setLoaderOn>},
          {QStringLiteral("LedOn"), F::Switch, O::read<&cOptions::LedOn>, O::write<&cOptions::setLedOn>},
          {QStringLiteral("EyeCheckOKTimeOn"), F::Switch, O::read<&cOptions::EyeCheckOKTimeOn>, O::write<&cOptions::setEyeCheckOKTimeOn>},
          {QStringLiteral("EyeCheckOKTime"), F::Byte, O::read<&cOptions::EyeCheckOKTime>, O::write<&cOptions::setEyeCheckOKTime>},
          {QStringLiteral("CTOAdjust"), F::Switch, O::read<&cOptions::CTOAdjust>, O::write<&cOptions::setCTOAdjust>}}},
        {GripRecord::Ramping,
         {{QStringLiteral("Shots"), F::Byte, H::read<&cHyper::Shots>, H::write<&cHyper::setShots>},
          {QStringLiteral("HyperTime"), F::Byte, H::read<&cHyper::HyperTime>, H::write<&cHyper::setHyperTime>},
          {QStringLiteral("HyperMode"), F::Byte, H::read<&cHyper::HyperMode>, H::write<&cHyper::setHyperMode>}}},
        {GripRecord::GameTimer,
         {{QStringLiteral("CountDownTimer"), F::Byte, G::read<&cCountdownTimer::CountDownTimer>, G::write<&cCountdownTimer::setCountDownTimer>},
          {QStringLiteral("PreAlert1On"), F::Switch, G::read<&cCountdownTimer::PreAlert1On>, G::write<&cCountdownTimer::setPreAlert1On>},
          {QStringLiteral("PreAlert1Time"), F::Word, G::read<&cCountdownTimer::PreAlert1Time>, G::write<&cCountdownTimer::setPreAlert1Time>},
          {QStringLiteral("PreAlert2On"), F::Switch, G::read<&cCountdownTimer::PreAlert2On>, G::write<&cCountdownTimer::setPreAlert2On>},
          {QStringLiteral("PreAlert2Time"), F::Word, G::read<&cCountdownTimer::PreAlert2Time>, G::write<&cCountdownTimer::setPreAlert2Time>}}},
        {GripRecord::Counters,
         {{QStringLiteral("Counter1"), F::ReadOnly, C::read<&cCounters::Counter1>},
          {QStringLiteral("Counter2"), F::ReadOnly, C::read<&cCounters::Counter2>},
          {QStringLiteral("Total"), F::ReadOnly, C::read<&cCounters::Total>}}},
        {GripRecord::Battery, {{QStringLiteral("VoltageLevel"), F::ReadOnly, B::read<&cBattery::VoltageLevel>}}},
    };
    return tables;
}

const QList<tField>& FieldsOf(GripRecord record)
{
    for (const tTable& table : Tables())
        if (table.record == record)
            return table.fields;
    static const QList<tField> none;
    return none;
}

tValues Values(cGripSession& session, GripRecord record)
{
    tValues values;
    for (const tField& field : FieldsOf(record))
        values.append({field.name, field.get(session)});
    return values;
}

QJsonObject ToJson(const tValues& values)
{
    QJsonObject object;
    for (const auto& [name, value] : values)
        object.insert(name, QJsonValue::fromVariant(value));
    return object;
}

void FromJson(cGripSession& session, GripRecord record, const QJsonObject& values)
{
    for (const tField& field : FieldsOf(record)) {
        const QJsonValue value = values.value(field.name);
        if (!field.set || !(value.isDouble() || value.isBool()))
            continue;
        field.set(session, value.isBool() ? qint32(value.toBool()) : value.toInt());
    }
}

} // namespace mRecordFields
