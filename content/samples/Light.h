// Light along a ray through a scene: finds what the ray meets and how sun, sky and surroundings light it.
#pragma once

#include "Scene.h"
#include "Shapes.h"

namespace lumora::samples {

/// What an eye sees in one direction.
struct Sight {
    Vec3 light;
    float distance;    ///< as far as the scene goes for the sky
    int material = -1; ///< the solid's; below 0 for the sky and for water
};
Sight sightAlong(const Scene &scene, Vec3 from, Vec3 d, int bounces = 0);

/// Linear light that reaches `from` against the direction `d` (length 1). `bounces` counts mirrorings so far.
Vec3 lightAlong(const Scene &scene, Vec3 from, Vec3 d, int bounces = 0);

} // namespace lumora::samples
