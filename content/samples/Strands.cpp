#include "Strands.h"

#include "Noise.h"

namespace lumora::samples {

namespace {

struct Grown {
    Strand strand;
    Vec3 root;
    Vec3 light;
    float chance;
};

/// Which way the solid looks, from four samples at the corners of a tetrahedron.
Vec3 outwards(const Scene &scene, Vec3 p) {
    constexpr float E = 0.004F;
    Vec3 n;
    for (const Vec3 corner : {Vec3{1, -1, -1}, Vec3{-1, -1, 1}, Vec3{-1, 1, -1}, Vec3{1, 1, 1}}) {
        n += corner * scene.map(p + corner * E).distance;
    }
    return normalise(n);
}

/// Whether the point shows some of what is beside the solid, too: nothing may take its light from there.
bool atEdge(const Film &film, int x, int y) {
    const Place here = film.place(x, y);
    for (const auto &[i, j] : {std::pair{x - 1, y}, {x + 1, y}, {x, y - 1}, {x, y + 1}}) {
        if (i >= 0 && j >= 0 && i < film.width && j < film.height && film.place(i, j).material != here.material) {
            return true;
        }
    }
    return false;
}

/// Half the strand's width at `t` (0 root, 1 tip), as a share of its full half width.
float profile(float t, float blunt) {
    const float hair = 1 - 0.85F * t * t;
    const float feather = std::sqrt(std::max(0.0F, 1 - std::pow(t, 6.0F))) * (0.45F + 0.55F * smoothStep(0, 0.5F, t));
    return mix(hair, feather, blunt);
}

/// Walks along the strand in steps of about one pixel and lays a thin row of paint across it at each.
void draw(const Lens &lens, const Grown &one, Film &film) {
    const Vec3 a = lens.pixelOf(one.root);
    const Vec3 b = lens.pixelOf(one.root + one.strand.tip * 0.5F + one.strand.sag);
    const Vec3 c = lens.pixelOf(one.root + one.strand.tip);
    const float reach = length(b.x - a.x, b.y - a.y) + length(c.x - b.x, c.y - b.y);
    if (reach < 0.7F) {
        return;
    }
    const bool flat = std::fabs(c.x - a.x) > std::fabs(c.y - a.y);
    const float slant = length(c.x - a.x, c.y - a.y) / std::max(std::fabs(flat ? c.x - a.x : c.y - a.y), 0.1F);
    const float half = 0.5F * one.strand.width * lens.pixelsPerUnit(a.z);
    const int count = static_cast<int>(reach * 2) + 2;
    int before = -100000;
    for (int i = 0; i <= count; ++i) {
        const float t = static_cast<float>(i) / static_cast<float>(count);
        const Vec3 at = a * ((1 - t) * (1 - t)) + b * (2 * t * (1 - t)) + c * (t * t);
        const int row = static_cast<int>(std::floor(flat ? at.x : at.y));
        if (row == before) {
            continue;
        }
        before = row;
        const float wide = half * profile(t, one.strand.blunt) * slant;
        const float thin = std::min(1.0F, 2 * wide); // less than a pixel wide: so much less of it is seen
        const float middle = flat ? at.y : at.x;
        const Vec3 light = one.light * mix(Vec3{1, 1, 1}, one.strand.tint, t);
        // NOLINTNEXTLINE(bugprone-incorrect-roundings): no step is left of 0
        for (int k = static_cast<int>(std::floor(middle - wide - 0.5F)); k <= static_cast<int>(middle + wide + 0.5F);
             ++k) {
            const float off = static_cast<float>(k) + 0.5F - middle;
            const float cover = clamp01(std::max(wide, 0.5F) + 0.5F - std::fabs(off)) * thin;
            const int x = flat ? row : k;
            const int y = flat ? k : row;
            if (cover <= 0 || x < 0 || y < 0 || x >= film.width || y >= film.height ||
                film.place(x, y).distance < at.z * 0.97F - length(one.strand.tip)) {
                continue;
            }
            const float side = off / std::max(wide, 0.5F);
            // Barbs run slantwise from the shaft of a feather; its edges lie in the shade of the next ones.
            const float barbs = 0.86F + 0.28F * noise(40 * one.chance + t * reach * 0.45F - std::fabs(side) * 2.2F,
                                                      side > 0 ? 3.0F : 7.0F);
            const float across = (1 - 0.3F * side * side) * barbs * (std::fabs(off) < 0.7F ? 1.1F : 1.0F);
            const float strength = one.strand.solid * cover * mix(1.0F, smoothStep(0, 0.18F, t), 0.85F);
            film.at(x, y) = mix(film.at(x, y), light * mix(1.0F, across, one.strand.blunt), strength);
            if (strength > 0.4F) {
                film.place(x, y).distance = std::min(film.place(x, y).distance, at.z);
            }
        }
    }
}

} // namespace

void growStrands(const Scene &scene, Film &film) {
    if (scene.strands == 0) {
        return;
    }
    const Lens lens(scene.camera, film.width, film.height);
    std::vector<Grown> grown(static_cast<size_t>(scene.strands));
    constexpr int Part = 1024;
    forRows((scene.strands + Part - 1) / Part, [&](int part) {
        for (int i = part * Part; i < std::min((part + 1) * Part, scene.strands); ++i) {
            // The golden ratio's sequence spreads the roots evenly (Martin Roberts, "R2", 2018).
            const auto k = static_cast<double>(i);
            const float fx = static_cast<float>(std::fmod(0.5 + k * 0.7548776662466927, 1.0) * film.width);
            const float fy = static_cast<float>(std::fmod(0.5 + k * 0.5698402909980532, 1.0) * film.height);
            const int x = std::min(static_cast<int>(fx), film.width - 1);
            const int y = std::min(static_cast<int>(fy), film.height - 1);
            const Place place = film.place(x, y);
            if (place.material < 0 || atEdge(film, x, y)) {
                continue;
            }
            const float chance = hash(i, 17);
            const Vec3 root = scene.camera.eye + lens.direction(fx, fy) * place.distance;
            grown[static_cast<size_t>(i)] = {scene.strand(place.material, root, outwards(scene, root), chance), root,
                                             film.at(x, y), chance};
        }
    });
    std::erase_if(grown, [](const Grown &one) { return dot(one.strand.tip, one.strand.tip) == 0; });
    std::stable_sort(grown.begin(), grown.end(),
                     [](const Grown &a, const Grown &b) { return a.strand.order < b.strand.order; });
    for (const Grown &one : grown) {
        draw(lens, one, film);
    }
}

} // namespace lumora::samples
