// Copy and paste of the whole photo: what other programs receive, and what is read from them.
#include "window/Clipboard.h"

#include "imaging/Picture.h"
#include "support/TestPictures.h"

#include <QBuffer>
#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QTemporaryDir>
#include <QUrl>
#include <functional>
#include <gtest/gtest.h>

namespace lumora {
namespace {

const TaskRunner inThisThread = [](const std::function<void()> &work, Stopping) {
    work();
    return true;
};

using test::firstDifference;
using test::photoLike;

QByteArray encoded(const QImage &picture, const char *format) {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    EXPECT_TRUE(picture.save(&buffer, format)) << format;
    return buffer.data();
}

/// Puts data of these types into the clipboard, as another program would.
void offer(const QList<std::pair<QString, QByteArray>> &kinds) {
    auto *data = new QMimeData;
    for (const auto &[type, bytes] : kinds) {
        data->setData(type, bytes);
    }
    QGuiApplication::clipboard()->setMimeData(data);
}

class Clipboard : public testing::Test {
  protected:
    ~Clipboard() override { QGuiApplication::clipboard()->clear(); }

    QString writePhoto(const QString &name, const QImage &photo) {
        QString path = m_folder.filePath(name);
        EXPECT_TRUE(writePicture(photo, path).ok());
        return path;
    }

