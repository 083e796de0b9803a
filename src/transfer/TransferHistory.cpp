#include "transfer/TransferHistory.h"

#include <algorithm>
#include <utility>

namespace talvora {

void TransferHistory::Add(FinishedFile file) {
    files_.push_front(std::move(file));
    if (files_.size() > Most) files_.pop_back();
    Changed.raise();
}

void TransferHistory::Discarded(const std::string& path) {
    const auto is = [&](const FinishedFile& file) { return file.Received && file.Path == path; };
    const auto found = std::find_if(files_.begin(), files_.end(), is);
    if (found == files_.end()) return;
    found->Outcome += "; it is in the waste basket";
    found->Path.clear();
    Changed.raise();
}

void TransferHistory::Clear() {
    files_.clear();
    Changed.raise();
}

std::string ShownName(std::string_view text) {
    constexpr std::size_t longest = 255;
    std::string shown(text.substr(0, longest));
    const auto isControl = [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7F'; };
    std::replace_if(shown.begin(), shown.end(), isControl, '?');
    return text.size() > longest ? shown + "..." : shown;
}

}  // namespace talvora
