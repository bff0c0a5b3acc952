#include "VideoCellText.h"

#include <limits>

namespace VideoCellText {

// The whole part of a stored number, as an unsigned count; what cannot be one reads as 0.
static unsigned long wholePart(double value)
{
    if (!(value > 0))
        return 0;
    if (value >= double(std::numeric_limits<unsigned long>::max()))
        return std::numeric_limits<unsigned long>::max();
    return static_cast<unsigned long>(value);
}

QString durationText(double seconds)
{
    const unsigned long whole = wholePart(seconds);
    return QString::asprintf("%02lu:%02lu:%02lu", whole / 3600, whole % 3600 / 60, whole % 60);
}

QString sizeText(double bytes)
{
    return QString::asprintf("%.2f M", double(wholePart(bytes)) / 1000000.0);
}

QString nameText(const QVariantMap &record)
{
    return record.value(QStringLiteral("name")).toString();
}

QString durationText(const QVariantMap &record)
{
    return durationText(record.value(QStringLiteral("duration")).toDouble());
}

QString sizeText(const QVariantMap &record)
{
    return sizeText(record.value(QStringLiteral("size")).toDouble());
}

QString dateText(const QVariantMap &record)
{
    return record.value(QStringLiteral("date")).toString();
}

bool isImage(const QVariantMap &record)
{
    return record.value(QStringLiteral("isImage")).toLongLong() != 0;
}

} // namespace VideoCellText
