#include "desktop/QtQuestions.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <algorithm>
#include <memory>

#include "desktop/FontDialog.h"
#include "desktop/QtText.h"
#include "desktop/QuestionBox.h"

namespace talvora {

namespace {

QStringList filtersOf(const std::vector<FileKind>& kinds) {
    QStringList filters;
    for (const FileKind& kind : kinds) {
        QString patterns = toQString(kind.Patterns);
        if (patterns == QLatin1String("*.*")) patterns = QStringLiteral("*");
        filters += QStringLiteral("%1 (%2)").arg(toQString(kind.Name), patterns);
    }
    return filters;
}

}  // namespace

// A popup or another question may be gone before this one: neither can be what it belongs to.
QWidget* QtQuestions::parentForBox() const {
    QWidget* window = QApplication::activeWindow();
    const auto isQuestion = [&] {
        return std::any_of(standing_.begin(), standing_.end(),
                           [&](const auto& box) { return box == window; });
    };
    while (window != nullptr && (window->windowType() == Qt::Popup || window->windowType() == Qt::Tool ||
                                 dynamic_cast<QuestionBox*>(window) != nullptr || isQuestion())) {
        window = window->parentWidget() != nullptr ? window->parentWidget()->window() : nullptr;
    }
    return window;
}

void QtQuestions::stand(QDialog& box) {
    QPointer<QWidget> focus;  // of the question below, which loses it while it is disabled
    if (!standing_.empty() && standing_.back() != nullptr) {
        focus = standing_.back()->focusWidget();
        standing_.back()->setEnabled(false);
    }
    standing_.emplace_back(&box);
    QuestionBox::wait(box);
    standing_.pop_back();
    if (standing_.empty() || standing_.back() == nullptr || standing_.back()->isHidden()) return;
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

// ---- Files and fonts

// The toolkit's own box: it blocks nobody else, as all questions here.
std::vector<std::string> QtQuestions::choose(QFileDialog* box, const std::vector<FileKind>& kinds) {
    const QPointer<QFileDialog> shown(box);
    box->setOption(QFileDialog::DontUseNativeDialog);
    box->setModal(false);
    if (!kinds.empty()) box->setNameFilters(filtersOf(kinds));
    stand(*box);
    const std::unique_ptr<QFileDialog> last(shown.data());
    std::vector<std::string> paths;
    if (last == nullptr || last->result() != QDialog::Accepted) return paths;
    folder_ = last->directory().absolutePath();
    for (const QString& path : last->selectedFiles()) paths.push_back(QFile::encodeName(path).toStdString());
    return paths;
}

std::vector<std::string> QtQuestions::Ask(const OpenFileBox& box) {
    auto* dialog =
        new QFileDialog(parentForBox(), toQString(box.Title), folder_.isEmpty() ? QDir::homePath() : folder_);
    dialog->setFileMode(box.Many ? QFileDialog::ExistingFiles : QFileDialog::ExistingFile);
    return choose(dialog, box.Kinds);
}

std::optional<std::string> QtQuestions::Ask(const SaveFileBox& box) {
    auto* dialog =
        new QFileDialog(parentForBox(), toQString(box.Title), folder_.isEmpty() ? QDir::homePath() : folder_);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setFileMode(QFileDialog::AnyFile);
    dialog->selectFile(QFile::decodeName(QByteArray::fromStdString(box.Suggested)));
    std::vector<std::string> paths = choose(dialog, box.Kinds);
    return paths.empty() ? std::nullopt : std::optional(std::move(paths.front()));
}

std::optional<FontChoice> QtQuestions::Ask(const FontBox& box) {
    const QPointer<FontDialog> shown(new FontDialog(box, parentForBox()));
    stand(*shown);
    const std::unique_ptr<FontDialog> last(shown.data());
    if (last == nullptr || last->result() != QDialog::Accepted) return std::nullopt;
    return last->Choice();
}

}  // namespace talvora
