#include "base/cRegistrySettings.h"

#include "base/cPlacedWindow.h"
#include "base/mErrorReport.h"

#include <QStringList>
#include <cfloat>
#include <cmath>
#include <limits>
#include <memory>
#include <optional>

namespace {

std::unique_ptr<QSettings> openStore()
{
    return std::make_unique<QSettings>(QSettings::IniFormat, QSettings::UserScope,
                                       QStringLiteral("Marlo"), QStringLiteral("Marlo"));
}

QString sectionKey(const QString& section, const QString& key)
{
    return section + QLatin1Char('/') + key;
}

using tReason = tUnreadablePreference::tReason;

// The conversions of stored text; each answers what is wrong with the text, or nothing and the
// value.

std::optional<tReason> toBool(const QVariant& stored, bool& value)
{
    if (stored.metaType().id() == QMetaType::Bool) {
        value = stored.toBool();
        return std::nullopt;
    }
    const QString text = cRegistrySettings::StoredText(stored).trimmed();
    if (text.compare(QLatin1String("True"), Qt::CaseInsensitive) == 0) {
        value = true;
        return std::nullopt;
    }
    if (text.compare(QLatin1String("False"), Qt::CaseInsensitive) == 0) {
        value = false;
        return std::nullopt;
    }
    bool ok = false;
    const double number = text.toDouble(&ok);
    if (!ok || std::isnan(number))
        return tUnreadablePreference::NotTrueOrFalse;
    value = number != 0.0;
    return std::nullopt;
}

std::optional<tReason> toLong(const QVariant& stored, double min, double max, qint32& value)
{
    double number = 0;
    if (stored.metaType().id() == QMetaType::Int) {
        number = stored.toInt();
    } else {
        bool ok = false;
        number = cRegistrySettings::StoredText(stored).trimmed().toDouble(&ok);
        if (!ok || !std::isfinite(number))
            return tUnreadablePreference::NotANumber;
    }
    // Whole numbers round half to even, as the language's conversion did.
    const double rounded = std::nearbyint(number);
    if (rounded < min || rounded > max)
        return tUnreadablePreference::OutOfRange;
    value = static_cast<qint32>(rounded);
    return std::nullopt;
}

std::optional<tReason> toSingle(const QVariant& stored, float& value)
{
    bool ok = false;
    const double number = cRegistrySettings::StoredText(stored).trimmed().toDouble(&ok);
    if (!ok || !std::isfinite(number))
        return tUnreadablePreference::NotANumber;
    if (std::fabs(number) > double(FLT_MAX))
        return tUnreadablePreference::OutOfRange;
    value = static_cast<float>(number);
    return std::nullopt;
}

// One stored value: the default when nothing is stored or the text cannot be converted; the
// latter is added to problems.
template <typename T, typename Convert>
T readValue(const QString& section, const QString& key, T def, tUnreadablePreferences* problems, double min,
            double max, Convert convert)
{
    const QVariant stored = cRegistrySettings::GetSetting(section, key, QVariant());
    if (!stored.isValid())
        return def;
    T value = def;
    if (const std::optional<tReason> reason = convert(stored, value)) {
        if (problems)
            problems->append({section, key, cRegistrySettings::StoredText(stored), *reason, min, max});
        return def;
    }
    return value;
}

} // namespace

cRegistrySettings::cRegistrySettings()
{
    readAll();
}

QVariant cRegistrySettings::GetSetting(const QString& section, const QString& key, const QVariant& def)
{
    return openStore()->value(sectionKey(section, key), def);
}

void cRegistrySettings::SaveSetting(const QString& section, const QString& key, const QString& value)
{
    auto store = openStore();
    store->setValue(sectionKey(section, key), value);
    store->sync();
}

QString cRegistrySettings::StoredText(const QVariant& stored)
{
    // An unquoted text with commas comes back from the INI reader as a list: join it again.
    if (stored.metaType().id() == QMetaType::QStringList)
        return stored.toStringList().join(QLatin1Char(','));
    return stored.toString();
}

QString cRegistrySettings::BoolText(bool value)
{
    return value ? QStringLiteral("True") : QStringLiteral("False");
}

bool cRegistrySettings::ReadBool(const QString& section, const QString& key, bool def, tUnreadablePreferences* problems)
{
    return readValue(section, key, def, problems, 0, 0, toBool);
}

