#include "imaging/files/Exif.h"

#include <libexif/exif-data.h>
#include <memory>

namespace lumora {

Exif readExif(const QByteArray &data) {
    static const QByteArray lead("Exif\0\0", 6);
    const QByteArray whole = data.startsWith(lead) ? data : lead + data;
    const std::unique_ptr<ExifData, void (*)(ExifData *)> parsed(exif_data_new(), exif_data_unref);
    if (!parsed) {
        return {};
    }
    exif_data_load_data(parsed.get(), reinterpret_cast<const unsigned char *>(whole.constData()),
                        static_cast<unsigned>(whole.size()));
    Exif result;
    if (const ExifEntry *entry = exif_content_get_entry(parsed->ifd[EXIF_IFD_0], EXIF_TAG_ORIENTATION);
        entry && entry->format == EXIF_FORMAT_SHORT && entry->components >= 1 && entry->size >= 2) {
        const int value = exif_get_short(entry->data, exif_data_get_byte_order(parsed.get()));
        result.orientation = value >= 1 && value <= 8 ? value : 1;
    }
    if (parsed->data && parsed->size > 0) {
        result.thumbnail = QByteArray(reinterpret_cast<const char *>(parsed->data), parsed->size);
    }
    return result;
}

} // namespace lumora
