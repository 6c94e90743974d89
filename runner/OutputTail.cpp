#include "runner/OutputTail.h"

#include <algorithm>

namespace bonkora::runner {

void OutputTail::append(std::string_view bytes) {
    tail += bytes.substr(bytes.size() - std::min(bytes.size(), limit));
    tail.erase(0, tail.size() - std::min(tail.size(), limit));
}

}  // namespace bonkora::runner
