#pragma once
// The desktop of a program without a screen: one of 1024 x 768 pixels, 15 twips a pixel, where nobody looks
// at a window and no browser can be started.

#include "platform/MemoryClipboard.h"
#include "platform/Platform.h"
#include "platform/Pointer.h"
#include "platform/RuntimeError.h"

namespace talvora {

class HeadlessDesktop final : public Desktop {
  public:
    int ScreenWidth() const override { return 1024 * 15; }
    int ScreenHeight() const override { return 768 * 15; }
    bool PlacesWindows() const override { return true; }
    const Form* ForegroundWindow() const override { return nullptr; }
    void SetForegroundWindow(Form&) override {}
    void SetTopMost(Form&, bool) override {}
    void FlashWindow(Form&, bool) override {}
    void Beep() override {}
    Clipboard& TheClipboard() override { return clipboard_; }
    Pointer& ThePointer() override { return pointer_; }
    void Open(const std::string&) override { throw RuntimeError(Fault::InvalidProcedureCall); }
    void OpenFile(const std::string&) override { throw RuntimeError(Fault::InvalidProcedureCall); }

  private:
    MemoryClipboard clipboard_;
    NoPointer pointer_;
};

}  // namespace talvora
