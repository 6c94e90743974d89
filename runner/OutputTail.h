// OutputTail: the last bytes of an output of any length. One thread.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace bonkora::runner {

class OutputTail {
  public:
    static constexpr std::size_t limit = 4096;  // bytes: a screenful, and no message is longer

    void append(std::string_view bytes);
    std::string_view text() const { return tail; }

  private:
    std::string tail;
};

}  // namespace bonkora::runner
