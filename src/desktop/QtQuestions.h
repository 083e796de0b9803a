#pragma once
// The questions on the screen. A question blocks who asks it and nobody else: the other windows stay usable
// while it stands, and the loop runs. A question that comes meanwhile stands on top, and is answered first.
// When the program ends, what still stands is answered as by its close box.

#include <QPointer>
#include <QString>
#include <vector>

#include "platform/Questions.h"

class QDialog;
class QFileDialog;
class QWidget;

namespace talvora {

class QtQuestions final : public Questions {
  public:
    QtQuestions() = default;
    QtQuestions(const QtQuestions&) = delete;
    QtQuestions& operator=(const QtQuestions&) = delete;

    Answer Ask(MessageBox& box) override;
    std::optional<std::string> Ask(const InputBox& box) override;
    std::vector<std::string> Ask(const OpenFileBox& box) override;
    std::optional<std::string> Ask(const SaveFileBox& box) override;
    std::optional<FontChoice> Ask(const FontBox& box) override;

  private:
    QWidget* parentForBox() const;
    // Returns when the box has been answered or is gone.
    void stand(QDialog& box);
    // What was chosen, as the native paths that the files have.
    std::vector<std::string> choose(QFileDialog* box, const std::vector<FileKind>& kinds);

    std::vector<QPointer<QDialog>> standing_;  // the topmost last
    QString folder_;                           // where files were chosen last; empty: the user's own
};

}  // namespace talvora
