// Damaged files of every kind that the detector reads: no crash, and a reason whenever it declines.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "detector/program/Configuration.h"
#include "detector/sensing/Accelerometers.h"
#include "detector/sensing/Recording.h"
#include "detector/sensing/ScanLayout.h"
#include "detector/voices/Waveform.h"
#include "tests/support/TemporaryFolder.h"

namespace bonkora::detector {

namespace {

class Mutator {
  public:
    // A few bytes changed, dropped, doubled or cut off.
    std::string operator()(std::string text) {
        for (auto changes = 1 + random() % 4; changes > 0 && !text.empty(); --changes) {
            const auto at = random() % text.size();
            switch (random() % 5) {
                case 0:
                    text[at] = static_cast<char>(random());
                    break;
                case 1:
                    text.erase(at, 1 + random() % 8);
                    break;
                case 2:
                    text.insert(at, text.substr(at, 1 + random() % 16));
                    break;
                case 3:
                    text.resize(at);
                    break;
                default:
                    text[at] = "0123456789-+.eE,:/>=#\n\xff"[random() % 23];
            }
        }
        return text;
    }

  private:
    std::mt19937 random{11};
};

constexpr int rounds = 3000;

void expectSense(const std::variant<Recording, RecordingError>& result) {
    if (const auto* const error = std::get_if<RecordingError>(&result)) {
        EXPECT_FALSE(error->reason.empty());
        return;
    }
    const auto& recording = std::get<Recording>(result);
    EXPECT_FALSE(recording.frames.empty());
    EXPECT_TRUE(recording.rate >= 4.0 && recording.rate <= 200000.0) << recording.rate;
}

TEST(MutationTest, damagedWavFiles) {
    const test::TemporaryFolder folder;
    ASSERT_TRUE(voices::writeWav(folder / "x.wav", voices::Waveform(200, 0.25)));
    const auto whole = test::readFile(folder / "x.wav");
    expectSense(parseWav(whole));
    Mutator mutate;
    for (int i = 0; i < rounds; ++i) {
        // Mostly the head, where every byte means something.
        const auto head = mutate(whole.substr(0, 44));
        expectSense(parseWav(i % 2 == 0 ? head + whole.substr(44) : mutate(whole)));
    }
}

TEST(MutationTest, damagedCsvFiles) {
    std::string whole = "time,x,y,z\n";
    for (int i = 0; i < 40; ++i) {
        whole += std::to_string(i * 0.0025) + ",0.01,-0.02,1.0\n";
    }
    Mutator mutate;
    for (int i = 0; i < rounds; ++i) {
        expectSense(parseCsv(mutate(whole)));
    }
}

TEST(MutationTest, damagedConfigurations) {
    const std::string whole =
        "# mine\nsensor = file:/a/b.wav\ndevice = iio:device0\nsounds = /s\nmute = yes\n";
    Mutator mutate;
    for (int i = 0; i < rounds; ++i) {
        const auto configuration = parseConfiguration(mutate(whole));
        EXPECT_FALSE(configuration.sensor.empty());
        for (const auto& complaint : configuration.complaints) {
            EXPECT_TRUE(complaint.starts_with("line ") || complaint.starts_with("it is no"));
        }
    }
}

TEST(MutationTest, damagedScanTypes) {
    Mutator mutate;
    const std::string scan(8, '\x7f');
    for (int i = 0; i < rounds; ++i) {
        if (const auto element = parseScanElement(mutate("le:s12/16>>4"), 0)) {
            EXPECT_LE(element->bits + element->shift, element->storageBits);
            static_cast<void>(element->valueIn(scan.data()));
        }
    }
}

TEST(MutationTest, damagedAttributeFiles) {
    Mutator mutate;
    const test::TemporaryFolder folder;
    const SystemRoots roots{folder / "sys", folder / "dev"};
    const std::string device = "sys/bus/iio/devices/iio:device0/";
    for (int i = 0; i < 300; ++i) {
        for (const char* const axis : {"x", "y", "z"}) {
            folder.write(device + "in_accel_" + axis + "_raw", mutate("-1023\n"));
        }
        folder.write(device + "in_accel_scale", mutate("0.009806\n"));
        folder.write(device + "sampling_frequency", mutate("400.000000\n"));
        folder.write(device + "sampling_frequency_available", mutate("[25 1 400] 800\n"));
        folder.write("sys/devices/platform/lis3lv02d/position", mutate("(12,-34,1020)\n"));
        for (const auto& files : findAccelerometers(roots)) {
            const auto opened = openAccelerometer(files, roots);
            if (const auto* const reason = std::get_if<1>(&opened)) {
                EXPECT_FALSE(reason->empty());
            } else {
                EXPECT_GE(std::get<0>(opened)->description().rate, 1.0);
            }
        }
    }
}

}  // namespace

}  // namespace bonkora::detector
