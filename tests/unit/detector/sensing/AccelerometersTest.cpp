#include "detector/sensing/Accelerometers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <utility>

#include "detector/program/SensorSource.h"
#include "tests/support/TemporaryFolder.h"

namespace bonkora::detector {

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::FloatNear;
using testing::HasSubstr;

// What both kinds of files say below, each in its own unit.
const auto tiltedAndInG =
    ElementsAre(FloatNear(0.1F, 1e-4F), FloatNear(-0.05F, 1e-4F), FloatNear(1.0F, 1e-4F));

// A folder of files that looks like the kernel's.
class AccelerometersTest : public testing::Test {
  protected:
    void write(const std::string& path, const std::string& text) const {
        folder.write("sys/" + path, text + "\n");
    }
    std::string contentOf(const std::string& path) const {
        const auto text = test::readFile(folder / ("sys/" + path));
        return text.substr(0, text.find('\n'));
    }

    void addIndustrialIo(int number, const std::string& name, const std::string& rate) const {
        const auto device = "bus/iio/devices/iio:device" + std::to_string(number) + "/";
        write(device + "name", name);
        write(device + "in_accel_x_raw", "100");
        write(device + "in_accel_y_raw", "-50");
        write(device + "in_accel_z_raw", "1000");
        write(device + "in_accel_scale", "0.00980665");
        if (!rate.empty()) {
            write(device + "sampling_frequency", rate);
            write(device + "sampling_frequency_available", rate);
        }
    }

    // The sensor's next reading, which its own clock gives.
    static Frame nextReading(Sensor& sensor) {
        pollfd news{sensor.descriptor(), POLLIN, 0};
        std::vector<Frame> frames;
        if (::poll(&news, 1, 5000) == 1) {
            sensor.read(frames);
        }
        return frames.empty() ? Frame{} : frames.front();
    }

