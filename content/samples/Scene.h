// What a painted scene has to say about itself; Painter turns it into a picture. A unit is about what the scene makes
// of it: a metre in a landscape, a centimetre on a leaf.
#pragma once

#include "Vec.h"

#include <limits>

namespace lumora::samples {

struct Camera {
    Vec3 eye;
    Vec3 target;
    float zoom = 1.5F; ///< focal length in half picture widths: 1.5 is a normal lens, 3 a long one
    float roll = 0;    ///< radians
};

/// The nearest solid: how far, and which of the scene's own materials.
struct Hit {
    float distance = std::numeric_limits<float>::max();
    int material = 0;
    void join(float other, int what) {
        if (other < distance) {
            distance = other;
            material = what;
        }
    }
};

/// How a solid looks at one point.
struct Surface {
    Vec3 colour{0.5F, 0.5F, 0.5F}; ///< share of light given back, linear
    float shine = 0;               ///< strength of the highlight, 0 matt to 1 lacquer
    float sharpness = 30;          ///< exponent of the highlight
    float mirror = 0;              ///< share of the surroundings reflected where one looks straight at it
    Vec3 tint{1, 1, 1};            ///< of what is mirrored: white for lacquer and water, the metal's own for metals
    float sheer = 0;               ///< share of light that comes through from behind: leaves, petals
    Vec3 glow{};                   ///< light of its own
};

/// A hair, a tuft of fur or a feather that grows from a solid. It takes the light of the place where it grows.
struct Strand {
    Vec3 tip{};         ///< where it ends, from its root, in units; nothing grows where this is 0
    Vec3 sag{};         ///< how far its middle is bent off the straight line
    float width = 0;    ///< units
    float blunt = 0;    ///< 0 a hair that ends in a point, 1 a feather with a round end
    float order = 0;    ///< the smaller ones lie below
    float solid = 0.9F; ///< share of what is behind that it hides
    Vec3 tint{1, 1, 1}; ///< of its light at the tip; the root keeps the light of the solid
};

class Scene {
  public:
    virtual ~Scene() = default;

    Camera camera;
    Vec3 sunDirection{0, 1, 0}; ///< towards the sun, length 1
    Vec3 sunColour{3, 2.8F, 2.5F};
    Vec3 skyLight{0.4F, 0.5F, 0.7F};     ///< from above, in the shade
    Vec3 groundLight{0.1F, 0.1F, 0.08F}; ///< thrown back from below
    float farthest = 100;                ///< where marching ends and the sky begins
    float ceiling = 1e6F;                ///< no solid above this height: quick for landscapes
    float caution = 1;                   ///< share of the distance that a step dares, for bent space
    int steps = 220;
    float shadowReach = 12;
    float shadowSoftness = 14; ///< higher is harder
    float creviceSize = 0.25F; ///< how far crevices darken
    float waterLevel = -1e6F;  ///< a lake or sea lies at this height; far below everything: none
    Vec3 waterColour{0.01F, 0.05F, 0.06F};
    float exposure = 1;
    float bloom = 0.12F; ///< share of the light of bright places that spreads around them
    float vignette = 0.25F;
    float focus = 0;    ///< distance at which the lens is sharp
    float aperture = 0; ///< blur of what is infinitely far, as a share of the picture's width; 0: all is sharp
    int strands = 0;    ///< places in the picture from which a strand is tried to grow

    /// The nearest solid at the place.
    virtual Hit map(Vec3 p) const = 0;
    /// The look of a solid; `n` points out of it, `d` is the direction one looks along.
    virtual Surface surface(int material, Vec3 p, Vec3 n, Vec3 d) const = 0;
    /// The light that comes from far away.
    virtual Vec3 sky(Vec3 d) const = 0;
    /// Fine grain that bends only the light: height in units, read about the hit point.
    virtual float grain(int /*material*/, Vec3 /*p*/) const { return 0; }
    /// What grows at a place of a solid; `chance` (0 to 1) differs from strand to strand.
    virtual Strand strand(int /*material*/, Vec3 /*p*/, Vec3 /*n*/, float /*chance*/) const { return {}; }
    /// Ripples: which way the water's surface looks at the place, `distance` away from the eye.
    virtual Vec3 waterNormal(Vec3 /*p*/, float /*distance*/) const { return {0, 1, 0}; }
    /// What the air does to light that crosses it: haze, mist, steam, sunbeams.
    virtual Vec3 air(Vec3 light, Vec3 /*from*/, Vec3 /*d*/, float /*distance*/) const { return light; }
};

/// Haze that thickens with the distance and glows towards the sun.
inline Vec3 haze(Vec3 light, const Scene &scene, Vec3 d, float distance, float reach, Vec3 shade, Vec3 sunlit) {
    const float amount = 1 - std::exp(-distance / reach);
    const float towards = std::pow(std::max(dot(d, scene.sunDirection), 0.0F), 6.0F);
    return mix(light, mix(shade, sunlit, towards), amount);
}

} // namespace lumora::samples
