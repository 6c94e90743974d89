// Two claims about scripts: any bytes are either understood or refused, and what the application
// quotes without a backslash the runner reads back unchanged.
#include <cstdint>
#include <string>

#include "bridge/LaunchTexts.h"
#include "fuzz/Require.h"
#include "runner/Script.h"

namespace bonkora::fuzz {
namespace {

void check(const std::string& text) {
    runner::parseScript(text);

    const auto command = runner::parseScript(appleScriptText(text));
    const bool plain = text.find('\\') == std::string::npos && text.find('\0') == std::string::npos;
    if (command) {
        require(command->withAdministratorPrivileges, "the application asks for privileges");
        require(!plain || command->text == text, "what is quoted is read back unchanged");
    } else {
        require(!plain, "only a backslash or a NUL can make the application's script wrong");
    }
}

}  // namespace
}  // namespace bonkora::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    bonkora::fuzz::check(std::string(data, data + size));
    return 0;
}
