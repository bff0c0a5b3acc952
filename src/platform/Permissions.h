#pragma once
// Port: capture permissions. Status values: 0 not determined, 1 restricted, 2 denied,
// 3 authorised. X11 has no capture permission, so the Linux adapter answers 3.
#include <functional>

enum class MediaType { Video, Audio };

class Permissions {
public:
    static constexpr int AuthorizationStatusAuthorized = 3;

    virtual ~Permissions() = default;
    virtual int authorizationStatusForMediaType(MediaType type) const = 0;
    // The completion may run on any thread.
    virtual void requestAccessForMediaType(MediaType type,
                                           std::function<void(bool granted)> completion) = 0;
};
