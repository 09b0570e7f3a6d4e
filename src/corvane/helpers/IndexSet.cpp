#include "corvane/helpers/IndexSet.hpp"

namespace corvane {

IndexSet IndexSet::range(std::size_t first, std::size_t last) {
    IndexSet set;
    set.insertRange(first, last);
    return set;
}

void IndexSet::insertRange(std::size_t first, std::size_t last) {
    for (std::size_t i = first; i < last; ++i)
        indices_.insert(indices_.end(), i);
}

} // namespace corvane
