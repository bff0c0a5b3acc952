#include "PulseModuleArguments.h"

#include <algorithm>

namespace pulse {

namespace {

QString escaped(const QString &text)
{
    QString out;
    out.reserve(text.size() + 8);
    for (const QChar c : text) {
        if (c == QLatin1Char('\\') || c == QLatin1Char('\'') || c == QLatin1Char('"'))
            out += QLatin1Char('\\');
        out += c;
    }
    return out;
}

} // namespace

QString argumentValue(const QString &text)
{
    const bool plain = !text.isEmpty() && std::all_of(text.begin(), text.end(), [](QChar c) {
        return (c.isLetterOrNumber() && c.unicode() < 128) ||
               QStringLiteral("._-:,@+/").contains(c);
    });
    if (plain)
        return text;
    return QLatin1Char('\'') + escaped(text) + QLatin1Char('\'');
}

QString propertyArgument(const QString &key, const QString &value)
{
    // The outer parser keeps the backslashes of a property list (it only needs them to find
    // the closing quote), so one escape serves both.
    return QStringLiteral("'%1=\"%2\"'").arg(key, escaped(value));
}

} // namespace pulse
