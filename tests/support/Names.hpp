#pragma once

#include <string>
#include <vector>

namespace corvane::test {

// The names of items held by pointer (`item->name()`), in their order: what a test compares an
// ordered list of library items with.
template <class Items> std::vector<std::string> names(const Items& items) {
    std::vector<std::string> list;
    for (const auto& item : items)
        list.push_back(item->name());
    return list;
}

} // namespace corvane::test
