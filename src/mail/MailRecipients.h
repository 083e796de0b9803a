#pragma once
// Names that a mail's recipient can be completed to: friends, users on line, and earlier recipients, which
// are kept in the settings.

#include <string>
#include <string_view>
#include <vector>

#include "common/ComponentSettings.h"
#include "mail/MailSession.h"

namespace talvora {

class MailRecipients {
  public:
    MailRecipients(ComponentSettings& settings, const MailPeople& people)
        : settings_(settings), people_(people) {}

    // Bare names that begin with `start`, earlier recipients first, then friends, then users on line; each
    // once. Nothing for an empty start.
    std::vector<std::string> Matches(std::string_view start) const;
    // The newest stand first; so many are kept.
    void Remember(const std::vector<std::string>& names);

    static constexpr std::size_t Kept = 50;
    static constexpr std::size_t MostMatches = 12;

  private:
    std::vector<std::string> earlier() const;

    ComponentSettings& settings_;
    const MailPeople& people_;
};

}  // namespace talvora
