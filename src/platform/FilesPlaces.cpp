// Where a path of the system leads on the disk, and what may be done there.

#include <algorithm>
#include <cerrno>
#include <utility>

#include "platform/CodePage1253.h"
#include "platform/FilePath.h"
#include "platform/Files.h"
#include "platform/OpenFile.h"
#include "platform/Text.h"

namespace talvora {

namespace {

constexpr std::string_view ReceivedName = "Received";
constexpr int MostLinks = 8;

bool isReceived(const std::vector<std::string>& parts) {
    return !parts.empty() && EqualText(parts.front(), ReceivedName);
}

}  // namespace

// Goes down a path part by part and follows links itself, so that the driver never has to.
class Files::Walk {
  public:
    explicit Walk(Files& files) : files_(files) { found_.What = DiskDriver::Kind::Folder; }

    void go(const std::vector<std::string>& parts) {
        for (auto part = parts.rbegin(); part != parts.rend(); ++part) pending_.push_back({*part, false});
        while (!pending_.empty()) {
            const Part part = std::move(pending_.back());
            pending_.pop_back();
            if (found_.What != DiskDriver::Kind::Folder) throw RuntimeError(Fault::PathNotFound, ENOENT);
            if (part.ofLink) {
                enterNative(part.name);
            } else {
                enterNamed(part.name);
            }
        }
    }

    bool passedLink() const { return links_ > 0; }
    const std::string& native() const { return here_; }
    const DiskDriver::Status& found() const { return found_; }

  private:
    struct Part {
        std::string name;
        bool ofLink;  // native, from the target of a link; else in the code page
    };

    void enterNamed(const std::string& name) {
        std::string native = toUtf8(name);
        auto status = files_.disk_.status(joinNative(here_, native));
        if (status.What == DiskDriver::Kind::Missing) {
            const std::string other = files_.existingName(here_, name);
            if (!other.empty()) {
                native = other;
                status = files_.disk_.status(joinNative(here_, native));
            }
        }
        enter(native, status);
    }

    void enterNative(const std::string& name) {
        if (name.empty() || name == ".") return;
        if (name == "..") {
            if (here_.empty()) throw RuntimeError(Fault::PathFileAccessError);
            here_ = folderOf(here_);
        } else {
            enter(name, files_.disk_.status(joinNative(here_, name)));
        }
    }

    void enter(const std::string& native, const DiskDriver::Status& status) {
        const std::string path = joinNative(here_, native);
        if (status.What == DiskDriver::Kind::Link) {
            follow(path);
        } else {
            here_ = path;
            found_ = status;
        }
    }

    void follow(const std::string& link) {
        if (++links_ > MostLinks) throw RuntimeError(Fault::PathFileAccessError, ELOOP);
        const std::string target = files_.disk_.linkTarget(link);
        if (target.empty() || target.front() == '/') throw RuntimeError(Fault::PathFileAccessError);
        const auto parts = Split(target, "/");
        for (auto part = parts.rbegin(); part != parts.rend(); ++part) pending_.push_back({*part, true});
    }

    Files& files_;
    std::vector<Part> pending_;  // the next one last
    std::string here_;
    DiskDriver::Status found_;  // at `here_`
    int links_ = 0;
};

Files::Place Files::find(std::string_view path) {
    const auto parts = pathParts(path);
    Walk walk(*this);
    walk.go(parts);
    Place place{walk.native(), walk.found(), isReceived(parts), isReceived(parts) && parts.size() == 1};
    // A link elsewhere may lead here.
    place.received = place.received || isReceived(Split(fromUtf8(place.native), "/"));
    if (place.received && walk.passedLink()) throw RuntimeError(Fault::PathFileAccessError);
    return place;
}

// Empty if the folder holds no such name in any case. Of several the first by code, so that it is always the
// same one.
std::string Files::existingName(const std::string& folder, const std::string& name) {
    std::string best;
    for (const auto& entry : disk_.list(folder, DiskDriver::Detail::Kind)) {
        const std::string text = fromUtf8(entry.Name);
        if (!EqualText(text, name) || toUtf8(text) != entry.Name) continue;
        if (best.empty() || entry.Name < best) best = entry.Name;
    }
    return best;
}

Files::Place Files::findFile(std::string_view path) {
    Place place = find(path);
    if (place.found.What == DiskDriver::Kind::Missing) throw RuntimeError(Fault::FileNotFound, ENOENT);
    if (place.found.What != DiskDriver::Kind::File) throw RuntimeError(Fault::PathFileAccessError);
    return place;
}

// A file, or none yet.
Files::Place Files::findForWriting(std::string_view path) {
    Place place = find(path);
    requireReceiving(place);
    const auto kind = place.found.What;
    if (kind != DiskDriver::Kind::Missing && kind != DiskDriver::Kind::File) {
        throw RuntimeError(Fault::PathFileAccessError);
    }
    return place;
}

Files::Place Files::findForRemoval(std::string_view path) {
    Place place = findFile(path);
    requireReceiving(place);
    requireClosed(place);
    return place;
}

void Files::requireReceiving(const Place& place) const {
    if (place.received && !receiving_) throw RuntimeError(Fault::PermissionDenied);
}

void Files::requireClosed(const Place& place) const {
    const auto same = [&](const OpenFile* file) { return file->nativePath == place.native; };
    if (std::any_of(opened_.begin(), opened_.end(), same)) throw RuntimeError(Fault::FileAlreadyOpen);
}

void Files::requireShareable(const Place& place, FileMode mode) const {
    const auto writes = [](FileMode how) { return how == FileMode::Output || how == FileMode::Append; };
    const auto clashes = [&](const OpenFile* file) {
        return file->nativePath == place.native && (writes(mode) || writes(file->mode));
    };
    if (std::any_of(opened_.begin(), opened_.end(), clashes)) throw RuntimeError(Fault::FileAlreadyOpen);
}

}  // namespace talvora
