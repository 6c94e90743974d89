#include <gtest/gtest.h>
#include <unistd.h>

#include <limits>

#include "bridge/DetectorOutput.h"
#include "tests/support/TestPlatform.h"

namespace bonkora {
namespace {

using Lines = std::vector<std::string>;

class Output : public testing::Test {
  protected:
    void SetUp() override {
        wrapper->start();
        system.console->take();
    }

    // The detector writes `chunk`; what the console then shows.
    Lines feed(std::string_view chunk) {
        system.processes->last().print(chunk);
        system.time->runDue();
        return system.console->take();
    }

    test::TestPlatform system;
    std::shared_ptr<SpankWrapper> wrapper = system.makeController();
};

TEST_F(Output, aSlapCutInTwoCountsOnceWhenItsLineEnds) {
    EXPECT_EQ(feed("{\"type\":\"sl"), Lines{});
    EXPECT_EQ(wrapper->slapCount, 0);
    EXPECT_EQ(feed("ap\",\"amplitude\":0.5}\n"), Lines{"👋 Slap #1 (amplitude: 0.5)"});
    EXPECT_EQ(wrapper->slapCount, 1);
    EXPECT_EQ(wrapper->lastAmplitude, 0.5);
}

TEST_F(Output, aSlapCutAtEveryByteCountsTheSame) {
    const std::string line = "{\"type\":\"slap\",\"amplitude\":0.25}\r\n";
    for (std::size_t cut = 0; cut <= line.size(); ++cut) {
        Lines lines = feed(line.substr(0, cut));
        const Lines more = feed(line.substr(cut));
        lines.insert(lines.end(), more.begin(), more.end());
        EXPECT_EQ(lines, Lines{"👋 Slap #" + std::to_string(cut + 1) + " (amplitude: 0.25)"});
    }
}

TEST_F(Output, twoLinesInOneChunkAreHandledInOrder) {
    EXPECT_EQ(feed("{\"type\":\"slap\",\"amplitude\":1}\n{\"type\":\"hit\",\"amplitude\":2}\n"),
              (Lines{"👋 Slap #1 (amplitude: 1.0)", "👋 Slap #2 (amplitude: 2.0)"}));
}

TEST_F(Output, aHitWithoutAmplitudeKeepsTheLastOne) {
    feed("{\"type\":\"slap\",\"amplitude\":0.5}\n");
    EXPECT_EQ(feed("{\"type\":\"hit\"}\n"), Lines{"👋 Slap #2 (amplitude: 0.5)"});
    EXPECT_EQ(wrapper->slapCount, 2);
    EXPECT_EQ(wrapper->lastAmplitude, 0.5);
}

TEST_F(Output, anAmplitudeThatIsNoNumberKeepsTheLastOne) {
    feed("{\"type\":\"slap\",\"amplitude\":0.5}\n");
    for (const char* const amplitude : {"\"0.9\"", "null", "true", "[0.9]", "{\"x\":0.9}"}) {
        feed(std::string("{\"type\":\"slap\",\"amplitude\":") + amplitude + "}\n");
        EXPECT_EQ(wrapper->lastAmplitude, 0.5) << amplitude;
    }
    EXPECT_EQ(wrapper->slapCount, 6);
}

TEST_F(Output, anIntegerIsAnAmplitudeToo) {
    EXPECT_EQ(feed("{\"type\":\"slap\",\"amplitude\":3}\n"), Lines{"👋 Slap #1 (amplitude: 3.0)"});
}

TEST_F(Output, aSlapChangesTheCountBeforeTheAmplitudeAndNothingElse) {
    Lines seen;
    const auto subscription = wrapper->objectWillChange.sink([&] {
        seen.push_back(std::to_string(wrapper->slapCount) + " " +
                       std::to_string(wrapper->lastAmplitude > 0));
    });
    feed("{\"type\":\"slap\",\"amplitude\":0.5}\n");
    EXPECT_EQ(seen, (Lines{"0 0", "1 0"}));
    EXPECT_EQ(wrapper->statusMessage, "Listening for slaps...");
}

TEST_F(Output, readyWithACarriageReturnSetsTheStatus) {
    wrapper->statusMessage = "Error: no sensor";
    EXPECT_EQ(feed("{\"type\":\"ready\"}\r\n"), Lines{"✅ Spank ready"});
    EXPECT_EQ(wrapper->statusMessage, "Listening for slaps...");
}

TEST_F(Output, anErrorShowsItsMessage) {
    EXPECT_EQ(feed("{\"type\":\"error\",\"message\":\"no sensor\"}\n"),
              Lines{"❌ Spank error: no sensor"});
    EXPECT_EQ(wrapper->statusMessage, "Error: no sensor");
}

TEST_F(Output, anErrorWithoutATextMessageIsIgnored) {
    int announcements = 0;
    const auto subscription = wrapper->objectWillChange.sink([&] { ++announcements; });
    EXPECT_EQ(feed("{\"type\":\"error\",\"message\":7}\n{\"type\":\"error\"}\n"), Lines{});
    EXPECT_EQ(announcements, 0);
}

TEST_F(Output, anUnknownEventIsPrintedAsItCame) {
    EXPECT_EQ(feed(" {\"type\": \"Slap\", \"amplitude\": 0.5} \n"),
              Lines{"📋 spank event: {\"type\": \"Slap\", \"amplitude\": 0.5}"});
    EXPECT_EQ(feed("{\"type\":\"slap \"}\n"), Lines{"📋 spank event: {\"type\":\"slap \"}"});
    EXPECT_EQ(wrapper->slapCount, 0);
}

TEST_F(Output, typesAreComparedWithTheirCase) {
    wrapper->statusMessage = "as before";
    for (const std::string type : {"Slap", "SLAP", "Hit", "HIT", "Ready", "READY", "Error"}) {
        const std::string line = R"({"type":")" + type + R"(","amplitude":0.5,"message":"text"})";
        EXPECT_EQ(feed(line + '\n'), Lines{"📋 spank event: " + line});
    }
    EXPECT_EQ(wrapper->slapCount, 0);
    EXPECT_EQ(wrapper->lastAmplitude, 0.0);
    EXPECT_EQ(wrapper->statusMessage, "as before");
}

TEST_F(Output, anObjectWithoutATextTypeIsIgnoredSilently) {
    EXPECT_EQ(feed("{}\n{\"kind\":\"slap\"}\n{\"type\":1}\n{\"type\":null}\n"), Lines{});
    EXPECT_EQ(feed("{\"data\":{\"type\":\"slap\"}}\n"), Lines{});
    EXPECT_EQ(wrapper->slapCount, 0);
}

TEST_F(Output, aPlainLineWithOneOfTheWordsCounts) {
    feed("{\"type\":\"slap\",\"amplitude\":0.5}\n");
    EXPECT_EQ(feed("Playing sound 3\n"), Lines{"📋 spank: Playing sound 3"});
    EXPECT_EQ(wrapper->slapCount, 2);
    EXPECT_EQ(wrapper->lastAmplitude, 0.5);
    EXPECT_EQ(feed("Listening...\n"), Lines{"📋 spank: Listening..."});
    EXPECT_EQ(wrapper->slapCount, 2);
}

TEST_F(Output, aPlainLineCountsOnceHoweverManyWordsItHolds) {
    feed("slap hit playing slap\n");
    EXPECT_EQ(wrapper->slapCount, 1);
}

TEST_F(Output, theWordsCountWhereverTheyStand) {
    for (const char* const line : {"SLAP", "a white lie", "displaying", "HiT", "overslapped"}) {
        EXPECT_TRUE(plainLineCountsAsSlap(line)) << line;
    }
    for (const char* const line : {"", "sla p", "h it", "play", "s\u200Blap", "ſlap", "ﬁt"}) {
        EXPECT_FALSE(plainLineCountsAsSlap(line)) << line;
    }
}

TEST_F(Output, anArrayOrAScalarTakesThePlainPath) {
    EXPECT_EQ(feed("[{\"type\":\"ready\"}]\n"), Lines{"📋 spank: [{\"type\":\"ready\"}]"});
    EXPECT_EQ(wrapper->slapCount, 0);
    EXPECT_EQ(feed("[{\"type\":\"slap\"}]\n"), Lines{"📋 spank: [{\"type\":\"slap\"}]"});
    EXPECT_EQ(wrapper->slapCount, 1);
    EXPECT_EQ(feed("\"text\"\n42\nnull\n"),
              (Lines{"📋 spank: \"text\"", "📋 spank: 42", "📋 spank: null"}));
}

TEST_F(Output, brokenJsonTakesThePlainPath) {
    EXPECT_EQ(feed("{\"type\":\"slap\"\n"), Lines{"📋 spank: {\"type\":\"slap\""});
    EXPECT_EQ(wrapper->slapCount, 1);
    EXPECT_EQ(wrapper->lastAmplitude, 0.0);
}

TEST_F(Output, emptyAndBlankLinesDoNothing) {
    int announcements = 0;
    const auto subscription = wrapper->objectWillChange.sink([&] { ++announcements; });
    EXPECT_EQ(feed("\n   \n\t\r\n\u3000\n"), Lines{});
    EXPECT_EQ(announcements, 0);
}

TEST_F(Output, textWithoutALineFeedWaitsForOne) {
    EXPECT_EQ(feed("half a line"), Lines{});
    EXPECT_EQ(feed(" and its rest"), Lines{});
    EXPECT_EQ(feed("\n"), Lines{"📋 spank: half a line and its rest"});
}

TEST_F(Output, onlyALineFeedEndsALine) {
    EXPECT_EQ(feed("a\rb\u2028c\vd\n"), Lines{"📋 spank: a\rb\u2028c\vd"});
}

TEST_F(Output, anUnfinishedLineIsFlushedNeitherAtTheEndNorAtAStart) {
    feed("left over ");
    system.processes->last().print("");
    system.processes->last().end(0);
    system.time->runDue();
    EXPECT_EQ(system.console->take(), Lines{"⏹ Spank process ended with code: 0"});
    wrapper->start();
    system.console->take();
    EXPECT_EQ(feed("and new\n"), Lines{"📋 spank: left over and new"});
}

TEST_F(Output, twoOverlappingRunnersBothCount) {
    system.processes->last().end(0);
    system.time->runDue();
    wrapper->start();
    system.processes->made[0]->print("{\"type\":\"slap\"}\n");
    system.processes->made[1]->print("{\"type\":\"slap\"}\n");
    system.time->runDue();
    EXPECT_EQ(wrapper->slapCount, 2);
}

TEST_F(Output, aNulByteMakesALinePlainText) {
    const std::string line("{\"type\":\"slap\"\0}", 16);
    EXPECT_EQ(feed(line + "\n"), Lines{"📋 spank: " + line});
    EXPECT_EQ(wrapper->slapCount, 1);
}

TEST_F(Output, aByteOrderMarkBeforeAnEventIsSkipped) {
    EXPECT_EQ(feed("\uFEFF{\"type\":\"ready\"}\n"), Lines{"✅ Spank ready"});
}

TEST_F(Output, aMillionNestedBracketsAreAPlainLine) {
    const std::string brackets(1'000'000, '[');
    EXPECT_EQ(feed(brackets + "\n"), Lines{"📋 spank: " + brackets});
    EXPECT_EQ(feed("{\"a\":" + brackets + "\n"), Lines{"📋 spank: {\"a\":" + brackets});
}

TEST_F(Output, aLineOfTenMegabytesIsOneLine) {
    const std::string filler(10U << 20U, 'x');
    EXPECT_EQ(feed("{\"type\":\"slap\",\"note\":\"" + filler + "\",\"amplitude\":0.5}\n"),
              Lines{"👋 Slap #1 (amplitude: 0.5)"});
}

TEST_F(Output, sixtyFourMegabytesWithoutALineFeedAreKeptAndCountOnce) {
    const std::string chunk(65536, 'x');
    for (int i = 0; i < 1024; ++i) {
        EXPECT_EQ(feed(chunk), Lines{});
    }
    const Lines lines = feed("slap\n");
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0].size(), (64U << 20U) + std::string("📋 spank: slap").size());
    EXPECT_EQ(wrapper->slapCount, 1);
}

TEST_F(Output, anOverflowOfTheCountIsAFatalError) {
    wrapper->slapCount = std::numeric_limits<std::int64_t>::max();
    EXPECT_DEATH(feed("{\"type\":\"slap\"}\n"), "Fatal error: the slap count overflows\n");
    EXPECT_DEATH(feed("plain slap\n"), "Fatal error: the slap count overflows\n");
}

TEST_F(Output, whatCameBeforeAFatalErrorIsOnTheConsole) {
    const auto overflow = [&] {
        ::dup2(STDERR_FILENO, STDOUT_FILENO);
        platform::Platform platform = system.value();
        platform.console = platform::Console::standardOutput();
        const auto speaking = SpankWrapper::create(platform);
        speaking->start();
        speaking->slapCount = std::numeric_limits<std::int64_t>::max();
        system.processes->last().print("before\nslap\n");
        system.time->runDue();
    };
    EXPECT_DEATH(overflow(), "spank: before(.|\n)*Fatal error");
}

}  // namespace
}  // namespace bonkora
