// The document's own rules: zoom, copies, status line, opening and saving, undo and redo as commands.
#include "document/PhotoDocument.h"

#include "imaging/Picture.h"
#include "support/TestPictures.h"
#include "support/TightMemory.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <optional>
#include <unistd.h>

using namespace lumora;
using test::firstDifference;
using test::nowhere;
using test::photoLike;

namespace {

using Route = PhotoDocument::OpenRoute;

struct Document : testing::Test {
    Document() {
        QObject::connect(&photo, &PhotoDocument::changed, [this](PhotoChanges what) {
            heard |= what;
            ++signalCount;
        });
    }
    void open(const QImage &picture, Route route = Route::LoadPhoto) {
        ASSERT_EQ(photo.openPicture({picture, PictureError::None, {}}, route), PictureError::None);
    }
    PhotoChanges takeHeard() {
        signalCount = 0;
        return std::exchange(heard, PhotoChanges());
    }

    PhotoDocument photo;
    PhotoChanges heard;
    int signalCount = 0;
};

QImage plain(int width, int height, QRgb colour = qRgb(10, 20, 30)) {
    QImage picture(width, height, QImage::Format_RGB32);
    picture.fill(colour);
    return picture;
}

TEST(PhotoDocument, aPasteComesAsALoadedFileWithoutAnUndoPoint) {
    PhotoDocument photo;
    const QImage loaded = photoLike(60, 40);
    const QImage changed = photoLike(30, 20);
    const QImage pasted = photoLike(50, 80, true);
    ASSERT_EQ(photo.openPicture({loaded, PictureError::None, {}}, PhotoDocument::OpenRoute::LoadPhoto),
              PictureError::None);
    ASSERT_TRUE(photo.changePhoto(changed));
    PictureRead broken;
    broken.error = PictureError::NotAPicture;
    EXPECT_EQ(photo.pastePicture(broken), PictureError::NotAPicture);
    EXPECT_EQ(photo.picCanvas(), changed);
    EXPECT_TRUE(photo.PhotoModified());
    ASSERT_EQ(photo.pastePicture({pasted, PictureError::None, {}}), PictureError::None);
    for (const QImage &holder : {photo.picCanvas(), photo.picBuffer(), photo.picThumb()}) {
        EXPECT_EQ(holder, pasted);
    }
    EXPECT_EQ(photo.pic2nd().size(), QSize(300, 480));
    EXPECT_FALSE(photo.PhotoModified());
    EXPECT_EQ(photo.history().undoSteps(), 1);
    EXPECT_TRUE(photo.PerformUndo());
    EXPECT_EQ(photo.picCanvas(), loaded);
    PhotoDocument empty;
    ASSERT_EQ(empty.pastePicture({pasted, PictureError::None, {}}), PictureError::None);
    EXPECT_TRUE(empty.PhotoLoaded());
    EXPECT_EQ(empty.history().undoSteps(), 0);
}

} // namespace

TEST_F(Document, fitsTheWholePhotoIntoTheCanvas) {
    struct Row {
        QSize photo, canvas;
        int zoom;
    };
    const Row rows[] = {
        {{3000, 1000}, {600, 400}, 20}, // wide
        {{300, 200}, {600, 400}, 100},  // exactly 1.5 is not wide; both sides would enlarge
        {{1000, 700}, {500, 400}, 57},  // not wide: by height, though the width then does not fit
        {{400, 300}, {300, 600}, 75},   // by height 200, so by width
        {{700, 400}, {1400, 300}, 75},  // wide, by width 200, so by height
        {{3002, 2000}, {600, 400}, 20}, // just wide
        {{200, 200}, {201, 201}, 100},  // 100.5 rounds to the even 100
        {{200, 200}, {203, 203}, 100},  // 101.5 rounds to 102, capped
        {{200, 1000}, {500, 25}, 2},    // 2.5 rounds to the even 2
        {{200, 1000}, {500, 35}, 4},    // 3.5 rounds to the even 4
        {{10, 3000}, {100, 10}, 1},     // never 0
        {{65535, 40}, {900, 600}, 1},   {{1, 20000}, {900, 642}, 3},
    };
    for (const Row &row : rows) {
        open(plain(row.photo.width(), row.photo.height()));
        photo.fitPhoto(row.canvas);
        EXPECT_EQ(photo.zoom(), row.zoom) << row.photo.width() << " x " << row.photo.height();
        EXPECT_TRUE(takeHeard().testFlag(PhotoChange::Zoom));
    }
    const Row whole[] = {
        {{1000, 700}, {500, 400}, 50},                                // by height 57 would be too wide
        {{200, 1000}, {500, 35}, 3},                                  // 3.5 would be too high at 4
        {{640, 480}, {640, 480}, 100},                                // to the pixel
        {{640, 480}, {639, 480}, 99},  {{300, 200}, {600, 400}, 100}, // never enlarged
        {{10, 3000}, {100, 10}, 1},
    };
    for (const Row &row : whole) {
        open(plain(row.photo.width(), row.photo.height()));
        photo.fitPhoto(row.canvas);
        photo.showWhole(row.canvas);
        EXPECT_EQ(photo.zoom(), row.zoom) << row.photo.width() << " x " << row.photo.height();
    }
    photo.setZoom(70);
    for (const QSize canvas : {QSize(0, 100), QSize(100, 0), QSize()}) {
        photo.fitPhoto(canvas);
        EXPECT_EQ(photo.zoom(), 70);
    }
}

