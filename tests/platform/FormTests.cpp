// The life of forms.

#include <gtest/gtest.h>

#include "platform/FormSet.h"
#include "platform/Timer.h"
#include "simulation/FaultOf.h"
#include "simulation/VirtualPlatform.h"

namespace talvora::test {
namespace {

// Counts the forms there are.
class Mortal final : public Form {
  public:
    Mortal(Platform& platform, int& alive) : Timer1(platform, Ending, 100, true), alive_(alive) { ++alive_; }
    ~Mortal() override { --alive_; }
    Timer Timer1;

  private:
    int& alive_;
};

TEST(FormSet, FormsLiveUntilNoHandlerOfTheirsRunsAndAreLimited) {
    int alive = 0;
    int ticks = 0;
    VirtualTime time;
    VirtualNetwork network{time, 1};
    VirtualPlatform around{time, network};
    FormSet<Mortal> set(around.platform, 2);
    const auto make = [&]() -> Mortal& { return set.Own(std::make_unique<Mortal>(around.platform, alive)); };
    Mortal& first = make();
    Mortal& second = make();
    EXPECT_TRUE(set.IsFull());
    EXPECT_EQ(faultOf(make), 7);
    const Subscription on = first.Timer1.Tick.connect([&] {
        ++ticks;
        first.Unload();
        first.Timer1.Enabled = true;
        EXPECT_EQ(alive, 2) << "its handler still runs";
        EXPECT_FALSE(set.Holds(&first));
    });
    time.run(std::chrono::seconds(1));
    EXPECT_EQ(alive, 1);
    EXPECT_EQ(ticks, 1);
    EXPECT_EQ(set.Forms(), std::vector<Mortal*>{&second});
    EXPECT_FALSE(set.IsFull());
    second.Unload();
    EXPECT_EQ(alive, 1);
    around.platform.Guarded.run("the next callback", [] {});
    EXPECT_EQ(alive, 0);
    const Subscription noWindow =
        set.Loaded.connect([](Mortal&) { throw RuntimeError(Fault::TypeMismatch); });
    EXPECT_EQ(faultOf(make), 13);
    EXPECT_TRUE(set.Forms().empty());
    around.platform.Guarded.run("the next callback", [] {});
    EXPECT_EQ(alive, 0);
}

}  // namespace
}  // namespace talvora::test
