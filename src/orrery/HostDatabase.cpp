#include "orrery/HostDatabase.h"

namespace talvora {
namespace {

constexpr int OutOfStackSpace = 28;

struct Level {
    Level(int& nesting, bool& refusing) : nesting_(nesting), refusing_(refusing) { ++nesting_; }
    Level(const Level&) = delete;
    Level& operator=(const Level&) = delete;
    ~Level() {
        if (--nesting_ == 0) refusing_ = false;
    }

  private:
    int& nesting_;
    bool& refusing_;
};

}  // namespace

void HostDatabase::Broadcast(const HostMessage& message) {
    if (nesting_ >= DeepestNesting) refusing_ = true;
    if (refusing_) {
        throw RuntimeError(OutOfStackSpace,
                           "Out of stack space: host message " + std::to_string(message.MsgID) +
                               " is nested in too many others",
                           "Orrery");
    }
    const Level level(nesting_, refusing_);
    MessageBroadcasted.raise(message);
}

}  // namespace talvora
