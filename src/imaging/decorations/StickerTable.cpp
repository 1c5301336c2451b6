#include "imaging/decorations/StickerTable.h"

namespace lumora {

namespace {

using enum StickerGroup;

const StickerRow rows[] = {
    {"happy", "StickerHappy", Faces},
    {"laughing", "StickerLaughing", Faces},
    {"love", "StickerLove", Faces},
    {"cool", "StickerCool", Faces},
    {"wink", "StickerWink", Faces},
    {"tongue", "StickerTongue", Faces},
    {"surprised", "StickerSurprised", Faces},
    {"sleepy", "StickerSleepy", Faces},
    {"sad", "StickerSad", Faces},
    {"robot", "StickerRobot", Faces},
    {"crown", "StickerCrown", DressUp},
    {"party-hat", "StickerPartyHat", DressUp},
    {"top-hat", "StickerTopHat", DressUp},
    {"wizard-hat", "StickerWizardHat", DressUp},
    {"cap", "StickerCap", DressUp},
    {"sunglasses", "StickerSunglasses", DressUp},
    {"round-glasses", "StickerRoundGlasses", DressUp},
    {"moustache", "StickerMoustache", DressUp},
    {"curly-moustache", "StickerCurlyMoustache", DressUp},
    {"bow-tie", "StickerBowTie", DressUp},
    {"cat", "StickerCat", Animals},
    {"dog", "StickerDog", Animals},
    {"rabbit", "StickerRabbit", Animals},
    {"bear", "StickerBear", Animals},
    {"panda", "StickerPanda", Animals},
    {"frog", "StickerFrog", Animals},
    {"owl", "StickerOwl", Animals},
    {"fish", "StickerFish", Animals},
    {"butterfly", "StickerButterfly", Animals},
    {"dinosaur", "StickerDinosaur", Animals},
    {"sun", "StickerSun", Outdoors},
    {"cloud", "StickerCloud", Outdoors},
    {"rainbow", "StickerRainbow", Outdoors},
    {"snowflake", "StickerSnowflake", Outdoors},
    {"lightning", "StickerLightning", Outdoors},
    {"flower", "StickerFlower", Outdoors},
    {"tree", "StickerTree", Outdoors},
    {"leaf", "StickerLeaf", Outdoors},
    {"moon", "StickerMoon", Outdoors},
    {"car", "StickerCar", Outdoors},
    {"balloon", "StickerBalloon", Party},
    {"cake", "StickerCake", Party},
    {"gift", "StickerGift", Party},
    {"ice-cream", "StickerIceCream", Party},
    {"doughnut", "StickerDoughnut", Party},
    {"strawberry", "StickerStrawberry", Party},
    {"pizza", "StickerPizza", Party},
    {"candle", "StickerCandle", Party},
    {"rocket", "StickerRocket", Party},
    {"train", "StickerTrain", Party},
    {"bang", "StickerBang", Comic},
    {"splash", "StickerSplash", Comic},
    {"heart", "StickerHeart", Comic},
    {"star", "StickerStar", Comic},
    {"sparkles", "StickerSparkles", Comic},
    {"arrow", "StickerArrow", Comic},
    {"medal", "StickerMedal", Comic},
    {"cup", "StickerCup", Comic},
    {"corner", "StickerCorner", Comic},
    {"ribbon", "StickerRibbon", Comic},
};

} // namespace

std::span<const StickerRow> stickers() {
    return rows;
}

QString stickerDrawing(const StickerRow &row) {
    return QStringLiteral(":/stickers/%1.svg").arg(QLatin1StringView(row.name));
}

} // namespace lumora
