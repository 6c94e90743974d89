#include "bridge/Mode.h"

#include <gtest/gtest.h>

#include <unordered_set>

namespace bonkora {
namespace {

TEST(Mode, isMadeFromItsExactName) {
    EXPECT_EQ(modeFromRawValue("halo"), Mode::halo);
    EXPECT_EQ(modeFromRawValue("pain"), Mode::pain);
    EXPECT_EQ(modeFromRawValue("sexy"), Mode::sexy);
    EXPECT_EQ(modeFromRawValue("custom"), Mode::custom);
}

TEST(Mode, anyOtherTextGivesNoMode) {
    for (const char* const text : {"Halo", " halo", "halo ", "", "hal", "haloo"}) {
        EXPECT_EQ(modeFromRawValue(text), std::nullopt) << text;
    }
}

TEST(Mode, allCasesStandInTheOrderOfDeclaration) {
    EXPECT_EQ(allCases, (std::array{Mode::pain, Mode::sexy, Mode::halo, Mode::custom}));
}

TEST(Mode, isIdentifiedByItsRawValue) {
    std::unordered_set<Mode> modes(allCases.begin(), allCases.end());
    EXPECT_EQ(modes.size(), 4U);
    for (const Mode mode : allCases) {
        EXPECT_EQ(id(mode), rawValue(mode));
        EXPECT_EQ(modeFromRawValue(rawValue(mode)), mode);
    }
}

}  // namespace
}  // namespace bonkora
