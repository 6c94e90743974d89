#include "app/ProgramArguments.h"

#include <string_view>

#include "app/Version.h"

namespace bonkora::programArguments {

namespace {

constexpr int wrongUse = 2;

const std::string usage =
    "Usage: bonkora [--help | --version]\n"
    "\n"
    "Answers slaps on the laptop with sound. Lives in the menu bar or tray: click the raised\n"
    "hand to open the panel, and press Start there. A second start opens the first one's panel.\n"
    "\n"
    "  --help     print this and end\n"
    "  --version  print the version and end\n";

}  // namespace

std::optional<Answer> answer(std::span<const char* const> arguments) {
    if (arguments.empty()) {
        return std::nullopt;
    }
    const std::string_view first = arguments.front();
    if (first == "--help" || first == "-h") {
        return Answer{0, usage, {}};
    }
    if (first == "--version") {
        return Answer{0, std::string("bonkora ") + version + '\n', {}};
    }
    return Answer{wrongUse, {}, "bonkora: unknown option: " + std::string(first) + "\n\n" + usage};
}

}  // namespace bonkora::programArguments
