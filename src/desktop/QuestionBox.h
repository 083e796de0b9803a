#pragma once
// The box of one question: an icon, the text, perhaps a line to type in, and the buttons. It isn't modal.

#include <QDialog>

#include "platform/Questions.h"

class QDialogButtonBox;
class QHBoxLayout;
class QLabel;
class QLineEdit;
class QVBoxLayout;

namespace talvora {

class QuestionBox final : public QDialog {
  public:
    QuestionBox(const MessageBox& question, QWidget* parent);
    QuestionBox(const InputBox& question, QWidget* parent);

    // As pressed; what the close box and Escape mean until then.
    Answer Outcome() const { return outcome_; }
    QString Typed() const;
    // Further occasions of the kind.
    void showSuppressed(int count);

    // Shows a box, perhaps of another kind, and runs the loop until it has been answered or is gone.
    static void wait(QDialog& box);

  protected:
    void hideEvent(QHideEvent* event) override;

  private:
    QuestionBox(const std::string& title, const std::string& text, QWidget* parent);
    void addButtons(Buttons choices, Answer standard);
    void conclude(Answer answer);

    Answer outcome_ = Answer::Cancel;
    QHBoxLayout* row_;     // beside the text
    QVBoxLayout* column_;  // below the text
    QVBoxLayout* rows_;
    QLabel* suppressed_ = nullptr;
    QLineEdit* line_ = nullptr;
};

}  // namespace talvora
