#include "platform/Bundle.h"

#include "platform/FileManager.h"
#include "platform/System.h"

namespace bonkora::platform {
std::optional<std::string> Bundle::pathForResource(std::string_view name) const {
    if (!executablePath) {
        return std::nullopt;
    }
    const std::string_view folder = parentFolder(*executablePath);
    const std::string_view contents = parentFolder(folder);
    const bool inBundle = lastComponent(contents) == "Contents" &&
                          (lastComponent(folder) == "MacOS" || lastComponent(folder) == "Helpers");
    std::string path = inBundle ? std::string(contents) + "/Resources/" : std::string(folder) + "/";
    path += name;
    return fileExists(path) ? std::optional(path) : std::nullopt;
}

Bundle Bundle::main(int argumentCount, const char* const* arguments) {
    return {currentExecutablePath(), {arguments, arguments + argumentCount}};
}

}  // namespace bonkora::platform
