// Reading JPEG with libjpeg-turbo, straight into the picture's buffer.
#include "imaging/Picture.h"
#include "imaging/files/Exif.h"
#include "imaging/files/Format.h"
#include "imaging/files/JpegMarkers.h"

#include <QBuffer>
#include <array>
#include <csetjmp>
#include <cstdio>
#include <jpeglib.h>

#include <jerror.h>

namespace lumora {

namespace {

// libjpeg reports a fatal error by a call that must not return, so each call into it runs inside `guarded`.
struct JpegFailure {
    jpeg_error_mgr manager{};
    std::jmp_buf back{};
    std::array<char, JMSG_LENGTH_MAX> text{};
};

[[noreturn]] void failReading(j_common_ptr codec) {
    auto *failure = reinterpret_cast<JpegFailure *>(codec->err);
    codec->err->format_message(codec, failure->text.data());
    std::longjmp(failure->back, 1); // NOLINT(cert-err52-cpp) the library has no other way
}

// Some hundred scans of a few bytes each would keep the decoder busy for minutes.
void countScans(j_common_ptr codec) {
    constexpr int mostScans = 100;
    auto *decoder = reinterpret_cast<j_decompress_ptr>(codec);
    if (decoder->input_scan_number > mostScans) {
        ERREXIT(decoder, JERR_BAD_PROGRESSION);
    }
}

// Feeds the file in portions. At its end comes the marker for it, again and again, as libjpeg's own sources do.
struct JpegFeed {
    jpeg_source_mgr manager{};
    Source *source = nullptr;
    qint64 offset = 0;
    bool ended = false;
    std::array<JOCTET, 65536> buffer{};
};

boolean fillFeed(j_decompress_ptr decoder) {
    auto *feed = reinterpret_cast<JpegFeed *>(decoder->src);
    qint64 count = feed->source->read(feed->offset, feed->buffer.data(), feed->buffer.size());
    feed->offset += count;
    if (count == 0) {
        feed->ended = true;
        feed->buffer[0] = 0xFF;
        feed->buffer[1] = JPEG_EOI;
        count = 2;
    }
    feed->manager.next_input_byte = feed->buffer.data();
    feed->manager.bytes_in_buffer = static_cast<std::size_t>(count);
    return TRUE;
}

void skipFeed(j_decompress_ptr decoder, long count) {
    auto *feed = reinterpret_cast<JpegFeed *>(decoder->src);
    const auto buffered = static_cast<long>(feed->manager.bytes_in_buffer);
    if (count > buffered) {
        feed->offset += count - buffered;
        feed->manager.bytes_in_buffer = 0;
    } else if (count > 0) {
        feed->manager.next_input_byte += count;
        feed->manager.bytes_in_buffer -= static_cast<std::size_t>(count);
    }
}

class JpegDecoder {
  public:
    explicit JpegDecoder(Source &source) {
        m_codec.err = jpeg_std_error(&m_failure.manager);
        m_failure.manager.error_exit = failReading;
        m_failure.manager.emit_message = [](j_common_ptr, int) {};
        m_failure.manager.output_message = [](j_common_ptr) {};
        m_feed.source = &source;
        m_feed.manager.init_source = [](j_decompress_ptr) {};
        m_feed.manager.fill_input_buffer = fillFeed;
        m_feed.manager.skip_input_data = skipFeed;
        m_feed.manager.resync_to_restart = jpeg_resync_to_restart;
        m_feed.manager.term_source = [](j_decompress_ptr) {};
        m_progress.progress_monitor = countScans;
    }
    JpegDecoder(const JpegDecoder &) = delete;
    JpegDecoder &operator=(const JpegDecoder &) = delete;
    ~JpegDecoder() { jpeg_destroy_decompress(&m_codec); }

    // Reads the header, asks for the smallest of the scales 1/8 to 8/8 whose longer side is at least `longerSide`.
    bool start(int longerSide) {
        return guarded([this, longerSide] {
            jpeg_create_decompress(&m_codec);
            m_codec.src = &m_feed.manager;
            m_codec.progress = &m_progress;
            jpeg_read_header(&m_codec, TRUE);
            const bool inks = m_codec.jpeg_color_space == JCS_CMYK || m_codec.jpeg_color_space == JCS_YCCK;
            m_codec.out_color_space = inks ? JCS_CMYK : JCS_EXT_BGRA;
            const auto longer = static_cast<qint64>(std::max(m_codec.image_width, m_codec.image_height));
            m_codec.scale_denom = 8;
            m_codec.scale_num = 1;
            while (m_codec.scale_num < 8 && longer * m_codec.scale_num / 8 < longerSide) {
                ++m_codec.scale_num;
            }
            jpeg_calc_output_dimensions(&m_codec);
        });
    }

    bool rows(const PixelView &view) {
        return guarded([this, &view] {
            jpeg_start_decompress(&m_codec);
            while (m_codec.output_scanline < m_codec.output_height) {
                JSAMPROW rows[8];
                const int first = static_cast<int>(m_codec.output_scanline);
                const int count = std::min(8, view.height - first);
                for (int i = 0; i < count; ++i) {
                    rows[i] = view.row(first + i);
                }
                jpeg_read_scanlines(&m_codec, rows, static_cast<JDIMENSION>(count));
            }
        });
    }

