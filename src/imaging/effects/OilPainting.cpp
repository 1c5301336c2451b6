#include "imaging/effects/OilPainting.h"

#include "imaging/effects/Blur.h"
#include "imaging/kernels/BoxReduce.h"
#include "imaging/kernels/PaintStrokes.h"
#include "imaging/kernels/PartOf.h"
#include "imaging/kernels/Premultiply.h"
#include "imaging/kernels/RowBands.h"
#include "imaging/kernels/StrokeFlow.h"
#include "imaging/transforms/Resample.h"

#include <array>
#include <cstring>
#include <tbb/enumerable_thread_specific.h>
#include <utility>
#include <vector>

namespace lumora {

namespace {

constexpr double largestBrush = 1000;
constexpr double largestWorkBrush = 16; // a larger one paints a reduced copy
constexpr double largestFinest = 12;    // the same for the picture itself, which takes longest, where that is not seen
constexpr double unitForThat = 6;
constexpr int blockSide = 512;   // pixels of the reduced copy
constexpr double relief = .0004; // what a level of the sum along a bristle changes
constexpr double bristles = 6;   // across half a brush
constexpr int flowBlur = 2;      // pixels of the picture in which directions are sought

/// How a brush is applied.
struct Plan {
    Plan(double brush, double unit) {
        if (brush >= largestFinest && unit >= unitForThat) {
            factor = 2;
        }
        while (brush / factor >= largestWorkBrush && factor < 16) {
            factor *= 2;
        }
        radius = brush / factor;
        smoothing = radius >= 12 ? 2 : radius >= 5 ? 1 : 0;
        flowFactor = radius >= 8 ? 4 : 2;
        const int strokes = static_cast<int>(2 * radius) + 3 + 3 * smoothing;
        const int directions = (3 * flowBlur + 4) * flowFactor;
        margin = std::max(strokes, directions);
    }

    int factor = 1; ///< the copy that is painted is the picture reduced by it
    double radius;  ///< of the brush, in pixels of that copy, as all that follows
    int smoothing;  ///< so that the points between the grid's count too
    int flowFactor; ///< directions are sought in a copy that is reduced again
    int margin;     ///< what a pixel needs around it
};

/// What a thread needs for its blocks, kept from one to the next: fresh memory costs page faults.
class BlockMemory {
  public:
    using Bytes = std::vector<std::uint8_t>;

    Bytes take() {
        if (m_idle.empty()) {
            return {};
        }
        Bytes bytes = std::move(m_idle.back());
        m_idle.pop_back();
        return bytes;
    }
    void giveBack(Bytes bytes) { m_idle.push_back(std::move(bytes)); }

  private:
    std::vector<Bytes> m_idle;
};

/// A picture for one block; undefined pixels. Kernels may read a vector beyond the last.
class BlockPicture {
  public:
    BlockPicture(BlockMemory &memory, int width, int height) : m_memory(memory), m_bytes(memory.take()) {
        constexpr std::size_t beyond = 256;
        m_bytes.resize(std::max(m_bytes.size(), 4 * std::size_t(width) * std::size_t(height) + beyond));
        m_view = {m_bytes.data(), width, height, std::ptrdiff_t(4) * width};
    }
    ~BlockPicture() { m_memory.giveBack(std::move(m_bytes)); }
    BlockPicture(const BlockPicture &) = delete;
    BlockPicture &operator=(const BlockPicture &) = delete;

    PixelView view() const { return m_view; }

  private:
    BlockMemory &m_memory;
    BlockMemory::Bytes m_bytes;
    PixelView m_view;
};

class Painter {
  public:
    Painter(double brush, double unit, ConstPixelView source, PixelView target, PixelRect area, bool opaque)
        : m_plan(brush, unit), m_source(source), m_target(target), m_area(area), m_opaque(opaque),
          m_width((source.width - 1) / m_plan.factor + 1), m_height((source.height - 1) / m_plan.factor + 1) {}

    void paint() const {
        const int side = blockSide * m_plan.factor; // blocks at multiples of the factor
        const int left = m_area.left / m_plan.factor * m_plan.factor;
        const int top = m_area.top / m_plan.factor * m_plan.factor;
        const int across = (m_area.right - left - 1) / side + 1;
        const int down = (m_area.bottom - top - 1) / side + 1;
        tbb::enumerable_thread_specific<BlockMemory> memory;
        forRowBands(across * down, std::int64_t(1) << 16, [&](int first, int end) {
            for (int i = first; i < end; ++i) {
                const int x = left + i % across * side;
                const int y = top + i / across * side;
                paintBlock({x, y, std::min(x + side, m_area.right), std::min(y + side, m_area.bottom)}, memory.local());
            }
        });
    }

  private:
    /// The pixels of the reduced copy from `first` to `last` and `margin` more, as far as there are any, from a
    /// multiple of `step` on.
    static std::array<int, 2> widened(int first, int last, int margin, int step, int side) {
        return {std::max(first - margin, 0) / step * step, std::min((last + margin) / step * step + step, side)};
    }

