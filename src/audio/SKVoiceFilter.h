#pragma once
// The level of a buffer of sound: every 32-bit sample's magnitude scaled so that full
// scale is half the height of the view that shows it.
#include <QByteArray>
#include <QList>
#include <QSizeF>
#include <cstdint>

class SKVoiceFilter {
public:
    // The bytes as 32-bit signed samples (a rest of fewer than 4 bytes is dropped),
    // channels not told apart; each magnitude times height / 2^32.
    QList<double> filteredSamplesForSize(const QSizeF &size, const QByteArray &data) const;
    // The largest magnitude of size values.
    static int64_t maxValueInArray(const int32_t *values, int size);
};
