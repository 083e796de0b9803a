#pragma once
// Questions whose answers a story has laid ready. An unexpected one, and an answer left over, is a failure.

#include <deque>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "platform/Questions.h"
#include "simulation/Failure.h"

namespace talvora::test {

class PreparedQuestions final : public Questions {
  public:
    ~PreparedQuestions() override {
        if (!answers_.empty()) Fail(std::to_string(answers_.size()) + " answers not asked for");
    }

    // `meanwhile` runs while the box stands, so that what happens behind an open dialog is tested too.
    void willAnswer(Answer answer, std::function<void()> meanwhile = {}) {
        answers_.push_back({answer, {}, std::move(meanwhile)});
    }
    void willType(std::optional<std::string> text) { answers_.push_back({Answer::Ok, std::move(text), {}}); }
    // No path stands for a cancelled box, of which a box to save under takes the first.
    void willChoose(std::vector<std::string> paths) {
        answers_.push_back({Answer::Ok, {}, {}, std::move(paths)});
    }
    void willChooseFont(std::optional<FontChoice> font) {
        answers_.push_back({Answer::Ok, {}, {}, {}, std::move(font)});
    }
    // Faults are reported in any number, and each is answered so.
    void answerFaults(Answer answer) { faultAnswer_ = answer; }

    Answer Ask(MessageBox& box) override {
        asked.push_back(box.Title + "\n" + box.Text);
        if (faultAnswer_ && box.Choices == Buttons::AbortRetryIgnore) return *faultAnswer_;
        if (answers_.empty()) {
            Fail("unexpected question: " + asked.back());
            return box.Choices == Buttons::AbortRetryIgnore ? Answer::Abort : Answer::Cancel;
        }
        const Prepared prepared = next();
        if (prepared.meanwhile) prepared.meanwhile();
        lastSuppressed = box.Suppressed;
        return prepared.answer;
    }

    std::optional<std::string> Ask(const InputBox& box) override {
        return expected(box.Title + "\n" + box.Prompt + "\n" + box.Default).text;
    }
    std::vector<std::string> Ask(const OpenFileBox& box) override { return expected(box.Title).paths; }
    std::optional<std::string> Ask(const SaveFileBox& box) override {
        std::vector<std::string> paths = expected(box.Title + "\n" + box.Suggested).paths;
        return paths.empty() ? std::nullopt : std::optional(std::move(paths.front()));
    }
    std::optional<FontChoice> Ask(const FontBox& box) override {
        return expected(box.Title + "\n" + box.Preset.Name).font;
    }

    // Title and text of all that was asked.
    std::vector<std::string> asked;
    int lastSuppressed = 0;

  private:
    struct Prepared {
        Answer answer;
        std::optional<std::string> text;
        std::function<void()> meanwhile;
        std::vector<std::string> paths{};
        std::optional<FontChoice> font{};
    };
    // What was laid ready for a question; as if it were cancelled if nothing was.
    Prepared expected(std::string question) {
        asked.push_back(std::move(question));
        if (!answers_.empty()) return next();
        Fail("unexpected question: " + asked.back());
        return {Answer::Cancel, {}, {}};
    }
    Prepared next() {
        Prepared prepared = std::move(answers_.front());
        answers_.pop_front();
        return prepared;
    }

    std::deque<Prepared> answers_;
    std::optional<Answer> faultAnswer_;
};

}  // namespace talvora::test
