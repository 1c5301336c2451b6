// What a file says about its photo survives opening, changing and saving, read back with the library itself.
#include "imaging/Picture.h"
#include "imaging/PictureFile.h"
#include "imaging/files/ExifBlock.h"
#include "imaging/files/Metadata.h"
#include "imaging/files/MetadataBlocks.h"
#include "imaging/filesMakers.h"
#include "support/TestFiles.h"
#include "support/TestPictures.h"

#include <QBuffer>
#include <QFile>
#include <QTemporaryDir>
#include <QtEndian>
#include <exiv2/exiv2.hpp>
#include <gtest/gtest.h>
#include <map>
#include <set>

using namespace lumora;
using namespace lumora::test;

namespace {

using Fields = std::map<std::string, std::string>;

constexpr char serial[] = "SN-7741";
constexpr char place[] = "Quiet Harbour";

Fields fieldsOf(const QString &path) {
    Fields fields;
    const auto image = Exiv2::ImageFactory::open(path.toStdString());
    image->readMetadata();
    for (const auto &field : image->exifData()) {
        fields[field.key()] = field.toString();
    }
    for (const auto &field : image->xmpData()) {
        fields[field.key()] = field.toString();
    }
    for (const auto &field : image->iptcData()) {
        fields[field.key()] += field.toString() + ';';
    }
    return fields;
}

/// A value for every field of the group that the library knows and that says something about a photo.
void addGroup(Exiv2::ExifData &exif, const Exiv2::TagInfo *tags, const char *group, std::uint16_t from,
              std::uint16_t to) {
    for (; tags->tag_ != 0xFFFF; ++tags) {
        if (tags->tag_ < from || tags->tag_ > to) {
            continue;
        }
        const std::string key = std::string("Exif.") + group + '.' + tags->name_;
        switch (tags->typeId_) {
        case Exiv2::asciiString:
            exif[key] = std::string("text of ") + tags->name_;
            break;
        case Exiv2::unsignedShort:
            exif[key] = std::uint16_t{2};
            break;
        case Exiv2::unsignedLong:
            exif[key] = std::uint32_t{77};
            break;
        case Exiv2::unsignedRational:
            exif[key] = Exiv2::URational(7, 5);
            break;
        case Exiv2::signedRational:
            exif[key] = Exiv2::Rational(-7, 5);
            break;
        default:
            break;
        }
    }
}

Exiv2::ExifData richExif() {
    Exiv2::ExifData exif;
    exif["Exif.Image.ImageDescription"] = std::string("The boat");
    exif["Exif.Image.Make"] = std::string("Canon");
    exif["Exif.Image.Model"] = std::string("Canon EOS 80D");
    exif["Exif.Image.Artist"] = std::string("Ada");
    exif["Exif.Image.Copyright"] = std::string("Ada 2026");
    exif["Exif.Image.Software"] = std::string("Firmware 1.0");
    exif["Exif.Image.DateTime"] = std::string("2026:05:04 10:11:12");
    exif["Exif.Image.Rating"] = std::uint16_t{4};
    exif["Exif.Image.RatingPercent"] = std::uint16_t{75};
    exif["Exif.Image.XResolution"] = Exiv2::URational(300, 1);
    exif["Exif.Image.YResolution"] = Exiv2::URational(300, 1);
    exif["Exif.Image.ResolutionUnit"] = std::uint16_t{2};
    exif["Exif.Image.Orientation"] = std::uint16_t{6};
    exif["Exif.Image.XPKeywords"] = std::string("98 0 111 0 97 0 116 0 0 0");
    // Exposure, lens, dates and what else a camera says.
    addGroup(exif, Exiv2::ExifTags::tagList("Photo"), "Photo", 0x829A, 0x9292);
    addGroup(exif, Exiv2::ExifTags::tagList("Photo"), "Photo", 0xA20B, 0xA500);
    exif["Exif.Photo.ExifVersion"] = std::string("48 50 51 50");
    exif["Exif.Photo.DateTimeOriginal"] = std::string("2026:05:04 10:11:12");
    exif["Exif.Photo.LensModel"] = std::string("EF-S 18-135mm");
    exif["Exif.Photo.UserComment"] = std::string("charset=Ascii At last");
    exif["Exif.Photo.BodySerialNumber"] = std::string(serial);
    exif["Exif.Photo.LensSerialNumber"] = std::string(serial);
    exif["Exif.Photo.PixelXDimension"] = std::uint32_t{6000};
    exif["Exif.Photo.PixelYDimension"] = std::uint32_t{4000};
    addGroup(exif, Exiv2::ExifTags::tagList("GPSInfo"), "GPSInfo", 1, 0x1F);
    exif["Exif.GPSInfo.GPSAreaInformation"] = std::string("charset=Ascii ") + place;
    return exif;
}

void addCanonNote(Exiv2::ExifData &exif) {
    exif["Exif.Canon.ImageType"] = std::string("Canon EOS 80D");
    exif["Exif.Canon.FirmwareVersion"] = std::string("Firmware Version 1.0.2");
    exif["Exif.Canon.OwnerName"] = std::string("Ada");
    exif["Exif.Canon.LensModel"] = std::string("EF-S18-135mm f/3.5-5.6 IS USM");
    exif["Exif.Canon.InternalSerialNumber"] = std::string(serial);
}

Exiv2::XmpData richXmp() {
    Exiv2::XmpData xmp;
    xmp["Xmp.dc.title"] = "lang=x-default The boat";
    xmp["Xmp.dc.description"] = "lang=x-default A boat in the evening";
    for (const char *word : {"boat", "sea", "evening", "Größe"}) {
        xmp["Xmp.dc.subject"] = word;
    }
    xmp["Xmp.xmp.Rating"] = 5;
    xmp["Xmp.xmp.CreateDate"] = "2026-05-04T10:11:12";
    xmp["Xmp.xmp.Label"] = "Green";
    xmp["Xmp.photoshop.Headline"] = "Evening";
    xmp["Xmp.photoshop.City"] = place;
    xmp["Xmp.aux.Lens"] = "EF-S 18-135mm";
    xmp["Xmp.aux.SerialNumber"] = serial;
    xmp["Xmp.exif.GPSLatitude"] = "54,20.5N";
    xmp["Xmp.tiff.Orientation"] = 6;
    xmp["Xmp.tiff.ImageWidth"] = 6000;
    xmp["Xmp.exif.PixelXDimension"] = 6000;
    Exiv2::XmpTextValue structure("");
    structure.setXmpArrayType(Exiv2::XmpValue::xaBag);
    xmp.add(Exiv2::XmpKey("Xmp.iptcExt.LocationShown"), &structure);
    xmp["Xmp.iptcExt.LocationShown[1]/iptcExt:City"] = place;
    return xmp;
}

Exiv2::IptcData richIptc() {
    Exiv2::IptcData iptc;
    iptc["Iptc.Application2.ObjectName"] = "The boat";
    iptc["Iptc.Application2.Caption"] = "A boat in the evening";
    iptc["Iptc.Application2.Byline"] = "Ada";
    iptc["Iptc.Application2.DateCreated"] = "2026-05-04";
    iptc["Iptc.Application2.City"] = place;
    iptc["Iptc.Application2.CountryName"] = place;
    for (const char *word : {"boat", "sea"}) {
        Exiv2::StringValue value(word);
        iptc.add(Exiv2::IptcKey("Iptc.Application2.Keywords"), &value);
    }
    return iptc;
}

/// A photo file of that type with all of it; a maker's note only where the library can write one.
QString makeRich(const QTemporaryDir &folder, const QString &extension, const QImage &picture) {
    QString path = folder.filePath("rich." + extension);
    EXPECT_TRUE(writePicture(picture, path).ok());
    const auto image = Exiv2::ImageFactory::open(path.toStdString());
    image->readMetadata();
    Exiv2::ExifData exif = image->exifData();
    for (const auto &field : richExif()) {
        exif[field.key()] = field.value();
    }
    if (extension != "tif") {
        addCanonNote(exif);
        const QByteArray thumbnail = encodeJpeg(photoLike(160, 120));
        Exiv2::ExifThumb(exif).setJpegThumbnail(reinterpret_cast<const Exiv2::byte *>(thumbnail.constData()),
                                                thumbnail.size());
    }
    image->setExifData(exif);
    image->setXmpData(richXmp());
    image->setIptcData(richIptc());
    image->writeMetadata();
    return path;
}

bool isPrivateKey(const std::string &key) {
    static const std::set<std::string> places = {"Iptc.Application2.City", "Iptc.Application2.CountryName",
                                                 "Xmp.photoshop.City", "Exif.Image.GPSTag"};
    return key.find("GPS") != std::string::npos || key.find("Serial") != std::string::npos ||
           key.find("LocationShown") != std::string::npos || places.count(key) != 0;
}

/// What tells how one file stores its pixels or its fields, and the small picture.
bool isOfTheFile(const std::string &key) {
    static const std::set<std::string> names = {
        "Exif.Image.ExifTag",         "Exif.Image.GPSTag",          "Exif.Photo.MakerNote",
        "Exif.Image.StripOffsets",    "Exif.MakerNote.Offset",      "Exif.MakerNote.ByteOrder",
        "Exif.Image.StripByteCounts", "Exif.Image.RowsPerStrip",    "Exif.Image.ImageWidth",
        "Exif.Image.ImageLength",     "Exif.Image.BitsPerSample",   "Exif.Image.Compression",
        "Exif.Image.Predictor",       "Exif.Image.SamplesPerPixel", "Exif.Image.PlanarConfiguration",
        "Exif.Image.IPTCNAA",         "Exif.Image.XMLPacket",       "Exif.Image.PhotometricInterpretation",
        "Exif.Image.ImageResources"};
    return names.count(key) != 0 || key.rfind("Exif.Thumbnail.", 0) == 0;
}

/// Which of the fields that a photo's owner would miss are not as they were.
std::string lost(const Fields &before, const Fields &after, bool privateKept, int &count) {
    static const Fields corrected = {{"Exif.Image.Orientation", "1"},      {"Xmp.tiff.Orientation", "1"},
                                     {"Exif.Photo.ColorSpace", "1"},       {"Exif.Photo.PixelXDimension", "30"},
                                     {"Exif.Photo.PixelYDimension", "40"}, {"Xmp.tiff.ImageWidth", "30"},
                                     {"Xmp.exif.PixelXDimension", "30"}};
    std::string result;
    count = 0;
    for (const auto &[key, value] : before) {
        if (isOfTheFile(key) || (isPrivateKey(key) && !privateKept)) {
            continue;
        }
        const auto now = after.find(key);
        const auto right = corrected.find(key);
        const std::string &expected = right != corrected.end() ? right->second : value;
        if (now == after.end() || now->second != expected) {
            result.append(key).append(": ").append(now == after.end() ? "missing" : now->second);
            result.append(" instead of ").append(expected).append("\n");
        } else {
            ++count;
        }
    }
    return result;
}

template <typename Value> void addLittle(QByteArray &data, Value value) {
    value = qToLittleEndian(value);
    data.append(reinterpret_cast<const char *>(&value), sizeof value);
}

void addEntry(QByteArray &data, quint16 tag, quint16 type, quint32 count, quint32 value) {
    addLittle(data, tag);
    addLittle(data, type);
    addLittle(data, count);
    addLittle(data, value);
}

QByteArray tiffWith(int entries, quint16 type, quint32 count, quint16 firstTag) {
    QByteArray data("II*\0\x08\0\0\0", 8);
    addLittle(data, static_cast<quint16>(entries));
    for (int i = 0; i < entries; ++i) {
        addEntry(data, static_cast<quint16>(firstTag + i), type, count, 8);
    }
    addLittle(data, quint32{8}); // the next directory is this one
    return data;
}

// A maker's note and two long texts, which lie in it.
QByteArray tiffWithLongNote() {
    constexpr quint32 textBytes = 16'000;
    constexpr quint32 noteBytes = 60'000;
    constexpr quint32 exifAt = 38;
    constexpr quint32 noteAt = 68;
    QByteArray data("II*\0\x08\0\0\0", 8);
    addLittle(data, quint16{2});
    addEntry(data, 270, 2, textBytes, noteAt);
    addEntry(data, 34665, 4, 1, exifAt);
    addLittle(data, quint32{0});
    addLittle(data, quint16{2});
    addEntry(data, 36867, 2, textBytes, noteAt);
    addEntry(data, 37500, 7, noteBytes, noteAt);
    addLittle(data, quint32{0});
    return data + QByteArray(noteBytes, 'n');
}

} // namespace

