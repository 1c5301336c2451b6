#include "output/scan/ScanWords.h"

#include "base/Texts.h"

namespace lumora {

QString plainWords(const Texts &texts, ScanStatus status) {
    switch (status) {
    case ScanStatus::Good:
        return {};
    case ScanStatus::Unsupported:
        return texts.text("ScanUnsupported");
    case ScanStatus::Cancelled:
        return texts.text("ScanStoppedThere");
    case ScanStatus::Busy:
        return texts.text("ScanBusy");
    case ScanStatus::Jammed:
        return texts.text("ScanJammed");
    case ScanStatus::NoPaper:
        return texts.text("ScanNoPaper");
    case ScanStatus::CoverOpen:
        return texts.text("ScanCoverOpen");
    case ScanStatus::NotAnswering:
        return texts.text("ScanNotAnswering");
    case ScanStatus::NoMemory:
        return texts.text("ScanNoMemory");
    case ScanStatus::NotAllowed:
        return texts.text("ScanNotAllowed");
    case ScanStatus::Crashed:
        return texts.text("ScanCrashed");
    case ScanStatus::TooLarge:
        return texts.text("ScanTooLarge");
    }
    return {};
}

} // namespace lumora
