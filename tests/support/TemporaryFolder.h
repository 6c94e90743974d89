// A folder of the test's own, gone with all it holds when the test is over.
#pragma once

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>

namespace bonkora::test {

class TemporaryFolder {
  public:
    TemporaryFolder() : name(std::filesystem::temp_directory_path() / "bonkora-test-XXXXXX") {
        if (::mkdtemp(name.data()) == nullptr) {
            throw std::runtime_error("no temporary folder");
        }
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(name, ignored);
    }

    // Without a final slash.
    const std::string& path() const { return name; }
    std::string operator/(std::string_view relative) const {
        return name + '/' + std::string(relative);
    }

    // Writes a file, making the folders above it; returns its path.
    std::string write(std::string_view relative, std::string_view text,
                      bool executable = false) const {
        const std::filesystem::path file = *this / relative;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << text;
        if (executable) {
            std::filesystem::permissions(file, std::filesystem::perms::all);
        }
        return file;
    }
    std::string makeFolder(std::string_view relative) const {
        std::filesystem::create_directories(*this / relative);
        return *this / relative;
    }

  private:
    std::string name;
};

inline std::string readFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace bonkora::test
