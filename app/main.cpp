#include <cstdio>
#include <span>

#include "app/Application.h"
#include "app/CommandLine.h"
#include "platform/Descriptor.h"

int main(int argumentCount, char** arguments) {
    bonkora::platform::prepareStandardStreams();
    const std::span<const char* const> all(arguments, static_cast<std::size_t>(argumentCount));
    const auto answer = bonkora::commandLine::answer(all.subspan(all.empty() ? 0 : 1));
    if (answer.status >= 0) {
        std::fputs(answer.output.c_str(), stdout);
        std::fputs(answer.error.c_str(), stderr);
        return answer.status;
    }
    return bonkora::runApplication(argumentCount, arguments);
}