qint32 cRegistrySettings::ReadLong(const QString& section, const QString& key, qint32 def, qint32 min, qint32 max,
                                   tUnreadablePreferences* problems)
{
    return readValue(section, key, def, problems, min, max,
                     [&](const QVariant& stored, qint32& value) { return toLong(stored, min, max, value); });
}

float cRegistrySettings::ReadSingle(const QString& section, const QString& key, float def, tUnreadablePreferences* problems)
{
    return readValue(section, key, def, problems, -double(FLT_MAX), double(FLT_MAX), toSingle);
}

QString cRegistrySettings::FileName()
{
    return openStore()->fileName();
}

QString cRegistrySettings::ProblemText(const tUnreadablePreference& problem)
{
    QString reason;
    switch (problem.reason) {
    case tUnreadablePreference::NotTrueOrFalse: reason = tr("not True or False"); break;
    case tUnreadablePreference::NotANumber: reason = tr("not a number"); break;
    case tUnreadablePreference::OutOfRange:
        reason = tr("not a number from %1 to %2").arg(QString::number(problem.min, 'g', 10), QString::number(problem.max, 'g', 10));
        break;
    }
    return tr("[%1] %2 = \"%3\" (%4)").arg(problem.section, problem.key, problem.text, reason);
}

tUnreadablePreferences cRegistrySettings::UnreadablePlacements()
{
    // Every section but Initialize may be a window's: the placement keys are found only there.
    tUnreadablePreferences problems;
    const QStringList sections = openStore()->childGroups();
    for (const QString& section : sections) {
        if (section == kSection)
            continue;
        ReadLong(section, QStringLiteral("WindowState"), cPlacedWindow::StateNormal, std::numeric_limits<qint16>::min(),
                 std::numeric_limits<qint16>::max(), &problems);
        for (const char* key : {"Left", "Top", "Width", "Height"})
            ReadSingle(section, QLatin1String(key), 0, &problems);
    }
    return problems;
}

QString cRegistrySettings::DefaultDBName()
{
    return mMain::ProgramFile(QStringLiteral("Marlo.mdb"));
}

void cRegistrySettings::readAll()
{
    // Each preference is read on its own: a stored text that cannot be converted gives that one
    // its default and is remembered for the report at start, and the reading goes on. The program
    // used to stop at the first such text and leave the rest at zero, so that one bad switch took
    // the serial settings and the library path with it; the fall-back per key is deliberate.
    ShowErrors(kClass, kRevision, QStringLiteral("Class_Initialize"), [this] {
        m_unreadable.clear();
        tUnreadablePreferences* problems = &m_unreadable;
        auto boolean = [&](const char* key, bool def) { return ReadBool(kSection, QLatin1String(key), def, problems); };
        auto number = [&](const char* key, qint32 def) {
            return ReadLong(kSection, QLatin1String(key), def, std::numeric_limits<qint32>::min(),
                            std::numeric_limits<qint32>::max(), problems);
        };
        auto text = [](const char* key, const QString& def) { return StoredText(GetSetting(kSection, QLatin1String(key), def)); };
        m_backwardCompatibleUpload = boolean("BackwardCompatibleUpload", true);
        m_showSplash = boolean("ShowSplash", true);
        m_showConfirmComm = boolean("ShowConfirmComm", true);
        m_showLogToFile = boolean("ShowLogToFile", false);
        m_gripEye = boolean("GripEye", false);
        m_dbName = text("DBName", DefaultDBName());
        m_dbChanged = boolean("DBChanged", false);
        m_lastKey = text("LastKey", QString());
        m_commPort = number("CommPort", 1);
        m_commSettings = text("CommSettings", QStringLiteral("9600,N,8,1"));
        m_commInputMode = number("CommInputMode", 1);
        m_commLogToFile = boolean("CommLogToFile", false);
        m_commLogToConsole = boolean("CommLogToConsole", false);
        m_firmwareBackup = boolean("FirmwareBackup", false);
        m_commDevice = text("CommDevice", QString());
    });
}

void cRegistrySettings::write(const QString& key, const QString& value)
{
    SaveSetting(kSection, key, value);
}

