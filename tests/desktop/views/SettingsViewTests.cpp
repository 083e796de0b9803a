// The component's settings page under the user's hands.

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QTabWidget>
#include <QTableWidget>
#include <QToolButton>

#include "desktop/QtText.h"
#include "desktop/views/SettingsView.h"
#include "simulation/World.h"

namespace talvora::test {
namespace {

class SettingsViewTest : public testing::Test {
  protected:
    template <class Control>
    Control* called(const QString& name) {
        for (Control* control : window.findChildren<Control*>()) {
            if (control->accessibleName() == name || control->property("text").toString() == name)
                return control;
        }
        ADD_FAILURE() << "nothing is called " << name.toStdString();
        return nullptr;
    }
    // The line or list behind a caption.
    template <class Control>
    Control* behind(const QString& caption) {
        return qobject_cast<Control*>(called<QLabel>(caption)->buddy());
    }
    std::string get(const char* key) {
        return maria.around.settings.GetSetting("Talvora", "Settings", key, "absent");
    }
    std::string file(const char* name) { return maria.around.disk.content(name).value(); }

    World world;
    Client& maria = world.client("Maria");
    QTabWidget window;  // where the host puts the page
    std::unique_ptr<SettingsView> page = std::make_unique<SettingsView>(maria.component->MakeSettingsPage());
};

TEST_F(SettingsViewTest, WhatTheHandsDoIsSaved) {
    maria.around.disk.put("System/plugin.lst", "Shout F T 0 0 The shouter\r\n");
    page = std::make_unique<SettingsView>(maria.component->MakeSettingsPage());
    window.addTab(&page->Widget(), "Talvora IRC");
    int edits = 0;
    const Subscription count = page->Edited.connect([&] { ++edits; });
    behind<QLineEdit>("Nickname:")->setText("An na");
    EXPECT_TRUE(page->Problem().contains("An na"));
    behind<QLineEdit>("Nickname:")->setText(QString::fromUtf8("Άννα"));
    EXPECT_EQ(page->Problem(), "");
    behind<QComboBox>("Package size:")->setCurrentIndex(0);
    called<QCheckBox>("Popup PMs when window is closed")->click();
    called<QTableWidget>("Plug-ins")->item(0, 1)->setCheckState(Qt::Checked);
    EXPECT_EQ(edits, 5);
    page->Save();
    EXPECT_EQ(get("Nickname") + get("PackageSplit") + get("PopupPM"),
              "\xA2\xED\xED\xE1" + std::string("512F"));
    EXPECT_EQ(file("System/plugin.lst"), "Shout T T 0 0 The shouter\r\n");
    EXPECT_EQ(behind<QLineEdit>("PASS Key:")->echoMode(), QLineEdit::Password);
}

TEST_F(SettingsViewTest, StatesAreAddedMovedChangedAndRemoved) {
    window.addTab(&page->Widget(), "Talvora IRC");
    auto* table = called<QTableWidget>("States");
    EXPECT_FALSE(called<QToolButton>("Move the state up")->isEnabled()) << "it is the first";
    called<QToolButton>("Add a state")->click();
    ASSERT_EQ(table->rowCount(), 3);
    EXPECT_EQ(table->currentRow(), 2);
    table->item(2, 0)->setText("te|a");
    EXPECT_EQ(table->item(2, 0)->text(), "tea") << "as the model has it";
    auto* pictures = called<QComboBox>("Picture of the state");
    EXPECT_EQ(pictures->currentIndex(), 1);
    pictures->setCurrentIndex(6);
    Q_EMIT pictures->activated(6);
    called<QToolButton>("Move the state up")->click();
    EXPECT_EQ(table->currentRow(), 1);
    table->setCurrentCell(0, 0);
    EXPECT_EQ(pictures->currentIndex(), 4);
    called<QToolButton>("Remove the state")->click();
    page->Save();
    EXPECT_EQ(file("System/perflix.lst"), "\r\ntea|(Change)|7\r\naway|Away|4\r\n");
    delete &page->Widget();  // the settings window goes first
    page.reset();
}

}  // namespace
}  // namespace talvora::test
