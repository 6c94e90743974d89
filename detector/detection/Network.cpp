#include "detector/detection/Network.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <utility>

namespace bonkora::detector {

namespace {

#include "detector/detection/evidence.inc"

static_assert(std::size(trainedWeights) == Network::weightCount());

std::vector<float> trained() {
    std::vector<float> weights(Network::weightCount());
    std::transform(std::begin(trainedWeights), std::end(trainedWeights), weights.begin(),
                   [](std::int16_t weight) { return static_cast<float>(weight) * weightUnit; });
    return weights;
}

// Four sums side by side: the compiler may not reorder one.
float product(const float* a, const float* b, std::size_t count) {
    std::array<float, 4> sums{};
    std::size_t i = 0;
    for (; i + 4 <= count; i += 4) {
        for (std::size_t lane = 0; lane < 4; ++lane) {
            sums[lane] += a[i + lane] * b[i + lane];
        }
    }
    float rest = 0.0F;
    for (; i < count; ++i) {
        rest += a[i] * b[i];
    }
    return (sums[0] + sums[1]) + (sums[2] + sums[3]) + rest;
}

}  // namespace

const float Network::quiet = trainedQuiet;
const float Network::loud = trainedLoud;

Network::Network() : weights(trained()) {}

Network::Network(std::vector<float> theWeights) : weights(std::move(theWeights)) {}

float Network::operator()(std::span<const float> features) const {
    std::array<float, *std::max_element(sizes.begin(), sizes.end())> in{};
    std::array<float, in.size()> out{};
    std::copy(features.begin(), features.end(), in.begin());
    const float* layer = weights.data();
    for (std::size_t i = 0; i + 1 < sizes.size(); ++i) {
        const std::size_t width = sizes.at(i);
        const float* const offsets = layer + width * sizes.at(i + 1);
        const bool isHidden = i + 2 < sizes.size();
        for (std::size_t j = 0; j < sizes.at(i + 1); ++j) {
            const float sum = product(layer + j * width, in.data(), width) + offsets[j];
            out.at(j) = isHidden ? std::max(sum, 0.0F) : sum;
        }
        layer = offsets + sizes.at(i + 1);
        in = out;
    }
    return in.front();
}

}  // namespace bonkora::detector