    PixelRect widened(PixelRect rect, int margin, int step) const {
        const auto [left, right] = widened(rect.left, rect.right - 1, margin, step, m_width);
        const auto [top, bottom] = widened(rect.top, rect.bottom - 1, margin, step, m_height);
        return {left, top, right, bottom};
    }

    /// The part of the picture that the reduced copy's part is made of.
    ConstPixelView originalOf(PixelRect part) const {
        const int f = m_plan.factor;
        return partOf(m_source, {part.left * f, part.top * f, std::min(part.right * f, m_source.width),
                                 std::min(part.bottom * f, m_source.height)});
    }

    /// The reduced copy of that, multiplied by alpha.
    void reduce(ConstPixelView from, PixelView to) const {
        if (m_plan.factor > 1) {
            boxReduce(from, to, m_plan.factor, m_opaque);
        }
        if (!m_opaque) {
            premultiply(m_plan.factor > 1 ? readOnly(to) : from, to);
        }
    }

    /// Fills `flow`, whose sides are multiples of the plan's factor.
    void findDirections(ConstPixelView picture, PixelRect part, PixelView flow, BlockMemory &memory) const {
        const int f = m_plan.flowFactor;
        const int width = flow.width / f;
        const int height = flow.height / f;
        const BlockPicture small(memory, width, height);
        const BlockPicture sharp(memory, width, height);
        boxReduce(picture, small.view(), f, true);
        flowOf(readOnly(small.view()), sharp.view(), part.left / f, part.top / f);
        const BlockPicture scratch(memory, width, height);
        blurBlock(flowBlur, readOnly(sharp.view()), scratch.view(), small.view());
        resample(readOnly(small.view()), flow);
    }

    void paintBlock(PixelRect block, BlockMemory &memory) const {
        const int f = m_plan.factor;
        const PixelRect copied{block.left / f, block.top / f, (block.right - 1) / f + 1, (block.bottom - 1) / f + 1};
        const PixelRect painted = widened(copied, f > 1 ? 2 : 0, 1);
        const PixelRect part = widened(painted, m_plan.margin, m_plan.flowFactor);
        const ConstPixelView original = originalOf(part);
        const bool isCopy = f > 1 || !m_opaque;
        const BlockPicture reduced(memory, isCopy ? part.width() : 0, part.height());
        if (isCopy) {
            reduce(original, reduced.view());
        }
        const ConstPixelView copy = isCopy ? readOnly(reduced.view()) : original;
        const BlockPicture colours(memory, part.width(), part.height());
        const BlockPicture scratch(memory, part.width(), part.height());
        blurBlock(m_plan.smoothing, copy, scratch.view(), colours.view());
        const auto whole = [&](int side) {
            return (side - 1) / m_plan.flowFactor * m_plan.flowFactor + m_plan.flowFactor;
        };
        const BlockPicture flow(memory, whole(part.width()), whole(part.height()));
        findDirections(copy, part, flow.view(), memory);
        addNoise(flow.view(), part.left, part.top, m_plan.radius / bristles);
        const PaintSource from{readOnly(colours.view()), readOnly(flow.view())};
        const auto radius = static_cast<float>(m_plan.radius);
        const float light = reliefOf(m_plan.radius);
        const auto paintRows = [&](PixelView to, PixelRect rows) {
            for (int y = rows.top; y < rows.bottom; ++y) {
                paintStrokes(from, radius, light, rows.left - part.left, rows.right - part.left, y - part.top,
                             to.row(y - rows.top));
            }
        };
        if (f == 1) {
            const PixelView to = partOf(m_target, block);
            paintRows(to, block);
            finish(to);
            return;
        }
        const BlockPicture result(memory, painted.width(), painted.height());
        paintRows(result.view(), painted);
        const Resampler resampler(readOnly(result.view()), painted.width() * f, painted.height() * f);
        std::vector<std::int16_t> line(resampler.rowMemory());
        for (int y = block.top; y < block.bottom; ++y) {
            resampler.writeRow(y - painted.top * f, block.left - painted.left * f, block.right - painted.left * f,
                               m_target.row(y) + std::ptrdiff_t(4) * block.left, line.data());
        }
        finish(partOf(m_target, block));
    }

    void finish(PixelView painted) const {
        if (!m_opaque) {
            unpremultiply(painted);
        }
    }

    /// What a level of the bristles' sum changes; less where bristles are finer than a pixel.
    static float reliefOf(double radius) { return static_cast<float>(relief * std::min(radius / bristles, 1.0)); }

    Plan m_plan;
    ConstPixelView m_source;
    PixelView m_target;
    PixelRect m_area;
    bool m_opaque;
    int m_width; ///< of the copy
    int m_height;
};

} // namespace

void applyOilPainting(const OilPainting &parameters, ConstPixelView source, PixelView target, PixelRect area,
                      bool opaque) {
    const double brush = std::clamp(parameters.brush, 0.0, largestBrush);
    if (brush < .5) {
        for (int y = area.top; y < area.bottom; ++y) {
            std::memcpy(target.row(y) + std::ptrdiff_t(4) * area.left, source.row(y) + std::ptrdiff_t(4) * area.left,
                        std::size_t(area.width()) * 4);
        }
        return;
    }
    Painter(brush, parameters.unit, source, target, area, opaque).paint();
}

} // namespace lumora
