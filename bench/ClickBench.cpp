// What somebody waits for after a click: the effect, the undo point, the changed photo and its reduced copy.
#include "BenchPicture.h"
#include "BenchRows.h"

#include "document/PhotoDocument.h"
#include "imaging/EffectEngine.h"
#include "imaging/effects/Invert.h"
#include "imaging/effects/Sepia.h"

#include <cstdlib>
#include <memory>

namespace lumora {

namespace {

struct Desk {
    PhotoDocument photo;
};

void addClick(const char *name, const Operation &effect) {
    // The photo of this row's picture; each click is undone again, so that the history does not grow.
    const auto desk = std::make_shared<std::unique_ptr<Desk>>();
    addRows(
        name,
        [desk, effect](const QImage &picture) {
            if (*desk == nullptr || (*desk)->photo.picBuffer().size() != picture.size()) {
                *desk = std::make_unique<Desk>();
                (*desk)->photo.openPicture({picture, PictureError::None, {}}, PhotoDocument::OpenRoute::LoadPhoto);
            }
            PhotoDocument &photo = (*desk)->photo;
            EffectEngine engine;
            engine.setPicture(photo.picCanvas());
            if (!engine.apply(effect, false) || !photo.changePhoto(engine.picture())) {
                std::abort();
            }
            benchmark::DoNotOptimize(photo.pic2nd().constBits());
        },
        [desk] { (*desk)->photo.PerformUndo(); });
}

} // namespace

void addClickRows() {
    addClick("ClickInvert", {applyInvert, {true, true, true}});
    addClick("ClickSepia", {applySepia, {}});
}

} // namespace lumora
