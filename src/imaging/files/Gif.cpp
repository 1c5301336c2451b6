// Reading the first frame of a GIF with giflib.
#include "imaging/Picture.h"
#include "imaging/files/Format.h"

#include <QtEndian>
#include <algorithm>
#include <array>
#include <gif_lib.h>
#include <memory>
#include <vector>

namespace lumora {

namespace {

constexpr std::uint32_t opaque = 0xFF000000;

struct GifFeed {
    Source &source;
    qint64 offset = 0;
};

int read(GifFileType *gif, GifByteType *to, int count) {
    auto *feed = static_cast<GifFeed *>(gif->UserData);
    const qint64 taken = feed->source.read(feed->offset, to, count);
    feed->offset += taken;
    return static_cast<int>(taken);
}

using GifFile = std::unique_ptr<GifFileType, void (*)(GifFileType *)>;

GifFile open(GifFeed &feed) {
    return {DGifOpen(&feed, read, nullptr), [](GifFileType *gif) { DGifCloseFile(gif, nullptr); }};
}

QString textOf(int error) {
    const char *text = GifErrorString(error);
    return text != nullptr ? QString::fromLatin1(text) : QString();
}

// Goes on to the first picture. Sets the index of the colour that is transparent, -1 for none.
bool findFrame(GifFileType *gif, int &transparent) {
    GifRecordType record = UNDEFINED_RECORD_TYPE;
    while (DGifGetRecordType(gif, &record) == GIF_OK && record != TERMINATE_RECORD_TYPE) {
        if (record == IMAGE_DESC_RECORD_TYPE) {
            return DGifGetImageDesc(gif) == GIF_OK;
        }
        int code = 0;
        GifByteType *block = nullptr;
        if (record != EXTENSION_RECORD_TYPE || DGifGetExtension(gif, &code, &block) != GIF_OK) {
            continue;
        }
        while (block != nullptr) {
            GraphicsControlBlock control;
            if (code == GRAPHICS_EXT_FUNC_CODE &&
                DGifExtensionToGCB(block[0], block + 1, &control) == GIF_OK) { // its length comes first
                transparent = control.TransparentColor;
            }
            if (DGifGetExtensionNext(gif, &block) != GIF_OK) {
                return false;
            }
        }
    }
    return false;
}

std::array<std::uint32_t, 256> paletteOf(const GifFileType &gif, int transparent) {
    std::array<std::uint32_t, 256> palette;
    palette.fill(opaque);
    const ColorMapObject *colours = gif.Image.ColorMap != nullptr ? gif.Image.ColorMap : gif.SColorMap;
    for (int i = 0; colours != nullptr && i < std::min(colours->ColorCount, 256); ++i) {
        const GifColorType &colour = colours->Colors[i];
        palette[i] = opaque | unsigned{colour.Red} << 16U | unsigned{colour.Green} << 8U | colour.Blue;
    }
    if (transparent >= 0 && transparent < 256) {
        palette[transparent] &= ~opaque;
    }
    return palette;
}

// The rows of a frame in the order of the file: GIF89a, appendix E. `height` is how many rows the row stands for until
// later ones come.
struct FrameRow {
    int y;
    int height;
};

std::vector<FrameRow> rowsOf(const GifImageDesc &frame) {
    struct Pass {
        int first;
        int step;
        int height;
    };
    static constexpr Pass interlaced[] = {{0, 8, 8}, {4, 8, 4}, {2, 4, 2}, {1, 2, 1}};
    static constexpr Pass plain[] = {{0, 1, 1}};
    std::vector<FrameRow> rows;
    rows.reserve(static_cast<std::size_t>(frame.Height));
    const auto add = [&](const Pass &pass) {
        for (int y = pass.first; y < frame.Height; y += pass.step) {
            rows.push_back({y, std::min(pass.height, frame.Height - y)});
        }
    };
    if (frame.Interlace) {
        std::for_each(std::begin(interlaced), std::end(interlaced), add);
    } else {
        std::for_each(std::begin(plain), std::end(plain), add);
    }
    return rows;
}

// The last pixel is asked for alone: what comes after it may be missing without any harm, but counts as an error there.
bool readRow(GifFileType *gif, std::vector<GifPixelType> &row, bool isLast) {
    const int width = static_cast<int>(row.size());
    if (!isLast) {
        return DGifGetLine(gif, row.data(), width) == GIF_OK;
    }
    if (width > 1 && DGifGetLine(gif, row.data(), width - 1) != GIF_OK) {
        return false;
    }
    row.back() = 0;
    DGifGetLine(gif, &row.back(), 1);
    return true;
}

// Returns how many rows were read.
int readFrame(GifFileType *gif, const std::array<std::uint32_t, 256> &palette, const PixelView &view) {
    const GifImageDesc frame = gif->Image;
    const std::vector<FrameRow> rows = rowsOf(frame);
    std::vector<GifPixelType> indices(static_cast<std::size_t>(frame.Width));
    const int columns = std::clamp(view.width - frame.Left, 0, frame.Width); // what lies outside is cut off
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (!readRow(gif, indices, i + 1 == rows.size())) {
            return static_cast<int>(i);
        }
        for (int y = frame.Top + rows[i].y; y < std::min(view.height, frame.Top + rows[i].y + rows[i].height); ++y) {
            auto *pixels = reinterpret_cast<std::uint32_t *>(view.row(y)) + frame.Left;
            for (int x = 0; x < columns; ++x) {
                pixels[x] = palette[indices[static_cast<std::size_t>(x)]];
            }
        }
    }
    return frame.Height;
}

} // namespace

