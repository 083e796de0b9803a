#include "desktop/EdgePointer.h"

#include <xcb/xcb.h>

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <algorithm>
#include <cmath>

namespace talvora {

namespace {

constexpr std::uint8_t KindOfEvent = 0x7F;  // without the mark of what another program has sent

// The upper left corner of a screen is in the server's own pixels, the size in the toolkit's.
std::uint32_t native(double pixels) {
    return static_cast<std::uint32_t>(static_cast<std::int32_t>(std::lround(pixels)));
}

}  // namespace

bool EdgePointer::IsPossible() {
    return QGuiApplication::platformName() == QLatin1String("xcb") &&
           qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

EdgePointer::EdgePointer(Guard& guard)
    : guard_(&guard),
      server_(qGuiApp->nativeInterface<QNativeInterface::QX11Application>()->connection()),
      strip_(xcb_generate_id(server_)) {
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(server_)).data->root;
    // No manager of windows has a say in it.
    const std::uint32_t values[] = {1, XCB_EVENT_MASK_ENTER_WINDOW};
    xcb_create_window(server_, 0, strip_, root, 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
    qGuiApp->installNativeEventFilter(this);
}

EdgePointer::~EdgePointer() {
    qGuiApp->removeNativeEventFilter(this);
    xcb_destroy_window(server_, strip_);
    xcb_flush(server_);
}

std::optional<Pointer::Place> EdgePointer::Position() const {
    const QScreen* screen = QGuiApplication::primaryScreen();
    if (screen == nullptr) return {};
    const QPoint at = QCursor::pos() - screen->geometry().topLeft();
    return Place{at.x(), at.y()};
}

void EdgePointer::AwaitAtTop(int left, int height) {
    const QScreen* screen = QGuiApplication::primaryScreen();
    if (screen == nullptr) return;
    const QRect area = screen->geometry();
    const double fine = screen->devicePixelRatio();
    const std::uint32_t values[] = {native(area.x() + left * fine), native(area.y()),
                                    native(std::max(area.width() - left, 1) * fine),
                                    native(std::max(height, 1) * fine), XCB_STACK_MODE_ABOVE};
    xcb_configure_window(server_, strip_,
                         XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH |
                             XCB_CONFIG_WINDOW_HEIGHT | XCB_CONFIG_WINDOW_STACK_MODE,
                         values);
    xcb_map_window(server_, strip_);
    xcb_flush(server_);
}

void EdgePointer::StopWaiting() {
    xcb_unmap_window(server_, strip_);
    xcb_flush(server_);
}

bool EdgePointer::nativeEventFilter(const QByteArray&, void* message, qintptr*) {
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    if ((event->response_type & KindOfEvent) != XCB_ENTER_NOTIFY) return false;
    if (reinterpret_cast<const xcb_enter_notify_event_t*>(event)->event != strip_) return false;
    StopWaiting();
    guard_->run("Arrived", [this] { Arrived.raise(); });
    return true;
}

}  // namespace talvora