    QTemporaryDir m_folder;
};

TEST_F(Clipboard, OtherProgramsGetThePhoto) {
    for (const bool transparent : {false, true}) {
        SCOPED_TRACE(transparent);
        const QImage photo = photoLike(321, 123, transparent);
        CopyPhoto(photo);
        const QMimeData *data = QGuiApplication::clipboard()->mimeData();
        EXPECT_TRUE(data->hasImage());
        EXPECT_FALSE(data->hasText() || data->hasUrls());
        const QImage png = QImage::fromData(data->data("image/png"), "PNG");
        EXPECT_EQ(firstDifference(png.convertToFormat(photo.format()), photo), QPoint(-1, -1));
        const QImage bmp = QImage::fromData(data->data("image/bmp"), "BMP");
        ASSERT_EQ(bmp.size(), photo.size());
        EXPECT_EQ(bmp.pixel(0, 60), transparent ? qRgb(255, 255, 255) : photo.pixel(0, 60));
        EXPECT_EQ(qvariant_cast<QImage>(data->imageData()), photo);
        EXPECT_TRUE(data->data("image/x-nothing").isEmpty());
        // And so does Lumora itself, exactly, for transparent photos.
        const PictureRead read = readClipboardPicture(inThisThread);
        EXPECT_EQ(read.picture.format(), photo.format());
        EXPECT_EQ(firstDifference(read.picture, photo), QPoint(-1, -1));
    }
    const QImage kept = photoLike(9, 9);
    CopyPhoto(kept);
    CopyPhoto(QImage());
    EXPECT_EQ(readClipboardPicture(inThisThread).picture, kept) << "nothing to copy empties the clipboard";
}

TEST_F(Clipboard, TakesPicturesOfEveryKind) {
    const QImage opaque = photoLike(64, 48);
    const QImage glass = photoLike(64, 48, true);
    const struct {
        const char *type, *format;
        const QImage &picture;
        bool exact;
    } rows[] = {
        {"image/png", "PNG", glass, true},     {"image/png", "PNG", opaque, true},
        {"image/bmp", "BMP", opaque, true},    {"image/jpeg", "JPG", opaque, false},
        {"image/tiff", "TIFF", glass, true},   {"image/x-bmp", "BMP", opaque, true},
        {"image/png", "JPG", opaque, false}, // by content, not by name
        {"image/webp", "WEBP", opaque, false},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(testing::Message() << row.type << ' ' << row.format);
        offer({{row.type, encoded(row.picture, row.format)}});
        EXPECT_TRUE(clipboardHasPicture());
        const PictureRead read = readClipboardPicture(inThisThread);
        ASSERT_EQ(read.error, PictureError::None);
        EXPECT_EQ(read.picture.size(), row.picture.size());
        EXPECT_EQ(read.picture.format(), row.picture.format());
        EXPECT_TRUE(!row.exact || firstDifference(read.picture, row.picture) == QPoint(-1, -1));
    }
    // Of several types the most lossless one; after a broken one the next is tried.
    offer({{"image/jpeg", encoded(opaque, "JPG")}, {"image/png", encoded(glass, "PNG")}, {"text/plain", "a photo"}});
    EXPECT_EQ(firstDifference(readClipboardPicture(inThisThread).picture, glass), QPoint(-1, -1));
    offer({{"image/png", "broken"}, {"image/bmp", encoded(opaque, "BMP")}});
    EXPECT_EQ(firstDifference(readClipboardPicture(inThisThread).picture, opaque), QPoint(-1, -1));
    // What only Qt can read, and a premultiplied picture of a Qt program.
    offer({{"image/x-portable-pixmap", encoded(opaque, "PPM")}});
    QGuiApplication::clipboard()->setImage(glass.convertToFormat(QImage::Format_ARGB32_Premultiplied));
    EXPECT_TRUE(clipboardHasPicture());
    EXPECT_EQ(readClipboardPicture(inThisThread).picture.format(), QImage::Format_ARGB32);
    EXPECT_EQ(readClipboardPicture(inThisThread).picture.size(), glass.size());
}

TEST_F(Clipboard, TakesAFileByItsNameOrAddress) {
    const QImage photo = photoLike(40, 30, true);
    const QString path = writePhoto("a photo ä.png", photo);
    const QString small = writePhoto("small.png", photoLike(5, 5));
    const QByteArray url = QUrl::fromLocalFile(path).toEncoded();
    QFile letter(m_folder.filePath("letter.png"));
    ASSERT_TRUE(letter.open(QIODevice::WriteOnly));
    letter.write("Dear aunt");
    letter.close();
    const QByteArray home = qgetenv("HOME");
    qputenv("HOME", QFile::encodeName(m_folder.path()));
    const struct {
        const char *name;
        QList<std::pair<QString, QByteArray>> offered;
        bool taken;
    } rows[] = {
        {"a file copied in a file manager", {{"text/uri-list", url + "\r\n"}, {"text/plain", path.toUtf8()}}, true},
        {"the address goes before the text", {{"text/uri-list", url}, {"text/plain", small.toUtf8()}}, true},
        {"several files", {{"text/uri-list", "https://example.org/a.png\r\n" + url + "\r\n"}}, true},
        {"a path as text", {{"text/plain", path.toUtf8()}}, true},
        {"a path with a line end", {{"text/plain", "  " + path.toUtf8() + "\n"}}, true},
        {"a path in quotes", {{"text/plain", '"' + path.toUtf8() + '"'}}, true},
        {"a path in apostrophes", {{"text/plain", '\'' + path.toUtf8() + '\''}}, true},
        {"an address as text", {{"text/plain", url}}, true},
        {"a path from home", {{"text/plain", QString("~/a photo ä.png").toUtf8()}}, true},
        {"a broken picture beside a path", {{"image/png", "broken"}, {"text/plain", path.toUtf8()}}, true},
        {"a picture on the Internet", {{"text/uri-list", "https://example.org/a.png"}}, false},
        {"words", {{"text/plain", "Dear aunt"}}, false},
        {"a long text", {{"text/plain", QByteArray(5'000'000, 'x')}}, false},
        {"one quote", {{"text/plain", "\""}}, false},
        {"a file that is no picture", {{"text/plain", letter.fileName().toUtf8()}}, false},
        {"a file that is not there", {{"text/plain", path.toUtf8() + "x"}}, false},
        {"a folder", {{"text/plain", m_folder.path().toUtf8()}}, false},
        {"a name without a folder", {{"text/plain", "a photo.png"}}, false},
        {"a device", {{"text/plain", "/dev/zero"}}, false},
        {"nothing", {}, false},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        offer(row.offered);
        EXPECT_EQ(clipboardHasPicture(), row.taken);
        const PictureRead read = readClipboardPicture(inThisThread);
        EXPECT_EQ(read.error == PictureError::None, row.taken);
        EXPECT_EQ(read.picture.isNull(), !row.taken);
        EXPECT_TRUE(!row.taken || firstDifference(read.picture, photo) == QPoint(-1, -1));
    }
    qputenv("HOME", home);
}

TEST_F(Clipboard, GarbageIsNotAPicture) {
    QByteArray bomb = encoded(photoLike(8, 8), "BMP");
    for (const int at : {20, 21, 24, 25}) { // width and height: 65535 x 65535 pixels
        bomb[at - 2] = bomb[at - 1] = '\xff';
    }
    const QList<QByteArray> garbage{{}, "garbage", encoded(photoLike(64, 64), "PNG").left(20), bomb};
    for (const QByteArray &bytes : garbage) {
        SCOPED_TRACE(bytes.left(20).toHex().toStdString());
        for (const char *type : {"image/png", "image/bmp", "image/jpeg", "application/x-qt-image"}) {
            offer({{type, bytes}});
            const PictureRead read = readClipboardPicture(inThisThread);
            EXPECT_NE(read.error, PictureError::None);
            EXPECT_TRUE(read.picture.isNull());
        }
    }
}

} // namespace
} // namespace lumora
