#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QTemporaryDir>
#include <fstream>

#include "host/profile/NetworkProfile.h"
#include "orrery/HostDatabase.h"
#include "orrery/PluginLoader.h"
#include "platform/Files.h"
#include "platform_qt/PosixDisk.h"
#include "platform_qt/QtPlatform.h"

namespace talvora {
namespace {

class NoSettings final : public SettingsStore {
  public:
    std::string GetSetting(std::string_view, std::string_view, std::string_view,
                           std::string_view fallback) const override {
        return std::string(fallback);
    }
    void SaveSetting(std::string_view, std::string_view, std::string_view, std::string_view) override {}
};

class PluginLoaderTest : public testing::Test {
  protected:
    // The build puts the plug-ins beside the test program.
    static std::string plugin(const std::string& name) {
        return QCoreApplication::applicationDirPath().toStdString() + "/lib" + name + ".so";
    }
    std::string refusal(const std::string& file) {
        try {
            loader.Load(file, services);
        } catch (const PluginError& error) {
            return error.what();
        }
        return "none";
    }

    QTemporaryDir folder;
    std::string root = folder.path().toStdString();
    NoSettings settings;
    PosixDisk disk{root};
    Files files{disk};
    QtPlatform platform{files, settings};
    NetworkProfile profile;
    HostServices services{platform.platform(), profile};
    HostDatabase database;
    std::vector<std::pair<std::int32_t, std::int32_t>> heard;  // number and sender
    Subscription hearing = database.MessageBroadcasted.connect(
        [this](const HostMessage& message) { heard.emplace_back(message.MsgID, message.FromID); });
    PluginLoader loader{database};
};

TEST_F(PluginLoaderTest, PlugInsAreNumberedFromOneStartedEachAloneAndDeletedTheLastFirst) {
    using testing::ElementsAre;
    using testing::Pair;
    ASSERT_EQ(loader.Load(plugin("orrery_test_plugin"), services), 1);
    ASSERT_EQ(loader.Load(plugin("orrery_test_plugin"), services), 2);
    loader.Start(2);
    EXPECT_THAT(heard, ElementsAre(Pair(1, HostAddress::Host), Pair(2, 2)));
    heard.clear();
    loader.UnloadAll();
    EXPECT_THAT(heard, ElementsAre(Pair(8000, 2), Pair(8000, 1)));
    heard.clear();
    loader.Start(1);
    EXPECT_THAT(heard, ElementsAre(Pair(1, HostAddress::Host)));
}

TEST_F(PluginLoaderTest, AWrongLibraryIsNamedWithTheReasonAndTakesNoNumber) {
    using testing::AllOf;
    using testing::HasSubstr;
    std::ofstream(root + "/libtext.so") << "no library";
    const std::pair<std::string, std::string> cases[] = {
        {root + "/missing.so", "No such file"},
        {root + "/libtext.so", "file too short"},
        {plugin("orrery_test_old_plugin"), "made for version 0 of the host's interface, this is version 1"},
        {plugin("orrery_test_no_plugin"), "no OrreryCreatePlugin"},
    };
    for (const auto& [file, reason] : cases)
        EXPECT_THAT(refusal(file), AllOf(HasSubstr(file), HasSubstr(reason)));
    EXPECT_EQ(loader.Load(plugin("orrery_test_plugin"), services), 1);
}

}  // namespace
}  // namespace talvora
