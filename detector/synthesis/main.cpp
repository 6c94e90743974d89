// Writes the detector's own sounds when the project is built: make-sounds FOLDER.
#include <filesystem>
#include <iostream>
#include <string>
#include <system_error>
#include <vector>

#include "detector/synthesis/Sets.h"

namespace {

bool writeSet(const std::string& folder,
              const std::vector<bonkora::detector::synthesis::Waveform>& sounds) {
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    for (std::size_t i = 0; i < sounds.size(); ++i) {
        const std::string path = folder + "/" + std::to_string(i + 1) + ".wav";
        if (!bonkora::detector::synthesis::writeWav(path, sounds[i])) {
            std::cerr << "make-sounds: cannot write " << path << "\n";
            return false;
        }
    }
    return true;
}

}  // namespace

int main(int argumentCount, char** arguments) {
    using namespace bonkora::detector;
    if (argumentCount != 2) {
        std::cerr << "Usage: make-sounds FOLDER\n";
        return 2;
    }
    const std::string folder = arguments[1];
    const bool written = writeSet(folder + "/pain", synthesis::pain()) &&
                         writeSet(folder + "/sexy", synthesis::sexy()) &&
                         writeSet(folder + "/halo", synthesis::halo());
    return written ? 0 : 1;
}
