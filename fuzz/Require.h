// What a fuzz target checks: a claim that does not hold ends the program with its words.
#pragma once

#include <cstdio>
#include <cstdlib>

namespace bonkora::fuzz {

inline void require(bool holds, const char* claim) {
    if (!holds) {
        std::fprintf(stderr, "does not hold: %s\n", claim);
        std::abort();
    }
}

}  // namespace bonkora::fuzz
