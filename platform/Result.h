#pragma once

#include <string>
#include <tl/expected.hpp>

namespace bonkora::platform {

// A value, or why there is none: by default a sentence for people, without a full stop.
//
//     Result<Sound> sound = read(path);
//     if (!sound) return Failed(sound.error());
//     play(*sound);
template <class Value, class Error = std::string>
using Result = tl::expected<Value, Error>;

// Makes a Result that holds no value: `return Failed("cannot read " + path);`
using Failed = tl::unexpected<std::string>;

}  // namespace bonkora::platform
