// Texts the way exec and its kin want them. Pure; any thread.
#pragma once

#include <string>
#include <vector>

namespace bonkora::runner {

// A pointer to each of `texts`, which must outlive them, and a null pointer.
inline std::vector<char*> execVector(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

}  // namespace bonkora::runner
