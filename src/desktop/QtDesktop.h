#pragma once
// The desktop of a person at a screen: which of the component's windows is worked in, the clipboard, and
// links for the browser. Needs a QGuiApplication, which outlives it.

#include <QElapsedTimer>
#include <QMetaObject>
#include <QPointer>
#include <QWidget>
#include <memory>
#include <vector>

#include "desktop/EdgePointer.h"
#include "desktop/QtClipboard.h"
#include "platform/Platform.h"
#include "platform/Pointer.h"

namespace talvora {

class QtDesktop final : public Desktop {
  public:
    // `guard` takes faults of those who hear ForegroundChanged, and outlives the desktop.
    explicit QtDesktop(Guard& guard);
    // The desktop is made before the platform whose guard it uses from then on.
    void SetGuard(Guard& guard);
    QtDesktop(const QtDesktop&) = delete;
    QtDesktop& operator=(const QtDesktop&) = delete;
    ~QtDesktop() override;

    // The window that shows a form, until either ends. A view says so once.
    void Register(const Form& form, QWidget& window);
    void Forget(const Form& form);

    int ScreenWidth() const override;
    int ScreenHeight() const override;
    bool PlacesWindows() const override { return edge_ != nullptr; }
    const Form* ForegroundWindow() const override;
    void SetForegroundWindow(Form& form) override;
    void SetTopMost(Form& form, bool onTop) override;
    void FlashWindow(Form& form, bool invert) override;
    void Beep() override;
    Clipboard& TheClipboard() override { return clipboard_; }
    Pointer& ThePointer() override;
    void Open(const std::string& url) override;
    void OpenFile(const std::string& nativePath) override;

  private:
    struct Shown {
        const Form* What;
        QPointer<QWidget> Window;
    };

    void focusMoved();
    void watchScreen();
    void screenMoved();
    QWidget* windowOf(const Form& form) const;

    Guard* guard_;
    QtClipboard clipboard_;
    std::unique_ptr<EdgePointer> edge_;  // null where the desktop has no such pointer
    NoPointer noPointer_;
    std::vector<Shown> shown_;
    const Form* foreground_ = nullptr;
    QMetaObject::Connection focus_;
    QMetaObject::Connection screen_;    // which one is the primary
    QMetaObject::Connection geometry_;  // of that one
    QElapsedTimer lastBeep_;
};

// Whether a link may be handed to a browser: http, https or ftp, and nothing in it that isn't text.
bool isOpenableLink(const std::string& url);

}  // namespace talvora
