#include "detector/detection/Tuning.h"

#include <gtest/gtest.h>

#include <cmath>

namespace bonkora::detector {

namespace {

double loudness(double decibels) {
    return std::pow(10.0, decibels / 20.0);
}

TEST(TuningTest, theLimitOfEvidenceRisesWithTheLoudnessInAStraightLine) {
    constexpr float quiet = -1.0F;
    constexpr float loud = 3.0F;
    for (const double decibels : {-120.0, -80.0, -52.0}) {
        EXPECT_NEAR(thresholdAt(loudness(decibels), quiet, loud), quiet, 1e-5) << decibels;
    }
    EXPECT_NEAR(thresholdAt(loudness(-44.0), quiet, loud), 0.0, 1e-5);
    EXPECT_NEAR(thresholdAt(loudness(-36.0), quiet, loud), 1.0, 1e-5);
    EXPECT_NEAR(thresholdAt(loudness(-28.0), quiet, loud), 2.0, 1e-5);
    for (const double decibels : {-20.0, -6.0, 0.0}) {
        EXPECT_NEAR(thresholdAt(loudness(decibels), quiet, loud), loud, 1e-5) << decibels;
    }
}

TEST(TuningTest, utterSilenceIsQuiet) {
    EXPECT_EQ(thresholdAt(0.0, 0.5F, 3.0F), 0.5F);
}

}  // namespace

}  // namespace bonkora::detector
