// Copies straight to memory: for parts of results that no cache could hold, it spares reading the lines that are
// overwritten.
#pragma once

#include <cstddef>
#include <cstdint>

namespace lumora {

/// Any pointers and sizes will do; whole vectors of it go past the cache.
/// Other threads see it after flushPastCache().
void copyPastCache(const std::uint8_t *from, std::uint8_t *to, std::size_t bytes);

/// Ends a row of such copies.
void flushPastCache();

} // namespace lumora
