#pragma once
// The widget of a TextBox in which a person writes to others: as high as what is written, up to a few lines.
// Return and Ctrl+Return are the model's; lines that are pasted go to it with CR LF between them.

#include <QPlainTextEdit>
#include <memory>

#include "desktop/WordOffers.h"
#include "platform/Controls.h"

namespace talvora {

class WritingBox final : public QPlainTextEdit {
  public:
    explicit WritingBox(TextBox& model, QWidget* parent = nullptr);

    // Words that are offered for what is typed.
    void setOffers(WordOffers::Source source);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void insertFromMimeData(const QMimeData* source) override;
    void dropEvent(QDropEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    int linesWanted() const;
    void textEdited();
    void showText();
    void showCaret();

    TextBox& model_;
    std::unique_ptr<WordOffers> offers_;  // if there are any
    bool passing_ = false;                // one side is just told of the other
    bool dropping_ = false;
    Subscriptions on_;
};

}  // namespace talvora
