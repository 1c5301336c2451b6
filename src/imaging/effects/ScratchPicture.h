// Memory for one more picture while an effect works, from the kept buffers.
#pragma once

#include "imaging/PictureBuffers.h"
#include "imaging/PixelView.h"

#include <memory>

namespace lumora {

class ScratchPicture {
  public:
    /// Undefined pixels; view() is empty when memory is refused.
    ScratchPicture(int width, int height)
        : m_buffer(takeBuffer(std::size_t(width) * std::size_t(height) * 4), &giveBufferBack),
          m_view{m_buffer ? m_buffer->memory : nullptr, width, height, std::ptrdiff_t(4) * width} {}

    PixelView view() const { return m_view; }

  private:
    std::unique_ptr<KeptBuffer, void (*)(KeptBuffer *)> m_buffer;
    PixelView m_view;
};

} // namespace lumora
