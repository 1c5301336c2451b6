#include "imaging/decorations/LetteringTable.h"

namespace lumora {

namespace {

// The crayons of the icons.
constexpr QColor ink(0x2B, 0x28, 0x40);
constexpr QColor paper(0xFF, 0xFD, 0xF5);
constexpr QColor sun(0xFF, 0xC5, 0x3D);
constexpr QColor coral(0xFF, 0x6B, 0x57);
constexpr QColor darkCoral(0xB8, 0x34, 0x26);
constexpr QColor sky(0x2F, 0x80, 0xED);
constexpr QColor plum(0x8A, 0x5C, 0xF6);

using enum LetteringRow::Course;

const LetteringRow rows[] = {
    {.name = "plain", .text = "LetteringPlain", .course = Straight, .fill = ink, .line = paper, .lineWidth = 0.07},
    {.name = "arch", .text = "LetteringArch", .course = Arch, .fill = sun, .line = ink, .lineWidth = 0.06},
    {.name = "outlined",
     .text = "LetteringOutlined",
     .course = Straight,
     .fill = paper,
     .line = ink,
     .lineWidth = 0.09},
    {.name = "poster",
     .text = "LetteringPoster",
     .course = Straight,
     .fill = coral,
     .line = paper,
     .lineWidth = 0.05,
     .block = darkCoral,
     .blockDepth = 0.1},
    {.name = "wave",
     .text = "LetteringWave",
     .course = Wave,
     .fill = sky,
     .line = paper,
     .lineWidth = 0.06,
     .block = plum,
     .blockDepth = 0.05},
};

} // namespace

std::span<const LetteringRow> letterings() {
    return rows;
}

} // namespace lumora
