#include "desktop/FileDrop.h"

#include <QDropEvent>
#include <QFile>
#include <QMimeData>
#include <QUrl>
#include <QWidget>
#include <utility>

#include "desktop/ListTree.h"

namespace talvora {

namespace {

// Empty unless all of it is files of this machine.
std::vector<std::string> filesIn(const QMimeData& data) {
    std::vector<std::string> paths;
    for (const QUrl& url : data.urls()) {
        if (!url.isLocalFile()) return {};
        paths.push_back(QFile::encodeName(url.toLocalFile()).toStdString());
    }
    return paths;
}

class FileDrop final : public QObject {
  public:
    FileDrop(QWidget& target, TakeFiles take, WhomAt whom)
        : QObject(&target), take_(std::move(take)), whom_(std::move(whom)) {
        target.setAcceptDrops(true);
        target.installEventFilter(this);
    }

  protected:
    bool eventFilter(QObject*, QEvent* event) override {
        switch (event->type()) {
            case QEvent::DragEnter:  // whoever refuses here hears of no move
                return takes(*static_cast<QDropEvent*>(event), false);
            case QEvent::DragMove:
                return takes(*static_cast<QDropEvent*>(event), true);
            case QEvent::Drop:
                return dropped(*static_cast<QDropEvent*>(event));
            default:
                return false;
        }
    }

  private:
    bool takes(QDropEvent& event, bool asksWhom) {
        if (filesIn(*event.mimeData()).empty()) return false;
        event.setDropAction(Qt::CopyAction);
        event.setAccepted(!asksWhom || whom_(event.position().toPoint()).has_value());
        return true;
    }

    bool dropped(QDropEvent& event) {
        std::vector<std::string> paths = filesIn(*event.mimeData());
        if (paths.empty()) return false;
        takes(event, true);
        const std::optional<std::string> whom = whom_(event.position().toPoint());
        if (!whom) return true;
        QMetaObject::invokeMethod(
            this, [take = take_, whom = *whom, paths = std::move(paths)] { take(whom, paths); },
            Qt::QueuedConnection);
        return true;
    }

    TakeFiles take_;
    WhomAt whom_;
};

}  // namespace

void takeFiles(QWidget& target, TakeFiles take, WhomAt whom) {
    new FileDrop(target, std::move(take), std::move(whom));
}

void takeFilesForUsers(ListTree& users, TakeFiles take, std::optional<std::string> beside) {
    takeFiles(*users.viewport(), std::move(take), [&users, beside = std::move(beside)](QPoint at) {
        const ListItem* row = users.rowAt(at);
        return row != nullptr ? std::optional(row->Key()) : beside;
    });
}

}  // namespace talvora
