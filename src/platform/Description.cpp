#include "Description.h"

#include <QStringList>
#include <QVariantList>
#include <QVariantMap>

QString describeValue(const QVariant &value, int indent)
{
    const QString pad(indent * 4, QLatin1Char(' '));
    const QString inner((indent + 1) * 4, QLatin1Char(' '));
    switch (value.typeId()) {
    case QMetaType::QVariantMap: {
        const QVariantMap map = value.toMap();
        QString text = QStringLiteral("{\n");
        for (auto it = map.begin(); it != map.end(); ++it)
            text += inner + it.key() + QStringLiteral(" = ") +
                    describeValue(it.value(), indent + 1) + QStringLiteral(";\n");
        return text + pad + QStringLiteral("}");
    }
    case QMetaType::QVariantList:
    case QMetaType::QStringList: {
        QStringList items;
        for (const QVariant &item : value.toList())
            items.append(inner + describeValue(item, indent + 1));
        return QStringLiteral("(\n") + items.join(QStringLiteral(",\n")) + QStringLiteral("\n") +
               pad + QStringLiteral(")");
    }
    case QMetaType::UnknownType:
        return QStringLiteral("(null)");
    default:
        return value.toString();
    }
}
