// Reading WebP with libwebp; of an animation the first frame.
#include "imaging/Picture.h"
#include "imaging/files/Exif.h"
#include "imaging/files/Format.h"

#include <QtEndian>
#include <memory>
#include <webp/decode.h>

namespace lumora {

namespace {

// The parts of the RIFF container (RFC 9649): offsets into the file.
struct Parts {
    QByteArray exif;
    QByteArray profile;
    QByteArray firstFrame; ///< of an animation: its place and size, then its chunks
    qint64 pixelBytes = 0;
    qint64 modeBytes = -1; ///< of a lossy picture: its first partition, which says how each block is coded
};

int threeBytes(const QByteArray &bytes, int at) {
    return static_cast<uchar>(bytes[at]) | static_cast<uchar>(bytes[at + 1]) << 8 |
           static_cast<uchar>(bytes[at + 2]) << 16;
}

Parts readParts(Source &source) {
    constexpr int mostChunks = 1000;
    constexpr qint64 mostSideBytes = 16 << 20;
    Parts parts;
    qint64 at = 12;
    for (int i = 0; i < mostChunks; ++i) {
        const QByteArray lead = source.bytes(at, 8);
        if (lead.size() < 8) {
            break;
        }
        const qint64 length = qFromLittleEndian<quint32>(lead.constData() + 4);
        if (lead.startsWith("EXIF") && length < mostSideBytes) {
            parts.exif = source.bytes(at + 8, length);
        } else if (lead.startsWith("ICCP") && length < mostSideBytes) {
            parts.profile = source.bytes(at + 8, length);
        } else if (lead.startsWith("ANMF") && parts.firstFrame.isEmpty()) {
            parts.firstFrame = source.bytes(at + 8, length);
        }
        if (const QByteArray tag = source.bytes(at + 8, 3); lead.startsWith("VP8 ") && tag.size() == 3) {
            parts.modeBytes = threeBytes(tag, 0) >> 5; // RFC 6386, 9.1
        }
        if (lead.startsWith("VP8") || lead.startsWith("ALPH") || lead.startsWith("ANMF")) {
            parts.pixelBytes += std::min(length, source.size() - at - 8);
        }
        at += 8 + length + length % 2;
    }
    return parts;
}

// Decodes into the view, which has the size asked for. Returns how many rows were read.
int decodeInto(const QByteArray &data, const PixelView &view, bool scale) {
    WebPDecoderConfig config;
    if (!WebPInitDecoderConfig(&config)) {
        return 0;
    }
    config.options.use_threads = 1;
    config.options.use_scaling = scale ? 1 : 0;
    config.options.scaled_width = view.width;
    config.options.scaled_height = view.height;
    config.output.colorspace = MODE_BGRA;
    config.output.is_external_memory = 1;
    config.output.u.RGBA.rgba = view.data;
    config.output.u.RGBA.stride = static_cast<int>(view.stride);
    config.output.u.RGBA.size = static_cast<std::size_t>(view.stride) * (view.height - 1) + view.width * 4;
    const auto *bytes = reinterpret_cast<const uint8_t *>(data.constData());
    const auto size = static_cast<std::size_t>(data.size());
    const std::unique_ptr<WebPIDecoder, void (*)(WebPIDecoder *)> decoder(WebPIDecode(nullptr, 0, &config),
                                                                          WebPIDelete);
    if (!decoder) {
        return 0;
    }
    const VP8StatusCode status = WebPIUpdate(decoder.get(), bytes, size);
    int lastRow = 0;
    WebPIDecGetRGB(decoder.get(), &lastRow, nullptr, nullptr, nullptr);
    return status == VP8_STATUS_OK ? view.height : std::clamp(lastRow, 0, view.height);
}

Decoded finish(Decoded &&result, int rows, const QByteArray &profile) {
    constexpr int leastShare = 64; // what shows less than that is no picture, and most likely never was one
    if (rows <= result.picture.height() / leastShare) {
        return refused(PictureError::Damaged, QStringLiteral("hardly a row could be decoded"));
    }
    if (rows < result.picture.height()) {
        greyFrom(result.picture, rows);
        result.reason = QStringLiteral("damaged or cut off after %1 rows").arg(rows);
    }
    result.profile = profile;
    return std::move(result);
}

// The first frame of an animation on its transparent canvas.
Decoded decodeFrame(const Parts &parts, const FileHeader &header) {
    constexpr int frameHeader = 16;
    if (parts.firstFrame.size() <= frameHeader) {
        return refused(PictureError::Damaged, QStringLiteral("no first frame"));
    }
    const int x = threeBytes(parts.firstFrame, 0) * 2;
    const int y = threeBytes(parts.firstFrame, 3) * 2;
    const int width = threeBytes(parts.firstFrame, 6) + 1;
    const int height = threeBytes(parts.firstFrame, 9) + 1;
    Decoded result;
    result.picture = newPicture(header.width, header.height, false);
    if (result.picture.isNull()) {
        return refused(PictureError::NoMemory, QStringLiteral("no memory for the pixels"));
    }
    result.picture.fill(0);
    PixelView view = writeView(result.picture);
    int frameWidth = 0;
    int frameHeight = 0;
    const QByteArray data = parts.firstFrame.mid(frameHeader);
    const bool read =
        WebPGetInfo(reinterpret_cast<const uint8_t *>(data.constData()), data.size(), &frameWidth, &frameHeight);
    if (!read || frameWidth != width || frameHeight != height || x + width > view.width || y + height > view.height) {
        return refused(PictureError::Damaged, QStringLiteral("a frame outside of its picture"));
    }
    view = {view.row(y) + x * 4, width, height, view.stride};
    return finish(std::move(result), decodeInto(data, view, false) > 0 ? header.height : 0, parts.profile);
}

Decoded decodeTo(Source &source, const FileHeader &header, int width, int height) {
    const Parts parts = readParts(source);
    if (!parts.firstFrame.isEmpty()) {
        return decodeFrame(parts, header);
    }
    Decoded result;
    result.picture = newPicture(width, height, false);
    if (result.picture.isNull()) {
        return refused(PictureError::NoMemory, QStringLiteral("no memory for the pixels"));
    }
    const QByteArray data = source.bytes(0, source.size());
    const bool scale = width != header.width || height != header.height;
    const int rows = decodeInto(data, writeView(result.picture), scale);
    return finish(std::move(result), rows, parts.profile);
}

} // namespace

bool isWebP(const QByteArray &head) {
    return head.startsWith("RIFF") && head.mid(8, 7) == "WEBPVP8";
}

FileHeader readWebPHeader(Source &source) {
    const QByteArray head = source.bytes(0, 4096);
    WebPBitstreamFeatures features;
    if (WebPGetFeatures(reinterpret_cast<const uint8_t *>(head.constData()), static_cast<std::size_t>(head.size()),
                        &features) != VP8_STATUS_OK) {
        return refusedHeader(PictureError::Damaged, QStringLiteral("no WebP header"));
    }
    const Parts parts = readParts(source);
    FileHeader header;
    header.width = features.width;
    header.height = features.height;
    header.orientation = parts.exif.isEmpty() ? 1 : readExif(parts.exif).orientation;
    constexpr int lossy = 1; // as WebPBitstreamFeatures counts; an animation may be mixed
    header.packing = features.format == lossy ? Packing::WebPLossy : Packing::WebPExact;
    header.unpackedBytes = static_cast<double>(header.width) * header.height;
    header.packedBytes = static_cast<double>(features.format == lossy ? parts.modeBytes : parts.pixelBytes);
    return header;
}

Decoded decodeWebP(Source &source, const FileHeader &header) {
    return decodeTo(source, header, header.width, header.height);
}

Decoded decodeSmallWebP(Source &source, const FileHeader &header, int longerSide) {
    const int longer = std::max(header.width, header.height);
    if (longer <= longerSide) {
        return decodeWebP(source, header);
    }
    const auto side = [&](qint64 pixels) {
        return std::max(1, static_cast<int>((pixels * longerSide + longer / 2) / longer));
    };
    return decodeTo(source, header, side(header.width), side(header.height));
}

} // namespace lumora
