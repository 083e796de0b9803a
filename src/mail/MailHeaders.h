#pragma once
// What the list of mails shows, read from the files' heads. What was read is kept until something happens to
// the file, so that a list that is drawn anew reads only what is new. The mail panel owns it.

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "common/GlobError.h"
#include "mail/MailFile.h"
#include "platform/Files.h"
#include "platform/FolderLook.h"

namespace talvora {

struct MailHeader {
    std::string Name;
    std::int32_t Number = 0;
    std::int64_t Size = 0;  // bytes
    std::uint64_t Version = 0;
    // The head is not as it should be; what could be read of it is there. It has been reported.
    bool Damaged = false;
    MailFile::Summary Incoming;
    std::optional<DateTime> ReceivedAt;  // if the text in the mail is a date
    MailFile::OutgoingHead Outgoing;
};

class MailHeaders {
  public:
    MailHeaders(GlobError& globError, Files& files)
        : globError_(globError), files_(files), incoming_(files, 'i'), outgoing_(files, 'o') {}

    // The mails "i*" or "o*" of the folder, in the order of their numbers. They stand until the next call for
    // the same kind. Without a folder there are none; faults if it can't be read.
    std::vector<const MailHeader*> Read(char kind);

    // An incoming mail as it was when it was last read; null if it is not known.
    const MailHeader* Known(const std::string& name) const;

    // The longest head that is read; no mail of the network comes near it.
    static constexpr std::size_t HeadLimit = 4096;

  private:
    using Key = std::pair<std::int32_t, std::string>;  // the number and the name of the file
    struct Kept {
        Kept(Files& files, char kind) : folder(files, "Mail", std::string(1, kind) + "*.qrm") {}
        FolderLook folder;
        std::map<Key, MailHeader> headers;
    };
    static std::optional<Key> noted(Kept& kept, FolderLook::Entry entry);
    void readHead(Kept& kept, const Key& key, char kind);

    GlobError& globError_;
    Files& files_;
    Kept incoming_;
    Kept outgoing_;
};

// How long ago, at a glance: "now", "5 min", "3 h", "2 d", "4 w", "1 y". Empty for a moment in the future.
std::string AgeText(const DateTime& moment, const DateTime& now);
// "812 b", "3.4 Kb".
std::string SizeText(std::int64_t bytes);

}  // namespace talvora
