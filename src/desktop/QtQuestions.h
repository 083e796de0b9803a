#pragma once
// The questions on the screen. A question blocks who asks it and nobody else: the other windows stay usable
// while it stands, and the loop runs. A question that comes meanwhile stands on top, and is answered first.
// When the program ends, what still stands is answered as by its close box.

#include <QPointer>
#include <vector>

#include "platform/Questions.h"

class QWidget;

namespace talvora {

class QuestionBox;

class QtQuestions final : public Questions {
  public:
    QtQuestions() = default;
    QtQuestions(const QtQuestions&) = delete;
    QtQuestions& operator=(const QtQuestions&) = delete;

    Answer Ask(MessageBox& box) override;
    std::optional<std::string> Ask(const InputBox& box) override;

  private:
    QWidget* parentForBox() const;
    // Returns when the box has been answered or is gone.
    void stand(QuestionBox& box);

    std::vector<QPointer<QuestionBox>> standing_;  // the topmost last
};

}  // namespace talvora
