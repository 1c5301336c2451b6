// Writing JPEG with libjpeg-turbo.
#include "imaging/Picture.h"
#include "imaging/files/Flatten.h"
#include "imaging/files/Format.h"

#include <array>
#include <csetjmp>
#include <cstdio>
#include <jpeglib.h>

#include <jerror.h>

namespace lumora {

namespace {

constexpr int defaultQuality = 90;

// See the decoder: libjpeg leaves by longjmp.
struct Failure {
    jpeg_error_mgr manager{};
    std::jmp_buf back{};
    std::array<char, JMSG_LENGTH_MAX> text{};
};

[[noreturn]] void fail(j_common_ptr codec) {
    auto *failure = reinterpret_cast<Failure *>(codec->err);
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
        m_failure.manager.error_exit = fail;
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

    // `spare` holds a row, for those that must be laid onto white first.
    bool write(const ConstPixelView &view, int quality, std::uint8_t *spare) {
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
    Failure m_failure;
    Drain m_drain;
};

} // namespace

QString writeJpeg(const QImage &picture, QIODevice &target, int quality) {
    const auto encoder = std::make_unique<Encoder>(target);
    std::vector<std::uint8_t> spare(picture.hasAlphaChannel() ? picture.width() * 4 : 0);
    const bool written =
        encoder->write(readView(picture), std::clamp(quality, 1, 100), spare.empty() ? nullptr : spare.data());
    return written ? QString() : encoder->text();
}

QString writeJpeg(const QImage &picture, QIODevice &target) {
    return writeJpeg(picture, target, defaultQuality);
}

} // namespace lumora
