// ScriptRange: where something stands in a script. Values; any thread.
#pragma once

#include <cstddef>

namespace bonkora::runner {

struct ScriptRange {
    // In characters (Unicode code points, not bytes), the end not included.
    std::size_t start = 0;
    std::size_t end = 0;

    friend bool operator==(const ScriptRange&, const ScriptRange&) = default;
};

}  // namespace bonkora::runner
