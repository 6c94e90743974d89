// The attribute files of an accelerometer, one a line: scale, rate, offered rates, raw reading.
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "detector/sensing/Accelerometers.h"
#include "fuzz/Require.h"

namespace {

// One folder for the whole run, gone with the program.
struct Folder {
    Folder() {
        char pattern[] = "/tmp/bonkora-fuzz-XXXXXX";
        path = ::mkdtemp(pattern);
        std::filesystem::create_directories(device());
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    ~Folder() { std::filesystem::remove_all(path); }
    std::string device() const { return path + "/bus/iio/devices/iio:device0/"; }

    std::string path;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace bonkora;
    static const Folder folder;
    std::istringstream lines{std::string(data, data + size)};
    for (const char* const name :
         {"in_accel_scale", "sampling_frequency", "sampling_frequency_available", "in_accel_x_raw",
          "in_accel_y_raw", "in_accel_z_raw", "name"}) {
        std::string line;
        std::getline(lines, line);
        std::ofstream{folder.device() + name} << line << "\n";
    }
    for (const auto& files : detector::findAccelerometers({folder.path, folder.path})) {
        const auto opened = detector::openAccelerometer(files, {folder.path, folder.path});
        if (!opened) {
            fuzz::require(!opened.error().empty(), "a refusal has a reason");
        } else {
            const double rate = (*opened)->description().rate;
            fuzz::require(rate >= 1.0 && rate <= 400.0, "it is polled at a rate in range");
        }
    }
    return 0;
}