TEST_F(Document, fitsNothingWithoutAPicture) {
    photo.fitPhoto({600, 400});
    EXPECT_FALSE(photo.PhotoLoaded());
    EXPECT_EQ(signalCount, 0);
}

TEST_F(Document, zoomsInSteps) {
    enum Step { In, Out };
    struct Row {
        int from;
        Step step;
        int to;
        bool magnify;
        DrawingMode mode;
    };
    const Row rows[] = {
        {35, Out, 30, false, DrawingMode::Smooth}, {30, Out, 30, false, DrawingMode::Smooth},
        {95, In, 105, true, DrawingMode::Squares}, {105, Out, 95, true, DrawingMode::Squares},
        {90, In, 100, false, DrawingMode::Smooth}, {91, In, 101, true, DrawingMode::Squares},
        {5, Out, 30, false, DrawingMode::Smooth},  {9990, In, 10000, true, DrawingMode::Squares},
    };
    for (const Row &row : rows) {
        photo.setZoom(row.from);
        row.step == In ? photo.PerformZoomIn() : photo.PerformZoomOut();
        EXPECT_EQ(photo.zoom(), row.to) << "from " << row.from;
        EXPECT_EQ(photo.magnify(), row.magnify) << "from " << row.from;
        EXPECT_EQ(photo.drawingMode(), row.mode) << "from " << row.from;
    }
    photo.setZoom(-5);
    EXPECT_EQ(photo.zoom(), 1);
    photo.setZoom(400);
    photo.ResizePicCanvas();
    EXPECT_EQ(photo.zoom(), 400);
    EXPECT_EQ(photo.drawingMode(), DrawingMode::Smooth);
}

TEST_F(Document, makesTheReducedCopyOf480Pixels) {
    struct Row {
        QSize photo, reduced;
    };
    const Row rows[] = {{{1000, 600}, {480, 288}}, {{600, 1000}, {288, 480}}, {{480, 480}, {480, 480}},
                        {{960, 960}, {480, 480}},  {{96, 48}, {480, 240}},    {{3000, 2}, {480, 1}}};
    for (const Row &row : rows) {
        open(plain(row.photo.width(), row.photo.height()));
        EXPECT_EQ(photo.pic2nd().size(), row.reduced);
        EXPECT_EQ(photo.pic2nd().pixel(0, 0), qRgb(10, 20, 30));
    }
    photo.picCM(4) = plain(3, 3);
    ASSERT_TRUE(photo.changePhoto(plain(600, 500, qRgb(200, 0, 0))));
    EXPECT_TRUE(photo.picCM(4).isNull());
    EXPECT_EQ(photo.pic2nd().pixel(5, 5), qRgb(200, 0, 0));
}

TEST_F(Document, opensWithAllCopiesSharedAndSaysSoOnce) {
    for (const Route route : {Route::LoadPhoto, Route::TmrLoadPhoto}) {
        photo.setPhotoModified(true);
        photo.setZoom(300);
        takeHeard();
        const QImage picture = photoLike(60, 40);
        ASSERT_EQ(photo.openPicture({picture, PictureError::None, {}}, route), PictureError::None);
        EXPECT_TRUE(photo.PhotoLoaded());
        EXPECT_EQ(photo.PhotoModified(), route == Route::TmrLoadPhoto);
        EXPECT_EQ(photo.drawingMode(), DrawingMode::Smooth);
        for (const QImage *copy : {&photo.picCanvas(), &photo.picBuffer(), &photo.picThumb()}) {
            EXPECT_EQ(copy->constBits(), picture.constBits());
        }
        EXPECT_TRUE(heard.testFlag(PhotoChange::Loaded) && heard.testFlag(PhotoChange::Pixels));
    }
    EXPECT_EQ(photo.history().undoSteps(), 1); // none for the empty canvas
}

