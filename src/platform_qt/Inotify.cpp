#include "platform_qt/Inotify.h"

#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>

namespace talvora {

namespace {

constexpr std::uint32_t OfNames = IN_CREATE | IN_DELETE | IN_MODIFY | IN_ATTRIB | IN_MOVED_FROM | IN_MOVED_TO;
constexpr std::uint32_t OfFolder = IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;

class Inotify final : public FolderWatch {
  public:
    explicit Inotify(Descriptor queue) : queue_(std::move(queue)) {}

    std::optional<std::vector<std::string>> names() override {
        std::vector<std::string> names;
        std::array<char, 16384> buffer;
        for (;;) {
            const auto got = ::read(queue_.get(), buffer.data(), buffer.size());
            if (got < 0 && errno == EINTR) continue;
            if (got < 0 && errno == EAGAIN) return names;
            if (got <= 0) return std::nullopt;
            if (!take({buffer.data(), static_cast<std::size_t>(got)}, names)) return std::nullopt;
        }
    }

  private:
    // False once the folder has gone elsewhere, or more has happened than the kernel keeps.
    static bool take(std::string_view events, std::vector<std::string>& names) {
        while (!events.empty()) {
            inotify_event event{};
            std::memcpy(&event, events.data(), sizeof event);
            if ((event.mask & (OfFolder | IN_IGNORED | IN_UNMOUNT | IN_Q_OVERFLOW)) != 0) return false;
            const char* name = events.data() + sizeof event;  // ends with a zero
            if (event.len > 0 && (names.empty() || names.back() != name)) names.emplace_back(name);
            events.remove_prefix(sizeof event + event.len);
        }
        return true;
    }

    Descriptor queue_;
};

}  // namespace

std::unique_ptr<FolderWatch> watchByKernel(const Descriptor& folder) {
    Descriptor queue(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
    const std::string path = "/proc/self/fd/" + std::to_string(folder.get());
    if (queue.get() < 0 || ::inotify_add_watch(queue.get(), path.c_str(), OfNames | OfFolder) < 0)
        return nullptr;
    return std::make_unique<Inotify>(std::move(queue));
}

}  // namespace talvora
