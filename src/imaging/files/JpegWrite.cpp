// Writing JPEG with libjpeg-turbo. Strips of rows are coded on all cores as pictures of their own; their coded data,
// joined by restart markers (ITU-T T.81, B.2.1), make the scan of the whole. The library codes on one core; in strips
// 24 megapixels take 0.6 of its time on two cores (bench: JpegEncode90 beside JpegEncode90ByQt).
#include "imaging/Picture.h"
#include "imaging/files/Flatten.h"
#include "imaging/files/Format.h"
#include "imaging/files/Metadata.h"
#include "imaging/files/MetadataBlocks.h"
#include "imaging/files/Strips.h"

#include <QBuffer>
#include <QtEndian>
#include <array>
#include <cmath>
#include <csetjmp>
#include <cstdio>
#include <jpeglib.h>

#include <jerror.h>

namespace lumora {

namespace {

constexpr int defaultQuality = 90;

// See the decoder: libjpeg leaves by longjmp.
struct WriteFailure {
    jpeg_error_mgr manager{};
    std::jmp_buf back{};
    std::array<char, JMSG_LENGTH_MAX> text{};
};

[[noreturn]] void failWriting(j_common_ptr codec) {
    auto *failure = reinterpret_cast<WriteFailure *>(codec->err);
    codec->err->format_message(codec, failure->text.data());
    std::longjmp(failure->back, 1); // NOLINT(cert-err52-cpp)
}

struct Drain {
    jpeg_destination_mgr manager{};
    QIODevice *target = nullptr;
    std::array<JOCTET, 65536> buffer{};

    void reset() {
        manager.next_output_byte = buffer.data();
        manager.free_in_buffer = buffer.size();
    }
    bool write(std::size_t count) {
        return target->write(reinterpret_cast<const char *>(buffer.data()), static_cast<qint64>(count)) ==
               static_cast<qint64>(count);
    }
};

void startDrain(j_compress_ptr encoder) {
    reinterpret_cast<Drain *>(encoder->dest)->reset();
}

boolean emptyDrain(j_compress_ptr encoder) {
    auto *drain = reinterpret_cast<Drain *>(encoder->dest);
    if (!drain->write(drain->buffer.size())) {
        ERREXIT(encoder, JERR_FILE_WRITE);
    }
    drain->reset();
    return TRUE;
}

void finishDrain(j_compress_ptr encoder) {
    auto *drain = reinterpret_cast<Drain *>(encoder->dest);
    if (!drain->write(drain->buffer.size() - drain->manager.free_in_buffer)) {
        ERREXIT(encoder, JERR_FILE_WRITE);
    }
}

class Encoder {
  public:
    explicit Encoder(QIODevice &target) {
        m_codec.err = jpeg_std_error(&m_failure.manager);
        m_failure.manager.error_exit = failWriting;
        m_failure.manager.emit_message = [](j_common_ptr, int) {};
        m_failure.manager.output_message = [](j_common_ptr) {};
        m_drain.target = &target;
        m_drain.manager.init_destination = startDrain;
        m_drain.manager.empty_output_buffer = emptyDrain;
        m_drain.manager.term_destination = finishDrain;
    }
    Encoder(const Encoder &) = delete;
    Encoder &operator=(const Encoder &) = delete;
    ~Encoder() { jpeg_destroy_compress(&m_codec); }

    // `spare` holds a row, for those that must be laid onto white first; `interval` counts 16 x 16 blocks between
    // restart markers, 0 for none.
    bool write(const ConstPixelView &view, int quality, unsigned interval, std::uint8_t *spare) {
        if (setjmp(m_failure.back) != 0) { // NOLINT(cert-err52-cpp)
            return false;
        }
        jpeg_create_compress(&m_codec);
        m_codec.dest = &m_drain.manager;
        m_codec.image_width = static_cast<JDIMENSION>(view.width);
        m_codec.image_height = static_cast<JDIMENSION>(view.height);
        m_codec.input_components = 4;
        m_codec.in_color_space = JCS_EXT_BGRX;
        jpeg_set_defaults(&m_codec); // chroma at half size both ways
        jpeg_set_quality(&m_codec, quality, TRUE);
        m_codec.restart_interval = interval;
        jpeg_start_compress(&m_codec, TRUE);
        while (m_codec.next_scanline < m_codec.image_height) {
            const std::uint8_t *pixels = view.row(static_cast<int>(m_codec.next_scanline));
            if (spare) {
                rowOntoWhite(pixels, view.width, spare);
            }
            JSAMPROW row = spare ? spare : const_cast<JSAMPROW>(pixels);
            jpeg_write_scanlines(&m_codec, &row, 1);
        }
        jpeg_finish_compress(&m_codec);
        return true;
    }

    QString text() const { return QString::fromLatin1(m_failure.text.data()); }