TEST_F(Document, keepsThePhotoAndTheRedoStepsWhenAFileCannotBeRead) {
    const QTemporaryDir folder;
    QFile broken(folder.filePath("broken.png"));
    ASSERT_TRUE(broken.open(QIODevice::WriteOnly));
    broken.write("no picture at all");
    broken.close();
    open(plain(30, 20));
    ASSERT_TRUE(photo.changePhoto(plain(30, 20, qRgb(1, 1, 1))));
    photo.PerformUndo();
    const QImage before = photo.picCanvas();
    for (const QString &name : {QStringLiteral("broken.png"), QStringLiteral("nothing.png")}) {
        EXPECT_NE(photo.openFile(folder.filePath(name), Route::LoadPhoto), PictureError::None);
        EXPECT_EQ(photo.picCanvas().cacheKey(), before.cacheKey());
        EXPECT_TRUE(photo.PhotoModified() && photo.PhotoLoaded());
    }
    photo.PerformUndo(); // the point of the failed opening: the same picture
    EXPECT_EQ(firstDifference(photo.picCanvas(), before), nowhere);
    photo.PerformRedo();
    photo.PerformRedo();
    photo.PerformRedo();
    EXPECT_EQ(photo.picCanvas().pixel(0, 0), qRgb(1, 1, 1));
}

TEST_F(Document, savesAndOpensAgain) {
    const QTemporaryDir folder;
    const QString path = folder.filePath("photo.png");
    EXPECT_FALSE(photo.saveFile(path).ok());
    EXPECT_FALSE(QFile::exists(path));
    const QImage picture = photoLike(50, 70);
    open(picture);
    photo.setPhotoModified(true);
    EXPECT_FALSE(photo.saveFile(folder.filePath("no/such/folder.png")).ok());
    EXPECT_TRUE(photo.PhotoModified());
    ASSERT_TRUE(photo.saveFile(path).ok());
    EXPECT_FALSE(photo.PhotoModified());
    ASSERT_TRUE(photo.changePhoto(plain(5, 5)));
    ASSERT_EQ(photo.openFile(path, Route::LoadPhoto), PictureError::None);
    EXPECT_EQ(firstDifference(photo.picCanvas(), picture), nowhere);
    photo.PerformUndo();
    EXPECT_EQ(photo.picCanvas().size(), QSize(5, 5));
}

TEST_F(Document, changesThePhotoInOneWay) {
    open(plain(30, 20));
    takeHeard();
    const QImage reducedCopy = photo.pic2nd();
    ASSERT_TRUE(photo.changePhoto(plain(20, 30)));
    EXPECT_NE(photo.pic2nd(), reducedCopy);
    EXPECT_EQ(signalCount, 1);
    EXPECT_TRUE(heard.testFlag(PhotoChange::Size) && heard.testFlag(PhotoChange::Modified));
    EXPECT_TRUE(photo.PhotoModified());
    EXPECT_EQ(photo.picThumb().constBits(), photo.picCanvas().constBits());
    EXPECT_EQ(photo.picBuffer().size(), QSize(30, 20));

    takeHeard();
    EXPECT_FALSE(photo.changePhoto(QImage()));
    EXPECT_EQ(signalCount, 0);
    EXPECT_EQ(photo.history().undoSteps(), 1);

    photo.setPhotoModified(false);
    ASSERT_TRUE(photo.changePhoto(plain(20, 30, qRgb(9, 9, 9)), {.recordUndo = false, .modified = false}));
    EXPECT_FALSE(photo.PhotoModified());
    EXPECT_EQ(photo.history().undoSteps(), 1);
    ASSERT_TRUE(photo.changePhoto(plain(4, 4).convertToFormat(QImage::Format_RGB888)));
    EXPECT_EQ(photo.picCanvas().format(), QImage::Format_RGB32);
}

