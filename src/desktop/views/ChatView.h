#pragma once
// What the windows of a channel and of a private chat look like: the talk, the box to write in with its
// picture buttons, and the plug-ins at the side.

#include "chat/ChatWindow.h"
#include "chat/CommandMenu.h"
#include "desktop/FileDrop.h"
#include "desktop/FormView.h"
#include "desktop/WordOffers.h"

class QHBoxLayout;
class QSplitter;
class QToolButton;

namespace talvora {

class SlotPanel;
class WritingBox;

class ChatView : public FormView {
  public:
    ChatView(ChatWindow& window, const ViewSite& site, const std::string& kind, QSize standardSize);

  protected:
    // Puts a widget at the right of the talk.
    void addBeside(QWidget* widget, int width);
    void showEvent(QShowEvent* event) override;
    void offerWords(WordOffers::Source source);
    // Files that are dropped on the window.
    void takeDropped(TakeFiles take);
    // The user's scripts in a menu of their own, or a line that says that there are none.
    void addCommands(QMenu& menu, CommandMenu& commands);

  private:
    QWidget* makeWriting();
    QHBoxLayout* makeButtons();

    ChatWindow& window_;
    QSplitter* across_;
    SlotPanel* plugins_;
    WritingBox* writing_;
    bool seen_ = false;
};

}  // namespace talvora
