#include "Light.h"

#include <array>

namespace lumora::samples {

namespace {

struct Meeting {
    float distance = -1; ///< negative: nothing before the scene ends
    int material = 0;
};

/// A step went through the surface: halves the way back to it.
float surfaceBetween(const Scene &scene, Vec3 from, Vec3 d, float outside, float inside) {
    for (int i = 0; i < 6; ++i) {
        const float middle = (outside + inside) / 2;
        (scene.map(from + d * middle).distance > 0 ? outside : inside) = middle;
    }
    return inside;
}

/// Sphere tracing (J. C. Hart, 1996): a step is never longer than the distance to the nearest solid.
Meeting march(const Scene &scene, Vec3 from, Vec3 d, float start, float end) {
    float t = start;
    if (from.y + d.y * t > scene.ceiling) {
        if (d.y >= 0) {
            return {};
        }
        t = std::max(t, (scene.ceiling - from.y) / d.y);
    }
    float before = t;
    for (int i = 0; i < scene.steps && t < end; ++i) {
        const Vec3 p = from + d * t;
        if (d.y > 0 && p.y > scene.ceiling) {
            return {};
        }
        const Hit hit = scene.map(p);
        const float enough = 0.0004F * t + 0.0002F;
        if (hit.distance < enough) {
            return {hit.distance < -enough ? surfaceBetween(scene, from, d, before, t) : t, hit.material};
        }
        before = t;
        t += hit.distance * scene.caution;
    }
    return {};
}

/// Which way the solid's surface looks, from four samples at the corners of a tetrahedron.
Vec3 normalAt(const Scene &scene, Vec3 p, float size, int material) {
    constexpr std::array<Vec3, 4> corners{{{1, -1, -1}, {-1, -1, 1}, {-1, 1, -1}, {1, 1, 1}}};
    Vec3 n;
    for (const Vec3 &corner : corners) {
        const Vec3 q = p + corner * size;
        n += corner * (scene.map(q).distance - scene.grain(material, q));
    }
    return normalise(n);
}

/// Share of the sun that reaches the place; softer the nearer an edge passes (Inigo Quilez, "Soft shadows").
float sunReaching(const Scene &scene, Vec3 p, float start) {
    float share = 1;
    float t = start;
    for (int i = 0; i < 48 && t < scene.shadowReach; ++i) {
        const Vec3 q = p + scene.sunDirection * t;
        if (q.y > scene.ceiling) {
            break;
        }
        const float h = scene.map(q).distance;
        share = std::min(share, 0.5F + 0.5F * scene.shadowSoftness * h / t);
        if (share < 0.02F) {
            return 0;
        }
        t += std::clamp(h, scene.shadowReach / 400, scene.shadowReach / 12);
    }
    share = clamp01(share);
    return share * share * (3 - 2 * share);
}

/// Share of the sky that a place in a crevice still sees.
float openness(const Scene &scene, Vec3 p, Vec3 n) {
    float hidden = 0;
    float weight = 1;
    for (int i = 1; i <= 4; ++i, weight *= 0.7F) {
        const float h = scene.creviceSize * static_cast<float>(i) / 4;
        hidden += weight * std::max(0.0F, h - scene.map(p + n * h).distance) / scene.creviceSize;
    }
    return clamp01(1 - 0.9F * hidden);
}

Vec3 shade(const Scene &scene, const Meeting &meeting, Vec3 from, Vec3 d, int bounces) {
    const Vec3 p = from + d * meeting.distance;
    const float pixel = 0.0006F * meeting.distance + 0.0003F;
    const Vec3 n = normalAt(scene, p, pixel, meeting.material);
    const Surface look = scene.surface(meeting.material, p, n, d);
    const float facing = dot(n, scene.sunDirection);
    const float open = openness(scene, p, n);
    const float sun = facing > 0 || look.sheer > 0 ? sunReaching(scene, p + n * (2 * pixel), 6 * pixel) : 0;

    Vec3 light = scene.sunColour * (sun * std::max(facing, 0.0F));
    light += scene.sunColour * (look.sheer * mix(0.4F, 1.0F, sun) * std::max(-facing, 0.0F));
    light += mix(scene.groundLight, scene.skyLight, 0.5F + 0.5F * n.y) * open;
    Vec3 out = look.colour * light + look.glow;

    const Vec3 half = normalise(scene.sunDirection - d);
    out += scene.sunColour * (look.shine * sun * std::pow(std::max(dot(n, half), 0.0F), look.sharpness));
    if (look.mirror > 0 && bounces < 1) {
        // Schlick's approximation: everything mirrors at a grazing angle.
        const float fresnel = look.mirror + (1 - look.mirror) * std::pow(1 - std::max(-dot(n, d), 0.0F), 5.0F);
        const Vec3 mirrored = lightAlong(scene, p + n * (4 * pixel), reflect(d, n), bounces + 1) * look.tint;
        out = mix(out, mirrored, fresnel * mix(0.5F, 1.0F, open));
    } else if (look.mirror > 0) {
        out = mix(out, scene.sky(reflect(d, n)) * look.tint, look.mirror);
    }
    return out;
}

Vec3 waterLight(const Scene &scene, Vec3 from, Vec3 d, float distance, int bounces) {
    const Vec3 p = from + d * distance;
    const Vec3 n = scene.waterNormal(p, distance);
    const float fresnel = 0.02F + 0.98F * std::pow(1 - clamp01(-dot(n, d)), 5.0F);
    Vec3 up = reflect(d, n);
    up.y = std::max(up.y, 0.004F);
    const Vec3 above = bounces < 1 ? lightAlong(scene, p, normalise(up), bounces + 1) : scene.sky(normalise(up));
    // Below the surface the ray bends; what it meets fades into the water's own colour.
    Vec3 below = scene.waterColour;
    if (fresnel < 0.7F) {
        const Vec3 down = normalise(Vec3{d.x, d.y * 1.25F - 0.1F, d.z});
        const Meeting ground = march(scene, p, down, 0.001F, 3);
        if (ground.distance > 0) {
            const Vec3 q = p + down * ground.distance;
            const Vec3 gn = normalAt(scene, q, 0.002F, ground.material);
            const Surface look = scene.surface(ground.material, q, gn, down);
            const Vec3 lit =
                look.colour * (scene.sunColour * (0.5F * std::max(0.0F, dot(gn, scene.sunDirection))) + scene.skyLight);
            below = mix(scene.waterColour, lit, std::exp(-1.1F * ground.distance));
        }
    }
    const Vec3 half = normalise(scene.sunDirection - d);
    const float glint = std::pow(std::max(dot(n, half), 0.0F), 400.0F);
    return mix(below, above, fresnel) + scene.sunColour * (glint * 1.5F);
}

} // namespace

Sight sightAlong(const Scene &scene, Vec3 from, Vec3 d, int bounces) {
    const float toWater = d.y < 0 ? (scene.waterLevel - from.y) / d.y : -1;
    const bool water = toWater > 0.001F && toWater < scene.farthest;
    const float end = water ? toWater : scene.farthest;
    const Meeting meeting = march(scene, from, d, bounces == 0 ? 0.02F : 0.004F, end);
    if (meeting.distance > 0) {
        return {scene.air(shade(scene, meeting, from, d, bounces), from, d, meeting.distance), meeting.distance,
                meeting.material};
    }
    if (water) {
        return {scene.air(waterLight(scene, from, d, toWater, bounces), from, d, toWater), toWater};
    }
    return {scene.air(scene.sky(d), from, d, scene.farthest), scene.farthest};
}

Vec3 lightAlong(const Scene &scene, Vec3 from, Vec3 d, int bounces) {
    return sightAlong(scene, from, d, bounces).light;
}

} // namespace lumora::samples
