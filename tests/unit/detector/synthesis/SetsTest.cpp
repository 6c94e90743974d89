#include "detector/synthesis/Sets.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace bonkora::detector::synthesis {

namespace {

TEST(SetsTest, everySoundIsWholeAndSwellsTooSlowlyToBeTakenForAKnock) {
    for (const auto& set : {pain(), sexy(), halo()}) {
        EXPECT_GE(set.size(), 6U);
        for (const auto& sound : set) {
            double loudest = 0.0;
            double atOnce = 0.0;
            for (std::size_t i = 0; i < sound.size(); ++i) {
                loudest = std::max(loudest, std::abs(sound[i]));
                atOnce = i < sampleRate / 200 ? loudest : atOnce;
            }
            EXPECT_GT(loudest, 0.3);
            EXPECT_LE(loudest, 1.0);
            EXPECT_LT(atOnce, 0.3 * loudest);
            EXPECT_LT(std::abs(sound.back()), 0.02);
        }
    }
}

TEST(SetsTest, theSameSoundsComeOutEveryTime) {
    EXPECT_EQ(pain(), pain());
    EXPECT_EQ(halo(), halo());
}

}  // namespace

}  // namespace bonkora::detector::synthesis