    const test::TemporaryFolder folder;
    const SystemRoots roots{folder / "sys", folder / "dev"};
};

TEST_F(AccelerometersTest, anEmptySystemHasNone) {
    EXPECT_TRUE(findAccelerometers(roots).empty());
}

TEST_F(AccelerometersTest, findsThemInTheOrderOfTheirNumbers) {
    addIndustrialIo(10, "ten", "400");
    addIndustrialIo(2, "two", "400");
    write("bus/iio/devices/iio:device1/in_illuminance_raw", "3");
    write("bus/iio/devices/trigger0/name", "two-trigger");
    write("devices/platform/lis3lv02d/position", "(1,2,1000)");
    const auto found = findAccelerometers(roots);
    ASSERT_EQ(found.size(), 3U);
    EXPECT_EQ(found[0].id, "iio:device2");
    EXPECT_EQ(found[1].name, "ten");
    EXPECT_EQ(found[2].id, "lis3lv02d");
}

TEST_F(AccelerometersTest, polledReadingsAreInG) {
    addIndustrialIo(0, "bma", "400");
    auto opened = openPolled(findAccelerometers(roots).at(0));
    ASSERT_TRUE(opened) << opened.error();
    EXPECT_EQ((*opened)->description().rate, 400.0);
    EXPECT_THAT(nextReading(**opened), tiltedAndInG);
}

TEST_F(AccelerometersTest, positionFilesAreReadInTheirOwnUnits) {
    write("devices/platform/lis3lv02d/position", "(100,-50,1000)");
    write("devices/platform/lis3lv02d/rate", "400");
    auto opened = openPolled(findAccelerometers(roots).at(0));
    ASSERT_TRUE(opened) << opened.error();
    EXPECT_EQ((*opened)->description().rate, 400.0);
    EXPECT_THAT(nextReading(**opened), tiltedAndInG);
}

TEST_F(AccelerometersTest, positionFilesThatMakeNoSenseAreRefused) {
    for (const char* const text : {"", "1,2,3", "(1,2)", "(1,2,much)", "(1,2,3", "()"}) {
        write("devices/platform/lis3lv02d/position", text);
        const auto opened = openPolled(findAccelerometers(roots).at(0));
        ASSERT_FALSE(opened) << text;
        EXPECT_THAT(opened.error(), HasSubstr("cannot be read"));
    }
}

TEST_F(AccelerometersTest, onePositionFileThatVanishesIsALostSensor) {
    write("devices/platform/lis3lv02d/position", "(0,0,1000)");
    auto opened = openPolled(findAccelerometers(roots).at(0));
    ASSERT_TRUE(opened) << opened.error();
    std::filesystem::remove(folder / "sys/devices/platform/lis3lv02d/position");
    Sensor& sensor = **opened;
    pollfd news{sensor.descriptor(), POLLIN, 0};
    ASSERT_EQ(::poll(&news, 1, 5000), 1);
    std::vector<Frame> frames;
    EXPECT_EQ(sensor.read(frames).kind, SensorState::Kind::lost);
}

TEST_F(AccelerometersTest, theFastestUsefulRateIsSetAndGivenBack) {
    addIndustrialIo(0, "bma", "25");
    const std::string device = "bus/iio/devices/iio:device0/";
    write(device + "sampling_frequency_available", "25 50 100 400 1600 3200");
    {
        const auto opened = openPolled(findAccelerometers(roots).at(0));
        ASSERT_TRUE(opened);
        EXPECT_EQ(contentOf(device + "sampling_frequency"), "1600");
    }
    EXPECT_EQ(contentOf(device + "sampling_frequency"), "25");
}

TEST_F(AccelerometersTest, autoPassesOverOneThatIsTooSlowAndSaysSo) {
    addIndustrialIo(0, "sluggish", "100");
    SensorChoice choice;
    choice.roots = roots;
    const auto opened = chooseAccelerometer(choice, openAccelerometers(roots));
    ASSERT_FALSE(opened);
    EXPECT_EQ(opened.error(), "sluggish gives only 100 readings a second");
    choice.sensor = "accelerometer";
    EXPECT_TRUE(chooseAccelerometer(choice, openAccelerometers(roots)));
    EXPECT_THAT(listSensors(roots),
                Contains(HasSubstr("100 readings a second; taken only if asked for")));
}

TEST_F(AccelerometersTest, oneThatCannotFeelAKnockIsRefusedEvenIfAskedFor) {
    addIndustrialIo(0, "hub", "10");
    SensorChoice choice;
    choice.sensor = "accelerometer";
    choice.roots = roots;
    const auto opened = chooseAccelerometer(choice, openAccelerometers(roots));
    ASSERT_FALSE(opened);
    EXPECT_EQ(opened.error(), "hub gives only 10 readings a second");
    EXPECT_THAT(listSensors(roots), Contains(HasSubstr("not taken: too few to feel a knock")));
}

TEST_F(AccelerometersTest, aHubWithoutAListOfRatesIsAskedForAFastOneAndForNoHysteresis) {
    addIndustrialIo(0, "hub", "");
    const std::string device = "bus/iio/devices/iio:device0/";
    write(device + "in_accel_sampling_frequency", "10.000000");
    write(device + "in_accel_hysteresis", "0.500000");
    {
        const auto opened = openPolled(findAccelerometers(roots).at(0));
        ASSERT_TRUE(opened) << opened.error();
        EXPECT_EQ((*opened)->description().rate, 400.0);
        EXPECT_EQ(contentOf(device + "in_accel_sampling_frequency"), "800");
        EXPECT_EQ(contentOf(device + "in_accel_hysteresis"), "0");
    }
    EXPECT_EQ(contentOf(device + "in_accel_sampling_frequency"), "10.000000");
    EXPECT_EQ(contentOf(device + "in_accel_hysteresis"), "0.500000");
}

TEST_F(AccelerometersTest, aHubThatRefusesEveryRateKeepsItsOwn) {
    addIndustrialIo(0, "hub", "");
    // An attribute of the kernel's own that nobody may write, and that holds a number like 40.
    const std::string fixed = "/proc/sys/kernel/cap_last_cap";
    std::filesystem::create_symlink(fixed, folder / ("sys/bus/iio/devices/iio:device0/"
                                                     "sampling_frequency"));
    const auto opened = openPolled(findAccelerometers(roots).at(0));
    ASSERT_TRUE(opened) << opened.error();
    EXPECT_EQ((*opened)->description().rate, std::stod(test::readFile(fixed)));
}

TEST_F(AccelerometersTest, theOneInTheBaseIsTakenBeforeTheOneInTheLid) {
    addIndustrialIo(0, "cros-ec-accel", "400");
    addIndustrialIo(1, "cros-ec-accel", "400");
    for (const auto& [lid, base] :
         {std::pair{"location", "base"}, std::pair{"label", "accel-base"}}) {
        const std::string word = std::string{lid} == "label" ? "accel-display" : "lid";
        write(std::string{"bus/iio/devices/iio:device0/"} + lid, word);
        write(std::string{"bus/iio/devices/iio:device1/"} + lid, base);
        EXPECT_EQ(findAccelerometers(roots).at(0).id, "iio:device1");
    }
    EXPECT_THAT(listSensors(roots), Contains(HasSubstr("in the lid, taken after the others")));
}

TEST_F(AccelerometersTest, twoAxesAreReadAndTheThirdIsStill) {
    write("devices/platform/hdaps/position", "(128,-256)");
    const auto opened = openPolled(findAccelerometers(roots).at(0));
    ASSERT_TRUE(opened) << opened.error();
    EXPECT_EQ((*opened)->description().rate, 50.0);
    EXPECT_THAT(nextReading(**opened), ElementsAre(0.5F, -1.0F, 0.0F));
}

TEST_F(AccelerometersTest, aPositionFilesRateIsRaisedAndGivenBack) {
    write("devices/platform/lis3lv02d/position", "(0,0,1000)");
    write("devices/platform/lis3lv02d/rate", "40");
    {
        const auto opened = openPolled(findAccelerometers(roots).at(0));
        ASSERT_TRUE(opened) << opened.error();
        EXPECT_EQ((*opened)->description().rate, 400.0);
    }
    EXPECT_EQ(contentOf("devices/platform/lis3lv02d/rate"), "40");
}

TEST(MeasuredRateTest, aSlowDeviceIsKnownAfterOneReading) {
    std::chrono::duration<double> time{0.0};
    int reads = 0;
    const auto rate = measuredRate(
        [&] {
            time += std::chrono::seconds{6};
            return ++reads > 0;
        },
        [&] { return time; });
    EXPECT_EQ(reads, 1);
    EXPECT_NEAR(rate, 1.0 / 6.0, 1e-9);
}

TEST_F(AccelerometersTest, aNamedDeviceIsTheOnlyOneTaken) {
    addIndustrialIo(0, "first", "400");
    addIndustrialIo(1, "second", "400");
    SensorChoice choice;
    choice.roots = roots;
    choice.device = "iio:device1";
    auto opened = chooseAccelerometer(choice, openAccelerometers(roots));
    ASSERT_TRUE(opened);
    EXPECT_EQ((*opened)->description().name, "second");
    choice.device = "third";
    EXPECT_FALSE(chooseAccelerometer(choice, openAccelerometers(roots)));
}

TEST_F(AccelerometersTest, filesThatMakeNoSenseAreRefusedWithAReason) {
    addIndustrialIo(0, "broken", "400");
    write("bus/iio/devices/iio:device0/in_accel_scale", "much");
    auto opened = openPolled(findAccelerometers(roots).at(0));
    ASSERT_FALSE(opened);
    EXPECT_THAT(opened.error(), HasSubstr("scale"));
    write("bus/iio/devices/iio:device0/in_accel_scale", "0.01");
    write("bus/iio/devices/iio:device0/in_accel_y_raw", "");
    opened = openPolled(findAccelerometers(roots).at(0));
    ASSERT_FALSE(opened);
    EXPECT_THAT(opened.error(), HasSubstr("cannot be read"));
}

}  // namespace

}  // namespace bonkora::detector
