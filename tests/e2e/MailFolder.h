#pragma once
// What stands in the mail folder of a real messenger, and how it compares with what was sent.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "mail/MailFile.h"
#include "simulation/programs/MailUser.h"
#include "simulation/programs/OrreryProcess.h"

namespace talvora::programs {

// "i*.qrm" by 'i' and ".qrm". A file may go while this looks.
inline std::vector<std::filesystem::path> mailsOf(const OrreryProcess& user, char kind,
                                                  std::string_view extension = ".qrm") {
    std::vector<std::filesystem::path> found;
    std::error_code gone;
    const std::filesystem::path folder = user.folder() / "data/Mail";
    for (const auto& entry : std::filesystem::directory_iterator(folder, gone)) {
        const std::string name = entry.path().filename().string();
        if (name.front() == kind && name.ends_with(extension)) found.push_back(entry.path());
    }
    return found;
}

inline MailFile::Opened opened(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    const auto mail = MailFile::Open(std::string{std::istreambuf_iterator<char>(file), {}});
    if (!mail) throw Missing("no mail: " + path.string());
    return *mail;
}

inline void expectSame(std::vector<SentMail> sent, std::vector<SentMail> received) {
    std::sort(sent.begin(), sent.end());
    std::sort(received.begin(), received.end());
    std::vector<SentMail> lost, doubled;
    std::set_difference(sent.begin(), sent.end(), received.begin(), received.end(), std::back_inserter(lost));
    std::set_difference(received.begin(), received.end(), sent.begin(), sent.end(),
                        std::back_inserter(doubled));
    for (const SentMail& mail : lost) ADD_FAILURE() << "lost: " << mail.subject << " to " << mail.to;
    for (const SentMail& mail : doubled) {
        ADD_FAILURE() << "doubled or torn: " << mail.subject << " to " << mail.to;
    }
}

}  // namespace talvora::programs
