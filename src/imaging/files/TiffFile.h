// libtiff on a QIODevice: open, close, and its messages caught instead of printed.
#pragma once

#include <QIODevice>
#include <QString>
#include <tiffio.h>

namespace lumora {

class TiffFile {
  public:
    /// Mode "r" or "w", as TIFFOpen has them. When reading, data cut off by the end of the file come out as zeros.
    TiffFile(QIODevice &device, const char *mode);
    TiffFile(const TiffFile &) = delete;
    TiffFile &operator=(const TiffFile &) = delete;
    ~TiffFile();

    /// Null when the file could not be opened.
    TIFF *handle() const { return m_tiff; }

    /// The first error message, or an empty text.
    const QString &text() const { return m_text; }
    /// Forgets it: what is said about tags does not concern the pixels.
    void forgetText() { m_text.clear(); }

    /// The value of a tag that occurs once, or `fallback` when it is missing.
    template <typename Value> Value field(uint32_t tag, Value fallback) const {
        Value value{};
        return TIFFGetFieldDefaulted(m_tiff, tag, &value) == 1 ? value : fallback;
    }

  private:
    static int keepMessage(TIFF *, void *file, const char *, const char *format, va_list arguments);

    QIODevice &m_device;
    QString m_text;
    TIFF *m_tiff = nullptr;
};

} // namespace lumora
