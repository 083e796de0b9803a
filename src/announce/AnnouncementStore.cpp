#include "announce/AnnouncementStore.h"

#include <utility>

namespace talvora {

void AnnouncementStore::Furnish() {
    if (!files_.FolderExists("Mail")) files_.MkDir("Mail");
    if (!files_.Exists(ListFile)) files_.Open(ListFile, FileMode::Append).Close();
}

void AnnouncementStore::Append(const std::string& line) {
    files_.AppendRecord(ListFile, line);
}

void AnnouncementStore::ForEach(const std::function<void(int number, const std::string& line)>& hear) const {
    File list = files_.Open(ListFile, FileMode::Input);
    for (int number = 1; !list.AtEnd(); ++number) hear(number, list.ReadLine());
}

void AnnouncementStore::Keep(const std::function<bool(int number, const std::string& line)>& stays) {
    File copy = files_.Open(NewFile, FileMode::Output);
    ForEach([&](int number, const std::string& line) {
        if (stays(number, line)) copy.WriteLine(line);
    });
    copy.Flush();
    copy.Close();
    files_.Replace(NewFile, ListFile);
}

std::optional<std::string> AnnouncementStore::LastLine() const {
    std::optional<std::string> last;
    if (!files_.Exists(ListFile)) return last;
    ForEach([&](int, const std::string& line) { last = line; });
    return last;
}

}  // namespace talvora
