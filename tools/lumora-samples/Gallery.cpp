#include "Gallery.h"

#include "scenes/Scenes.h"

#include <array>

namespace lumora::samples {

std::span<const Sample> gallery() {
    static constexpr std::array rows{
        Sample{"animals", "ladybird", ladybird},
        Sample{"geographical features", "mountain lake", mountainLake},
        Sample{"machines", "steam locomotive", locomotive},
    };
    return rows;
}

} // namespace lumora::samples
