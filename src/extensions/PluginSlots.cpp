#include "extensions/PluginSlots.h"

#include <cstdint>
#include <utility>

#include "common/Trap.h"
#include "platform/Text.h"

namespace talvora {
namespace {

constexpr int OutOfStackSpace = 28;

}  // namespace

// Outlives the slots while a procedure of theirs runs.
struct PluginSlots::State {
    bool alive = true;
    int nesting = 0;
    bool refusing = false;
};

class PluginSlots::Level {
  public:
    explicit Level(State& state) : state_(state) { ++state_.nesting; }
    Level(const Level&) = delete;
    Level& operator=(const Level&) = delete;
    ~Level() {
        if (--state_.nesting == 0) state_.refusing = false;
    }

  private:
    State& state_;
};

PluginSlots::PluginSlots(PluginWindow& window, const PluginFactories& factories, GlobError& globError,
                         Loop& loop)
    : window_(window),
      globError_(globError),
      site_{factories, globError, loop},
      state_(std::make_shared<State>()) {
    load(0);
}

PluginSlots::~PluginSlots() {
    Close();
}

void PluginSlots::Close() {
    state_->alive = false;
}

void PluginSlots::load(int index) {
    Container& slot = plugins.Load(index);
    slot.SetSite(site_);
    on_ += slot.DataBroadcast.connect(
        [this, index](const std::string& Data) { plugins_DataBroadcast(index, Data); });
    on_ += slot.Height.Changed.connect([this](int) { plugins_Resize(); });
}

void PluginSlots::Install(const std::string& ProgID, const std::string& caption, bool expanded,
                          bool loadNew) {
    trapped(globError_, "Install", [&](Trap&) {
        const int count = Count();
        if (loadNew) load(count);
        Container& slot = plugins(count - 1);
        slot.Visible = true;
        plugins_Resize();
        slot.Init(ProgID, caption, expanded);
    });
}

void PluginSlots::InstallAll(const std::vector<std::string>& entries) {
    const std::shared_ptr<State> state = state_;
    trapped(globError_, "InstallAll", [&](Trap& step) {
        for (const std::string& entry : entries) {
            step([&] {
                const std::vector<std::string> fields = Split(entry, "@", 2);
                const std::string& caption = elementOf(fields, 1);
                if (state->alive) Install(fields.front(), caption, false, true);
            });
        }
    });
}

bool PluginSlots::Broadcast(std::string& Data, int FromIndex) {
    if (!state_->alive) return false;
    const std::shared_ptr<State> state = state_;
    GlobError& globError = globError_;
    const Level level(*state);
    if (state->nesting > DeepestNesting && !std::exchange(state->refusing, true)) {
        trapped(globError, "Broadcast",
                [](Trap&) { throw RuntimeError(OutOfStackSpace, "Out of stack space"); });
    }
    if (state->refusing) {
        Data.clear();  // what the plug-ins could not see is neither sent nor shown
        return state->alive;
    }
    const int count = Count();
    for (int i = 0; i < count && state->alive; ++i) {
        // Each call ends in a trap of its own, and a slot without a plug-in ends it unheard: one that fails
        // must not take the line out of the hands of those behind it.
        if (i == FromIndex || plugins(i).Client() == nullptr) continue;
        bool done = false;
        trapped(globError, "Broadcast", [&](Trap& step) {
            done = step([&] {
                std::string offered = Data;
                if (state->alive) plugins(i).Broadcast(offered);
                Data = std::move(offered);
            });
        });
        // What the user typed may be for nobody's eyes without this plug-in's work.
        if (!done && Data.starts_with("MSG|")) Data.clear();
    }
    return state->alive;
}

void PluginSlots::plugins_DataBroadcast(int Index, const std::string& Data) {
    if (!state_->alive) return;
    trapped(globError_, "plugins_DataBroadcast", [&](Trap&) {
        const std::vector<std::string> fields = Split(Data, "|", 2);
        const std::string& kind = elementOf(fields, 0);
        if (kind == "MSG") {
            window_.ShowPluginLine(elementOf(fields, 1));
        } else if (kind == "IRC") {
            window_.SendData(elementOf(fields, 1));
        } else {
            std::string passedOn = Data;
            Broadcast(passedOn, Index);
        }
    });
}

void PluginSlots::plugins_Resize() {
    int top = 0;
    const int count = Count();
    for (int i = 0; i < count; ++i) {
        Container& slot = plugins(i);
        if (!slot.Visible) continue;
        slot.Left = 0;
        slot.Top = top;
        top = checkedInteger<int>(std::int64_t{top} + slot.Height);
    }
}

}  // namespace talvora
