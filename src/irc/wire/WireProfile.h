#pragma once
// How one network's wire differs from what the engine reads and writes: its encoding and the named rewrites
// that its dialect asks for. A plain value, made from the network profile and handed to the wire adapter.

#include <bitset>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace talvora {

enum class Encoding { CP1253, UTF8 };

// The closed list of rewrites, in the order in which their names are listed.
enum class Rewrite : std::size_t {
    UserName,         // USER's user name: ASCII letters and digits, at most 9
    PasswordFirst,    // NICK and USER wait for PASS
    WhoAll,           // WHO becomes WHO *
    Rejoin,           // a JOIN of a joined channel is answered here by 927
    Length,           // lines are cut to what the server relays
    Pacing,           // a burst, then a steady rate
    LastColon,        // the colon stands where the engine looks for it
    ChannelModes,     // one line for each nick of a channel MODE
    Names,            // half-operators as voices; replies without content fall out
    GlobalUsers,      // 266 in the form that gives the number
    Moderated,        // 404 of a joined channel becomes a NOTICE
    EmptyText,        // empty texts and lines fall out
    GivenNick,        // a NICK line when 001 names another nick
    ColonsInWords,    // ":" in the words of 311 and 352 becomes "."
    OneReplyAtATime,  // lines of one reply arrive together
    ServerSpelling,   // names with letters beyond ASCII leave as the server spells them
    Count
};

using RewriteSet = std::bitset<static_cast<std::size_t>(Rewrite::Count)>;

struct WireProfile {
    talvora::Encoding Encoding = talvora::Encoding::CP1253;
    RewriteSet Rewrites;
    bool RemoveTags = false;  // message tags in front of the prefix are taken off

    bool has(Rewrite rewrite) const { return Rewrites[static_cast<std::size_t>(rewrite)]; }
    void set(Rewrite rewrite, bool on = true) { Rewrites[static_cast<std::size_t>(rewrite)] = on; }
    // Every byte goes through as it came.
    bool isPlain() const { return Encoding == talvora::Encoding::CP1253 && Rewrites.none() && !RemoveTags; }

    static WireProfile plain() { return {}; }
    static WireProfile standard();
};

// The name of a rewrite in a profile, such as "user-name".
std::string_view rewriteName(Rewrite rewrite);

// Sets the rewrites from a value such as `standard +pacing -rejoin` (blanks or commas between; case does not
// matter). Returns what is wrong with the value and what is allowed, and then leaves `profile` as it was.
std::optional<std::string> parseDialect(std::string_view value, WireProfile& profile);

// `cp1253` or `utf-8`; nothing for any other value.
std::optional<Encoding> parseEncoding(std::string_view value);

}  // namespace talvora
