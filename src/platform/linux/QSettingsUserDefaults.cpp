#include "QSettingsUserDefaults.h"

QSettingsUserDefaults::QSettingsUserDefaults()
    : settings_(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("Capstan"),
                QStringLiteral("Capstan"))
{}

QSettingsUserDefaults::QSettingsUserDefaults(const QString &iniFile)
    : settings_(iniFile, QSettings::IniFormat)
{}

QVariant QSettingsUserDefaults::objectForKey(const QString &key) const
{
    std::lock_guard lock(mutex_);
    return settings_.value(key);
}

void QSettingsUserDefaults::setObject(const QVariant &value, const QString &key)
{
    std::lock_guard lock(mutex_);
    if (value.isValid())
        settings_.setValue(key, value);
    else
        settings_.remove(key);
}

void QSettingsUserDefaults::removeObjectForKey(const QString &key)
{
    std::lock_guard lock(mutex_);
    settings_.remove(key);
}

bool QSettingsUserDefaults::synchronize()
{
    std::lock_guard lock(mutex_);
    settings_.sync();
    return settings_.status() == QSettings::NoError;
}

QString QSettingsUserDefaults::fileName() const
{
    std::lock_guard lock(mutex_);
    return settings_.fileName();
}