void cRegistrySettings::WindowState(cPlacedWindow& window, bool position, bool size)
{
    ShowErrors(kClass, kRevision, QStringLiteral("WindowState"), [&] {
        // Key by key, like the preferences: one that cannot be read keeps the window's current
        // value (start-up has reported it) and the others still apply.
        const QString section = window.formName();
        const qint16 state = static_cast<qint16>(ReadLong(section, QStringLiteral("WindowState"), window.windowState(),
                                                          std::numeric_limits<qint16>::min(),
                                                          std::numeric_limits<qint16>::max()));
        window.setWindowState(state);
        if (state != cPlacedWindow::StateNormal)
            return;
        if (position)
            window.move(ReadSingle(section, QStringLiteral("Left"), window.left()),
                        ReadSingle(section, QStringLiteral("Top"), window.top()));
        if (size)
            window.resize(ReadSingle(section, QStringLiteral("Width"), window.width()),
                          ReadSingle(section, QStringLiteral("Height"), window.height()));
    });
}

void cRegistrySettings::SaveWindowState(cPlacedWindow& window, bool position, bool size)
{
    ShowErrors(kClass, kRevision, QStringLiteral("SaveWindowState"), [&] {
        const QString section = window.formName();
        SaveSetting(section, QStringLiteral("WindowState"), QString::number(window.windowState()));
        if (window.windowState() != cPlacedWindow::StateNormal)
            return;
        if (position) {
            SaveSetting(section, QStringLiteral("Left"), QString::number(window.left()));
            SaveSetting(section, QStringLiteral("Top"), QString::number(window.top()));
        }
        if (size) {
            SaveSetting(section, QStringLiteral("Width"), QString::number(window.width()));
            SaveSetting(section, QStringLiteral("Height"), QString::number(window.height()));
        }
    });
}

void cRegistrySettings::setCommPort(qint32 value)
{
    m_commPort = value;
    write(QStringLiteral("CommPort"), QString::number(value));
}

void cRegistrySettings::setCommSettings(const QString& value)
{
    m_commSettings = value;
    write(QStringLiteral("CommSettings"), value);
}

void cRegistrySettings::setCommInputMode(qint32 value)
{
    m_commInputMode = value;
    write(QStringLiteral("CommInputMode"), QString::number(value));
}

void cRegistrySettings::setCommLogToFile(bool value)
{
    m_commLogToFile = value;
    write(QStringLiteral("CommLogToFile"), BoolText(value));
}

void cRegistrySettings::setCommLogToConsole(bool value)
{
    m_commLogToConsole = value;
    write(QStringLiteral("CommLogToConsole"), BoolText(value));
}

void cRegistrySettings::setLastKey(const QString& value)
{
    m_lastKey = value;
    write(QStringLiteral("LastKey"), value);
}

void cRegistrySettings::setDBName(const QString& value)
{
    const bool changed = value != m_dbName;
    m_dbName = value;
    write(QStringLiteral("DBName"), value);
    if (changed)
        setDBChanged(true);
}

void cRegistrySettings::setDBChanged(bool value)
{
    m_dbChanged = value;
    write(QStringLiteral("DBChanged"), BoolText(value));
}

void cRegistrySettings::setGripEye(bool value)
{
    m_gripEye = value;
    write(QStringLiteral("GripEye"), BoolText(value));
}

void cRegistrySettings::setShowSplash(bool value)
{
    m_showSplash = value;
    write(QStringLiteral("ShowSplash"), BoolText(value));
}

void cRegistrySettings::setShowConfirmComm(bool value)
{
    m_showConfirmComm = value;
    write(QStringLiteral("ShowConfirmComm"), BoolText(value));
}

void cRegistrySettings::setShowLogToFile(bool value)
{
    m_showLogToFile = value;
    write(QStringLiteral("ShowLogToFile"), BoolText(value));
}

void cRegistrySettings::setBackwardCompatibleUpload(bool value)
{
    m_backwardCompatibleUpload = value;
    write(QStringLiteral("BackwardCompatibleUpload"), BoolText(value));
}

void cRegistrySettings::setFirmwareBackup(bool value)
{
    m_firmwareBackup = value;
    write(QStringLiteral("FirmwareBackup"), BoolText(value));
}

void cRegistrySettings::setCommDevice(const QString& value)
{
    m_commDevice = value;
    write(QStringLiteral("CommDevice"), value);
}
