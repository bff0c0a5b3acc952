#include "SKVoiceFilter.h"

#include <cstdlib>
#include <cstring>

namespace {

// Height divided by 2 to the power 32.
constexpr double kScale = 2.3283064365386963e-10;
// Samples are reduced one by one; a wider window would smooth the level.
constexpr int kWindow = 1;

} // namespace

QList<double> SKVoiceFilter::filteredSamplesForSize(const QSizeF &size,
                                                    const QByteArray &data) const
{
    const qsizetype count = data.size() / qsizetype(sizeof(int32_t));
    QList<double> result;
    result.reserve(count);
    const double factor = size.height() * kScale;
    for (qsizetype i = 0; i < count; i += kWindow) {
        int32_t window[kWindow];
        std::memcpy(window, data.constData() + i * sizeof(int32_t), sizeof(window));
        result.append(double(maxValueInArray(window, kWindow)) * factor);
    }
    return result;
}

int64_t SKVoiceFilter::maxValueInArray(const int32_t *values, int size)
{
    int64_t largest = 0;
    for (int i = 0; i < size; ++i)
        largest = std::max<int64_t>(largest, std::llabs(int64_t(values[i])));
    return largest;
}
