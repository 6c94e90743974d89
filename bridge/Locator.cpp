#include "bridge/Locator.h"

#include <filesystem>
#include <optional>
#include <system_error>

#include "platform/Console.h"
#include "platform/FileManager.h"

namespace bonkora {
namespace {

std::string executableLocation(const platform::Bundle& bundle) {
    if (bundle.executablePath) {
        return *bundle.executablePath;
    }
    if (bundle.arguments.empty()) {
        platform::fatalError("the process has no arguments");
    }
    const std::string& path = bundle.arguments.front();
    if (path.starts_with('/')) {
        return path;
    }
    // Without a working directory, because it has been removed, the path starts at the root.
    std::error_code failed;
    return std::filesystem::current_path(failed).string() + '/' + path;
}

// Joins the two with exactly one slash and changes nothing else.
std::string appending(std::string path, std::string_view component) {
    if (path.empty() || path.back() != '/') {
        path += '/';
    }
    return path += component;
}

}  // namespace

std::vector<std::string> candidatePaths(const platform::Bundle& bundle) {
    const std::string executable = executableLocation(bundle);
    const std::string folder = std::string(platform::parentFolder(executable));

    std::vector<std::string> candidates;
    candidates.push_back(appending(appending(folder, "../../Resources"), "spank"));
    if (auto resource = bundle.pathForResource("spank")) {
        candidates.push_back(std::move(*resource));
    }
    candidates.push_back(appending(folder, "spank"));
    candidates.emplace_back(fixedDevelopmentPath);
    return candidates;
}

}  // namespace bonkora
