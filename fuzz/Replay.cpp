// The fuzz targets without a fuzzer: each file of the folder given, and mutations of it from a
// fixed seed. A claim that does not hold aborts, as it does under the fuzzer.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

constexpr int mutationsOfEach = 500;

void run(const std::string& input) {
    // A copy of exactly this size, so that the sanitizer sees a step beyond its end.
    const std::vector<std::uint8_t> bytes(input.begin(), input.end());
    LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
}

// Changes, inserts, removes or doubles a few pieces, or splices another input in.
std::string mutated(std::string input, const std::vector<std::string>& all, std::mt19937& random) {
    const auto below = [&](std::size_t count) {
        return std::uniform_int_distribution<std::size_t>(0, count - 1)(random);
    };
    for (auto changes = 1 + below(4); changes > 0; --changes) {
        const std::size_t at = below(input.size() + 1);
        const std::size_t length = below(std::min<std::size_t>(input.size() - at, 16) + 1);
        switch (below(5)) {
            case 0:
                if (at < input.size()) {
                    input[at] = static_cast<char>(below(256));
                }
                break;
            case 1:
                input.insert(at, 1, static_cast<char>(below(256)));
                break;
            case 2:
                input.erase(at, length);
                break;
            case 3:
                input.insert(at, input.substr(at, length));
                break;
            default: {
                const std::string& other = all[below(all.size())];
                input.insert(at, other.substr(below(other.size() + 1), 64));
            }
        }
    }
    return input;
}

}  // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount != 2) {
        std::cerr << "usage: " << arguments[0] << " FOLDER\n";
        return 2;
    }
    std::vector<std::string> inputs;
    for (const auto& entry : std::filesystem::directory_iterator(arguments[1])) {
        std::ifstream file(entry.path(), std::ios::binary);
        inputs.emplace_back(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    }
    if (inputs.empty()) {
        std::cerr << "no inputs in " << arguments[1] << '\n';
        return 1;
    }
    std::sort(inputs.begin(), inputs.end());
    std::mt19937 random(1);
    for (const std::string& input : inputs) {
        run(input);
        for (int count = 0; count < mutationsOfEach; ++count) {
            run(mutated(input, inputs, random));
        }
    }
    run("");
    std::cout << inputs.size() * (mutationsOfEach + 1) + 1 << " inputs\n";
    return 0;
}
