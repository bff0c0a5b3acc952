#pragma once
// The device names the routing recognises, in English, simplified and traditional
// Chinese system spellings. Comparisons are exact and case-sensitive unless noted.
#include <QString>
#include <QStringList>

namespace AudioDeviceNames {

inline const QString kLoopbackName = QStringLiteral("BlackHole 2ch");
inline const QString kLoopbackUID = QStringLiteral("BlackHole2ch_UID");
inline const QString kInputAggregate = QStringLiteral("MR-InputDevice");
inline const QString kOutputAggregate = QStringLiteral("MR-OutputDevice");

// A microphone by its whole name.
inline bool isFirstPassMicrophone(const QString &name)
{
    static const QStringList names{
        QStringLiteral("外置麦克风"), QStringLiteral("External Microphone"),
        QStringLiteral("Built-in Microphone"), QStringLiteral("内建麦克风")};
    return names.contains(name);
}

// A microphone by its ending, or a MacBook's device (case-insensitive).
inline bool isSecondPassMicrophone(const QString &name)
{
    return name.endsWith(QStringLiteral("Microphone")) ||
           name.toLower().startsWith(QStringLiteral("macbook")) ||
           name.endsWith(QStringLiteral("麦克风")) || name.endsWith(QStringLiteral("咪高風"));
}

inline bool isFirstPassOutput(const QString &name)
{
    return name.endsWith(QStringLiteral("耳机")) || name.endsWith(QStringLiteral("耳筒")) ||
           name.endsWith(QStringLiteral("Headphones")) ||
           name == QStringLiteral("Built-in Output") || name == QStringLiteral("内建输出");
}

} // namespace AudioDeviceNames
