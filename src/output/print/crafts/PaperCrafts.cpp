#include "output/print/crafts/PaperCrafts.h"

#include "base/Texts.h"
#include "output/print/crafts/CraftPages.h"
#include "output/print/crafts/PhotoDetails.h"

#include <QGuiApplication>

namespace lumora {

namespace {

const PaperCraft craftRows[] = {
    {.button = "ImageCard", .how = "CraftCardHow", .words = {"CraftGreeting", "CraftMadeBy"}, .layOut = &layOutCard},
    {.button = "ImagePoster", .how = "CraftPosterHow", .words = {"CraftSheet"}, .layOut = &layOutPoster},
    {.button = "ImageMemory", .how = "CraftMemoryHow", .words = {}, .layOut = &layOutMemory},
    {.button = "ImagePuzzle", .how = "CraftPuzzleHow", .words = {}, .layOut = &layOutPuzzle},
};

} // namespace

std::span<const PaperCraft> paperCrafts() {
    return craftRows;
}

CraftContent contentFor(const PaperCraft &craft, const Texts &texts, const QImage &picture) {
    CraftContent content;
    for (const char *identifier : craft.words) {
        content.words << (identifier != nullptr ? texts.text(identifier) : QString());
    }
    content.details = differingDetails(picture);
    content.fromRight = QGuiApplication::isRightToLeft();
    return content;
}

} // namespace lumora
