#include <gmock/gmock.h>

#include "chat/modNickDecode.h"
#include "simulation/VirtualMachine.h"

namespace talvora::test {
namespace {

struct Case {
    const char* nick;
    const char* expected;  // bare nick, description and icon
    const char* fault = nullptr;
};

struct NickDecode : testing::Test, VirtualMachine {};

TEST_F(NickDecode, SplitsTheStateOffAndReportsLinesThatItCannotRead) {
    modNickDecode decode{globError, around.files};
    around.questions.answerFaults(Answer::Abort);
    const auto check = [&](const Case& c) {
        std::string nick = c.nick;
        std::string description;
        std::uint8_t icon = 0;
        around.questions.asked.clear();
        decode.GetNickDesc(nick, description, icon);
        EXPECT_EQ(nick + "/" + description + "/" + std::to_string(icon), c.expected) << c.nick;
        ASSERT_EQ(around.questions.asked.size(), c.fault == nullptr ? 0U : 1U) << c.nick;
        if (c.fault == nullptr) return;
        EXPECT_THAT(around.questions.asked[0], testing::HasSubstr(c.fault));
        EXPECT_THAT(around.questions.asked[0], testing::HasSubstr("Function:GetNickDesc"));
    };
    decode.LoadPerflixes();
    EXPECT_THAT(around.questions.asked, testing::ElementsAre(testing::HasSubstr("Function:LoadPerflixes")));
    check({"a[dnd]", "a/Online/3"});
    around.disk.put(
        "System/perflix.lst",
        "\r\n  dnd |Do not disturb| 5\r\nDND|second|6\r\n\r\n\xFC\xF7\xE9|no|2.5|more\r\n|none|x\r\n"
        "ONE\r\nTWO|two\r\nBIG|big|256\r\nNEG|neg|-1\r\nONE|good|4");
    decode.LoadPerflixes();
    for (const Case& c :
         {Case{"Nikos", "Nikos/Online/3"}, Case{"", "/Online/3"}, Case{"Nikos[unknown", "Nikos/Online/3"},
          Case{"Nikos[ dnd ]", "Nikos/Do not disturb/5"}, Case{"Nikos[D]N]D", "Nikos/Do not disturb/5"},
          Case{"Nikos[[DND]]", "Nikos/Online/3"}, Case{"[Dnd]", "/Do not disturb/5"},
          Case{"a[\xBC\xD7\xC9]", "a/no/2"}, Case{"a[]", "a/none/0"},
          Case{"a[one]", "a/Online/3", "Number:9\r\n"}, Case{"a[two]", "a/two/3", "Number:9\r\n"},
          Case{"a[big]", "a/big/3", "Number:6\r\n"}, Case{"a[neg]", "a/neg/3", "Number:6\r\n"}}) {
        check(c);
    }
}

}  // namespace
}  // namespace talvora::test
