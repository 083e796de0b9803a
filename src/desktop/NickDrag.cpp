#include "desktop/NickDrag.h"

#include <QDropEvent>
#include <QMimeData>
#include <QWidget>
#include <utility>

namespace talvora {

namespace {

// Other programs see a drag of this format with nothing in it.
const QString NickFormat = QStringLiteral("application/x-talvora-nick");

class NickData final : public QMimeData {
  public:
    explicit NickData(std::string nick) : Nick(std::move(nick)) { setData(NickFormat, {}); }

    const std::string Nick;
};

}  // namespace

QMimeData* carryNick(const std::string& nick) {
    return new NickData(nick);
}

NickDrop::NickDrop(QWidget& target, Taken taken) : QObject(&target), taken_(std::move(taken)) {
    target.setAcceptDrops(true);
    target.installEventFilter(this);
}

bool NickDrop::eventFilter(QObject*, QEvent* event) {
    const QEvent::Type type = event->type();
    if (type != QEvent::DragEnter && type != QEvent::DragMove && type != QEvent::Drop) return false;
    auto& drop = static_cast<QDropEvent&>(*event);
    const auto* data = dynamic_cast<const NickData*>(drop.mimeData());
    if (data == nullptr) return false;  // left to others
    drop.setDropAction(Qt::CopyAction);
    drop.accept();
    if (type == QEvent::Drop) taken_(std::string(data->Nick));
    return true;
}

}  // namespace talvora