bool isGif(const QByteArray &head) {
    return head.startsWith("GIF87a") || head.startsWith("GIF89a");
}

FileHeader readGifHeader(Source &source) {
    // GIF89a, section 18: the size of the canvas that all frames are drawn on.
    constexpr int headerBytes = 13;
    const QByteArray head = source.bytes(0, headerBytes);
    if (head.size() < headerBytes) {
        return refusedHeader(PictureError::Damaged, QStringLiteral("no screen descriptor"));
    }
    FileHeader header;
    header.width = qFromLittleEndian<quint16>(head.constData() + 6);
    header.height = qFromLittleEndian<quint16>(head.constData() + 8);
    header.packing = Packing::Lzw;
    header.unpackedBytes = static_cast<double>(header.width) * header.height;
    header.packedBytes = static_cast<double>(source.size() - headerBytes);
    return header;
}

Decoded decodeGif(Source &source, const FileHeader &header) {
    GifFeed feed{source};
    const GifFile gif = open(feed);
    int transparent = NO_TRANSPARENT_COLOR;
    if (!gif || !findFrame(gif.get(), transparent) || gif->Image.Width < 1 || gif->Image.Height < 1) {
        return refused(PictureError::Damaged, gif ? textOf(gif->Error) : QStringLiteral("no header"));
    }
    const GifImageDesc &frame = gif->Image;
    if (static_cast<qint64>(frame.Width) * frame.Height > maxPicturePixels) { // may be more than the canvas
        return refused(PictureError::TooLarge, QStringLiteral("a frame of %1 x %2").arg(frame.Width).arg(frame.Height));
    }
    Decoded result;
    result.picture = newPicture(header.width, header.height, false);
    if (result.picture.isNull()) {
        return refused(PictureError::NoMemory, QStringLiteral("no memory for the pixels"));
    }
    result.picture.fill(0); // transparent around the frame
    const PixelView view = writeView(result.picture);
    const int width = std::clamp(view.width - frame.Left, 0, frame.Width);
    const int height = std::clamp(view.height - frame.Top, 0, frame.Height);
    if (width > 0 && height > 0) {
        paintGrey({view.row(frame.Top) + frame.Left * 4, width, height, view.stride});
    }
    const int rows = readFrame(gif.get(), paletteOf(*gif, transparent), view);
    if (rows == 0) {
        return refused(PictureError::Damaged, textOf(gif->Error));
    }
    if (rows < frame.Height) {
        result.reason = QStringLiteral("cut off or damaged after %1 rows").arg(rows);
    }
    return result;
}

} // namespace lumora
