#pragma once
// Hands for the windows of a client.

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QContextMenuEvent>
#include <QMenu>
#include <QTabWidget>
#include <QTest>
#include <string>
#include <vector>

#include "desktop/ListTree.h"
#include "desktop/QtText.h"
#include "desktop/WritingBox.h"
#include "simulation/windows/DesktopWorld.h"

namespace talvora::test {

class WindowsTest : public testing::Test, protected DesktopWorld {
  protected:
    WindowsTest() { logOn(); }

    template <class Widget>
    static Widget* named(QWidget* window, const char* accessibleName) {
        for (QWidget* child : window->findChildren<QWidget*>()) {
            auto* widget = dynamic_cast<Widget*>(child);
            if (widget != nullptr && child->accessibleName() == QString::fromUtf8(accessibleName))
                return widget;
        }
        ADD_FAILURE() << "nothing is called " << accessibleName;
        return nullptr;
    }
    // A list on a tab comes to the front.
    static QTreeView* list(QWidget* window, const char* accessibleName) {
        auto* view = named<QTreeView>(window, accessibleName);
        auto* tabs = window->findChild<QTabWidget*>();
        for (int i = 0; tabs != nullptr && i < tabs->count(); ++i) {
            const QWidget* page = tabs->widget(i);
            if (page == view || page->isAncestorOf(view)) tabs->setCurrentIndex(i);
        }
        return view;
    }
    static std::vector<std::string> rows(const QTreeView* view) {
        std::vector<std::string> texts;
        for (int i = 0; i < view->model()->rowCount(); ++i) {
            texts.push_back(fromQString(view->model()->index(i, 0).data().toString()));
        }
        return texts;
    }
    void doubleClick(QTreeView* view, int row) {
        const QPoint at = view->visualRect(view->model()->index(row, 0)).center();
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, at);
        QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, at);
        settle();
    }
    // The captions of the menu that the right button opens on a row; it stays open.
    std::vector<std::string> rightClick(QTreeView* view, int row) {
        const QPoint at = view->visualRect(view->model()->index(row, 0)).center();
        QTest::mouseClick(view->viewport(), Qt::RightButton, {}, at);
        QContextMenuEvent event(QContextMenuEvent::Mouse, at, view->viewport()->mapToGlobal(at));
        QApplication::sendEvent(view->viewport(), &event);
        std::vector<std::string> captions;
        const QMenu* menu = openMenu();
        if (menu == nullptr) return captions;
        for (const QAction* action : menu->actions()) {
            if (action->isVisible() && !action->isSeparator())
                captions.push_back(fromQString(action->text()));
        }
        return captions;
    }
    static QMenu* openMenu() { return qobject_cast<QMenu*>(QApplication::activePopupWidget()); }
    void choose(const std::string& caption) {
        QMenu* menu = openMenu();
        ASSERT_NE(menu, nullptr);
        for (QAction* action : menu->actions()) {
            if (fromQString(action->text()) == caption) action->trigger();
        }
        menu->close();
        settle();
    }
    void type(QWidget* window, const char* text) {
        QTest::keyClicks(named<WritingBox>(window, "Message"), QString::fromUtf8(text));
    }
    void press(QWidget* window, Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(named<WritingBox>(window, "Message"), key, modifiers);
        settle();
    }
};

}  // namespace talvora::test
