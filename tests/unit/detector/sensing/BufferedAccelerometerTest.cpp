// Industrial I/O with a folder of files and a named pipe that behave like the kernel's.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/stat.h>

#include "detector/sensing/Accelerometers.h"
#include "platform/Descriptor.h"
#include "tests/support/TemporaryFolder.h"

namespace bonkora::detector {

namespace {

using platform::UniqueDescriptor;

class BufferedAccelerometerTest : public testing::Test {
  protected:
    void SetUp() override {
        write("name", "bma");
        write("in_accel_scale", "0.00980665");  // a thousandth of g a step
        write("sampling_frequency", "100");
        write("sampling_frequency_available", "100 400");
        write("buffer/enable", "0");
        write("buffer/length", "2");
        write("buffer/watermark", "1");
        write("trigger/current_trigger", "");
        int index = 0;
        for (const char* const axis : {"x", "y", "z"}) {
            const std::string channel = std::string{"scan_elements/in_accel_"} + axis;
            write(std::string{"in_accel_"} + axis + "_raw", "0");
            write(channel + "_en", "0");
            write(channel + "_type", "le:s12/16>>4");
            write(channel + "_index", std::to_string(index++));
        }
        write("scan_elements/in_timestamp_en", "0");
        write("scan_elements/in_timestamp_type", "le:s64/64>>0");
        write("scan_elements/in_timestamp_index", "3");
        write("scan_elements/in_temp_en", "1");
        folder.write("sys/bus/iio/devices/trigger0/name", "other-trigger\n");
        folder.write("sys/bus/iio/devices/trigger1/name", "bma-trigger\n");
        folder.makeFolder("dev");
        ASSERT_EQ(::mkfifo((folder / "dev/iio:device0").c_str(), 0600), 0);
        kernel.reset(::open((folder / "dev/iio:device0").c_str(), O_RDWR | O_CLOEXEC));
        ASSERT_TRUE(kernel);
    }

    void write(const std::string& file, const std::string& text) const {
        folder.write("sys/bus/iio/devices/iio:device0/" + file, text + "\n");
    }
    std::string content(const std::string& file) const {
        const auto text = test::readFile(folder / ("sys/bus/iio/devices/iio:device0/" + file));
        return text.substr(0, text.find('\n'));
    }
    std::unique_ptr<Sensor> open() const {
        auto opened = openBuffered(findAccelerometers(roots).at(0), roots);
        EXPECT_TRUE(opened) << opened.error();
        return *std::move(opened);
    }

    // One scan as the kernel writes it: three axes of 12 bits, two bytes of padding, the time.
    static std::string scan(int x, int y, int z, std::int64_t time) {
        std::string bytes;
        for (const int value : {x, y, z}) {
            const auto word = static_cast<unsigned>(value) << 4U;
            bytes += static_cast<char>(word & 0xffU);
            bytes += static_cast<char>(word >> 8U & 0xffU);
        }
        bytes += std::string(2, '\x5a');
        for (int i = 0; i < 8; ++i) {
            bytes += static_cast<char>(static_cast<std::uint64_t>(time) >> (8 * i) & 0xffU);
        }
        return bytes;
    }
    void give(const std::string& bytes) const {
        ASSERT_TRUE(platform::writeAll(kernel.get(), bytes));
    }

