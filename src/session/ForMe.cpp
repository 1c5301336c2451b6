#include "session/ForMe.h"

namespace lumora {

ForMe readForMe(const Settings &settings) {
    return {
        .size = settings.read<Setting::ButtonSize>(),
        .calm = settings.read<Setting::Calm>(),
        .easyLetters = settings.read<Setting::EasyLetters>(),
        .capitals = settings.read<Setting::Capitals>(),
        .highContrast = settings.read<Setting::HighContrast>(),
        .clickMoveClick = settings.read<Setting::ClickMoveClick>(),
        .largePointer = settings.read<Setting::LargePointer>(),
        .readAloud = settings.read<Setting::ReadAloud>(),
    };
}

void writeForMe(Settings &settings, const ForMe &forMe) {
    const ForMe before = readForMe(settings);
    const auto keep = [&]<Setting S, typename Value>(Value ForMe::*member) {
        if (forMe.*member != before.*member) {
            settings.write<S, Writer::ForMe>(forMe.*member);
        }
    };
    keep.operator()<Setting::ButtonSize>(&ForMe::size);
    keep.operator()<Setting::Calm>(&ForMe::calm);
    keep.operator()<Setting::EasyLetters>(&ForMe::easyLetters);
    keep.operator()<Setting::Capitals>(&ForMe::capitals);
    keep.operator()<Setting::HighContrast>(&ForMe::highContrast);
    keep.operator()<Setting::ClickMoveClick>(&ForMe::clickMoveClick);
    keep.operator()<Setting::LargePointer>(&ForMe::largePointer);
    keep.operator()<Setting::ReadAloud>(&ForMe::readAloud);
}

} // namespace lumora
