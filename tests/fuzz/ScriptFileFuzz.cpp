// A script file from any bytes: nothing of it is lost by reading and writing it, and what was written reads
// the same.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "extensions/ScriptFile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace talvora;
    const ScriptEntries read = ParseScripts({reinterpret_cast<const char*>(data), size});
    const std::string written = FormatScripts(read);
    const ScriptEntries again = ParseScripts(written);
    if (again.Good != read.Good || again.Damaged != read.Damaged) std::abort();
    if (FormatScripts(again) != written) std::abort();
    return 0;
}