    const test::TemporaryFolder folder;
    const SystemRoots roots{folder / "sys", folder / "dev"};
    UniqueDescriptor kernel;
};

constexpr std::int64_t period = 2'500'000;  // ns at 400 readings a second

TEST_F(BufferedAccelerometerTest, setsTheDeviceUpAndPutsEverythingBack) {
    {
        const auto sensor = open();
        EXPECT_EQ(sensor->description().rate, 400.0);
        EXPECT_EQ(content("sampling_frequency"), "400");
        EXPECT_EQ(content("scan_elements/in_accel_y_en"), "1");
        EXPECT_EQ(content("scan_elements/in_timestamp_en"), "1");
        EXPECT_EQ(content("scan_elements/in_temp_en"), "0");
        EXPECT_EQ(content("trigger/current_trigger"), "bma-trigger");
        EXPECT_EQ(content("buffer/enable"), "1");
        EXPECT_EQ(content("buffer/length"), "100");
        EXPECT_EQ(content("buffer/watermark"), "2");
    }
    EXPECT_EQ(content("sampling_frequency"), "100");
    EXPECT_EQ(content("scan_elements/in_accel_y_en"), "0");
    EXPECT_EQ(content("scan_elements/in_temp_en"), "1");
    EXPECT_EQ(content("trigger/current_trigger"), "");
    EXPECT_EQ(content("buffer/enable"), "0");
    EXPECT_EQ(content("buffer/watermark"), "1");
}

TEST_F(BufferedAccelerometerTest, readsScansInG) {
    const auto sensor = open();
    give(scan(500, -250, 1000, period) + scan(0, 0, -2048, 2 * period));
    std::vector<Frame> frames;
    EXPECT_EQ(sensor->read(frames).kind, SensorState::Kind::listening);
    ASSERT_EQ(frames.size(), 2U);
    EXPECT_NEAR(frames[0][0], 0.5F, 1e-6F);
    EXPECT_NEAR(frames[0][1], -0.25F, 1e-6F);
    EXPECT_NEAR(frames[0][2], 1.0F, 1e-6F);
    EXPECT_NEAR(frames[1][2], -2.048F, 1e-6F);
}

TEST_F(BufferedAccelerometerTest, aScanThatComesInPiecesIsOneReading) {
    const auto sensor = open();
    const auto bytes = scan(1, 2, 3, period) + scan(4, 5, 6, 2 * period);
    std::vector<Frame> frames;
    for (const char byte : bytes) {
        give(std::string(1, byte));
        EXPECT_EQ(sensor->read(frames).kind, SensorState::Kind::listening);
    }
    ASSERT_EQ(frames.size(), 2U);
    EXPECT_NEAR(frames[1][2], 0.006F, 1e-6F);
}

TEST_F(BufferedAccelerometerTest, nothingToReadIsNoLoss) {
    const auto sensor = open();
    std::vector<Frame> frames;
    EXPECT_EQ(sensor->read(frames).kind, SensorState::Kind::listening);
    EXPECT_TRUE(frames.empty());
}

TEST_F(BufferedAccelerometerTest, readingsLostInAnOverrunAreMadeUpFor) {
    const auto sensor = open();
    give(scan(1, 0, 0, 10 * period) + scan(2, 0, 0, 11 * period) + scan(3, 0, 0, 15 * period));
    std::vector<Frame> frames;
    sensor->read(frames);
    ASSERT_EQ(frames.size(), 6U);
    EXPECT_NEAR(frames[1][0], 0.002F, 1e-6F);
    EXPECT_NEAR(frames[2][0], 0.003F, 1e-6F);
    EXPECT_NEAR(frames[5][0], 0.003F, 1e-6F);
}

TEST_F(BufferedAccelerometerTest, aPauseOfTheComputerIsNotMadeUpFor) {
    const auto sensor = open();
    give(scan(1, 0, 0, period) + scan(2, 0, 0, 1000000 * period) + scan(2, 0, 0, -5));
    std::vector<Frame> frames;
    sensor->read(frames);
    EXPECT_EQ(frames.size(), 3U);
}

TEST_F(BufferedAccelerometerTest, aDeviceThatIsRemovedIsLost) {
    const auto sensor = open();
    give(scan(1, 0, 0, period));
    kernel.reset();
    pollfd waiting{sensor->descriptor(), POLLIN, 0};
    EXPECT_EQ(::poll(&waiting, 1, 0), 1);
    std::vector<Frame> frames;
    auto state = sensor->read(frames);
    if (state.kind == SensorState::Kind::listening) {
        state = sensor->read(frames);
    }
    EXPECT_EQ(state.kind, SensorState::Kind::lost);
    EXPECT_EQ(frames.size(), 1U);
}

TEST_F(BufferedAccelerometerTest, aBufferThatAKilledProgramLeftOnIsSwitchedOffAndSetUpAnew) {
    write("buffer/enable", "1");
    {
        const auto sensor = open();
        EXPECT_EQ(sensor->description().rate, 400.0);
        EXPECT_EQ(content("buffer/enable"), "1");
    }
    EXPECT_EQ(content("buffer/enable"), "0");
}

TEST_F(BufferedAccelerometerTest, aDeviceThatAnotherProgramReadsIsLeftAlone) {
    write("buffer/enable", "1");
    // The kernel refuses a second reader; so does what is no device.
    ASSERT_EQ(::unlink((folder / "dev/iio:device0").c_str()), 0);
    EXPECT_FALSE(openBuffered(findAccelerometers(roots).at(0), roots));
    EXPECT_EQ(content("sampling_frequency"), "100");
}

TEST_F(BufferedAccelerometerTest, withoutItsDeviceTheFilesArePolled) {
    ASSERT_EQ(::unlink((folder / "dev/iio:device0").c_str()), 0);
    auto opened = openAccelerometer(findAccelerometers(roots).at(0), roots);
    ASSERT_TRUE(opened) << opened.error();
    EXPECT_EQ(content("buffer/enable"), "0");
}

TEST_F(BufferedAccelerometerTest, aTypeThatCannotBeIsNotGuessedAt) {
    for (const char* const type : {"", "le:s12/16>>5", "nonsense", "le:s12/17>>0"}) {
        write("scan_elements/in_accel_y_type", type);
        EXPECT_FALSE(openBuffered(findAccelerometers(roots).at(0), roots)) << type;
    }
}

}  // namespace

}  // namespace bonkora::detector
