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

// As it is, but for what would end a value quoted by `quote` early on PipeWire's parser.
QString carried(const QString &text, QChar quote)
{
    QString out = text;
    out.replace(QLatin1Char('\''), QChar(0x2019));
    if (quote == QLatin1Char('"'))
        out.replace(QLatin1Char('"'), QChar(0x201D));
    if (out.endsWith(QLatin1Char('\\')))
        out[out.size() - 1] = QChar(0x2216);
    return out;
}

} // namespace

ArgumentParser argumentParserOf(const QString &serverName)
{
    return serverName.contains(QLatin1String("PipeWire")) ? ArgumentParser::PipeWire
                                                          : ArgumentParser::PulseAudio;
}

QString argumentValue(const QString &text, ArgumentParser parser)
{
    const bool plain = !text.isEmpty() && std::all_of(text.begin(), text.end(), [](QChar c) {
        return (c.isLetterOrNumber() && c.unicode() < 128) ||
               QStringLiteral("._-:,@+/").contains(c);
    });
    if (plain)
        return text;
    if (parser == ArgumentParser::PipeWire)
        return QLatin1Char('\'') + carried(text, QLatin1Char('\'')) + QLatin1Char('\'');
    return QLatin1Char('\'') + escaped(text) + QLatin1Char('\'');
}

QString propertyArgument(const QString &key, const QString &value, ArgumentParser parser)
{
    if (parser == ArgumentParser::PipeWire)
        return QStringLiteral("'%1=\"%2\"'").arg(key, carried(value, QLatin1Char('"')));
    // The outer parser keeps the backslashes of a property list (it only needs them to find
    // the closing quote), so one escape serves both.
    return QStringLiteral("'%1=\"%2\"'").arg(key, escaped(value));
}

} // namespace pulse
