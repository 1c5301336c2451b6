#include "ideas/Ideas.h"

#include "session/MainFields.h"
#include "session/ToolFlags.h"

#include <algorithm>

namespace lumora {

namespace {

using enum IdeaStep::For;

const Idea rows[] = {
    {.id = "card",
     .name = "IdeaCardName",
     .title = "IdeaCard",
     .layout = IdeaLayout::Single,
     .pictures = 1,
     .steps = {{{"open", "IdeaCardOpen"},
                {"tool9", "IdeaCardColours", AdvancedMode, "keySaturation"},
                {"tool7", "IdeaCardFrame", Everybody, "keyFrame4"},
                {"stickers", "IdeaCardWords"},
                {"save", "IdeaSave"}}},
     .then = "IdeaCardThen"},
    {.id = "puzzle",
     .name = "IdeaPuzzleName",
     .title = "IdeaPuzzle",
     .layout = IdeaLayout::Pieces,
     .pictures = 1,
     .steps = {{{"open", "IdeaPuzzleOpen"},
                {"tool3", "IdeaPuzzleCrop", AdvancedMode},
                {"tool10", "IdeaPuzzleTile", Everybody, "keySFX8"},
                {"save", "IdeaSave"}}},
     .then = "IdeaPuzzleThen"},
    {.id = "wanted",
     .name = "IdeaWantedName",
     .title = "IdeaWanted",
     .layout = IdeaLayout::Single,
     .pictures = 1,
     .steps = {{{"open", "IdeaWantedOpen"},
                {"tool3", "IdeaWantedCrop", AdvancedMode},
                {"tool7", "IdeaWantedFrame", Everybody, "keyFrame3"},
                {"tool8", "IdeaWantedSepia", Everybody, "keySepia"},
                {"stickers", "IdeaWantedWords"},
                {"save", "IdeaSave"}}},
     .then = "IdeaWantedThen"},
    {.id = "comic",
     .name = "IdeaComicName",
     .title = "IdeaComic",
     .layout = IdeaLayout::Page,
     .pictures = 6,
     .steps = {{{"open", "IdeaComicOpen"},
                {"tool10", "IdeaComicPaint", Everybody, "keySFX5"},
                {"tool7", "IdeaComicFrame", Everybody, "keyFrame8"},
                {"stickers", "IdeaComicWords"},
                {"save", "IdeaComicSave"}}},
     .then = "IdeaComicThen"},
    {.id = "calendar",
     .name = "IdeaCalendarName",
     .title = "IdeaCalendar",
     .layout = IdeaLayout::Seasons,
     .pictures = 4,
     .steps = {{{"open", "IdeaCalendarOpen"},
                {"tool7", "IdeaCalendarFrame"},
                {"tool8", "IdeaCalendarColour"},
                {"save", "IdeaCalendarSave"},
                {"undo", "IdeaCalendarUndo"}}},
     .then = "IdeaCalendarThen"},
    {.id = "popart",
     .name = "IdeaPopArtName",
     .title = "IdeaPopArt",
     .layout = IdeaLayout::Rows,
     .pictures = 3,
     .steps = {{{"open", "IdeaPopArtOpen"},
                {"pop-art", "IdeaPopArtMake"},
                {"dice", "IdeaPopArtColours", PopArtPanel},
                {"save", "IdeaSave"}}},
     .then = "IdeaPopArtThen",
     .canBeMade = true},
    {.id = "postcard",
     .name = "IdeaPostcardName",
     .title = "IdeaPostcard",
     .layout = IdeaLayout::Single,
     .pictures = 1,
     .steps = {{{"open", "IdeaPostcardOpen"},
                {"tool10", "IdeaPostcardSolarise", Everybody, "keySFX1"},
                {"tool8", "IdeaPostcardInvert", Everybody, "keyInvert"},
                {"tool7", "IdeaPostcardFrame", Everybody, "keyFrame7"},
                {"stickers", "IdeaPostcardWords"},
                {"save", "IdeaSave"}}},
     .then = "IdeaPostcardThen"},
    {.id = "memory",
     .name = "IdeaMemoryName",
     .title = "IdeaMemory",
     .layout = IdeaLayout::Cards,
     .pictures = 6,
     .steps = {{{"open", "IdeaMemoryOpen"},
                {"tool3", "IdeaMemoryCrop", AdvancedMode},
                {"tool7", "IdeaMemoryFrame"},
                {"save", "IdeaMemorySave"}}},
     .then = "IdeaMemoryThen"},
};

} // namespace

std::span<const Idea> ideas() {
    return rows;
}

QString toolOf(const IdeaStep &step) {
    const QLatin1StringView icon(step.icon);
    if (icon.startsWith(QLatin1StringView("tool"))) {
        return QStringLiteral("cmdT") + icon.mid(1);
    }
    if (opensTool(step)) {
        return icon;
    }
    const bool popArt = icon == QLatin1StringView("pop-art") || icon == QLatin1StringView("dice");
    return popArt ? QStringLiteral("popArt") : QString();
}

bool opensTool(const IdeaStep &step) {
    return step.icon != nullptr && step.icon == QLatin1StringView("stickers");
}

const IdeaStep *stepThatOpensTool(const Idea &idea) {
    const auto found = std::ranges::find_if(idea.steps, &opensTool);
    return found != idea.steps.end() ? &*found : nullptr;
}

QString ideaPicturePath(const Idea &idea, int number) {
    return QStringLiteral(":/ideas/%1-%2.jpg").arg(QLatin1StringView(idea.id)).arg(number);
}

bool isShown(const IdeaStep &step, const ToolFlags &flags, const MainFields &fields) {
    if (step.icon == nullptr) {
        return false;
    }
    return step.shownTo == Everybody || (step.shownTo == AdvancedMode && !flags.SimpleModeOn) ||
           (step.shownTo == PopArtPanel && fields.txtAndyStyle != Switch::Off);
}

} // namespace lumora
