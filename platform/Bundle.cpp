#include "platform/Bundle.h"

#include "platform/FileManager.h"

namespace bonkora::platform {
namespace {

// The part before the last slash, and what follows it.
std::string_view folderOf(std::string_view path) {
    const auto slash = path.rfind('/');
    return slash == std::string_view::npos ? std::string_view() : path.substr(0, slash);
}

std::string_view nameOf(std::string_view path) {
    return path.substr(path.rfind('/') + 1);
}

}  // namespace

std::optional<std::string> Bundle::pathForResource(std::string_view name) const {
    if (!executablePath) {
        return std::nullopt;
    }
    const std::string_view folder = folderOf(*executablePath);
    const std::string_view contents = folderOf(folder);
    const bool inBundle = nameOf(contents) == "Contents" &&
                          (nameOf(folder) == "MacOS" || nameOf(folder) == "Helpers");
    std::string path = inBundle ? std::string(contents) + "/Resources/" : std::string(folder) + "/";
    path += name;
    return fileExists(path) ? std::optional(path) : std::nullopt;
}

Bundle Bundle::main(int argumentCount, const char* const* arguments) {
    return {currentExecutablePath(), {arguments, arguments + argumentCount}};
}

}  // namespace bonkora::platform
