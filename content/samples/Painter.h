// Paints a scene: marches a ray for every picture point, lights what it meets, smooths the edges, develops the result
// like a photograph.
#pragma once

#include "Scene.h"

#include <QImage>

namespace lumora::samples {

/// The scene as an opaque picture (Format_RGB32) of the size in pixels. Uses all processors.
QImage paint(const Scene &scene, int width, int height);

} // namespace lumora::samples