  private:
    jpeg_compress_struct m_codec{};
    WriteFailure m_failure;
    Drain m_drain;
};

constexpr int codedBlock = 16; // rows and columns that are coded together, with chroma at half size
constexpr int startOfFrame = 0xC0;
constexpr int scanMarker = 0xDA;

/// About a million pixels, in whole blocks; all of a small picture and of one too high for the format, which then says
/// so.
int rowsOfStrip(const ConstPixelView &view) {
    constexpr int pixels = 1 << 20;
    const int rows = std::max(1, pixels / view.width / codedBlock) * codedBlock;
    return view.height <= 2 * rows || view.height > JPEG_MAX_DIMENSION ? view.height : rows;
}

struct CodedStrip {
    QByteArray file; ///< a JPEG file of these rows
    QString error;
};

CodedStrip coded(const ConstPixelView &rows, int quality, unsigned interval, bool hasAlpha) {
    CodedStrip strip;
    QBuffer buffer(&strip.file);
    buffer.open(QIODevice::WriteOnly);
    const auto encoder = std::make_unique<Encoder>(buffer);
    std::vector<std::uint8_t> spare(hasAlpha ? static_cast<std::size_t>(rows.width) * 4 : 0);
    if (!encoder->write(rows, quality, interval, spare.empty() ? nullptr : spare.data())) {
        strip.error = encoder->text();
    }
    return strip;
}

/// Where the segment after that marker begins, in a file that libjpeg has just written.
qsizetype segmentOf(const QByteArray &file, int marker) {
    qsizetype at = 2;
    while (static_cast<uchar>(file[at + 1]) != marker) {
        at += 2 + qFromBigEndian<quint16>(file.constData() + at + 2);
    }
    return at + 2;
}

void setHeight(QByteArray &file, int height) {
    qToBigEndian(static_cast<quint16>(height), file.data() + segmentOf(file, startOfFrame) + 3);
}

/// What the strip adds to the whole file: the first one its header, all their coded data, each but the last a restart
/// marker, the last the end of the file.
QByteArray part(const QByteArray &file, int number, bool last) {
    const qsizetype scan = segmentOf(file, scanMarker);
    const qsizetype begin = number == 0 ? 0 : scan + qFromBigEndian<quint16>(file.constData() + scan);
    if (last) {
        return file.mid(begin);
    }
    const QByteArray restart{"\xFF" + QByteArray(1, static_cast<char>(0xD0 + number % 8))};
    return file.mid(begin, file.size() - 2 - begin) + restart;
}

/// Nothing where there are no data or more than a segment can hold.
QByteArray segment(int marker, const QByteArray &lead, const QByteArray &data) {
    constexpr qsizetype most = 65533;
    if (data.isEmpty() || lead.size() + data.size() > most) {
        return {};
    }
    QByteArray result(4, '\xFF');
    result[1] = static_cast<char>(marker);
    qToBigEndian(static_cast<quint16>(2 + lead.size() + data.size()), result.data() + 2);
    return result + lead + data;
}

/// Puts the metadata after the JFIF segment, with which every file of libjpeg begins, and the resolution into it.
void addMetadata(QByteArray &file, const MetadataBlocks &blocks) {
    constexpr qsizetype unit = 13;
    constexpr qsizetype end = 20;
    constexpr double most = 65535;
    if (blocks.dotsPerInchX > 0 && std::max(blocks.dotsPerInchX, blocks.dotsPerInchY) <= most) {
        file[unit] = 1; // dots per inch
        qToBigEndian(static_cast<quint16>(std::lround(blocks.dotsPerInchX)), file.data() + unit + 1);
        qToBigEndian(static_cast<quint16>(std::lround(blocks.dotsPerInchY)), file.data() + unit + 3);
    }
    const QByteArray resources = blocks.iptc.isEmpty() ? QByteArray() : resourcesWithIptc(blocks.iptc);
    file.insert(end, segment(0xE1, QByteArray("Exif\0\0", 6), blocks.exif) +
                         segment(0xE1, QByteArray("http://ns.adobe.com/xap/1.0/\0", 29), blocks.xmp) +
                         segment(0xED, QByteArray("Photoshop 3.0\0", 14), resources) +
                         segment(0xFE, {}, blocks.texts.value("Comment").toUtf8()));
}

QString writeWithQuality(const QImage &picture, QIODevice &target, int quality, const MetadataBlocks &blocks) {
    const ConstPixelView view = readView(picture);
    const int stripRows = rowsOfStrip(view);
    const unsigned blocksAcross = (static_cast<unsigned>(view.width) + codedBlock - 1) / codedBlock;
    const unsigned interval =
        stripRows < view.height ? blocksAcross * static_cast<unsigned>(stripRows / codedBlock) : 0;
    QString error;
    int strips = 0;
    packStrips<CodedStrip>(
        view.height, stripRows,
        [&](int firstRow, int endRow) {
            const ConstPixelView rows{view.row(firstRow), view.width, endRow - firstRow, view.stride};
            return coded(rows, std::clamp(quality, 1, 100), interval, picture.hasAlphaChannel());
        },
        [&](CodedStrip strip) {
            error = strip.error;
            if (!error.isEmpty()) {
                return false;
            }
            if (strips == 0 && interval > 0) {
                setHeight(strip.file, view.height);
            }
            if (strips == 0) {
                addMetadata(strip.file, blocks);
            }
            const bool last = (strips + 1) * qint64(stripRows) >= view.height;
            const QByteArray bytes = part(strip.file, strips, last);
            if (target.write(bytes) != bytes.size()) {
                error = QStringLiteral("cannot write: %1").arg(target.errorString());
            }
            ++strips;
            return error.isEmpty();
        });
    return error;
}

} // namespace

QString writeJpeg(const QImage &picture, QIODevice &target, int quality) {
    return writeWithQuality(picture, target, quality, {});
}

QString writeJpeg(const QImage &picture, QIODevice &target, const MetadataBlocks &blocks) {
    return writeWithQuality(picture, target, defaultQuality, blocks);
}

} // namespace lumora
