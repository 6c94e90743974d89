#include "platform/Console.h"

#include <unistd.h>

#include <mutex>
#include <string>

#include "platform/Pipe.h"

namespace bonkora::platform {
namespace {

class StandardOutput final : public Console {
  public:
    void print(std::string_view line) override {
        const std::lock_guard lock(mutex);
        text.assign(line);
        text += '\n';
        writeAll(STDOUT_FILENO, text);
    }

  private:
    std::mutex mutex;
    std::string text;  // one write a line; kept for its memory
};

}  // namespace

std::shared_ptr<Console> Console::standardOutput() {
    return std::make_shared<StandardOutput>();
}

}  // namespace bonkora::platform