TEST(FilesMetadata, OwnersFieldsSurviveSavingInEveryPairOfTypes) {
    const QImage picture = toPicture(photoLike(40, 30));
    for (const char *from : {"jpg", "png", "tif"}) {
        for (const char *to : {"jpg", "png", "tif"}) {
            for (const PrivateDetails details : {PrivateDetails::Removed, PrivateDetails::Kept}) {
                const bool kept = details == PrivateDetails::Kept;
                SCOPED_TRACE(testing::Message() << from << " to " << to << ", private details kept " << kept);
                QTemporaryDir folder;
                const QString source = makeRich(folder, from, picture);
                const Fields before = fieldsOf(source);
                ASSERT_GT(before.size(), 120);
                const PictureRead read = readPicture(source);
                ASSERT_EQ(read.error, PictureError::None);
                ASSERT_EQ(read.picture.size(), QSize(30, 40)) << "it was stored on its side";
                const QString target = folder.filePath(QString("saved.") + to);
                ASSERT_TRUE(writePicture(read.picture, target, read.metadata, details).ok());
                const Fields after = fieldsOf(target);
                int count = 0;
                EXPECT_EQ(lost(before, after, kept, count), "");
                EXPECT_GE(count, kept ? 115 : 85);
                for (const auto &[key, value] : after) {
                    EXPECT_TRUE(kept || !isPrivateKey(key)) << key << ": " << value;
                    EXPECT_NE(key.rfind("Exif.Thumbnail.", 0), 0) << key;
                }
                const QByteArray bytes = contents(target);
                EXPECT_EQ(bytes.contains(serial), kept);
                EXPECT_EQ(bytes.contains(place), kept);
                // The picture is still one, upright, and says the same the next time.
                const PictureRead again = readPicture(target);
                EXPECT_EQ(again.picture.size(), QSize(30, 40)) << again.reason.toStdString();
                EXPECT_EQ(again.reason, QString());
                if (QString(to) != "tif") { // Qt says on the console which TIFF fields it does not know
                    EXPECT_EQ(QImage(target).size(), QSize(30, 40));
                    EXPECT_TRUE(before.count("Exif.Image.XResolution") == 0 ||
                                std::abs(QImage(target).dotsPerMeterX() - 11811) <= 1);
                }
                const QString twice = folder.filePath(QString("twice.") + from);
                ASSERT_TRUE(writePicture(again.picture, twice, again.metadata, details).ok());
                EXPECT_EQ(lost(before, fieldsOf(twice), kept, count), "");
            }
        }
    }
}

