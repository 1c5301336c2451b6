// Memory for one more picture while an effect works, from the kept buffers.
#pragma once

#include "imaging/PictureBuffers.h"
#include "imaging/PixelView.h"

#include <memory>

namespace lumora {

class ScratchPicture {
  public:
    /// Undefined pixels; rows begin at whole cache lines; view() is empty when memory is refused.
    ScratchPicture(int width, int height)
        : m_buffer(takeBuffer(std::size_t(stride(width)) * std::size_t(height)), &giveBufferBack),
          m_view{m_buffer ? m_buffer->memory : nullptr, width, height, stride(width)} {}

    PixelView view() const { return m_view; }

  private:
    static std::ptrdiff_t stride(int width) { return (std::ptrdiff_t(4) * width + 63) / 64 * 64; }

    std::unique_ptr<KeptBuffer, void (*)(KeptBuffer *)> m_buffer;
    PixelView m_view;
};

} // namespace lumora
