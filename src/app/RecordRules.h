#pragma once
// When a running recording stops by itself: the fixed rule (by size or by time) and the
// relative stop armed during a recording. A limit of 0 never fires.
struct FixedStopRule {
    bool isAutoStop = false;
    bool bySize = false;
    double endTimeSeconds = 0;
    double endSizeMegabytes = 0; // 10^6 bytes
};

inline bool fixedRuleFires(const FixedStopRule &rule, bool recording, int seconds,
                           double sizeMegabytes)
{
    if (!rule.isAutoStop || !recording)
        return false;
    if (rule.bySize)
        return rule.endSizeMegabytes > 0.0 && sizeMegabytes >= rule.endSizeMegabytes;
    return rule.endTimeSeconds > 0.0 && seconds >= rule.endTimeSeconds;
}

inline bool relativeStopFires(double duration, bool withTime, double now, double armedAt)
{
    return duration > 0.0 && withTime && now - armedAt > duration;
}