// Damaged and hostile data cost neither the picture nor more than a moment.
TEST(FilesMetadata, HostileDataLoseNoPicture) {
    const QByteArray deep = QByteArray("<a>").repeated(20000) + QByteArray("</a>").repeated(20000);
    const QByteArray laughing = "<!DOCTYPE x [<!ENTITY a \"aaaaaaaaaa\"><!ENTITY b \"&a;&a;&a;&a;&a;&a;&a;\">]>"
                                "<x:xmpmeta xmlns:x='adobe:ns:meta/'>&b;</x:xmpmeta>";
    PictureMetadata noise;
    noise.exif = QByteArray("II*\0\x08\0\0\0\xff\xff", 10) + QByteArray(3000, '\x91');
    noise.xmp = QByteArray(4000, '\xC3');
    noise.iptc = QByteArray("\x1c\x02\x05\xff\xff", 5) + "short";
    PictureMetadata deepXml;
    deepXml.xmp = deep;
    PictureMetadata entities;
    entities.xmp = laughing;
    PictureMetadata large;
    large.xmp = "<x:xmpmeta xmlns:x='adobe:ns:meta/'><rdf:RDF "
                "xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#'><rdf:Description rdf:about='' "
                "xmlns:dc='http://purl.org/dc/elements/1.1/' dc:source='" +
                QByteArray(200'000, 'x') + "' dc:format='kept'/></rdf:RDF></x:xmpmeta>";
    QTemporaryDir folder;
    const QImage picture = toPicture(photoLike(40, 30));
    for (const PictureMetadata &metadata : {noise, deepXml, entities, large}) {
        for (const char *type : {"jpg", "png", "tif"}) {
            const QString path = folder.filePath(QString("a.") + type);
            ASSERT_TRUE(writePicture(picture, path, metadata).ok());
            EXPECT_EQ(readPicture(path).picture.size(), picture.size());
            EXPECT_EQ(contents(path).contains("aaaaaaaaaaaaaaaa"), false);
        }
    }
    // What does not fit into a JPEG goes, the largest first.
    EXPECT_TRUE(metadataBlocks(large, {40, 30}, PrivateDetails::Removed).xmp.contains("kept"));

    const struct {
        const char *what;
        QByteArray exif;
    } blocks[] = {
        {"a thousand values that are all the rest of the data", tiffWith(1000, 1, 12'000, 0x8000)},
        {"counts beyond any size", tiffWith(500, 12, 0xFFFFFFFF, 0x8000)},
        {"directories that are one and the same", tiffWith(200, 4, 1, 34560)},
        {"texts without an end", tiffWith(100, 2, 1000, 270)},
        {"a maker's note beside as much as there may be", tiffWithLongNote()},
    };
    for (const auto &row : blocks) {
        SCOPED_TRACE(row.what);
        const QByteArray block = exifBlock(QByteArray("Exif\0\0", 6) + row.exif);
        EXPECT_LE(block.size(), 64 << 10);
        const QByteArray file =
            makeJpeg(40, 30, {.exif = QByteArray("Exif\0\0", 6) + row.exif}, [](int x, int, int) { return x; });
        const PictureRead read = readPictureFromData(file);
        ASSERT_EQ(read.error, PictureError::None);
        EXPECT_TRUE(writePicture(read.picture, folder.filePath("b.jpg"), read.metadata).ok());
        EXPECT_EQ(readPicture(folder.filePath("b.jpg")).picture.size(), QSize(40, 30));
    }
}

// A maker's note of a camera, nearly as long as a segment, each of whose entries is all of the data.
TEST(FilesMetadata, OverlappingMakerNoteIsDropped) {
    Exiv2::ExifData exif;
    exif["Exif.Image.Make"] = std::string("Canon");
    exif["Exif.Photo.LensModel"] = std::string("EF-S 18-135mm");
    QByteArray note = tiffWith(250, 1, 45'000, 0x1000).mid(8);
    note += QByteArray(50'000 - note.size(), '\1');
    Exiv2::DataValue value(reinterpret_cast<const Exiv2::byte *>(note.constData()), note.size());
    exif.add(Exiv2::ExifKey("Exif.Photo.MakerNote"), &value);
    Exiv2::Blob blob;
    Exiv2::ExifParser::encode(blob, Exiv2::littleEndian, exif);
    PictureMetadata metadata;
    metadata.exif = exifBlock(QByteArray(reinterpret_cast<const char *>(blob.data()), qsizetype(blob.size())));
    ASSERT_GT(metadata.exif.size(), 50'000);
    const MetadataBlocks blocks = metadataBlocks(metadata, {40, 30}, PrivateDetails::Kept);
    EXPECT_TRUE(blocks.exif.contains("EF-S 18-135mm"));
    EXPECT_LT(blocks.exif.size(), 1000) << "the note is still there";
}

TEST(FilesMetadata, PngTextsAndKnownResolutionReachEveryType) {
    QTemporaryDir folder;
    const QString path = folder.filePath("a.png");
    QImage noted = photoLike(40, 30);
    noted.setText("Title", "The boat");
    noted.setText("Author", QString::fromUtf8("Zoë"));
    noted.setText("Creation Time", "Mon, 4 May 2026 10:11:12 +0000");
    noted.setDotsPerMeterX(5906);
    noted.setDotsPerMeterY(5906);
    ASSERT_TRUE(noted.save(path));
    const PictureRead read = readPicture(path);
    EXPECT_EQ(read.metadata.texts.size(), 3);
    for (const char *type : {"jpg", "png", "tif"}) {
        SCOPED_TRACE(type);
        const QString target = folder.filePath(QString("b.") + type);
        ASSERT_TRUE(writePicture(read.picture, target, read.metadata).ok());
        Fields fields = fieldsOf(target);
        EXPECT_EQ(fields["Xmp.dc.title"], "lang=\"x-default\" The boat");
        EXPECT_EQ(fields["Exif.Image.Artist"], "Zoë");
        EXPECT_EQ(fields["Exif.Photo.DateTimeOriginal"], "2026:05:04 10:11:12");
        EXPECT_EQ(fields["Exif.Image.XResolution"], "15001/100");
        EXPECT_NEAR(QImage(target).dotsPerMeterX(), 5906, 1);
    }
    // Pasted or scanned: the date of then, unless the picture has one.
    PictureMetadata made;
    made.made = QDateTime(QDate(2026, 11, 22), QTime(8, 30));
    made.dotsPerInchX = made.dotsPerInchY = 300;
    ASSERT_TRUE(writePicture(read.picture, folder.filePath("c.jpg"), made).ok());
    Fields fields = fieldsOf(folder.filePath("c.jpg"));
    EXPECT_EQ(fields["Exif.Photo.DateTimeDigitized"], "2026:11:22 08:30:00");
    EXPECT_EQ(fields["Exif.Image.XResolution"], "30000/100");
    EXPECT_EQ(fields.count("Exif.Photo.DateTimeOriginal"), 0);
}

// Nothing is invented for a picture that says nothing, and a picture for an e-mail never says anything.
TEST(FilesMetadata, BareStaysBare) {
    QTemporaryDir folder;
    for (const char *type : {"jpg", "png", "tif"}) {
        const QString path = folder.filePath(QString("a.") + type);
        ASSERT_TRUE(writePicture(photoLike(40, 30), path).ok());
        const PictureRead read = readPicture(path);
        EXPECT_EQ(read.metadata, PictureMetadata()) << type;
    }
    QTemporaryDir rich;
    const PictureRead read = readPicture(makeRich(rich, "jpg", photoLike(40, 30)));
    const QByteArray attachment = encodeJpeg(read.picture);
    EXPECT_FALSE(attachment.contains("Exif") || attachment.contains("adobe") || attachment.contains("8BIM"));
}

// Phones' pictures keep what they say when they become a JPEG.
TEST(FilesMetadata, WebPAndHeifAreRead) {
    Exiv2::ExifData exif;
    exif["Exif.Image.Model"] = std::string("Phone");
    exif["Exif.Photo.DateTimeOriginal"] = std::string("2026:05:04 10:11:12");
    Exiv2::Blob blob;
    Exiv2::ExifParser::encode(blob, Exiv2::bigEndian, exif);
    const QByteArray block(reinterpret_cast<const char *>(blob.data()), qsizetype(blob.size()));
    const QImage picture = photoLike(64, 64);
    QTemporaryDir folder;
    for (const QByteArray &file : {makeWebP(picture, block), makeHeif(picture, 1, block)}) {
        if (file.isEmpty()) {
            continue; // the library cannot encode HEVC here
        }
        const PictureRead read = readPictureFromData(file);
        const QString path = folder.filePath("a.jpg");
        ASSERT_TRUE(writePicture(read.picture, path, read.metadata).ok());
        Fields fields = fieldsOf(path);
        EXPECT_EQ(fields["Exif.Image.Model"], "Phone");
        EXPECT_EQ(fields["Exif.Photo.DateTimeOriginal"], "2026:05:04 10:11:12");
    }
}
