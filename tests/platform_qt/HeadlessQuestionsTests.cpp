#include <fcntl.h>
#include <gtest/gtest.h>

#include <array>
#include <csignal>

#include "platform_qt/Descriptor.h"
#include "platform_qt/HeadlessQuestions.h"
#include "support/VirtualTime.h"

namespace talvora::test {

namespace {

using namespace std::chrono_literals;

struct Reader {
    Reader() {
        std::array<int, 2> ends{};
        EXPECT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
        from.reset(ends[0]);
        to.reset(ends[1]);
        ::fcntl(from.get(), F_SETFL, O_NONBLOCK);
    }
    std::string text() const {
        std::string all;
        std::array<char, 4096> piece{};
        for (ssize_t got = 0; (got = ::read(from.get(), piece.data(), piece.size())) > 0;) {
            all.append(piece.data(), static_cast<std::size_t>(got));
        }
        return all;
    }
    Descriptor from, to;
};

Answer report(HeadlessQuestions& questions, const std::string& description) {
    MessageBox box;
    box.Title = "Critical error";
    box.Text = "WARNING!\r\nDescription: " + description + "\r\nNumber:5";
    box.Choices = Buttons::AbortRetryIgnore;
    return questions.Ask(box);
}

}  // namespace

TEST(HeadlessQuestions, TakeTheAnswerThatDoesLeast) {
    VirtualTime time;
    Reader reader;
    for (const auto& [onFault, answer] : {std::pair{Answer::Abort, Answer::Abort},
                                          {Answer::Ignore, Answer::Ignore},
                                          {Answer::Retry, Answer::Abort}}) {
        HeadlessQuestions questions(time, onFault, reader.to.get());
        EXPECT_EQ(report(questions, "x"), answer);
        const std::pair<Buttons, Answer> others[] = {{Buttons::Ok, Answer::Ok},
                                                     {Buttons::OkCancel, Answer::Cancel},
                                                     {Buttons::YesNo, Answer::No},
                                                     {Buttons::YesNoCancel, Answer::Cancel},
                                                     {Buttons::RetryCancel, Answer::Cancel}};
        for (const auto& [choices, least] : others) {
            MessageBox box;
            box.Choices = choices;
            EXPECT_EQ(questions.Ask(box), least);
        }
        EXPECT_FALSE(questions.Ask(InputBox{"Key?", "", "red"}));
    }
}

TEST(HeadlessQuestions, SayWhatHappenedInUtf8AndNothingThatATerminalObeys) {
    VirtualTime time;
    Reader reader;
    HeadlessQuestions questions(time, Answer::Abort, reader.to.get());
    report(questions, "\xC1\x1B[2J\x9B\x81");
    EXPECT_EQ(reader.text(),
              "Critical error\nWARNING!\nDescription: \xCE\x91?[2J\xE2\x80\xBA?\nNumber:5\n[Abort]\n");
}

TEST(HeadlessQuestions, CountAStormOfTheSameReports) {
    VirtualTime time;
    Reader reader;
    HeadlessQuestions questions(time, Answer::Abort, reader.to.get());
    for (int i = 0; i < 1000; ++i) {
        report(questions, "one");
        report(questions, "two");
    }
    std::string text = reader.text();
    EXPECT_LT(text.size(), 300U);
    time.run(59s);
    EXPECT_EQ(reader.text(), "");
    time.run(2s);
    const std::string counts =
        "... and 999 more like this: Description: one\n... and 999 more like this: Description: two\n";
    EXPECT_EQ(reader.text(), counts);
    time.run(600s);
    EXPECT_EQ(reader.text(), "");
    report(questions, "one");
    report(questions, "three");
    text = reader.text();
    EXPECT_EQ(text.substr(0, text.find('\n')), "... and 1 more like this: Description: one");
    EXPECT_NE(text.find("Description: three\n"), std::string::npos);
}

TEST(HeadlessQuestions, NeitherWaitForAReaderNorDieOfItsEnd) {
    std::signal(SIGPIPE, SIG_IGN);
    VirtualTime time;
    Reader reader;
    HeadlessQuestions questions(time, Answer::Abort, reader.to.get());
    for (int i = 0; i < 100; ++i) report(questions, std::to_string(i) + std::string(4000, 'x'));
    EXPECT_GT(reader.text().size(), 32'000U);  // the pipe ran full, and the program went on
    reader.from.reset();
    report(questions, "nobody reads");
    reader.to.reset();
    report(questions, "closed");
}

}  // namespace talvora::test
