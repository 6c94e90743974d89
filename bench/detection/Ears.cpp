// The detector's ears for scripts/train-ears. Standard input: jobs, each a line
//     RATE MINIMUM COUNT
// and COUNT 16-bit samples. Standard output, for each job: the number of records in 32 bits, and
// the records: the impact's time and the decision's in s, the amplitude and the loudness before, as
// 32-bit floats; then
//   detection-ears              of each candidate, its features
//   detection-ears knocks FILE  of each knock heard with the weights in FILE, nothing more. The
//   file
//                               ends with the two thresholds' steps: quiet, loud.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

#include "detector/detection/KnockDetector.h"

namespace {

using namespace bonkora::detector;

template <typename T>
void put(std::vector<char>& bytes, const T& value) {
    const auto* const begin = reinterpret_cast<const char*>(&value);
    bytes.insert(bytes.end(), begin, begin + sizeof value);
}

void putRecord(std::vector<char>& bytes, double rate, const Knock& knock, double loudness) {
    put(bytes, static_cast<float>(static_cast<double>(knock.frame) / rate));
    put(bytes, static_cast<float>(static_cast<double>(knock.decided) / rate));
    put(bytes, static_cast<float>(knock.amplitude));
    put(bytes, static_cast<float>(loudness));
}

std::vector<float> readFloats(const std::string& path) {
    std::ifstream file{path, std::ios::binary | std::ios::ate};
    std::vector<float> values(static_cast<std::size_t>(std::max<std::streamoff>(0, file.tellg())) /
                              sizeof(float));
    file.seekg(0);
    file.read(reinterpret_cast<char*>(values.data()),
              static_cast<std::streamsize>(values.size() * sizeof(float)));
    return values;
}

}  // namespace

int main(int argumentCount, char** arguments) {
    std::ios::sync_with_stdio(false);
    const bool wantsKnocks = argumentCount == 3 && arguments[1] == std::string{"knocks"};
    std::vector<float> weights;
    if (wantsKnocks) {
        weights = readFloats(arguments[2]);
    }
    if (argumentCount != (wantsKnocks ? 3 : 1) ||
        (wantsKnocks && weights.size() != Network::weightCount() + 2)) {
        std::cerr << "usage: detection-ears [knocks FILE]\n";
        return 2;
    }
    double rate = 0.0;
    double minimum = 0.0;
    std::size_t count = 0;
    while (std::cin >> rate >> minimum >> count) {
        std::cin.ignore(1);
        std::vector<std::int16_t> samples(count);
        std::cin.read(reinterpret_cast<char*>(samples.data()),
                      static_cast<std::streamsize>(count * sizeof(std::int16_t)));
        std::vector<Frame> frames(count);
        std::transform(samples.begin(), samples.end(), frames.begin(), [](std::int16_t sample) {
            return Frame{static_cast<float>(sample) / 32768.0F, 0.0F, 0.0F};
        });
        std::vector<char> records;
        std::uint32_t found = 0;
        const auto note = [&](const Candidate& candidate) {
            putRecord(records, rate, candidate.knock, candidate.loudness);
            for (const float feature : candidate.features) {
                put(records, feature);
            }
            ++found;
            return false;
        };
        const Sensitivity sensitivity{minimum, std::chrono::milliseconds{750}, false};
        std::vector<Knock> knocks;
        if (wantsKnocks) {
            const float quiet = weights.at(weights.size() - 2);
            const float loud = weights.back();
            const Network network{{weights.begin(), weights.end() - 2}};
            KnockDetector detector{SensorKind::microphone, rate, sensitivity,
                                   [&](const Candidate& candidate) {
                                       return network(candidate.features) >
                                              thresholdAt(candidate.loudness, quiet, loud);
                                   }};
            detector.process(frames, knocks);
            for (const Knock& knock : knocks) {
                putRecord(records, rate, knock, 0.0);
            }
            found = static_cast<std::uint32_t>(knocks.size());
        } else {
            KnockDetector detector{SensorKind::microphone, rate, sensitivity, note};
            detector.process(frames, knocks);
        }
        std::cout.write(reinterpret_cast<const char*>(&found), sizeof found);
        std::cout.write(records.data(), static_cast<std::streamsize>(records.size()));
        std::cout.flush();
    }
    return 0;
}
