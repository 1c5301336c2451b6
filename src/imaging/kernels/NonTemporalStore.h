// Non-temporal stores: for parts of results that no cache could hold, they save reading the lines that are overwritten.
#pragma once

#include <cstddef>
#include <cstdint>

namespace lumora {

/// Any pointers and sizes will do; whole vectors are written with non-temporal stores.
/// Other threads see it after flushNonTemporal().
void copyNonTemporal(const std::uint8_t *from, std::uint8_t *to, std::size_t bytes);

/// Ends a row of such copies.
void flushNonTemporal();

} // namespace lumora
