#include "Pictures.h"

#include "base/OwnThread.h"
#include "output/slideshow/SlideLoader.h"
#include "view/Thumbnails.h"

#include <QDir>
#include <QEventLoop>
#include <QTimer>
#include <cstdio>

namespace lumora::keep {

namespace {

constexpr int patience = 20'000; // milliseconds, for all pictures

QString makePictures(const QString &folder) {
    const QStringList names = QDir(folder).entryList(QDir::Files);
    qsizetype thumbnails = 0;
    qsizetype slides = 0;
    QEventLoop loop;
    const auto look = [&] {
        if (thumbnails == names.size() && slides == names.size()) {
            loop.quit();
        }
    };
    Thumbnails list(100);
    QObject::connect(&list, &Thumbnails::made, &loop, [&](const QString &, const QImage &thumbnail) {
        thumbnails += thumbnail.isNull() ? 0 : 1;
        look();
    });
    SlideLoader show;
    QObject::connect(&show, &SlideLoader::found, &loop, [&](const Slide &slide) {
        if (slide.index >= 0 && ++slides < names.size()) {
            show.find(folder, names, slide.index + 1, {400, 300});
        }
        look();
    });
    QStringList paths;
    for (const QString &name : names) {
        paths << QDir(folder).filePath(name);
    }
    list.want(paths);
    show.find(folder, names, 0, {400, 300});
    QTimer::singleShot(patience, &loop, [&loop] { loop.quit(); });
    loop.exec();
    finishBesides();
    std::printf("%lld thumbnails, %lld slides\n", static_cast<long long>(thumbnails), static_cast<long long>(slides));
    return thumbnails == names.size() && slides == names.size() ? QString() : QString("not all are made");
}

} // namespace

Work picturesWork(const QString &folder) {
    return [folder] { return makePictures(folder); };
}

} // namespace lumora::keep
