#include "desktop/QtQuestions.h"

#include <QApplication>
#include <memory>

#include "desktop/QtText.h"
#include "desktop/QuestionBox.h"

namespace talvora {

// A popup or another question may be gone before this one: neither can be what it belongs to.
QWidget* QtQuestions::parentForBox() const {
    QWidget* window = QApplication::activeWindow();
    while (window != nullptr && (window->windowType() == Qt::Popup || window->windowType() == Qt::Tool ||
                                 dynamic_cast<QuestionBox*>(window) != nullptr)) {
        window = window->parentWidget() != nullptr ? window->parentWidget()->window() : nullptr;
    }
    return window;
}

void QtQuestions::stand(QuestionBox& box) {
    QPointer<QWidget> focus;  // of the question below, which loses it while it is disabled
    if (!standing_.empty() && standing_.back() != nullptr) {
        focus = standing_.back()->focusWidget();
        standing_.back()->setEnabled(false);
    }
    standing_.emplace_back(&box);
    QuestionBox::wait(box);
    standing_.pop_back();
    if (standing_.empty() || standing_.back() == nullptr || standing_.back()->IsOver()) return;
    standing_.back()->setEnabled(true);
    if (focus != nullptr) focus->setFocus();
    standing_.back()->activateWindow();
}

Answer QtQuestions::Ask(MessageBox& box) {
    const QPointer<QuestionBox> shown(new QuestionBox(box, parentForBox()));
    const Answer least = shown->Outcome();
    const Subscription count = box.Suppressed.Changed.connect([&shown](int more) {
        if (shown != nullptr) shown->showSuppressed(more);
    });
    stand(*shown);
    const std::unique_ptr<QuestionBox> last(shown.data());
    return last != nullptr ? last->Outcome() : least;
}

std::optional<std::string> QtQuestions::Ask(const InputBox& box) {
    const QPointer<QuestionBox> shown(new QuestionBox(box, parentForBox()));
    stand(*shown);
    const std::unique_ptr<QuestionBox> last(shown.data());
    if (last == nullptr || last->Outcome() != Answer::Ok) return std::nullopt;
    return fromQString(last->Typed());
}

}  // namespace talvora
