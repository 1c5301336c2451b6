// The pictures that Lumora brings along: one row each, one function each. A new picture is a row in Gallery.cpp and a
// file in scenes/.
#pragma once

#include "Scene.h"

#include <memory>
#include <span>

namespace lumora::samples {

struct Sample {
    const char *folder; ///< below "My Photos", as the Simple open dialog knows it
    const char *name;   ///< file name without its extension
    std::unique_ptr<Scene> (*make)();
};

std::span<const Sample> gallery();

} // namespace lumora::samples
