#include "chat/ChatTraffic.h"

#include <cstddef>
#include <iterator>
#include <string_view>

#include "platform/CodePage1253.h"

namespace talvora::bench {

namespace {

constexpr int nicks = 24;

constexpr std::string_view sayings[] = {
    "who is coming to the harbour tonight, same place as last week?",
    "I will be there at nine, or a little later if the bus is late",
    "καλησπέρα σε όλους, τι κάνετε απόψε με τέτοια βροχή;",
    "the second half was much better than the first one, wasn't it :-)",
    "no, I never said so: ask anybody who was here yesterday evening",
    "has somebody got the notes of Monday's lecture in chemistry?",
    "\0034,1red on black\17 is what I would choose for the title of it",
    "\1ACTION waves to everybody and goes to fetch some more coffee\1",
    "όχι ακόμα, περιμένω να τελειώσει πρώτα ο αγώνας και βλέπουμε",
    "it rains here since morning and the roof begins to leak again",
    "read the page at http://www.example.org/harbour/timetable first",
    "that makes three of us, so one more and we take the large car",
    "πάμε μια βόλτα στην παραλία μετά; έχω και το αυτοκίνητο",
    "good night all, I must get up at six and it is past one (y) ok",
    "does it work again for you? mine still says no route to host",
    "\2never\2 mind, I have found it, it was under the other papers",
    "μου φαίνεται πως το είδα κάπου, θα ψάξω και θα σου πω αύριο",
    "you were right about the film, the ending makes no sense at all",
    "what a day :-( first the exam and then the keys left at home",
    "εντάξει, τα λέμε αύριο στις οκτώ μπροστά στον Λευκό Πύργο",
};

}  // namespace

std::string channelTalk(int lines) {
    std::string said[std::size(sayings)];
    for (std::size_t i = 0; i < std::size(sayings); ++i) said[i] = fromUtf8(sayings[i]);
    std::string result;
    result.reserve(static_cast<std::size_t>(lines) * 112);
    for (int i = 0; i < lines; ++i) {
        const std::string user = std::to_string(i * 7 % nicks);
        result.append(":Petros").append(user).append("!~u@host").append(user);
        result.append(".example.net PRIVMSG #talk :");
        result.append(said[static_cast<std::size_t>(i) % std::size(sayings)]).append("\r\n");
    }
    return result;
}

}  // namespace talvora::bench
