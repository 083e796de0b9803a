#pragma once
// The plain files of one folder, looked at again and again: the first look tells all, a later one those alone
// to which something has happened, where the system notes that. So a look costs what has changed. Owned by
// whoever shows the folder; the files outlive it. Faults like `Files`; the look behind a fault tells all.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/Files.h"

namespace talvora {

class FolderLook {
  public:
    struct Entry {
        std::string Name;
        std::int64_t Size = 0;      // in bytes
        std::uint64_t Version = 0;  // another one after the content has changed
    };
    struct News {
        bool All = false;          // `Found` are all there are, whether something happened to them or not
        std::vector<Entry> Found;  // in no order
        std::vector<std::string> Gone;
    };

    // The files that fit `pattern` (see fitsPattern).
    FolderLook(Files& files, std::string folder, std::string pattern);

    // Without the folder there are none.
    News Look();

  private:
    News all();
    News some(const std::vector<std::string>& names);

    Files& files_;
    std::string folder_;
    std::string pattern_;
    std::string native_;                  // the folder, as the watch has it
    std::unique_ptr<FolderWatch> watch_;  // null before the first look, and where there is none
};

}  // namespace talvora
