#pragma once
// The questions where there is no screen: each is answered at once, and what it said is printed on standard
// error as UTF-8.
//
// In a storm of the same text it is printed once and then counted; the count is printed once a minute, and
// before another text. At most 8 texts are remembered. A reader of standard error that is gone or does not
// keep up loses lines; the program neither waits nor ends for it.

#include <string>
#include <string_view>
#include <vector>

#include "platform/Loop.h"
#include "platform/Questions.h"

namespace talvora {

class HeadlessQuestions final : public Questions {
  public:
    // `onFault` answers Abort, Retry, Ignore; anything but Ignore is taken for Abort. `output` is an open
    // descriptor that stays its owner's.
    explicit HeadlessQuestions(Loop& loop, Answer onFault = Answer::Abort, int output = 2);
    HeadlessQuestions(const HeadlessQuestions&) = delete;
    HeadlessQuestions& operator=(const HeadlessQuestions&) = delete;
    ~HeadlessQuestions() override { printCounts(); }

    // The least that can be answered: No before Cancel before Ok.
    Answer Ask(MessageBox& box) override;
    // Nothing, as if they had been cancelled.
    std::optional<std::string> Ask(const InputBox& box) override;
    std::vector<std::string> Ask(const OpenFileBox& box) override;
    std::optional<std::string> Ask(const SaveFileBox& box) override;
    std::optional<FontChoice> Ask(const FontBox& box) override;

  private:
    struct Told {
        std::size_t hash;
        std::string gist;  // the line by which a reader knows it again
        int more;
    };

    Answer answer(Buttons choices) const;
    void tell(const std::string& title, const std::string& text, const std::string& outcome);
    void remember(std::size_t hash, const std::string& text);
    void printCounts();
    void everyMinute();
    void print(std::string_view text) const;

    Loop& loop_;
    Answer onFault_;
    int output_;
    std::vector<Told> told_;  // the latest last
    bool counted_ = false;    // since the counts were printed
    WakeUp minute_{[this] { everyMinute(); }};
};

}  // namespace talvora
