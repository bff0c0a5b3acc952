#pragma once
// The texts of one row of the list of recordings, from its record (the keys of the list
// file: "name", "duration", "size", "date"). Pure, so they are tested without a display.
#include <QString>
#include <QVariantMap>

namespace VideoCellText {

// "%02lu:%02lu:%02lu": hours, minutes, seconds of the seconds truncated to a whole number
// (3725.4 gives "01:02:05"). Hours are not capped at 99. Negative or missing reads as 0.
QString durationText(double seconds);
// "%.2f M" of the whole bytes over 1000000 (1500000 gives "1.50 M"). Sizes of long
// recordings are stored as 32-bit floats, so the whole part is taken first.
QString sizeText(double bytes);

QString nameText(const QVariantMap &record);
QString durationText(const QVariantMap &record);
QString sizeText(const QVariantMap &record);
QString dateText(const QVariantMap &record);
// "isImage" is the one flag looked at; absent reads as false.
bool isImage(const QVariantMap &record);

} // namespace VideoCellText
