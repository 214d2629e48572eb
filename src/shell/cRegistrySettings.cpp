#include "shell/cRegistrySettings.h"

#include "grip/cGunInfo.h"
#include "link/mCommBasic.h"
#include "link/mErrCodes.h"
#include "link/mVersion.h"
#include "shell/cPlacedWindow.h"
#include "shell/mMain.h"

#include <QStringList>
#include <cmath>
#include <memory>

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

} // namespace

cRegistrySettings::cRegistrySettings()
{
    readAll();
    mCommBasic::bLogToFile = m_commLogToFile;
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

bool cRegistrySettings::TextToBool(const QVariant& stored)
{
    if (stored.metaType().id() == QMetaType::Bool)
        return stored.toBool();
    const QString text = StoredText(stored).trimmed();
    if (text.compare(QLatin1String("True"), Qt::CaseInsensitive) == 0)
        return true;
    if (text.compare(QLatin1String("False"), Qt::CaseInsensitive) == 0)
        return false;
    bool ok = false;
    const double number = text.toDouble(&ok);
    if (!ok)
        RaiseRuntimeError(mErrCodes::RT_TYPE_MISMATCH);
    return number != 0.0;
}

qint32 cRegistrySettings::TextToLong(const QVariant& stored)
{
    if (stored.metaType().id() == QMetaType::Int)
        return stored.toInt();
    const QString text = StoredText(stored).trimmed();
    bool ok = false;
    const double number = text.toDouble(&ok);
    if (!ok || !std::isfinite(number))
        RaiseRuntimeError(mErrCodes::RT_TYPE_MISMATCH);
    // Whole numbers round half to even, as the language's conversion did.
    const double rounded = std::nearbyint(number);
    if (rounded < -2147483648.0 || rounded > 2147483647.0)
        RaiseRuntimeError(mErrCodes::RT_OVERFLOW);
    return static_cast<qint32>(rounded);
}

QString cRegistrySettings::DefaultDBName()
{
    return mMain::ProgramFile(QStringLiteral("Marlo.mdb"));
}

void cRegistrySettings::readAll()
{
    // A text that cannot be converted stops the reading: what was read keeps its value, the
    // rest keep their zero values. The error is shown, never thrown out of the constructor.
    ShowErrors(kClass, kRevision, QStringLiteral("Class_Initialize"), [this] {
        auto get = [](const QString& key, const QVariant& def) { return GetSetting(kSection, key, def); };
        m_backwardCompatibleUpload = TextToBool(get(QStringLiteral("BackwardCompatibleUpload"), QStringLiteral("True")));
        m_showSplash = TextToBool(get(QStringLiteral("ShowSplash"), QStringLiteral("True")));
        m_showConfirmComm = TextToBool(get(QStringLiteral("ShowConfirmComm"), QStringLiteral("True")));
        m_showLogToFile = TextToBool(get(QStringLiteral("ShowLogToFile"), QStringLiteral("False")));
        m_gripEye = TextToBool(get(QStringLiteral("GripEye"), QStringLiteral("False")));
        m_dbName = StoredText(get(QStringLiteral("DBName"), DefaultDBName()));
        m_dbChanged = TextToBool(get(QStringLiteral("DBChanged"), QStringLiteral("False")));
        m_lastKey = StoredText(get(QStringLiteral("LastKey"), QString()));
        m_commPort = TextToLong(get(QStringLiteral("CommPort"), QStringLiteral("1")));
        m_commSettings = StoredText(get(QStringLiteral("CommSettings"), QStringLiteral("9600,N,8,1")));
        m_commInputMode = TextToLong(get(QStringLiteral("CommInputMode"), QStringLiteral("1")));
        m_commLogToFile = TextToBool(get(QStringLiteral("CommLogToFile"), QStringLiteral("False")));
        m_commLogToConsole = TextToBool(get(QStringLiteral("CommLogToConsole"), QStringLiteral("False")));
        m_commDevice = StoredText(get(QStringLiteral("CommDevice"), QString()));
    });
}

void cRegistrySettings::write(const QString& key, const QString& value)
{
    SaveSetting(kSection, key, value);
}

void cRegistrySettings::WindowState(cPlacedWindow& window, bool position, bool size)
{
    ShowErrors(kClass, kRevision, QStringLiteral("WindowState"), [&] {
        const QString section = window.formName();
        const qint16 state = static_cast<qint16>(
            TextToLong(GetSetting(section, QStringLiteral("WindowState"), window.windowState())));
        window.setWindowState(state);
        if (state != cPlacedWindow::StateNormal)
            return;
        auto number = [&](const QString& key, float current) {
            bool ok = false;
            const float value = StoredText(GetSetting(section, key, current)).trimmed().toFloat(&ok);
            if (!ok)
                RaiseRuntimeError(mErrCodes::RT_TYPE_MISMATCH);
            return value;
        };
        if (position)
            window.move(number(QStringLiteral("Left"), window.left()), number(QStringLiteral("Top"), window.top()));
        if (size)
            window.resize(number(QStringLiteral("Width"), window.width()),
                          number(QStringLiteral("Height"), window.height()));
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
    mCommBasic::bLogToFile = value;
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

bool cRegistrySettings::BackwardCompatibleUpload() const
{
    // Deliberate: the stored value is ignored; the answer is yes for grips whose firmware is
    // older than 1.2.0.
    return mVersion::VersionCompare(QStringLiteral("1.2.0"), GunInfo().FirmwareBuild()) < 0;
}

void cRegistrySettings::setBackwardCompatibleUpload(bool value)
{
    m_backwardCompatibleUpload = value;
    write(QStringLiteral("BackwardCompatibleUpload"), BoolText(value));
}

void cRegistrySettings::setCommDevice(const QString& value)
{
    m_commDevice = value;
    write(QStringLiteral("CommDevice"), value);
}
