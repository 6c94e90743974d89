// Failure: why a command did not succeed, in the platform's words and numbers. Values; any thread.
#pragma once

#include <string>

namespace bonkora::runner {

// The platform's error numbers.
inline constexpr int fileNotFound = -43;
inline constexpr int userCanceled = -128;
inline constexpr int scriptNotUnderstood = -2741;
inline constexpr int authorizationDenied = -60005;

struct Failure {
    std::string message;  // one line of valid UTF-8
    int number = 0;       // one of those above, the command's exit status, or errno

    friend bool operator==(const Failure&, const Failure&) = default;
};

// The system could not start the command; `error` is errno's.
Failure systemFailure(int error);

}  // namespace bonkora::runner
