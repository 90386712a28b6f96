// SPDX-License-Identifier: Apache-2.0
//
// Random numbers that are the same on every machine: the standard fixes the generators' output, but
// not that of its distributions.
#pragma once

#include <cstdint>
#include <random>
#include <vector>

namespace lumoxa_test {

class SeededRandom {
  public:
    explicit SeededRandom(uint32_t seed) : generator_(seed) {}

    uint16_t upTo(uint32_t largest) { return static_cast<uint16_t>(generator_() % (largest + 1)); }

    std::vector<uint16_t> samples(size_t n, uint32_t largest = 65535) {
        std::vector<uint16_t> out(n);
        for (uint16_t& v : out)
            v = upTo(largest);
        return out;
    }

  private:
    std::mt19937 generator_;
};

}  // namespace lumoxa_test
