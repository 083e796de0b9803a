#pragma once
// A text to be read in a box: plain whatever it holds, wrapped, with lines broken anywhere if need be; it can
// be selected and copied. It is as tall as its text, and scrolls where that is too tall.

#include <QTextEdit>

namespace talvora {

class TextNote final : public QTextEdit {
  public:
    explicit TextNote(QWidget* parent = nullptr);

    // Lines end in CR LF or LF. What is longer than anyone would read is cut.
    void setNote(const QString& text);
    QString Note() const { return toPlainText(); }

    static constexpr int Longest = 8 * 1024;

    QSize sizeHint() const override { return hint_; }
    QSize minimumSizeHint() const override { return hint_; }

  protected:
    void changeEvent(QEvent* event) override;

  private:
    void measure();

    QSize hint_;
};

}  // namespace talvora
