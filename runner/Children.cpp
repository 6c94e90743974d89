#include "runner/Children.h"

#include <unistd.h>

#include <charconv>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <sstream>
#include <string>
#include <system_error>

namespace bonkora::runner {
namespace {

// The parent of that process; nothing when it is gone.
std::optional<pid_t> parentOf(const std::filesystem::path& folder) {
    std::ifstream file(folder / "stat");
    const std::string text(std::istreambuf_iterator<char>(file), {});
    // NUMBER (NAME) STATE PARENT ...; the name may hold anything, parentheses too.
    const std::size_t nameEnd = text.rfind(')');
    if (nameEnd == std::string::npos) {
        return std::nullopt;
    }
    std::istringstream rest(text.substr(nameEnd + 1));
    char state = 0;
    pid_t parent = 0;
    return rest >> state >> parent ? std::optional(parent) : std::nullopt;
}

}  // namespace

std::vector<pid_t> childrenOfThisProcess() {
    std::vector<pid_t> children;
    std::error_code error;
    for (std::filesystem::directory_iterator entry("/proc", error), end; !error && entry != end;
         entry.increment(error)) {
        const std::string name = entry->path().filename();
        pid_t process = 0;
        if (std::from_chars(name.data(), name.data() + name.size(), process).ec == std::errc() &&
            parentOf(entry->path()) == ::getpid()) {
            children.push_back(process);
        }
    }
    return children;
}

}  // namespace bonkora::runner
