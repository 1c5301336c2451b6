// Three numbers and what one does with them: points, directions and linear colours of the painted scenes.
#pragma once

#include <algorithm>
#include <cmath>

namespace lumora::samples {

constexpr float Pi = 3.14159265F;

struct Vec3 {
    float x = 0;
    float y = 0;
    float z = 0;
};

constexpr Vec3 operator+(Vec3 a, Vec3 b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
constexpr Vec3 operator-(Vec3 a, Vec3 b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
constexpr Vec3 operator-(Vec3 a) {
    return {-a.x, -a.y, -a.z};
}
constexpr Vec3 operator*(Vec3 a, Vec3 b) {
    return {a.x * b.x, a.y * b.y, a.z * b.z};
}
constexpr Vec3 operator*(Vec3 a, float s) {
    return {a.x * s, a.y * s, a.z * s};
}
constexpr Vec3 operator*(float s, Vec3 a) {
    return a * s;
}
constexpr Vec3 operator/(Vec3 a, Vec3 b) {
    return {a.x / b.x, a.y / b.y, a.z / b.z};
}
constexpr Vec3 &operator+=(Vec3 &a, Vec3 b) {
    return a = a + b;
}
constexpr Vec3 &operator*=(Vec3 &a, float s) {
    return a = a * s;
}
constexpr float dot(Vec3 a, Vec3 b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
constexpr Vec3 cross(Vec3 a, Vec3 b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline float length(Vec3 a) {
    return std::sqrt(dot(a, a));
}
inline float length(float x, float y) {
    return std::sqrt(x * x + y * y);
}
inline Vec3 normalise(Vec3 a) {
    return a * (1.0F / std::max(length(a), 1e-12F));
}
inline Vec3 reflect(Vec3 d, Vec3 n) {
    return d - n * (2 * dot(d, n));
}

constexpr float clamp01(float v) {
    return v < 0 ? 0 : v > 1 ? 1 : v;
}
constexpr float mix(float a, float b, float t) {
    return a + (b - a) * t;
}
constexpr Vec3 mix(Vec3 a, Vec3 b, float t) {
    return a + (b - a) * t;
}
/// 0 below `from`, 1 above `to`, an S-shaped ramp between; also falling, with from > to.
constexpr float smoothStep(float from, float to, float v) {
    const float t = clamp01((v - from) / (to - from));
    return t * t * (3 - 2 * t);
}
inline float fraction(float v) {
    return v - std::floor(v);
}

/// A colour as painters' tools write it, 0xRRGGBB in sRGB, turned into linear light.
inline Vec3 colour(unsigned rgb) {
    const auto linear = [](unsigned byte) { return std::pow(static_cast<float>(byte & 255U) / 255.0F, 2.2F); };
    return {linear(rgb >> 16U), linear(rgb >> 8U), linear(rgb)};
}

/// Turns about the axis to the right, the upright one and the one that points at the viewer; radians.
inline Vec3 turnX(Vec3 p, float a) {
    const float c = std::cos(a);
    const float s = std::sin(a);
    return {p.x, c * p.y + s * p.z, c * p.z - s * p.y};
}
inline Vec3 turnY(Vec3 p, float a) {
    const float c = std::cos(a);
    const float s = std::sin(a);
    return {c * p.x + s * p.z, p.y, c * p.z - s * p.x};
}
inline Vec3 turnZ(Vec3 p, float a) {
    const float c = std::cos(a);
    const float s = std::sin(a);
    return {c * p.x + s * p.y, c * p.y - s * p.x, p.z};
}

} // namespace lumora::samples
