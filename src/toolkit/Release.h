#pragma once

#include <utility>

namespace orvin {

/// Empties a container and gives its memory back at once (clear() keeps it, and so does `= {}` of a
/// vector).
template <typename Container>
void release(Container& container) {
    std::exchange(container, Container());
}

}  // namespace orvin
