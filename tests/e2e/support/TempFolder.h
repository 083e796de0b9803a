#pragma once
// A folder of the test's own, gone with everything in it when its owner goes.

#include <filesystem>
#include <string>
#include <string_view>

namespace talvora::e2e {

class TempFolder {
  public:
    TempFolder();
    ~TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }
    std::string operator/(std::string_view name) const { return (path_ / name).string(); }
    // Writes a file below the folder and returns its full name.
    std::string write(std::string_view name, std::string_view content) const;

  private:
    std::filesystem::path path_;
};

}  // namespace talvora::e2e
