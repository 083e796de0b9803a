// A body that grows, is cut and is shown between: what is shown step by step is what reading it anew gives.
// The first byte of each piece says what is done, and how long the piece is.

#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "platform/rich/BodyJudge.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    talvora::test::BodyJudge judge;
    std::string_view input(reinterpret_cast<const char*>(data), size);
    while (!input.empty()) {
        const auto command = static_cast<unsigned char>(input[0]);
        const std::string_view piece = input.substr(1, command >> 2);
        input.remove_prefix(1 + piece.size());
        judge.Append(std::string(piece));
        if ((command & 3) == 1) judge.CutFirstLine();
        if ((command & 3) == 2) judge.CutTo(piece.size() * 2);
        if ((command & 3) == 3) judge.Append("\\par\r\n ");
        const std::string difference = judge.Show();
        if (difference.empty()) continue;
        std::fputs(difference.c_str(), stderr);
        std::abort();
    }
    return 0;
}
