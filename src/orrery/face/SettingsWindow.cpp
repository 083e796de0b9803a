#include "orrery/face/SettingsWindow.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPointer>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "desktop/QtText.h"
#include "desktop/Theme.h"
#include "platform/RuntimeError.h"

namespace talvora {

SettingsWindow::SettingsWindow(std::vector<Page> pages, Orders orders)
    : pages_(std::move(pages)),
      orders_(std::move(orders)),
      list_(new QListWidget),
      stack_(new QStackedWidget),
      problem_(new QLabel),
      buttons_(
          new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel | QDialogButtonBox::Apply)) {
    setWindowTitle(QStringLiteral("Settings"));
    setWindowIcon(theme::icon(QStringLiteral("settings")));
    build();
    for (const Page& page : pages_) addPage(page);
    list_->setCurrentRow(0);
    list_->setFixedWidth(list_->sizeHintForColumn(0) + 3 * theme::Large);
    buttons_->button(QDialogButtonBox::Apply)->setEnabled(false);
    resize(720, 520);
}

SettingsWindow::~SettingsWindow() {
    on_.clear();
    // A page may go with its widget or leave it behind; either way the widget goes once.
    std::vector<QPointer<QWidget>> bodies;
    for (const Page& page : pages_) {
        bodies.emplace_back(&page.Body->Widget());
        page.Body->Widget().setParent(nullptr);
    }
    pages_.clear();
    for (const QPointer<QWidget>& body : bodies) delete body.data();
}

void SettingsWindow::build() {
    list_->setIconSize(QSize(theme::ButtonIcon, theme::ButtonIcon));
    list_->setAccessibleName(QStringLiteral("Pages"));
    problem_->setTextFormat(Qt::PlainText);
    problem_->setWordWrap(true);
    auto* const middle = new QHBoxLayout;
    middle->addWidget(list_);
    middle->addWidget(stack_, 1);
    auto* const bottom = new QHBoxLayout;
    bottom->addWidget(problem_, 1);
    bottom->addWidget(buttons_);
    auto* const all = new QVBoxLayout(this);
    all->addLayout(middle, 1);
    all->addLayout(bottom);
    connect(list_, &QListWidget::currentRowChanged, stack_, &QStackedWidget::setCurrentIndex);
    const auto press = [this](QDialogButtonBox::StandardButton which, auto call) {
        connect(buttons_->button(which), &QPushButton::clicked, this, call);
    };
    press(QDialogButtonBox::Ok, [this] {
        if (Save()) close();
    });
    press(QDialogButtonBox::Apply, [this] { Save(); });
    press(QDialogButtonBox::Cancel, [this] { close(); });
}

void SettingsWindow::addPage(const Page& page) {
    list_->addItem(new QListWidgetItem(page.Icon, page.Title));
    auto* const area = new QScrollArea;
    area->setWidgetResizable(true);
    area->setFrameShape(QFrame::NoFrame);
    area->setWidget(&page.Body->Widget());
    stack_->addWidget(area);
    on_ += page.Body->Edited.connect([this] { edited(); });
}

void SettingsWindow::edited() {
    buttons_->button(QDialogButtonBox::Apply)->setEnabled(true);
    const auto wrong = std::find_if(pages_.begin(), pages_.end(),
                                    [](const Page& page) { return !page.Body->Problem().isEmpty(); });
    showProblem(wrong == pages_.end() ? QString() : wrong->Body->Problem());
}

void SettingsWindow::showProblem(const QString& problem) {
    problem_->setText(problem);
    problem_->setAccessibleName(problem);
}

bool SettingsWindow::Save() {
    if (saving_) return false;
    for (std::size_t i = 0; i < pages_.size(); ++i) {
        const QString problem = pages_[i].Body->Problem();
        if (problem.isEmpty()) continue;
        list_->setCurrentRow(static_cast<int>(i));
        showProblem(problem);
        return false;
    }
    // Whoever applies the settings may let other events in.
    saving_ = true;
    setEnabled(false);
    const bool saved = pagesSaved();
    setEnabled(true);
    saving_ = false;
    return saved;
}

bool SettingsWindow::pagesSaved() {
    try {
        for (const Page& page : pages_) page.Body->Save();
        orders_.Apply();
        for (const Page& page : pages_) page.Body->Applied();
    } catch (const RuntimeError& error) {
        showProblem(toQString(error.Description));
        return false;
    } catch (const std::exception& error) {
        showProblem(QString::fromUtf8(error.what()));
        return false;
    }
    buttons_->button(QDialogButtonBox::Apply)->setEnabled(false);
    showProblem({});
    return true;
}

void SettingsWindow::closeEvent(QCloseEvent* event) {
    event->setAccepted(!saving_);
    if (!saving_) orders_.Closed();
}

void SettingsWindow::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) {
        close();
    } else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        buttons_->button(QDialogButtonBox::Ok)->click();
    } else {
        QWidget::keyPressEvent(event);
    }
}

}  // namespace talvora
