#pragma once
// What a busy channel says.

#include <string>

namespace talvora::bench {

// `lines` lines of text for #talk as a server sends them, in code page 1253, with 40 to 80 characters said by
// 24 nicks. Of twenty lines five are Greek; three bear an emoticon of the table, one colours, one a bold
// word, one a link, and one is an action.
std::string channelTalk(int lines);

}  // namespace talvora::bench
