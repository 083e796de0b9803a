#include "settings/LineFile.h"

#include "platform/Text.h"

namespace talvora {

std::vector<std::string> LineFile::Read() {
    std::string text;
    unreadable_.reset();
    try {
        if (files_.Exists(path_)) text = files_.ReadWhole(path_);
    } catch (const RuntimeError& fault) {
        unreadable_ = fault;
        throw;
    }
    auto lines = Split(Replace(Replace(text, "\r\n", "\n"), "\r", "\n"), "\n");
    if (!lines.empty() && lines.back().empty()) lines.pop_back();
    return lines;
}

void LineFile::Write(const std::string& text) {
    if (unreadable_) throw *unreadable_;
    files_.Rewrite(path_, text);
}

}  // namespace talvora
