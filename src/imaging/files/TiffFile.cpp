#include "imaging/files/TiffFile.h"

#include <array>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <memory>

namespace lumora {

namespace {

constexpr tmsize_t mostMemoryAtOnce = 1 << 30; // a strip or tile beyond that belongs to no picture taken in here

QIODevice *deviceOf(thandle_t handle) {
    return static_cast<QIODevice *>(handle);
}

// A strip that begins inside the file and ends beyond it is filled up, so that its first rows can be decoded.
tmsize_t readBytes(thandle_t handle, void *to, tmsize_t count) {
    const qint64 taken = deviceOf(handle)->read(static_cast<char *>(to), count);
    if (taken <= 0) {
        return 0;
    }
    std::memset(static_cast<char *>(to) + taken, 0, static_cast<std::size_t>(count - taken));
    return count;
}

tmsize_t writeBytes(thandle_t handle, void *from, tmsize_t count) {
    return deviceOf(handle)->write(static_cast<const char *>(from), count);
}

toff_t seek(thandle_t handle, toff_t offset, int from) {
    QIODevice *device = deviceOf(handle);
    const qint64 base = from == SEEK_CUR ? device->pos() : from == SEEK_END ? device->size() : 0;
    const qint64 target = base + static_cast<qint64>(offset);
    const bool reachable = target >= 0 && (device->isWritable() || target <= device->size());
    return reachable && device->seek(target) ? static_cast<toff_t>(target) : static_cast<toff_t>(-1);
}

} // namespace

int TiffFile::keepMessage(TIFF *, void *file, const char *, const char *format, va_list arguments) {
    auto *self = static_cast<TiffFile *>(file);
    if (self->m_text.isEmpty()) {
        std::array<char, 300> text{};
        std::vsnprintf(text.data(), text.size(), format, arguments);
        self->m_text = QString::fromLocal8Bit(text.data());
    }
    return 1; // keeps libtiff from printing it
}

TiffFile::TiffFile(QIODevice &device, const char *mode) : m_device(device) {
    const std::unique_ptr<TIFFOpenOptions, void (*)(TIFFOpenOptions *)> options(TIFFOpenOptionsAlloc(),
                                                                                TIFFOpenOptionsFree);
    if (!options) {
        return;
    }
    TIFFOpenOptionsSetMaxSingleMemAlloc(options.get(), mostMemoryAtOnce);
    TIFFOpenOptionsSetErrorHandlerExtR(options.get(), keepMessage, this);
    TIFFOpenOptionsSetWarningHandlerExtR(
        options.get(), [](TIFF *, void *, const char *, const char *, va_list) { return 1; }, nullptr);
    m_tiff = TIFFClientOpenExt(
        "picture", mode, &m_device, readBytes, writeBytes, seek, [](thandle_t) { return 0; },
        [](thandle_t handle) { return static_cast<toff_t>(deviceOf(handle)->size()); },
        [](thandle_t, void **, toff_t *) { return 0; }, [](thandle_t, void *, toff_t) {}, options.get());
}

TiffFile::~TiffFile() {
    if (m_tiff) {
        TIFFClose(m_tiff);
    }
}

} // namespace lumora
