#pragma once
// Owning handle of a libplist node.
#include <memory>
#include <plist/plist.h>

struct PlistDeleter {
    void operator()(plist_t node) const
    {
        if (node)
            plist_free(node);
    }
};
using PlistPtr = std::unique_ptr<void, PlistDeleter>;
