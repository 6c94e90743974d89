#include <cstdio>
#include <span>

#include "app/Application.h"
#include "app/ProgramArguments.h"
#include "platform/Descriptor.h"

int main(int argumentCount, char** arguments) {
    bonkora::platform::prepareStandardStreams();
    const std::span<const char* const> all(arguments, static_cast<std::size_t>(argumentCount));
    if (const auto answer = bonkora::programArguments::answer(all.subspan(all.empty() ? 0 : 1))) {
        std::fputs(answer->output.c_str(), stdout);
        std::fputs(answer->error.c_str(), stderr);
        return answer->status;
    }
    return bonkora::runApplication(argumentCount, arguments);
}
