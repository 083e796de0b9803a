#pragma once
// A folder that is gone with everything in it when its owner goes. Its path is short, since that of a local
// socket has little room. Names are native, in UTF-8.

#include <QtCore/QTemporaryDir>
#include <filesystem>
#include <string>
#include <string_view>

namespace talvora::programs {

class Folder {
  public:
    Folder();

    std::filesystem::path path() const { return folder_.path().toStdString(); }
    std::string operator/(std::string_view name) const { return (path() / name).string(); }
    // Writes a file below the folder and returns its full name. Throws Missing if it cannot.
    std::string write(std::string_view name, std::string_view content) const;

  private:
    QTemporaryDir folder_;
};

}  // namespace talvora::programs
