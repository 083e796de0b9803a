#pragma once
// The window of a form: caption, size, showing and hiding, menus and the close box. A view of one form
// derives from it, fills it with widgets and binds them; it decides nothing.
//
// A view goes with its form: as soon as the form is unloaded it is hidden, and once no handler is on the
// stack any more it lets go of everything of the form and is deleted.

#include <QIcon>
#include <QMenu>
#include <QWidget>
#include <string>

#include "desktop/HostFace.h"
#include "desktop/ViewMemory.h"
#include "platform/Controls.h"
#include "platform/Form.h"
#include "platform/Platform.h"

namespace talvora {

class PluginViews;
class RichTextView;
class RichTextBox;

// What all views live on; it outlives them.
struct ViewSite {
    HostFace& Face;
    Platform& ThePlatform;
    ViewMemory& Memory;
    const PluginViews& Plugins;
};

// The system's unit of length, 1440 to the inch.
inline constexpr int TwipsPerPixel = 15;

class FormView : public QWidget {
  public:
    // `kind` is what size and zoom are remembered under.
    FormView(Form& form, const ViewSite& site, std::string kind, QSize standardSize);
    ~FormView() override;

    Form& TheForm() { return form_; }
    // Does what it would have done if it had been there when the form was shown.
    void CatchUp() { showOrHide(form_.Visible); }
    // A word in front of the title, and an icon in place of the window's, for as long as something is so that
    // the user should not forget.
    void Mark(const QString& word, const QIcon& icon);
    void Unmark();
    // An entry that looks as its model does now, and clicks it.
    static QAction* addEntry(QMenu& menu, Menu& model, bool checkable = false);

  protected:
    // Fills an empty menu with the entries that the form means by `model`.
    virtual void fillMenu(QMenu& menu, Menu& model);
    // What the close box does; by default it asks the form.
    virtual void closeBox();
    // A view of rich text whose zoom is remembered.
    RichTextView* addRichText(RichTextBox& model);
    // Shows the menu of `model` at a point of the screen.
    void popUp(Menu& model, QPoint at);
    const ViewSite& Site() const { return site_; }
    // The form is unloaded, and may be gone.
    bool Ended() const { return ended_; }

    // What Visible, Shown and a new place or size of the form do to the window.
    virtual void showOrHide(bool visible);
    virtual void comeForward();
    virtual void place();

    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void moveEvent(QMoveEvent* event) override;

    // Of the view's own bindings; emptied before the form goes.
    Subscriptions on_;

  private:
    void followForm();
    QPoint menuPlace() const;
    void showTitle();
    void end();
    void release();

    Form& form_;
    const ViewSite& site_;
    std::string kind_;
    QString mark_;    // empty while there is none
    QIcon unmarked_;  // the window's icon when there is none
    bool placing_ = false;
    bool ended_ = false;
    std::shared_ptr<FormView*> self_;  // null once the view is gone
};

}  // namespace talvora
