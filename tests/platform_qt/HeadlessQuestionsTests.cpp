#include <fcntl.h>

#include <array>
#include <csignal>

#include "Vocabulary.h"
#include "platform_qt/Descriptor.h"
#include "platform_qt/HeadlessQuestions.h"
#include "simulation/VirtualTime.h"

namespace talvora::test {

struct HeadlessQuestionsTest : testing::Test {
    HeadlessQuestionsTest() {
        std::array<int, 2> ends{};
        EXPECT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
        from.reset(ends[0]);
        ::fcntl(from.get(), F_SETFL, O_NONBLOCK);
        to.reset(ends[1]);
    }
    std::string text() const {
        std::string all;
        std::array<char, 4096> piece{};
        for (ssize_t got = 0; (got = ::read(from.get(), piece.data(), piece.size())) > 0;)
            all.append(piece.data(), static_cast<std::size_t>(got));
        return all;
    }
    void report(const std::string& description) {
        MessageBox box{"WARNING!\r\nDescription: " + description + "\r\nNumber:5", "Critical error"};
        box.Choices = Buttons::AbortRetryIgnore;
        questions->Ask(box);
    }
    VirtualTime time;
    Descriptor from, to;
    std::optional<HeadlessQuestions> questions;
};

TEST_F(HeadlessQuestionsTest, TakeTheAnswerThatDoesLeast) {
    for (const auto onFault : {Answer::Abort, Answer::Ignore, Answer::Retry}) {
        questions.emplace(time, onFault, to.get());
        using Row = std::pair<Buttons, Answer>;
        for (const auto& [choices, least] :
             {Row(Buttons::AbortRetryIgnore, onFault == Answer::Retry ? Answer::Abort : onFault),
              Row(Buttons::Ok, Answer::Ok), Row(Buttons::OkCancel, Answer::Cancel),
              Row(Buttons::YesNo, Answer::No), Row(Buttons::YesNoCancel, Answer::Cancel),
              Row(Buttons::RetryCancel, Answer::Cancel)}) {
            MessageBox box;
            box.Choices = choices;
            EXPECT_EQ(questions->Ask(box), least);
        }
        EXPECT_FALSE(questions->Ask(InputBox{"Key?", "", "red"}));
    }
}

TEST_F(HeadlessQuestionsTest, SayWhatHappenedInUtf8AndCountAStorm) {
    questions.emplace(time, Answer::Abort, to.get());
    report("\xC1\x1B[2J\x9B\x81");  // nothing that a terminal obeys
    EXPECT_EQ(text(),
              "Critical error\nWARNING!\nDescription: \xCE\x91?[2J\xE2\x80\xBA?\nNumber:5\n[Abort]\n");
    for (int i = 0; i < 2000; ++i) report(i % 2 == 0 ? "one" : "two");
    EXPECT_LT(text().size(), 300U);
    time.run(59s);
    EXPECT_EQ(text(), "");
    time.run(2s);
    EXPECT_EQ(text(),
              "... and 999 more like this: Description: one\n"
              "... and 999 more like this: Description: two\n");
    time.run(600s);
    EXPECT_EQ(text(), "");
    report("one");
    report("three");
    EXPECT_THAT(text(), testing::AllOf(testing::StartsWith("... and 1 more like this: Description: one\n"),
                                       testing::HasSubstr("Description: three\n")));
}

TEST_F(HeadlessQuestionsTest, NeitherWaitForAReaderNorDieOfItsEnd) {
    std::signal(SIGPIPE, SIG_IGN);
    questions.emplace(time, Answer::Abort, to.get());
    for (int i = 0; i < 100; ++i) report(std::to_string(i) + std::string(4000, 'x'));
    EXPECT_GT(text().size(), 32'000U);  // the pipe ran full, and the program went on
    from.reset();
    report("nobody reads");
    to.reset();
    report("closed");
}

}  // namespace talvora::test
