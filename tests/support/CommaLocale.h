// A locale that writes one half as 0,5 and groups thousands, made for the test and in force, in C
// and in C++, for as long as this lives.
#pragma once

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <locale>
#include <stdexcept>
#include <string>

#include "tests/support/TemporaryFolder.h"

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/lsan_interface.h>
#endif

namespace bonkora::test {

class CommaLocale {
  public:
    CommaLocale() {
        const std::string path = folder / "de_DE.UTF-8";
        const std::string command = "localedef -i de_DE -f UTF-8 '" + path + "'";
        if (std::system(command.c_str()) != 0) {
            throw std::runtime_error("localedef made no locale");
        }
        ::setenv("LOCPATH", folder.path().c_str(), 1);
        putInForce();
        char text[8] = "";
        std::snprintf(text, sizeof text, "%.1f", 0.5);
        if (std::string(text) != "0,5" ||
            std::setlocale(LC_ALL, nullptr) != std::string("de_DE.UTF-8")) {
            throw std::runtime_error("the locale is not in force");
        }
    }
    CommaLocale(const CommaLocale&) = delete;
    CommaLocale& operator=(const CommaLocale&) = delete;
    ~CommaLocale() {
        std::locale::global(std::locale::classic());
        ::unsetenv("LOCPATH");
    }

  private:
    static void putInForce() {
#ifdef __SANITIZE_ADDRESS__
        const __lsan::ScopedDisabler theSystemsOwnLeak;  // newlocale keeps its copy of LOCPATH
#endif
        std::locale::global(std::locale("de_DE.UTF-8"));
    }

    const TemporaryFolder folder;
};

}  // namespace bonkora::test
