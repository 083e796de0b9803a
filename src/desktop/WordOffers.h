#pragma once
// A list of words below a box to write in, which could complete what is typed. It offers and is in nobody's
// way: Return sends what is typed unless a word of the list was walked to. The box owns it.

#include <QCompleter>
#include <QStringListModel>
#include <functional>
#include <string>
#include <vector>

class QKeyEvent;
class QPlainTextEdit;

namespace talvora {

class WordOffers final {
  public:
    // What all of the text could become; in code page 1253.
    using Source = std::function<std::vector<std::string>(const std::string& typed)>;

    WordOffers(QPlainTextEdit& box, Source source);

    // The text is another one.
    void edited();
    // Whether the open list takes the key.
    bool wants(const QKeyEvent& event) const;

  private:
    void take(const QString& word);

    QPlainTextEdit& box_;
    Source source_;
    QStringListModel words_;
    QCompleter completer_;
};

}  // namespace talvora
