#include "chat/modNickDecode.h"

#include "platform/Files.h"

namespace talvora {

namespace {

bool quietly(const auto& part) {
    try {
        part();
        return true;
    } catch (const RuntimeError&) {
        return false;
    }
}

}  // namespace

void modNickDecode::LoadPerflixes() {
    trapped(globError_, "LoadPerflixes", [&](Trap& step) {
        told_.clear();
        step([&] { PerflixList_ = StateTable(files_.ReadWhole(R"(System\perflix.lst)")); });
    });
}

void modNickDecode::GetNickDesc(std::string& Nick, std::string& Desc, std::uint8_t& Icon) {
    trapped(globError_, "GetNickDesc", [&](Trap& step) {
        Desc = "Online";
        Icon = OnlineIcon;
        const std::size_t bracket = Nick.find('[');
        if (bracket == std::string::npos) return;
        const auto* fields = PerflixList_.find(Replace(std::string_view(Nick).substr(bracket + 1), "]", ""));
        Nick.resize(bracket);
        if (fields == nullptr) return;
        // A faulty line is told of once: others choose which state they carry, and how many carry it.
        const auto read = [&](const auto& part) {
            return told_.contains(fields) ? quietly(part) : step(part);
        };
        const bool described = read([&] { Desc = elementOf(*fields, 1); });
        const bool pictured = read([&] { Icon = CByte(Val(elementOf(*fields, 2))); });
        if (!described || !pictured) told_.insert(fields);
    });
}

}  // namespace talvora
