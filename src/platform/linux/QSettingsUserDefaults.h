#pragma once
// The user defaults store on QSettings (INI). One lock serialises the calls, since
// a QSettings object is not safe to share between threads.
#include "UserDefaults.h"

#include <QSettings>
#include <mutex>

class QSettingsUserDefaults final : public UserDefaults {
public:
    // ~/.config/Capstan/Capstan.conf
    QSettingsUserDefaults();
    explicit QSettingsUserDefaults(const QString &iniFile);

    QVariant objectForKey(const QString &key) const override;
    void setObject(const QVariant &value, const QString &key) override;
    void removeObjectForKey(const QString &key) override;
    bool synchronize() override;
    QString fileName() const;

private:
    mutable std::mutex mutex_;
    QSettings settings_;
};
