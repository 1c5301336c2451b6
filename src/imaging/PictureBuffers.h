// Buffer pool for large pictures: aligned for huge pages, kept after use and reused for the next picture, because the
// page faults of a fresh buffer cost more than the work on it. Used by Picture.cpp only; thread-safe.
#pragma once

#include <cstddef>
#include <cstdint>

namespace lumora {

struct KeptBuffer {
    std::uint8_t *memory = nullptr; ///< starts at a multiple of 2 MiB
    std::size_t bytes = 0;          ///< a multiple of 2 MiB
};

/// A buffer of at least that many bytes with undefined content, pooled or new; null when allocation fails.
KeptBuffer *takeBuffer(std::size_t bytes) noexcept;

/// Whether new large buffers of this thread are requested with huge pages, as they are unless it says otherwise.
void setHugePages(bool wanted) noexcept;

/// Keeps the buffer for the next picture while few are idle, else returns it to the system.
void giveBufferBack(KeptBuffer *buffer) noexcept;

/// Returns every idle buffer to the system.
void releaseIdleBuffers() noexcept;

/// Bytes of the buffers that are kept without a picture on them.
std::size_t idleBufferBytes() noexcept;

} // namespace lumora
