#pragma once
// Port: the platform version the program's version tests are asked against.
// Linux answers as the newest behaviour (10.15); tests pick older ones.
struct OperatingSystemVersion {
    int majorVersion = 10;
    int minorVersion = 15;
    int patchVersion = 0;
};

class SystemVersion {
public:
    virtual ~SystemVersion() = default;
    virtual OperatingSystemVersion operatingSystemVersion() const = 0;

    bool isAtLeast(int major, int minor) const
    {
        const OperatingSystemVersion v = operatingSystemVersion();
        return v.majorVersion > major || (v.majorVersion == major && v.minorVersion >= minor);
    }
};