#ifndef __SANITIZE_ADDRESS__
/// In a process of its own: 0 when changes without memory left the photo and its history alone.
int changesWithoutMemory() {
    PhotoDocument photo;
    const QImage first = photoLike(3000, 2000);
    QImage dotted = first.copy();
    dotted.setPixel(7, 7, qRgb(1, 2, 3));
    const QImage other = plain(3000, 2000);
    const QImage foreign = other.convertToFormat(QImage::Format_RGB888); // converting it on opening takes memory
    photo.openPicture({first, PictureError::None, {}}, Route::LoadPhoto);
    if (!photo.changePhoto(dotted)) {
        return 2;
    }
    photo.setPhotoModified(false);
    int heard = 0;
    QObject::connect(&photo, &PhotoDocument::changed, [&](PhotoChanges) { ++heard; });
    releaseKeptBuffers();
    std::optional<test::TightMemory> tight(4 << 20);
    const qint64 key = photo.picCanvas().cacheKey();
    const bool refused =
        photo.openPicture({foreign, PictureError::None, {}}, Route::LoadPhoto) == PictureError::NoMemory &&
        !photo.changePhoto(foreign) && !photo.changePhoto(other, {.recordUndo = false});
    const bool asBefore =
        photo.picCanvas().cacheKey() == key && photo.history().undoSteps() == 1 && heard == 0 && !photo.PhotoModified();
    tight.reset();
    return refused && asBefore && photo.PerformUndo() && firstDifference(photo.picCanvas(), first) == nowhere ? 0 : 1;
}

TEST(DocumentDeathTest, aRefusedChangeLeavesNoUndoStep) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(::_exit(changesWithoutMemory()), testing::ExitedWithCode(0), "");
}
#endif

// What the file said, and its name, go with the photo: changes keep them, undo of an opening brings back those of
// the photo before.
TEST_F(Document, metadataAndFileNameGoWithTheirPhoto) {
    const auto said = [](const char *xmp) {
        PictureMetadata metadata;
        metadata.xmp = xmp;
        return metadata;
    };
    const auto read = [&](int width, const char *xmp) {
        PictureRead result;
        result.picture = photoLike(width, 20);
        result.metadata = said(xmp);
        result.fileName = xmp;
        return result;
    };
    photo.openPicture(read(30, "first"), Route::LoadPhoto);
    ASSERT_TRUE(photo.changePhoto(photoLike(31, 20)));
    EXPECT_EQ(photo.metadata(), said("first"));
    photo.openPicture(read(32, "second"), Route::TmrLoadPhoto);
    ASSERT_TRUE(photo.changePhoto(photoLike(33, 20)));
    ASSERT_EQ(photo.pastePicture(read(34, "pasted")), PictureError::None);
    PictureRead broken;
    broken.error = PictureError::Damaged;
    broken.metadata = said("broken");
    photo.openPicture(broken, Route::LoadPhoto);
    EXPECT_EQ(photo.metadata(), said("pasted"));
    const struct {
        bool back;
        int width;
        const char *xmp;
    } steps[] = {{true, 34, "pasted"}, {true, 32, "second"}, {true, 31, "first"},   {true, 30, "first"},
                 {true, 30, "first"},  {false, 31, "first"}, {false, 32, "second"}, {false, 34, "pasted"}};
    for (const auto &step : steps) {
        step.back ? photo.PerformUndo() : photo.PerformRedo();
        EXPECT_EQ(photo.picCanvas().width(), step.width);
        EXPECT_EQ(photo.metadata(), said(step.xmp)) << "at the picture of width " << step.width;
        EXPECT_EQ(photo.fileName(), step.xmp);
    }
}

TEST_F(Document, metadataAreSavedWithoutThePlaceUnlessItIsToBeKept) {
    PictureRead read;
    read.picture = photoLike(30, 20);
    read.metadata.xmp = "<x:xmpmeta xmlns:x='adobe:ns:meta/'><rdf:RDF "
                        "xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#'><rdf:Description rdf:about='' "
                        "xmlns:photoshop='http://ns.adobe.com/photoshop/1.0/' photoshop:City='Quiet Harbour' "
                        "photoshop:Headline='Evening'/></rdf:RDF></x:xmpmeta>";
    ASSERT_EQ(photo.openPicture(read, Route::LoadPhoto), PictureError::None);
    ASSERT_TRUE(photo.changePhoto(photoLike(31, 20)));
    QTemporaryDir folder;
    for (const PrivateDetails details : {PrivateDetails::Removed, PrivateDetails::Kept}) {
        ASSERT_TRUE(photo.saveFile(folder.filePath("a.jpg"), details).ok());
        const QByteArray saved = readPicture(folder.filePath("a.jpg")).metadata.xmp;
        EXPECT_TRUE(saved.contains("Evening"));
        EXPECT_EQ(saved.contains("Quiet Harbour"), details == PrivateDetails::Kept);
    }
}

