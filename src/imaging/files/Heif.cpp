// Reading HEIF (HEIC from phones, AVIF) with libheif. It turns and mirrors by the file's own properties, so that the
// EXIF orientation, which repeats it, is ignored.
#include "base/LateLibrary.h"
#include "imaging/Picture.h"
#include "imaging/files/DeepColour.h"
#include "imaging/files/ExifBlock.h"
#include "imaging/files/Format.h"
#include "imaging/files/Metadata.h"

#include <QtEndian>
#include <array>
#include <libheif/heif.h>
#include <memory>
#include <vector>

namespace lumora {

namespace {

// Loading its codecs takes several milliseconds.
const LateLibrary heif("heif", 1);
LUMORA_LATE(heif, heif_check_filetype);
LUMORA_LATE(heif, heif_context_alloc);
LUMORA_LATE(heif, heif_context_free);
LUMORA_LATE(heif, heif_context_get_primary_image_handle);
LUMORA_LATE(heif, heif_context_read_from_reader);
LUMORA_LATE(heif, heif_context_set_maximum_image_size_limit);
LUMORA_LATE(heif, heif_decode_image);
LUMORA_LATE(heif, heif_decoding_options_alloc);
LUMORA_LATE(heif, heif_decoding_options_free);
LUMORA_LATE(heif, heif_image_get_bits_per_pixel_range);
LUMORA_LATE(heif, heif_image_get_height);
LUMORA_LATE(heif, heif_image_get_plane_readonly);
LUMORA_LATE(heif, heif_image_get_width);
LUMORA_LATE(heif, heif_image_handle_get_height);
LUMORA_LATE(heif, heif_image_handle_get_ispe_height);
LUMORA_LATE(heif, heif_image_handle_get_ispe_width);
LUMORA_LATE(heif, heif_image_handle_get_list_of_metadata_block_IDs);
LUMORA_LATE(heif, heif_image_handle_get_list_of_thumbnail_IDs);
LUMORA_LATE(heif, heif_image_handle_get_luma_bits_per_pixel);
LUMORA_LATE(heif, heif_image_handle_get_metadata);
LUMORA_LATE(heif, heif_image_handle_get_metadata_size);
LUMORA_LATE(heif, heif_image_handle_get_metadata_type);
LUMORA_LATE(heif, heif_image_handle_get_raw_color_profile);
LUMORA_LATE(heif, heif_image_handle_get_raw_color_profile_size);
LUMORA_LATE(heif, heif_image_handle_get_thumbnail);
LUMORA_LATE(heif, heif_image_handle_get_width);
LUMORA_LATE(heif, heif_image_handle_has_alpha_channel);
LUMORA_LATE(heif, heif_image_handle_release);
LUMORA_LATE(heif, heif_image_release);

using Context = std::unique_ptr<heif_context, void (*)(heif_context *)>;
using Handle = std::unique_ptr<const heif_image_handle, void (*)(const heif_image_handle *)>;
using Image = std::unique_ptr<const heif_image, void (*)(const heif_image *)>;

/// Later versions of the library have more members; of version 1 are these four.
const heif_reader reader = [] {
    heif_reader calls = {};
    calls.reader_api_version = 1;
    calls.get_position = [](void *source) {
        return static_cast<int64_t>(static_cast<Source *>(source)->device().pos());
    };
    calls.read = [](void *to, std::size_t count, void *source) {
        return static_cast<Source *>(source)->device().read(static_cast<char *>(to), static_cast<qint64>(count)) ==
                       static_cast<qint64>(count)
                   ? 0
                   : 1;
    };
    calls.seek = [](int64_t position, void *source) {
        auto *from = static_cast<Source *>(source);
        return position >= 0 && position <= from->size() && from->device().seek(position) ? 0 : 1;
    };
    calls.wait_for_file_size = [](int64_t size, void *source) {
        return size <= static_cast<Source *>(source)->size() ? heif_reader_grow_status_size_reached
                                                             : heif_reader_grow_status_size_beyond_eof;
    };
    return calls;
}();

struct Opened {
    Context context{nullptr, heif_context_free};
    Handle handle{nullptr, heif_image_handle_release};
    PictureError error = PictureError::Damaged;
    QString text;
};

PictureError pictureError(const heif_error &error) {
    switch (error.code) {
    case heif_error_Memory_allocation_error: // also of a size that the library refuses to allocate
        return error.subcode == heif_suberror_Security_limit_exceeded ? PictureError::TooLarge : PictureError::NoMemory;
    case heif_error_Unsupported_filetype:
    case heif_error_Unsupported_feature:
        return PictureError::TooRare;
    default:
        return PictureError::Damaged;
    }
}

Opened open(Source &source) {
    Opened opened;
    opened.context.reset(heif_context_alloc());
    source.device().seek(0);
    heif_error error = heif_context_read_from_reader(opened.context.get(), &reader, &source, nullptr);
    heif_image_handle *handle = nullptr;
    if (error.code == heif_error_Ok) {
        error = heif_context_get_primary_image_handle(opened.context.get(), &handle);
    }
    if (handle != nullptr) {
        // A grid has a size of its own, for which libheif would ask for gigabytes whatever the header says. The size of
        // a tile is free.
        constexpr int largestTile = 4096;
        const int side = std::max(heif_image_handle_get_ispe_width(handle), heif_image_handle_get_ispe_height(handle));
        heif_context_set_maximum_image_size_limit(opened.context.get(), std::max(2 * side, largestTile));
    }
    opened.handle.reset(handle);
    opened.error = pictureError(error);
    opened.text = QString::fromUtf8(error.message).trimmed();
    return opened;
}

QByteArray profileOf(const heif_image_handle *handle) {
    QByteArray profile(static_cast<qsizetype>(heif_image_handle_get_raw_color_profile_size(handle)), '\0');
    if (profile.isEmpty() || heif_image_handle_get_raw_color_profile(handle, profile.data()).code != heif_error_Ok) {
        return {};
    }
    return profile;
}

void copyRows(const uint8_t *from, int stride, int channels, const PixelView &view) {
    for (int y = 0; y < view.height; ++y) {
        const uint8_t *source = from + static_cast<std::ptrdiff_t>(y) * stride;
        std::uint8_t *pixel = view.row(y);
        for (int x = 0; x < view.width; ++x, source += channels, pixel += 4) {
            pixel[0] = source[2];
            pixel[1] = source[1];
            pixel[2] = source[0];
            pixel[3] = channels == 4 ? source[3] : 255;
        }
    }
}

// The coded picture has its own idea of its size, which need not be the header's.
bool hasPromisedSize(const heif_image_handle *handle, int width, int height) {
    return width == heif_image_handle_get_width(handle) && height == heif_image_handle_get_height(handle);
}

// Samples of more than 8 bits, converted with the profile before they are cut.
void copyDeepRows(const uint8_t *from, int stride, int channels, int bits, const QByteArray &profile,
                  const PixelView &view) {
    const DeepColour colour(DeepChannels::Rgb, profile);
    const int highest = (1 << bits) - 1;
    std::vector<std::uint16_t> samples(std::size_t{4} * view.width, UINT16_MAX);
    for (int y = 0; y < view.height; ++y) {
        const uint8_t *source = from + static_cast<std::ptrdiff_t>(y) * stride;
        for (int x = 0; x < view.width; ++x) {
            for (int c = 0; c < channels; ++c, source += 2) {
                const int sample = std::min<int>(qFromLittleEndian<quint16>(source), highest);
                samples[4 * x + c] = static_cast<std::uint16_t>((sample * UINT16_MAX + highest / 2) / highest);
            }
        }
        colour.convert(samples.data(), view.width, view.row(y));
    }
}

Decoded decodeHandle(const heif_image_handle *handle) {
    const bool alpha = heif_image_handle_has_alpha_channel(handle) != 0;
    const QByteArray profile = profileOf(handle);
    const int bits = heif_image_handle_get_luma_bits_per_pixel(handle);
    const bool deep = bits > 8 && bits <= 16 && !profile.isEmpty();
    const std::unique_ptr<heif_decoding_options, void (*)(heif_decoding_options *)> options(
        heif_decoding_options_alloc(), heif_decoding_options_free);
    options->convert_hdr_to_8bit = deep ? 0 : 1;
    constexpr heif_chroma plain[] = {heif_chroma_interleaved_RGB, heif_chroma_interleaved_RGBA};
    constexpr heif_chroma wide[] = {heif_chroma_interleaved_RRGGBB_LE, heif_chroma_interleaved_RRGGBBAA_LE};
    heif_image *raw = nullptr;
    const heif_error error =
        heif_decode_image(handle, &raw, heif_colorspace_RGB, (deep ? wide : plain)[alpha ? 1 : 0], options.get());
    const Image image(raw, heif_image_release);
    if (error.code != heif_error_Ok) {
        return refused(pictureError(error), QString::fromUtf8(error.message).trimmed());
    }
    int stride = 0;
    const uint8_t *pixels = heif_image_get_plane_readonly(image.get(), heif_channel_interleaved, &stride);
    const int width = heif_image_get_width(image.get(), heif_channel_interleaved);
    const int height = heif_image_get_height(image.get(), heif_channel_interleaved);
    if (!pixels || !hasPromisedSize(handle, width, height)) {
        return refused(PictureError::Damaged,
                       QStringLiteral("%1 x %2 pixels are not what the header says").arg(width).arg(height));
    }
    Decoded result;
    result.picture = newPicture(width, height, !alpha);
    if (result.picture.isNull()) {
        return refused(PictureError::NoMemory, QStringLiteral("no memory for the pixels"));
    }
    const int channels = alpha ? 4 : 3;
    if (deep) {
        copyDeepRows(pixels, stride, channels,
                     heif_image_get_bits_per_pixel_range(image.get(), heif_channel_interleaved), profile,
                     writeView(result.picture));
    } else {
        copyRows(pixels, stride, channels, writeView(result.picture));
        result.profile = profile;
    }
    return result;
}

} // namespace

bool isHeif(const QByteArray &head) {
    constexpr int least = 12;
    return head.size() >= least && head.mid(4, 4) == "ftyp" && heif.isThere() &&
           heif_check_filetype(reinterpret_cast<const uint8_t *>(head.constData()), static_cast<int>(head.size())) ==
               heif_filetype_yes_supported;
}

FileHeader readHeifHeader(Source &source) {
    const Opened opened = open(source);
    if (!opened.handle) {
        return refusedHeader(opened.error, opened.text);
    }
    FileHeader header;
    header.width = heif_image_handle_get_width(opened.handle.get());
    header.height = heif_image_handle_get_height(opened.handle.get());
    header.packing = Packing::Modern;
    header.unpackedBytes = static_cast<double>(header.width) * header.height;
    header.packedBytes = static_cast<double>(source.size());
    return header;
}

Decoded decodeHeif(Source &source, const FileHeader &) {
    const Opened opened = open(source);
    return opened.handle ? decodeHandle(opened.handle.get()) : refused(opened.error, opened.text);
}

Decoded decodeSmallHeif(Source &source, const FileHeader &header, int longerSide) {
    const Opened opened = open(source);
    heif_item_id id = 0;
    heif_image_handle *raw = nullptr;
    if (opened.handle && heif_image_handle_get_list_of_thumbnail_IDs(opened.handle.get(), &id, 1) == 1) {
        heif_image_handle_get_thumbnail(opened.handle.get(), id, &raw);
    }
    const Handle thumbnail(raw, heif_image_handle_release);
    const int width = thumbnail ? heif_image_handle_get_width(raw) : 0;
    const int height = thumbnail ? heif_image_handle_get_height(raw) : 0;
    const bool good = std::max(width, height) >= longerSide && hasShapeOf(header, width, height);
    Decoded small = good ? decodeHandle(raw) : refused(PictureError::Damaged, {});
    return small.error == PictureError::None ? small : decodeHeif(source, header);
}

PictureMetadata readHeifMetadata(Source &source) {
    constexpr int most = 16; // blocks of metadata
    constexpr std::size_t mostBytes = 256 << 10;
    const Opened opened = open(source);
    std::array<heif_item_id, most> ids{};
    const int count =
        opened.handle ? heif_image_handle_get_list_of_metadata_block_IDs(opened.handle.get(), nullptr, ids.data(), most)
                      : 0;
    PictureMetadata result;
    for (int i = 0; i < count; ++i) {
        const std::size_t size = heif_image_handle_get_metadata_size(opened.handle.get(), ids[i]);
        const QByteArray type = heif_image_handle_get_metadata_type(opened.handle.get(), ids[i]);
        QByteArray bytes(static_cast<qsizetype>(std::min(size, mostBytes)), '\0');
        if (size <= 4 || size > mostBytes ||
            heif_image_handle_get_metadata(opened.handle.get(), ids[i], bytes.data()).code != heif_error_Ok) {
            continue;
        }
        if (type == "Exif") {
            // ISO 23008-12, A.2.1: how far the TIFF header is from here.
            const qint64 skipped = qFromBigEndian<quint32>(bytes.constData());
            result.exif = exifBlock(bytes.mid(static_cast<qsizetype>(std::min<qint64>(4 + skipped, bytes.size()))));
        } else if (type == "mime") {
            result.xmp = bytes;
        }
    }
    return result;
}

} // namespace lumora
