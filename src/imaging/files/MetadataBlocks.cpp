#include "imaging/files/MetadataBlocks.h"

#include <QXmlStreamReader>
#include <algorithm>
#include <cmath>
#include <exiv2/exiv2.hpp>
#include <functional>
#include <mutex>
#include <set>

namespace lumora {

namespace {

constexpr std::size_t mostExifBytes = 65527; // of a JPEG segment less its lead
constexpr std::size_t mostOtherBytes = 65000;

const Exiv2::byte *contentOf(const QByteArray &data) {
    return reinterpret_cast<const Exiv2::byte *>(data.constData());
}

bool contains(const std::string &text, const char *part) {
    return text.find(part) != std::string::npos;
}

bool startsWith(const std::string &text, const char *lead) {
    return text.rfind(lead, 0) == 0;
}

// --- EXIF -----------------------------------------------------------------------------------------------------------

bool isPrivate(const Exiv2::Exifdatum &field) {
    const std::string name = field.tagName();
    if (field.groupName() == "GPSInfo" || contains(name, "Serial") || name == "GPSTag") {
        return true;
    }
    // The cameras' own notes have unknown fields, named by their numbers only, and some name the place.
    return Exiv2::ExifTags::isMakerGroup(field.groupName()) &&
           (startsWith(name, "0x") || name == "City" || name == "Country" || name == "State" || name == "Landmark");
}

/// Small pictures of the photo as it was, and how the pixels of the old file were stored.
bool isStale(const Exiv2::Exifdatum &field) {
    const std::string name = field.tagName();
    const std::string group = field.groupName();
    return group == "Thumbnail" || group == "Iop" || startsWith(group, "Image2") || startsWith(group, "Image3") ||
           startsWith(group, "SubImage") || contains(group, "Preview") || contains(name, "Preview") ||
           contains(name, "Thumbnail");
}

void eraseIf(Exiv2::ExifData &exif, const std::function<bool(const Exiv2::Exifdatum &)> &isUnwanted) {
    for (auto field = exif.begin(); field != exif.end();) {
        field = isUnwanted(*field) ? exif.erase(field) : std::next(field);
    }
}

bool has(const Exiv2::ExifData &exif, const char *key) {
    return exif.findKey(Exiv2::ExifKey(key)) != exif.end();
}

void addField(Exiv2::ExifData &exif, const char *key, const QString &text) {
    if (!text.isEmpty() && !has(exif, key)) {
        exif[key] = text.toStdString();
    }
}

bool isMakerNote(const Exiv2::Exifdatum &field) {
    return field.key() == "Exif.Photo.MakerNote" || field.groupName() == "MakerNote" ||
           Exiv2::ExifTags::isMakerGroup(field.groupName());
}

/// Without an unpacked note nobody knows what is in it.
bool hasReadableMakerNote(const Exiv2::ExifData &exif) {
    return std::any_of(exif.begin(), exif.end(),
                       [](const Exiv2::Exifdatum &field) { return Exiv2::ExifTags::isMakerGroup(field.groupName()); });
}

Exiv2::ExifData parsedExif(const QByteArray &block) {
    constexpr std::size_t mostUnpacked = 512 << 10; // values that overlap make more of it than a camera would
    Exiv2::ExifData exif;
    if (!block.isEmpty()) {
        Exiv2::ExifParser::decode(exif, contentOf(block), static_cast<std::uint32_t>(block.size()));
    }
    std::size_t bytes = 0;
    for (const Exiv2::Exifdatum &field : exif) {
        bytes += static_cast<std::size_t>(std::max<long>(0, field.size()));
    }
    if (bytes > mostUnpacked) {
        eraseIf(exif, isMakerNote);
    }
    return exif;
}

/// What the file says outside of the EXIF data goes into them, where they say nothing themselves.
void addTexts(Exiv2::ExifData &exif, const PictureMetadata &metadata) {
    addField(exif, "Exif.Image.ImageDescription", metadata.texts.value("Description", metadata.texts.value("Title")));
    addField(exif, "Exif.Image.Artist", metadata.texts.value("Author"));
    addField(exif, "Exif.Image.Copyright", metadata.texts.value("Copyright"));
    constexpr char format[] = "yyyy:MM:dd HH:mm:ss"; // EXIF 2.32, 4.6.4 D
    const QString told = metadata.texts.value("Creation Time");
    QDateTime date = QDateTime::fromString(told, Qt::RFC2822Date);
    date = date.isValid() ? date : QDateTime::fromString(told, Qt::ISODate);
    date = date.isValid() ? date : QDateTime::fromString(told, format);
    if (date.isValid()) {
        addField(exif, "Exif.Photo.DateTimeOriginal", date.toString(format));
    }
    const bool dated = has(exif, "Exif.Photo.DateTimeOriginal") || has(exif, "Exif.Photo.DateTimeDigitized") ||
                       has(exif, "Exif.Image.DateTime");
    if (!dated && metadata.made.isValid()) {
        addField(exif, "Exif.Photo.DateTimeDigitized", metadata.made.toString(format));
        addField(exif, "Exif.Image.DateTime", metadata.made.toString(format));
    }
}

double dotsPerInch(const Exiv2::ExifData &exif, const char *key) {
    const auto field = exif.findKey(Exiv2::ExifKey(key));
    const auto unit = exif.findKey(Exiv2::ExifKey("Exif.Image.ResolutionUnit"));
    if (field == exif.end() || field->count() == 0) {
        return 0;
    }
    constexpr long centimetres = 3;
    const double perUnit = field->toFloat();
    const double dots = unit != exif.end() && unit->count() > 0 && std::lround(unit->toFloat()) == centimetres
                            ? perUnit * 2.54
                            : perUnit;
    return std::isfinite(dots) && dots > 0 ? dots : 0;
}

void agreeOnResolution(Exiv2::ExifData &exif, MetadataBlocks &blocks) {
    const double x = dotsPerInch(exif, "Exif.Image.XResolution");
    const double y = dotsPerInch(exif, "Exif.Image.YResolution");
    if (x > 0 && y > 0) {
        blocks.dotsPerInchX = x;
        blocks.dotsPerInchY = y;
    } else if (blocks.dotsPerInchX > 0 && !exif.empty()) {
        const auto hundredths = [](double dots) { return Exiv2::URational(std::lround(dots * 100), 100); };
        exif["Exif.Image.XResolution"] = hundredths(blocks.dotsPerInchX);
        exif["Exif.Image.YResolution"] = hundredths(blocks.dotsPerInchY);
        exif["Exif.Image.ResolutionUnit"] = std::uint16_t{2};
    }
}

/// Exiv2 0.28 hides the members that 0.27 has.
template <typename Buffer> QByteArray encodedBytes(const Buffer &buffer) {
    if constexpr (requires { buffer.c_data(); }) {
        return {reinterpret_cast<const char *>(buffer.c_data()), static_cast<qsizetype>(buffer.size())};
    } else {
        return {reinterpret_cast<const char *>(buffer.pData_), static_cast<qsizetype>(buffer.size_)};
    }
}

QByteArray encodedExif(Exiv2::ExifData &exif) {
    Exiv2::Blob blob;
    const bool little = Q_BYTE_ORDER == Q_LITTLE_ENDIAN;
    Exiv2::ExifParser::encode(blob, little ? Exiv2::littleEndian : Exiv2::bigEndian, exif);
    return blob.size() > mostExifBytes
               ? QByteArray()
               : QByteArray(reinterpret_cast<const char *>(blob.data()), static_cast<qsizetype>(blob.size()));
}

void writeExif(const PictureMetadata &metadata, QSize size, PrivateDetails details, MetadataBlocks &blocks) {
    Exiv2::ExifData exif = parsedExif(metadata.exif);
    eraseIf(exif, isStale);
    if (details == PrivateDetails::Removed) {
        if (!hasReadableMakerNote(exif)) {
            eraseIf(exif, isMakerNote);
        }
        eraseIf(exif, isPrivate);
    }
    addTexts(exif, metadata);
    agreeOnResolution(exif, blocks);
    if (exif.empty()) {
        return;
    }
    exif["Exif.Image.Orientation"] = std::uint16_t{1};
    exif["Exif.Photo.ColorSpace"] = std::uint16_t{1}; // sRGB
    exif["Exif.Photo.PixelXDimension"] = static_cast<std::uint32_t>(size.width());
    exif["Exif.Photo.PixelYDimension"] = static_cast<std::uint32_t>(size.height());
    blocks.exif = encodedExif(exif);
    if (blocks.exif.isEmpty()) {
        eraseIf(exif, isMakerNote);
        blocks.exif = encodedExif(exif);
    }
}

// --- XMP ------------------------------------------------------------------------------------------------------------

/// Parsing recurses for each level and expands entities: a packet that is deeper than any program writes, declares
/// entities or is damaged is not handed on.
bool isPlainXml(const QByteArray &packet) {
    constexpr int deepest = 40;
    QXmlStreamReader xml(packet);
    int depth = 0;
    while (!xml.atEnd()) {
        switch (xml.readNext()) {
        case QXmlStreamReader::StartElement:
            ++depth;
            break;
        case QXmlStreamReader::EndElement:
            --depth;
            break;
        case QXmlStreamReader::DTD:
            return false;
        default:
            break;
        }
        if (depth > deepest) {
            return false;
        }
    }
    return !xml.hasError();
}

bool isPrivateXmp(const std::string &key) {
    static const char *const places[] = {
        "Xmp.photoshop.City",   "Xmp.photoshop.State",         "Xmp.photoshop.Country",     "Xmp.iptc.Location",
        "Xmp.iptc.CountryCode", "Xmp.iptcExt.LocationCreated", "Xmp.iptcExt.LocationShown", "Xmp.iptcExt.LocationId"};
    return contains(key, "GPS") || contains(key, "Gps") || contains(key, "Latitude") || contains(key, "Longitude") ||
           contains(key, "SerialNumber") ||
           std::any_of(std::begin(places), std::end(places), [&](const char *place) { return startsWith(key, place); });
}

/// Small pictures, pictures inside the old file, and how its pixels were stored.
bool isStaleXmp(const std::string &key) {
    static const char *const leads[] = {"Xmp.xmp.Thumbnails",
                                        "Xmp.photoshop.ICCProfile",
                                        "Xmp.xmpNote.",
                                        "Xmp.GCamera.",
                                        "Xmp.Container.",
                                        "Xmp.GImage.",
                                        "Xmp.GDepth.",
                                        "Xmp.hdrgm.",
                                        "Xmp.HDRGainMap.",
                                        "Xmp.tiff.BitsPerSample",
                                        "Xmp.tiff.Compression",
                                        "Xmp.tiff.PhotometricInterpretation",
                                        "Xmp.tiff.SamplesPerPixel",
                                        "Xmp.tiff.PlanarConfiguration",
                                        "Xmp.tiff.YCbCr",
                                        "Xmp.tiff.NativeDigest",
                                        "Xmp.exif.NativeDigest"};
    return std::any_of(std::begin(leads), std::end(leads), [&](const char *lead) { return startsWith(key, lead); });
}

/// "Xmp.iptcExt.LocationShown" of "Xmp.iptcExt.LocationShown[1]/iptcExt:City": lists and structures go as a whole.
std::string wholeProperty(const std::string &key) {
    return key.substr(0, key.find_first_of("[/"));
}

void eraseWhole(Exiv2::XmpData &xmp, const std::function<bool(const std::string &)> &isUnwanted) {
    std::set<std::string> unwanted;
    for (const Exiv2::Xmpdatum &field : xmp) {
        if (isUnwanted(field.key())) {
            unwanted.insert(wholeProperty(field.key()));
        }
    }
    for (auto field = xmp.begin(); field != xmp.end();) {
        field = unwanted.count(wholeProperty(field->key())) != 0 ? xmp.erase(field) : std::next(field);
    }
}

void setIfThere(Exiv2::XmpData &xmp, const char *key, int value) {
    if (const auto field = xmp.findKey(Exiv2::XmpKey(key)); field != xmp.end()) {
        field->setValue(std::to_string(value));
    }
}

std::string largestProperty(const Exiv2::XmpData &xmp) {
    const auto largest =
        std::max_element(xmp.begin(), xmp.end(), [](const auto &a, const auto &b) { return a.size() < b.size(); });
    return largest == xmp.end() ? std::string() : wholeProperty(largest->key());
}

void writeXmp(const PictureMetadata &metadata, QSize size, PrivateDetails details, MetadataBlocks &blocks) {
    Exiv2::XmpData xmp;
    if (!metadata.xmp.isEmpty() && isPlainXml(metadata.xmp)) {
        Exiv2::XmpParser::decode(xmp, metadata.xmp.toStdString());
    }
    if (const QString title = metadata.texts.value("Title");
        !title.isEmpty() && xmp.findKey(Exiv2::XmpKey("Xmp.dc.title")) == xmp.end()) {
        xmp["Xmp.dc.title"] = title.toStdString();
    }
    eraseWhole(xmp, isStaleXmp);
    if (details == PrivateDetails::Removed) {
        eraseWhole(xmp, isPrivateXmp);
    }
    setIfThere(xmp, "Xmp.tiff.Orientation", 1);
    setIfThere(xmp, "Xmp.tiff.ImageWidth", size.width());
    setIfThere(xmp, "Xmp.tiff.ImageLength", size.height());
    setIfThere(xmp, "Xmp.exif.PixelXDimension", size.width());
    setIfThere(xmp, "Xmp.exif.PixelYDimension", size.height());
    setIfThere(xmp, "Xmp.exif.ColorSpace", 1);
    std::string packet;
    while (!xmp.empty()) {
        const int format = Exiv2::XmpParser::useCompactFormat | Exiv2::XmpParser::readOnlyPacket;
        if (Exiv2::XmpParser::encode(packet, xmp, static_cast<std::uint16_t>(format)) != 0) {
            return;
        }
        if (packet.size() <= mostOtherBytes) {
            blocks.xmp = QByteArray::fromStdString(packet);
            return;
        }
        eraseWhole(xmp,
                   [largest = largestProperty(xmp)](const std::string &key) { return wholeProperty(key) == largest; });
    }
}

// --- IPTC -----------------------------------------------------------------------------------------------------------

void writeIptc(const PictureMetadata &metadata, PrivateDetails details, MetadataBlocks &blocks) {
    Exiv2::IptcData iptc;
    if (metadata.iptc.isEmpty() || Exiv2::IptcParser::decode(iptc, contentOf(metadata.iptc),
                                                             static_cast<std::uint32_t>(metadata.iptc.size())) != 0) {
        return;
    }
    using Set = Exiv2::IptcDataSets;
    static const std::set<std::uint16_t> places = {Set::LocationCode, Set::LocationName,  Set::City,
                                                   Set::SubLocation,  Set::ProvinceState, Set::CountryCode,
                                                   Set::CountryName};
    for (auto field = iptc.begin(); field != iptc.end();) {
        const bool application = field->record() == Set::application2;
        const bool preview = application && field->tag() >= Set::PreviewFormat && field->tag() <= Set::Preview;
        const bool place = application && details == PrivateDetails::Removed && places.count(field->tag()) != 0;
        field = preview || place ? iptc.erase(field) : std::next(field);
    }
    const QByteArray encoded = iptc.empty() ? QByteArray() : encodedBytes(Exiv2::IptcParser::encode(iptc));
    if (!encoded.isEmpty() && static_cast<std::size_t>(encoded.size()) <= mostOtherBytes) {
        blocks.iptc = encoded;
    }
}

/// The picture matters more than what is said about it: a part that the library refuses is left out.
template <typename Step> void guarded(Step step) {
    try {
        step();
    } catch (const std::exception &) { // NOLINT(bugprone-empty-catch)
    }
}

} // namespace

MetadataBlocks metadataBlocks(const PictureMetadata &metadata, QSize size, PrivateDetails details) {
    // The XMP part of the library has one list of namespaces for all threads.
    static std::mutex mutex;
    const std::lock_guard lock(mutex);
    Exiv2::LogMsg::setLevel(Exiv2::LogMsg::mute);
    MetadataBlocks blocks;
    blocks.texts = metadata.texts;
    blocks.dotsPerInchX = metadata.dotsPerInchX;
    blocks.dotsPerInchY = metadata.dotsPerInchY;
    guarded([&] { writeExif(metadata, size, details, blocks); });
    guarded([&] { writeXmp(metadata, size, details, blocks); });
    guarded([&] { writeIptc(metadata, details, blocks); });
    return blocks;
}

} // namespace lumora
