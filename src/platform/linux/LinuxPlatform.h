#pragma once
// The Linux adapters of every port, owned together; platform() hands out the bundle.
#include "Platform.h"

#include <memory>

class LinuxPlatform {
public:
    LinuxPlatform();
    ~LinuxPlatform();
    LinuxPlatform(const LinuxPlatform &) = delete;
    LinuxPlatform &operator=(const LinuxPlatform &) = delete;

    const Platform &platform() const { return platform_; }

private:
    struct Adapters;
    std::unique_ptr<Adapters> adapters_;
    Platform platform_;
};
