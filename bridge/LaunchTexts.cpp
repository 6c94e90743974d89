#include "bridge/LaunchTexts.h"

namespace bonkora {

std::string privilegedCommand(std::string_view spankPath, const std::vector<std::string>& args) {
    std::string command;
    const auto appendQuoted = [&command](std::string_view word) {
        command += '"';
        command += word;
        command += '"';
    };
    appendQuoted(spankPath);
    command += ' ';
    for (const std::string& argument : args) {
        if (&argument != &args.front()) {
            command += ' ';
        }
        appendQuoted(argument);
    }
    return command;
}

std::string launcherScript(std::string_view spankPath, const std::vector<std::string>& args) {
    return "#!/bin/bash\nexec " + privilegedCommand(spankPath, args);
}

std::string appleScriptText(std::string_view command) {
    std::string text = "do shell script \"";
    for (const char letter : command) {
        if (letter == '"') {
            text += '\\';
        }
        text += letter;
    }
    return text + "\" with administrator privileges";
}

}  // namespace bonkora
