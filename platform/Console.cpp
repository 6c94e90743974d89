#include "platform/Console.h"

#include <unistd.h>

#include <cstdlib>
#include <mutex>
#include <string>

#include "platform/Descriptor.h"

namespace bonkora::platform {
namespace {

class StandardOutput final : public Console {
  public:
    void print(std::string_view line) override {
        const std::lock_guard lock(mutex);
        text += line;
        text += '\n';
        if (bursts == 0) {
            write();
        }
    }

    void flush() override {
        const std::lock_guard lock(mutex);
        write();
    }

  private:
    void beginBurst() override {
        const std::lock_guard lock(mutex);
        ++bursts;
    }

    void endBurst() override {
        const std::lock_guard lock(mutex);
        if (--bursts == 0) {
            write();
        }
    }

    void write() {
        writeAll(STDOUT_FILENO, text);
        text.clear();
    }

    std::mutex mutex;
    int bursts = 0;
    std::string text;  // not written yet
};

}  // namespace

std::shared_ptr<Console> Console::standardOutput() {
    return std::make_shared<StandardOutput>();
}

void fatalError(std::string_view message) {
    writeAll(STDERR_FILENO, "Fatal error: " + std::string(message) + "\n");
    std::abort();
}

}  // namespace bonkora::platform
