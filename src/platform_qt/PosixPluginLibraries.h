#pragma once
// The libraries in the folder Plugins of a real machine, by the system's dynamic loader. Whoever composes the
// platform owns it; what it loads stays for the life of the process.
//
// A library is code that runs as the user. So the program's folder, the folder Plugins and each library
// belong to him and can be written by nobody else, and a link may only lead to a file of the same folder.

#include <string>
#include <vector>

#include "platform/PluginLibraries.h"

namespace talvora {

class PosixPluginLibraries final : public PluginLibraries {
  public:
    // `root` is the program's folder, a native path in UTF-8.
    explicit PosixPluginLibraries(const std::string& root);

    std::vector<std::string> List() override;
    Exports Load(const std::string& fileName) override;

  private:
    std::string root_;
    std::string folder_;
};

}  // namespace talvora
