#include "chat/modNickDecode.h"

#include "platform/Files.h"

namespace talvora {

void modNickDecode::LoadPerflixes() {
    trapped(globError_, "LoadPerflixes", [&](Trap& step) {
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
        step([&] { Desc = elementOf(*fields, 1); });
        step([&] { Icon = CByte(Val(elementOf(*fields, 2))); });
    });
}

}  // namespace talvora
