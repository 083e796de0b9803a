#include "e2e/support/TempFolder.h"

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <system_error>

namespace talvora::e2e {

TempFolder::TempFolder() {
    // Short, since the path of a local socket has little room.
    std::string name = (std::filesystem::temp_directory_path() / "talvora-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) throw std::system_error(errno, std::generic_category(), name);
    path_ = name;
}

TempFolder::~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::string TempFolder::write(std::string_view name, std::string_view content) const {
    const std::filesystem::path file = path_ / name;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << content;
    return file.string();
}

}  // namespace talvora::e2e
