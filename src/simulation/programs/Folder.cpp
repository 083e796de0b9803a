#include "simulation/programs/Folder.h"

#include <QtCore/QDir>
#include <fstream>

#include "simulation/programs/Waiting.h"

namespace talvora::programs {

Folder::Folder() : folder_(QDir::tempPath() + QStringLiteral("/talvora-XXXXXX")) {
    if (!folder_.isValid()) throw Missing("no folder: " + folder_.errorString().toStdString());
}

std::string Folder::write(std::string_view name, std::string_view content) const {
    const std::filesystem::path file = path() / name;
    std::filesystem::create_directories(file.parent_path());
    if (!(std::ofstream(file, std::ios::binary) << content << std::flush)) {
        throw Missing("cannot write " + file.string());
    }
    return file.string();
}

}  // namespace talvora::programs
