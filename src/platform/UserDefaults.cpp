#include "UserDefaults.h"

#include <QStringList>
#include <cmath>

double UserDefaults::numberFromVariant(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::Bool:
        return value.toBool() ? 1.0 : 0.0;
    case QMetaType::QString: {
        const QString text = value.toString().trimmed();
        if (text.compare(QLatin1String("true"), Qt::CaseInsensitive) == 0 ||
            text.compare(QLatin1String("yes"), Qt::CaseInsensitive) == 0)
            return 1.0;
        bool ok = false;
        const double number = text.toDouble(&ok);
        return ok && std::isfinite(number) ? number : 0.0;
    }
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Double:
    case QMetaType::Float:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::Short:
    case QMetaType::UShort: {
        const double number = value.toDouble();
        return std::isfinite(number) ? number : 0.0;
    }
    default:
        return 0.0;
    }
}

qint64 UserDefaults::integerForKey(const QString &key) const
{
    const QVariant value = objectForKey(key);
    // Whole numbers keep their full 64-bit range; fractions truncate toward zero.
    if (value.typeId() == QMetaType::LongLong || value.typeId() == QMetaType::Int)
        return value.toLongLong();
    if (value.typeId() == QMetaType::QString) {
        bool ok = false;
        const qint64 whole = value.toString().trimmed().toLongLong(&ok);
        if (ok)
            return whole;
    }
    const double number = numberFromVariant(value);
    if (number >= 9.2e18 || number <= -9.2e18)
        return 0;
    return static_cast<qint64>(number);
}

bool UserDefaults::boolForKey(const QString &key) const
{
    return numberFromVariant(objectForKey(key)) != 0.0;
}

double UserDefaults::doubleForKey(const QString &key) const
{
    return numberFromVariant(objectForKey(key));
}

float UserDefaults::floatForKey(const QString &key) const
{
    return static_cast<float>(numberFromVariant(objectForKey(key)));
}

QString UserDefaults::stringForKey(const QString &key) const
{
    const QVariant value = objectForKey(key);
    if (value.typeId() == QMetaType::QString)
        return value.toString();
    if (value.typeId() == QMetaType::QStringList || value.typeId() == QMetaType::QVariantList ||
        value.typeId() == QMetaType::QVariantMap || !value.isValid())
        return {};
    if (value.canConvert<double>() && value.typeId() != QMetaType::QByteArray)
        return value.toString();
    return {};
}

QVariantList UserDefaults::arrayForKey(const QString &key) const
{
    const QVariant value = objectForKey(key);
    if (value.typeId() == QMetaType::QVariantList)
        return value.toList();
    if (value.typeId() == QMetaType::QStringList) {
        QVariantList list;
        for (const QString &item : value.toStringList())
            list.append(item);
        return list;
    }
    return {};
}

QVariantMap UserDefaults::dictionaryForKey(const QString &key) const
{
    const QVariant value = objectForKey(key);
    return value.typeId() == QMetaType::QVariantMap ? value.toMap() : QVariantMap();
}
