// The texts that a privileged launch is made of. Nothing inside a path or an argument is escaped,
// apart from the double quotes of the AppleScript text.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace bonkora {

// The detector and its arguments, each in double quotes, as a shell command.
std::string privilegedCommand(std::string_view spankPath, const std::vector<std::string>& args);

// A shell script of two lines, without a final line feed, that becomes that command.
std::string launcherScript(std::string_view spankPath, const std::vector<std::string>& args);

// The AppleScript statement that runs `command` as administrator.
std::string appleScriptText(std::string_view command);

}  // namespace bonkora
