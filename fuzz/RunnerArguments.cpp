// The runner's command line: arguments, one a line of the input, are either pairs of -e and a text,
// which then make the script's lines, or refused.
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/Require.h"
#include "runner/Script.h"

namespace bonkora::fuzz {
namespace {

void check(const std::string& input) {
    std::vector<std::string_view> arguments;
    for (std::string_view rest(input); !rest.empty();) {
        const auto end = rest.find('\n');
        arguments.push_back(rest.substr(0, end));
        rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    }
    bool pairs = !arguments.empty() && arguments.size() % 2 == 0;
    std::string lines;
    for (std::size_t i = 0; pairs && i < arguments.size(); i += 2) {
        pairs = arguments[i] == "-e";
        lines += arguments[i + 1];
        lines += '\n';
    }
    const auto script = runner::scriptFromArguments(arguments);
    require(script.has_value() == pairs, "pairs of -e and a text, and nothing else, are taken");
    require(!script || *script == lines || *script + '\n' == lines, "each text is a line");
}

}  // namespace
}  // namespace bonkora::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    bonkora::fuzz::check(std::string(data, data + size));
    return 0;
}
