// Configuration: what a user may set in a file and an application has no option for. Values; any
// thread.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace bonkora::detector {

struct Configuration {
    std::string sensor = "auto";  // as --sensor
    std::string device;           // of that name only; empty: any
    std::string soundsFolder;     // empty: the built-in sounds
    bool mute = false;
    // One for each line that was passed over, for people: "line 3: ...".
    std::vector<std::string> complaints;
};

// Reads "key = value" lines; blank lines and lines that begin with "#" are passed over. A later
// line of the same key wins. Whatever `text` holds, the good lines count.
Configuration parseConfiguration(std::string_view text);

// The configuration of the user whose environment this is. No file: the defaults.
Configuration readConfiguration();

}  // namespace bonkora::detector
