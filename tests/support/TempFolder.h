// A folder of a test's own, empty at first, gone at the end: tests run side by side.
#pragma once

#include <filesystem>
#include <random>
#include <string>

namespace orvin::test {

class TempFolder {
  public:
    TempFolder() {
        std::random_device random;
        do  // a folder that is there already is somebody else's
            path_ = std::filesystem::temp_directory_path() /
                    ("orvinex-test-" + std::to_string(random()));
        while (!std::filesystem::create_directory(path_));
    }
    ~TempFolder() {
        std::error_code error;
        std::filesystem::remove_all(path_, error);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }

  private:
    std::filesystem::path path_;
};

}  // namespace orvin::test
