// The detector's output in any chunks gives the same state and the same console lines as in one,
// where the chunks are valid text; other chunks leave no trace. The first byte chooses the cuts.
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "bridge/SpankWrapper.h"
#include "fuzz/Require.h"
#include "platform/Text.h"
#include "tests/support/TestPlatform.h"

namespace bonkora::fuzz {
namespace {

struct Outcome {
    std::int64_t slapCount;
    double lastAmplitude;
    std::string statusMessage;
    std::vector<std::string> lines;

    bool operator==(const Outcome&) const = default;
};

// One controller for all inputs, set back to its first values before each: a start costs a hundred
// times what reading a line does.
class Controller {
  public:
    Outcome outcomeOf(const std::vector<std::string>& chunks) {
        wrapper->slapCount = 0;
        wrapper->lastAmplitude = 0.0;
        wrapper->statusMessage = "Ready";
        for (const std::string& chunk : chunks) {
            system.processes->last().print(chunk);
        }
        system.processes->last().print("\n");  // ends what is unfinished
        system.time->runDue();
        return {wrapper->slapCount, wrapper->lastAmplitude, wrapper->statusMessage,
                system.console->take()};
    }

  private:
    test::TestPlatform system;
    const std::shared_ptr<SpankWrapper> wrapper = [this] {
        auto made = system.makeController();
        made->start();
        system.console->take();
        return made;
    }();
};

// Cut at random, but never inside a character.
std::vector<std::string> cut(const std::string& text, unsigned seed) {
    std::minstd_rand random(seed + 1);
    std::vector<std::string> chunks{""};
    for (const char byte : text) {
        const bool beginsCharacter = (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
        if (beginsCharacter && random() % (1 + seed % 16) == 0) {
            chunks.emplace_back();
        }
        chunks.back() += byte;
    }
    return chunks;
}

void check(const std::string& input) {
    static Controller controller;
    const unsigned seed = input.empty() ? 0 : static_cast<unsigned char>(input.front());
    const std::string text = input.substr(input.empty() ? 0 : 1);
    const Outcome whole = controller.outcomeOf({text});
    if (platform::isValidUtf8(text)) {
        require(controller.outcomeOf(cut(text, seed)) == whole,
                "any chunks give what one chunk gives");
    } else {
        require(whole == controller.outcomeOf({}), "a chunk that is no text leaves no trace");
    }
}

}  // namespace
}  // namespace bonkora::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    bonkora::fuzz::check(std::string(data, data + size));
    return 0;
}
