#include "Unsaved.h"

#include "base/OwnThread.h"
#include "document/DiscardedPhotos.h"
#include "document/PhotoDocument.h"
#include "document/Recovery.h"
#include "document/RecoveryFolder.h"

#include <QCryptographicHash>
#include <cstdio>
#include <memory>

namespace lumora::keep {

namespace {

QImage upsideDown(const QImage &picture) {
    return picture.mirrored(false, true);
}

/// Stands for the pixels, in every run of the program.
QByteArray sumOf(const QImage &picture) {
    QCryptographicHash sum(QCryptographicHash::Sha1);
    for (int y = 0; y < picture.height(); ++y) {
        sum.addData({reinterpret_cast<const char *>(picture.constScanLine(y)), qsizetype{4} * picture.width()});
    }
    return sum.result().toHex();
}

/// A photo with one change that is not saved, and its copy on the disk.
struct Unsaved {
    PhotoDocument photo;
    Recovery recovery;

    Unsaved(const QString &file, const QString &folder) : recovery(photo, folder) {
        photo.openFile(file, PhotoDocument::OpenRoute::LoadPhoto);
        photo.changePhoto(upsideDown(photo.picCanvas()));
        recovery.keepNow();
    }
};

} // namespace

Work recoveryWork(const QString &file, const QString &picture, const QString &folder) {
    auto unsaved = std::make_shared<Unsaved>(file, folder);
    const QImage before = unsaved->photo.picCanvas();
    const QImage after = readPicture(picture).picture;
    std::printf("before %s\nafter %s\n", sumOf(before).constData(), sumOf(after).constData());
    std::fflush(stdout);
    return [unsaved, before, after] {
        PhotoDocument &photo = unsaved->photo;
        if (!photo.changePhoto(after)) {
            return QString("not changed");
        }
        unsaved->recovery.keepNow();
        if (photo.picCanvas() != after || !photo.isOnlyHere()) {
            return QString("the photo is another one");
        }
        const bool undone = photo.PerformUndo() && photo.picCanvas() == before;
        const bool redone = photo.PerformRedo() && photo.picCanvas() == after;
        unsaved->recovery.keepNow();
        return undone && redone ? QString() : QString("the history is another one");
    };
}

Work recoveredWork(const QString &folder) {
    return [folder] {
        KeptPhoto photo;
        int damaged = 0;
        const auto found = RecoveryFolder::findNewest(folder, photo, &damaged);
        if (damaged > 0) {
            std::printf("damaged %d\n", damaged);
        }
        std::printf(found == nullptr ? "nothing\n" : "offered %s\n", sumOf(photo.picture).constData());
        return QString();
    };
}

Work discardWork(const QString &file, const QString &folder) {
    auto unsaved = std::make_shared<Unsaved>(file, folder);
    std::printf("before %s\n", sumOf(unsaved->photo.picCanvas()).constData());
    return [unsaved, folder]() mutable {
        unsaved->recovery.keepDiscarded({unsaved->photo.picCanvas(), unsaved->photo.metadata()});
        unsaved->photo.setPhotoModified(false);
        unsaved.reset(); // may hand what is left to a thread
        finishBesides();
        return QString();
    };
}

Work historyWork(const QString &file, const QString &folder) {
    constexpr int changes = 12;
    const QImage first = readPicture(file).picture;
    PhotoHistory::Limits limits;
    limits.memory = first.sizeInBytes() * 3;
    limits.folder = folder;
    auto photo = std::make_shared<PhotoDocument>(limits);
    photo->openFile(file, PhotoDocument::OpenRoute::LoadPhoto);
    return [photo, first] {
        QByteArrayList sums = {sumOf(first)};
        for (int n = 0; n < changes; ++n) {
            QImage next = upsideDown(photo->picCanvas());
            next.setPixel(n, n, qRgb(n, n, n));
            if (!photo->changePhoto(next)) {
                return QString("not changed");
            }
            sums += sumOf(next);
        }
        qsizetype at = changes;
        // A step that cannot be read now stays, and can be taken the next time.
        while (photo->history().undoSteps() > 0 && (photo->PerformUndo() || photo->PerformUndo())) {
            if (sumOf(photo->picCanvas()) != sums[--at]) {
                return QString("step %1 leads elsewhere").arg(at);
            }
        }
        std::printf("undone to %lld\n", static_cast<long long>(at));
        while (photo->history().redoSteps() > 0 && (photo->PerformRedo() || photo->PerformRedo())) {
            if (sumOf(photo->picCanvas()) != sums[++at]) {
                return QString("redo %1 leads elsewhere").arg(at);
            }
        }
        std::printf("%lld steps are lost\n", static_cast<long long>(changes - at));
        return QString();
    };
}

} // namespace lumora::keep
