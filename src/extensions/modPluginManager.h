#pragma once
// Which plug-ins go into which windows, as `System\plugin.lst` tells. The composition owns it and reads the
// file once, at the start; windows are built from the two arrays.
//
// A line has six fields parted by single blanks: the ProgID, in which "<SYS>" stands for the component's own
// name; "T" for private windows; "T" for channel windows; two fields that only the settings page knows; and
// the caption, which may hold blanks.

#include <string>
#include <vector>

#include "common/GlobError.h"
#include "platform/Files.h"

namespace talvora {

class modPluginManager {
  public:
    static constexpr const char* ListFile = "System\\plugin.lst";

    modPluginManager(Files& files, GlobError& globError) : files_(files), globError_(globError) {}

    void ReloadPlugins();

    // Each entry the ProgID, "@" and the caption, in the order of the file.
    const std::vector<std::string>& PrivatePlugins() const { return private_; }
    const std::vector<std::string>& ChannelPlugins() const { return channel_; }

  private:
    Files& files_;
    GlobError& globError_;
    std::vector<std::string> private_;
    std::vector<std::string> channel_;
};

}  // namespace talvora
