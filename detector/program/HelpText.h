// What the detector says about itself. Nothing here may contain the letters that an application
// counts in plain lines (see docs/detector-protocol.md).
#pragma once

#include <string_view>

namespace bonkora::detector {

extern const std::string_view helpText;     // several lines, without the last line feed
extern const std::string_view versionText;  // one line, without line feed

}  // namespace bonkora::detector
