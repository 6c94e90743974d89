#include "runner/Arguments.h"

namespace bonkora::runner {

const std::string_view usage =
    "usage: osascript -e 'do shell script \"COMMAND\" [with administrator privileges]'\n"
    "Several -e texts are the lines of one script.\n";

std::optional<std::string> scriptFromArguments(const std::vector<std::string_view>& arguments) {
    if (arguments.empty() || arguments.size() % 2 != 0) {
        return std::nullopt;
    }
    std::string script;
    for (std::size_t i = 0; i < arguments.size(); i += 2) {
        if (arguments[i] != "-e") {
            return std::nullopt;
        }
        script += i > 0 ? "\n" : "";
        script += arguments[i + 1];
    }
    return script;
}

}  // namespace bonkora::runner
