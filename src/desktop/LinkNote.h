#pragma once
// A text of somebody else to be read: plain whatever it holds, wrapped, to be selected and copied. The links
// in it can be clicked, and walked to by keyboard; what comes of a click is the owner's.

#include <QTextBrowser>
#include <string>
#include <vector>

#include "platform/Event.h"

namespace talvora {

class LinkNote final : public QTextBrowser {
  public:
    explicit LinkNote(QWidget* parent = nullptr);

    // In code page 1253; lines end in CR LF or LF.
    void setNote(const std::string& text);

    // The link as the text has it.
    Event<const std::string&> LinkClicked;

  protected:
    // Nothing that a text names is ever fetched.
    QVariant loadResource(int, const QUrl&) override { return {}; }
    void changeEvent(QEvent* event) override;

  private:
    void addWord(QTextCursor& at, const std::string& word);

    std::string text_;
    std::vector<std::string> links_;
};

}  // namespace talvora
