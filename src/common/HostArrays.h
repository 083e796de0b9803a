#pragma once
// Puts together what a host message carries. An array that is written as a list in braces copies every text
// once more, which messages that go out for each line of the network need not pay.

#include <utility>

#include "common/HostMessages.h"

namespace talvora {

template <class... Values>
HostArray ArrayOf(Values&&... values) {
    HostArray array;
    array.reserve(sizeof...(values));
    (array.emplace_back(std::forward<Values>(values)), ...);
    return array;
}

}  // namespace talvora
