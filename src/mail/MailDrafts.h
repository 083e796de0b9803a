#pragma once
// Mails that are being written, kept in the mail folder as `d<hex>.dft` so that neither a closed window nor a
// crash loses them. One for all composers; the composition owns it. A draft goes when its mail is queued.
//
// The file: a magic line, recipients, subject, three words (urgent and RTF as T or F, hours of expiry), and
// the text as RTF source.

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "common/Trap.h"
#include "platform/Event.h"

namespace talvora {

class Files;

struct MailDraft {
    std::string To;
    std::string Subject;
    std::string RTF;
    bool Urgent = false;
    bool IsRTF = false;
    std::int32_t ExpireHours = 0;
};

class MailDrafts {
  public:
    struct Entry {
        std::string Name;
        std::string To;
        std::string Subject;
    };

    MailDrafts(GlobError& globError, Files& files) : globError_(globError), files_(files) {}

    // Durable when it returns. `name` is empty for a new draft, and is its name then.
    void Save(std::string& name, const MailDraft& draft);
    void Remove(const std::string& name);
    // False if it is none (any more).
    bool Load(const std::string& name, MailDraft& draft);
    // Those that no composer has open, oldest first.
    std::vector<Entry> Waiting();
    // A composer works on it, or no longer.
    void Take(const std::string& name);
    void Release(const std::string& name);

    // What waits may be different now.
    Event<> Changed;

  private:
    std::string newName();

    GlobError& globError_;
    Files& files_;
    std::set<std::string> taken_;
};

}  // namespace talvora