    const jpeg_decompress_struct &codec() const { return m_codec; }
    bool cutOff() const { return m_feed.ended; }
    bool damaged() const { return m_failure.manager.num_warnings > 0; }
    bool outOfMemory() const { return m_failure.manager.msg_code == JERR_OUT_OF_MEMORY; }
    QString text() const { return QString::fromLatin1(m_failure.text.data()); }
    Channels channels() const {
        if (m_codec.out_color_space == JCS_CMYK) {
            return m_codec.saw_Adobe_marker ? Channels::InvertedCmyk : Channels::Cmyk;
        }
        return m_codec.jpeg_color_space == JCS_GRAYSCALE ? Channels::Grey : Channels::Bgra;
    }

  private:
    // The step must own nothing: an error leaves it without unwinding.
    template <typename Step> bool guarded(Step step) {
        if (setjmp(m_failure.back) != 0) { // NOLINT(cert-err52-cpp)
            return false;
        }
        step();
        return true;
    }

    jpeg_decompress_struct m_codec{};
    JpegFailure m_failure;
    JpegFeed m_feed;
    jpeg_progress_mgr m_progress{};
};

// Each scan goes over the whole picture, and a scan of a few bytes is enough for that. Programs write ten or so.
int mostScansOf(const FileHeader &header) {
    constexpr double mostPixels = 2.4e9; // of all scans together, about a second's work
    return std::clamp(static_cast<int>(mostPixels / header.width / header.height), 16, 100);
}

Decoded decodeAtLeast(Source &source, const FileHeader &header, int longerSide) {
    const JpegMarkers markers = readJpegMarkers(source);
    if (const int most = mostScansOf(header); markers.progressive && countJpegScans(source, markers, most) > most) {
        return refused(PictureError::TooRare, QStringLiteral("more than %1 scans").arg(most));
    }
    const auto decoder = std::make_unique<JpegDecoder>(source);
    if (!decoder->start(longerSide)) {
        return refused(PictureError::Damaged, decoder->text());
    }
    const jpeg_decompress_struct &codec = decoder->codec();
    if (static_cast<int>(codec.image_width) != header.width || static_cast<int>(codec.image_height) != header.height) {
        return refused(PictureError::Damaged, QStringLiteral("two frame headers that differ"));
    }
    Decoded result;
    result.picture = newPicture(static_cast<int>(codec.output_width), static_cast<int>(codec.output_height));
    if (result.picture.isNull()) {
        return refused(PictureError::NoMemory, QStringLiteral("no memory for the pixels"));
    }
    if (!decoder->rows(writeView(result.picture))) {
        if (codec.output_scanline == 0) {
            return refused(decoder->outOfMemory() ? PictureError::NoMemory : PictureError::Damaged, decoder->text());
        }
        greyFrom(result.picture, static_cast<int>(codec.output_scanline));
        result.reason = decoder->text();
    } else if (decoder->cutOff()) {
        result.reason = QStringLiteral("cut off: the end of the data is missing");
    } else if (decoder->damaged()) {
        result.reason = QStringLiteral("damaged in places");
    }
    result.channels = decoder->channels();
    result.profile = markers.profile;
    return result;
}

// The picture in the EXIF data, when it is large enough and shows the same cut.
Decoded decodeEmbedded(const QByteArray &thumbnail, const FileHeader &header, int longerSide) {
    QBuffer buffer;
    buffer.setData(thumbnail);
    buffer.open(QIODevice::ReadOnly);
    Source source(buffer);
    const FileHeader small = isJpeg(thumbnail) ? readJpegHeader(source) : FileHeader();
    if (std::max(small.width, small.height) < longerSide || std::max(small.width, small.height) > 1024 ||
        !hasShapeOf(header, small.width, small.height)) {
        return refused(PictureError::Damaged, {});
    }
    return decodeAtLeast(source, small, longerSide);
}

} // namespace

bool isJpeg(const QByteArray &head) {
    return head.startsWith("\xFF\xD8\xFF");
}

FileHeader readJpegHeader(Source &source) {
    const JpegMarkers markers = readJpegMarkers(source);
    if (!markers.complete) {
        return refusedHeader(PictureError::Damaged, QStringLiteral("no frame header or no pixel data"));
    }
    if (!markers.decodable) {
        return refusedHeader(PictureError::TooRare, QStringLiteral("lossless, hierarchical or of more than 8 bits"));
    }
    FileHeader header;
    header.width = markers.width;
    header.height = markers.height;
    header.orientation = markers.exif.isEmpty() ? 1 : readExif(markers.exif).orientation;
    header.packing = markers.arithmetic ? Packing::Modern : Packing::JpegBlocks;
    header.unpackedBytes = static_cast<double>(header.width) * header.height;
    header.packedBytes = static_cast<double>(source.size() - markers.dataStart);
    return header;
}

Decoded decodeJpeg(Source &source, const FileHeader &header) {
    return decodeAtLeast(source, header, std::max(header.width, header.height));
}

Decoded decodeSmallJpeg(Source &source, const FileHeader &header, int longerSide) {
    if (const QByteArray exif = readJpegMarkers(source).exif; !exif.isEmpty()) {
        Decoded embedded = decodeEmbedded(readExif(exif).thumbnail, header, longerSide);
        if (embedded.error == PictureError::None) {
            return embedded;
        }
    }
    return decodeAtLeast(source, header, longerSide);
}

} // namespace lumora
