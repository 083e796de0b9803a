#include "mail/MailDrafts.h"

#include <algorithm>

#include "mail/MailFile.h"
#include "platform/Files.h"
#include "platform/Text.h"

namespace talvora {

namespace {

constexpr std::string_view Magic = "Talvora draft v1";
constexpr std::size_t HeadLimit = 4096;

std::string flag(bool on) {
    return on ? "T" : "F";
}

std::string sourceOf(const MailDraft& draft) {
    return Join({std::string(Magic), OneLine(draft.To), OneLine(draft.Subject),
                 flag(draft.Urgent) + " " + flag(draft.IsRTF) + " " + CStr(draft.ExpireHours), draft.RTF},
                "\r\n");
}

bool read(const std::string& source, MailDraft& draft) {
    const auto lines = Split(source, "\r\n", 5);
    if (lines.size() < 4 || lines[0] != Magic) return false;
    const auto words = Split(lines[3], " ");
    if (words.size() < 3) return false;
    draft = {lines[1],        lines[2],        lines.size() > 4 ? lines[4] : std::string(),
             words[0] == "T", words[1] == "T", CLng(Val(words[2]))};
    return true;
}

}  // namespace

std::string MailDrafts::newName() {
    std::int32_t highest = 0;
    for (const std::string& name : files_.List("Mail", "d*.dft")) {
        highest = std::max(highest, MailFile::NumberOf(name));
    }
    return "d" + Hex(highest + 1) + ".dft";
}

void MailDrafts::Save(std::string& name, const MailDraft& draft) {
    trapped(globError_, "SaveDraft", [&](Trap& step) {
        std::string to = name;
        const bool saved = step([&] {
            if (to.empty()) to = newName();
            files_.Rewrite(MailFile::PathOf(to), sourceOf(draft));
        });
        if (!saved) return;
        name = to;
        Take(name);
    });
}

void MailDrafts::Remove(const std::string& name) {
    trapped(globError_, "RemoveDraft", [&](Trap& step) {
        if (name.empty()) return;
        taken_.erase(name);
        step([&] {
            if (files_.Exists(MailFile::PathOf(name))) files_.Kill(MailFile::PathOf(name));
        });
        Changed.raise();
    });
}

bool MailDrafts::Load(const std::string& name, MailDraft& draft) {
    bool loaded = false;
    trapped(globError_, "LoadDraft", [&](Trap& step) {
        loaded = step.test([&] { return read(files_.ReadWhole(MailFile::PathOf(name)), draft); });
    });
    return loaded;
}

std::vector<MailDrafts::Entry> MailDrafts::Waiting() {
    std::vector<Entry> entries;
    trapped(globError_, "ListDrafts", [&](Trap& step) {
        std::vector<std::string> names;
        step([&] {
            if (files_.FolderExists("Mail")) names = files_.List("Mail", "d*.dft");
        });
        std::ranges::stable_sort(names, {}, [](const std::string& name) { return MailFile::NumberOf(name); });
        for (const std::string& name : names) {
            MailDraft draft;
            const auto isDraft = [&] {
                return read(files_.ReadStart(MailFile::PathOf(name), HeadLimit), draft);
            };
            if (taken_.contains(name) || !step.test(isDraft)) continue;
            entries.push_back({name, draft.To, draft.Subject});
        }
    });
    return entries;
}

void MailDrafts::Take(const std::string& name) {
    if (taken_.insert(name).second) Changed.raise();
}

void MailDrafts::Release(const std::string& name) {
    if (taken_.erase(name) != 0) Changed.raise();
}

}  // namespace talvora
