#pragma once
// What the list of mails shows, read from the files' heads. What was read is kept by name, size and time of
// change, so that a list that is drawn anew costs a look at the folder and the mails that are new.
// The mail panel owns it.

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "common/GlobError.h"
#include "mail/MailFile.h"
#include "platform/Files.h"

namespace talvora {

struct MailHeader {
    std::string Name;
    std::int32_t Number = 0;
    std::int64_t Size = 0;  // bytes
    DateTime Changed;
    // The head is not as it should be; what could be read of it is there. It has been reported.
    bool Damaged = false;
    MailFile::Summary Incoming;
    std::optional<DateTime> ReceivedAt;  // if the text in the mail is a date
    MailFile::OutgoingHead Outgoing;
};

class MailHeaders {
  public:
    MailHeaders(GlobError& globError, Files& files) : globError_(globError), files_(files) {}

    // The mails "i*" or "o*" of the folder, in the order of their numbers. They stand until the next call for
    // the same kind. Without a folder there are none; faults if it can't be read.
    std::vector<const MailHeader*> Read(char kind);

    // An incoming mail as it was when it was last read; null if it is not known.
    const MailHeader* Known(const std::string& name) const;

    // The longest head that is read; no mail of the network comes near it.
    static constexpr std::size_t HeadLimit = 4096;

  private:
    using Table = std::unordered_map<std::string, MailHeader>;
    void readHead(MailHeader& header, char kind);

    GlobError& globError_;
    Files& files_;
    Table incoming_;
    Table outgoing_;
};

// How long ago, at a glance: "now", "5 min", "3 h", "2 d", "4 w", "1 y". Empty for a moment in the future.
std::string AgeText(const DateTime& moment, const DateTime& now);
// "812 b", "3.4 Kb".
std::string SizeText(std::int64_t bytes);

}  // namespace talvora
