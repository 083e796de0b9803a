// The table of states from any bytes, held against a search of its lines one by one. The input is the table,
// a NUL, and then tags, each ended by a NUL.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "chat/StateTable.h"

namespace {

using namespace talvora;

std::vector<std::string> plainFind(std::string_view table, std::string_view tag) {
    for (const std::string& line : Split(table, "\r\n")) {
        if (line.empty()) continue;
        const std::vector<std::string> fields = Split(line, "|");
        if (UCase(Trim(fields.at(0))) == UCase(Trim(tag))) return fields;
    }
    return {};
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::vector<std::string> parts = Split(input, std::string_view("\0", 1));
    if (parts.empty()) return 0;
    const StateTable table(parts[0]);
    for (std::size_t n = 1; n < parts.size(); ++n) {
        const std::vector<std::string>* found = table.find(parts[n]);
        if ((found == nullptr ? std::vector<std::string>{} : *found) != plainFind(parts[0], parts[n]))
            std::abort();
    }
    return 0;
}
