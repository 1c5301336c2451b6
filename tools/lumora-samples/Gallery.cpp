#include "Gallery.h"

#include "scenes/Scenes.h"

#include <array>

namespace lumora::samples {

std::span<const Sample> gallery() {
    static constexpr std::array rows{
        Sample{"animals", "ladybird", ladybird},
        Sample{"animals", "clownfish", reef},
        Sample{"backgrounds for stories", "mushroom house", mushroomHouse},
        Sample{"geographical features", "mountain lake", mountainLake},
        Sample{"machines", "steam locomotive", locomotive},
        Sample{"machines", "hot-air balloons", balloons},
        Sample{"old buildings", "windmill", windmill},
    };
    return rows;
}

} // namespace lumora::samples
