#pragma once
// A nick that is dragged from a list or tree of users to another widget of the program. It never leaves the
// program, and none comes from outside.

#include <QObject>
#include <functional>
#include <string>

class QMimeData;
class QWidget;

namespace talvora {

// The toolkit takes it over.
QMimeData* carryNick(const std::string& nick);

// Takes the nicks that are dropped on a widget, which owns it.
class NickDrop final : public QObject {
  public:
    using Taken = std::function<void(const std::string& nick)>;

    NickDrop(QWidget& target, Taken taken);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    Taken taken_;
};

}  // namespace talvora
