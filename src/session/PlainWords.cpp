#include "session/PlainWords.h"

#include "base/Texts.h"
#include "session/Settings.h"

#include <QLocale>

namespace lumora {

QString plainWords(const Texts &texts, const PictureWritten &written) {
    const QString words = plainWords(texts, written.error);
    return written.error == PictureError::SideTooLong ? words.arg(QLocale().toString(written.mostPixels)) : words;
}

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
    case PictureError::DiskFull:
        return texts.text("StatusDiskFull");
    case PictureError::ReadOnlyFolder:
        return texts.text("StatusReadOnlyFolder");
    case PictureError::ReadOnlyFile:
        return texts.text("StatusReadOnlyFile");
    case PictureError::NameRefused:
        return texts.text("StatusNameRefused");
    case PictureError::NameTooLong:
        return texts.text("StatusNameTooLong");
    case PictureError::SideTooLong:
        return texts.text("StatusSideTooLong");
    case PictureError::Cancelled:
        return texts.text("StatusStopped");
    }
    return {};
}

QString oddSetting(const Texts &texts, Setting setting) {
    const SettingRow &row = rowOf(setting);
    return texts.text("StatusOddSetting")
        .arg(QString("[%1] %2").arg(QLatin1StringView(row.section), QLatin1StringView(row.key)));
}

} // namespace lumora
