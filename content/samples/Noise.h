// Repeatable randomness: the same picture comes out every time, at every size.
#pragma once

#include "Vec.h"

#include <cstdint>

namespace lumora::samples {

/// A number from 0 to 1 that belongs to the three whole numbers.
inline float hash(int x, int y = 0, int z = 0) {
    uint32_t h = static_cast<uint32_t>(x) * 0x8da6b343U + static_cast<uint32_t>(y) * 0xd8163841U +
                 static_cast<uint32_t>(z) * 0xcb1ab31fU;
    h = (h ^ (h >> 15U)) * 0x2c1b3c6dU;
    h = (h ^ (h >> 12U)) * 0x297a2d39U;
    return static_cast<float>((h ^ (h >> 15U)) & 0xffffffU) / 16777216.0F;
}

/// Smooth value noise, 0 to 1, one bump a unit.
float noise(float x, float y);
float noise(Vec3 p);

/// Fractal Brownian motion: octaves of noise of half the size and half the height each; about 0 to 1, mean 0.5.
float fbm(float x, float y, int octaves);
float fbm(Vec3 p, int octaves);

/// The same with folded octaves, which makes ridges and crests.
float ridged(float x, float y, int octaves);

/// Scattered points, one in each unit cell: the distance to the nearest and a number from 0 to 1 that belongs to it.
struct Cell {
    float distance;
    float id;
    float dx; ///< from that point to the place asked for
    float dy;
};
Cell cells(float x, float y, float jitter = 0.8F);

} // namespace lumora::samples