TEST_F(Document, undoesAndRedoes) {
    photo.PerformUndo();
    EXPECT_EQ(signalCount, 0); // nothing is loaded
    const QImage first = photoLike(30, 20);
    open(first);
    ASSERT_TRUE(photo.changePhoto(photoLike(20, 30)));
    photo.PerformUndo();
    EXPECT_EQ(firstDifference(photo.picCanvas(), first), nowhere);
    EXPECT_EQ(photo.picThumb().constBits(), photo.picCanvas().constBits());
    EXPECT_EQ(photo.pic2nd().size(), QSize(480, 320));
    EXPECT_TRUE(photo.PhotoModified());
    takeHeard();
    photo.PerformUndo(); // nothing left: the rest of the sequence still runs
    EXPECT_EQ(photo.picCanvas().size(), QSize(30, 20));
    EXPECT_TRUE(heard.testFlag(PhotoChange::Pixels));
    EXPECT_TRUE(heard.testFlag(PhotoChange::Selection));
    EXPECT_TRUE(photo.selection().isEmpty()); // it marked a part of another picture
    photo.PerformRedo();
    EXPECT_EQ(photo.picCanvas().size(), QSize(20, 30));
    EXPECT_TRUE(heard.testFlag(PhotoChange::Selection)); // the frame is given back
    EXPECT_TRUE(photo.PhotoModified());
}

TEST_F(Document, hasASmallPictureOfEveryStateAndGoesThere) {
    EXPECT_TRUE(photo.goToState(1)) << "without a photo nothing happens";
    const QImage pictures[] = {photoLike(400, 100), photoLike(100, 400), photoLike(20, 20)};
    open(pictures[0]);
    ASSERT_TRUE(photo.changePhoto(pictures[1]));
    photo.setMadeBy("tool5");
    ASSERT_TRUE(photo.changePhoto(pictures[2]));
    photo.setMadeBy("tool4");
    const QList<PhotoState> states = photo.states();
    ASSERT_EQ(states.size(), 3);
    const QSize sizes[] = {{192, 48}, {48, 192}, {192, 192}};
    const char *const icons[] = {"open", "tool5", "tool4"};
    for (int n = 0; n < 3; ++n) {
        EXPECT_EQ(states[n].small.size(), sizes[n]) << n;
        EXPECT_EQ(states[n].madeBy, icons[n]) << n;
    }
    for (const int n : {0, 2, 1, 1}) {
        takeHeard();
        EXPECT_TRUE(photo.goToState(states[n].id));
        EXPECT_EQ(firstDifference(photo.picCanvas(), pictures[n]), nowhere);
        EXPECT_EQ(signalCount, 1) << "one action";
        EXPECT_TRUE(photo.PhotoModified());
        EXPECT_EQ(photo.states()[n].small.cacheKey(), states[n].small.cacheKey()) << "made once";
    }
    // Each step has one, whatever came after its point; what takes the place of a photo has its own.
    photo.RecordUndoPoint();
    ASSERT_TRUE(photo.changePhoto(pictures[0], {.recordUndo = false}));
    EXPECT_EQ(photo.states()[1].small.size(), sizes[1]);
    EXPECT_EQ(photo.states()[2].small.size(), sizes[0]);
    ASSERT_TRUE(photo.pastePicture({pictures[2], PictureError::None, {}}) == PictureError::None);
    EXPECT_EQ(photo.states().last().small.size(), sizes[2]);
    EXPECT_EQ(photo.states().last().madeBy, "paste");
}

TEST_F(Document, keepsOneSnapshotInMemory) {
    photo.SavePhotoToMemory();
    photo.OpenPhotoFromMemory();
    EXPECT_TRUE(photo.MemoryPhoto().isEmpty() && photo.picBuffer().isNull());
    open(plain(240, 100));
    photo.SavePhotoToMemory();
    EXPECT_EQ(QImage::fromData(QByteArray::fromBase64(photo.MemoryPhoto()), "JPG").size(), QSize(240, 100));
    photo.OpenPhotoFromMemory();
    EXPECT_EQ(photo.picBuffer().size(), QSize(120, 50));
    EXPECT_EQ(photo.picCanvas().size(), QSize(240, 100));
}
