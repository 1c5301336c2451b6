#include "session/PlainWords.h"

#include "base/Texts.h"

namespace lumora {

QString plainWords(const Texts &texts, PictureError error) {
    switch (error) {
    case PictureError::None:
        return {};
    case PictureError::NotFound:
        return texts.text("StatusNotFound");
    case PictureError::NotAPicture:
        return texts.text("StatusNotAPicture");
    case PictureError::TooRare:
        return texts.text("StatusTooRare");
    case PictureError::TooLarge:
        return texts.text("StatusTooLarge");
    case PictureError::Damaged:
        return texts.text("StatusDamaged");
    case PictureError::NoMemory:
        return texts.text("StatusNoMemory");
    case PictureError::UnknownType:
        return texts.text("StatusUnknownType");
    case PictureError::NotWritable:
        return texts.text("StatusNotWritable");
    case PictureError::Cancelled:
        return texts.text("StatusStopped");
    }
    return {};
}

} // namespace lumora
