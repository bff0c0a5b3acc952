#pragma once
// Port: the user's flat key-value settings store.
// A missing or wrongly typed value reads as 0, false or an empty value, never as an error.
// Implementations must be safe to call from several threads (capture queues read watermark keys).
#include <QString>
#include <QVariant>
#include <QVariantList>
#include <QVariantMap>

class UserDefaults {
public:
    virtual ~UserDefaults() = default;

    // An invalid QVariant when the key is absent.
    virtual QVariant objectForKey(const QString &key) const = 0;
    virtual void setObject(const QVariant &value, const QString &key) = 0;
    virtual void removeObjectForKey(const QString &key) = 0;
    virtual bool synchronize() = 0;

    bool hasKey(const QString &key) const { return objectForKey(key).isValid(); }
    qint64 integerForKey(const QString &key) const;
    bool boolForKey(const QString &key) const;
    double doubleForKey(const QString &key) const;
    float floatForKey(const QString &key) const;
    // Strings as stored, numbers as their text, anything else null.
    QString stringForKey(const QString &key) const;
    QVariantList arrayForKey(const QString &key) const;
    QVariantMap dictionaryForKey(const QString &key) const;

    void setInteger(qint64 value, const QString &key) { setObject(QVariant(value), key); }
    void setBool(bool value, const QString &key) { setObject(QVariant(value), key); }
    void setDouble(double value, const QString &key) { setObject(QVariant(value), key); }
    void setFloat(float value, const QString &key) { setObject(QVariant(value), key); }

    // The number a stored value stands for: text stores (INI) hand back "1", "90.5" or "true".
    static double numberFromVariant(const QVariant &value);
};
