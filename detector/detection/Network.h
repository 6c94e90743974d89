// Network: two hidden layers that tell a blow from everything else. scripts/train-ears made the
// weights; evidence.inc, which is compiled in, says from what. Values; one thread.
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <vector>

namespace bonkora::detector {

class Network {
  public:
    // Of each layer its outputs' weights, one output after the other, then its outputs' offsets.
    static constexpr std::array<std::size_t, 4> sizes{297, 96, 48, 1};

    static constexpr std::size_t weightCount() {
        std::size_t count = 0;
        for (std::size_t i = 0; i + 1 < sizes.size(); ++i) {
            count += (sizes.at(i) + 1) * sizes.at(i + 1);
        }
        return count;
    }

    // The trained one, and what its answer must exceed (see thresholdAt()).
    Network();
    static const float quiet;
    static const float loud;

    // `theWeights`: weightCount() of them.
    explicit Network(std::vector<float> theWeights);

    // The logarithm of the odds that `features`, sizes[0] of them, are a blow's.
    float operator()(std::span<const float> features) const;

  private:
    std::vector<float> weights;
};

}  // namespace bonkora::detector
