#include "base/IniFiles.h"
#include "base/IniText.h"
#include "devices/ScanOption.h"
#include "devices/ScanProtocol.h"
#include "fuzz/Targets.h"
#include "output/scan/ScanPicture.h"
#include "session/Settings.h"

#include <array>

namespace lumora::fuzz {

namespace {

/// The names of the settings; texts are made of them once.
const QList<std::pair<QString, QString>> &settingNames() {
    static const QList<std::pair<QString, QString>> names = [] {
        QList<std::pair<QString, QString>> all;
        for (const SettingRow &row : settingRows) {
            all.emplace_back(QLatin1String(row.section), QLatin1String(row.key));
        }
        return all;
    }();
    return names;
}

/// One value changed: what else the file says stays, and a program that reads the file as it is now sees the same.
void change(const QByteArray &bytes, const QString &section, const QString &key, const QString &value) {
    const bool isPlain = std::none_of(value.begin(), value.end(), [](QChar c) { return c < u' '; });
    if (!IniText::canName(section, key) || !isPlain) {
        return;
    }
    IniText text(bytes);
    QList<std::array<QString, 3>> others;
    for (const auto &[otherSection, otherKey] : settingNames()) {
        const auto other = text.value(otherSection, otherKey);
        if (other &&
            (section.toCaseFolded() != otherSection.toCaseFolded() || key.toCaseFolded() != otherKey.toCaseFolded())) {
            others.append({otherSection, otherKey, *other});
        }
    }
    text.setValue(section, key, value);
    const IniText again(text.toBytes());
    require(text.value(section, key) == value, "a value that was set is there");
    require(again.value(section, key) == value, "a value that was written is read");
    for (const auto &[otherSection, otherKey, other] : others) {
        require(text.value(otherSection, otherKey) == other, "other values stay");
        require(again.value(otherSection, otherKey) == other, "other values are written as they were");
    }
    require(!text.setValue(section, key, value), "nothing changes the second time");
}

} // namespace

void readAsIni(const QByteArray &bytes, const char *) {
    IniFiles files;
    const QString path = fileWith(bytes, ".ini");
    for (const auto &[section, key] : settingNames()) {
        const QString value = files.ReadIniValue(path, section, key, "1");
        require(value.size() <= 900, "a value of at most 900 characters");
        settings::number(value);
    }
    const QStringList words = QString::fromUtf8(bytes.left(bytes.indexOf('\n'))).split(u',');
    change(bytes, words.value(0), words.value(1), words.value(2).trimmed());
    change(bytes, "Grid", "Value", QStringLiteral("1 = ; ["));
    change(bytes, "For me", "new", QString());
}

void readAsScan(const QByteArray &bytes, const char *) {
    ScanMessages messages;
    ScanPicture picture;
    const qsizetype piece = bytes.isEmpty() ? 1 : 1 + static_cast<uchar>(bytes[0]);
    for (qsizetype at = 1; at < bytes.size() && !messages.isBroken(); at += piece) {
        messages.add(bytes.mid(at, piece));
        while (const auto message = messages.next()) {
            require(message->content.size() <= longestScanMessage, "a message is not longer than agreed");
            switch (message->kind) {
            case ScanMessage::Kind::Frame:
                if (const auto frame = ScanFrame::fromText(message->content)) {
                    const auto again = ScanFrame::fromText(frame->toText());
                    require(again && again->toText() == frame->toText(), "a frame can be told again");
                    picture.end();
                    picture.begin(*frame);
                }
                break;
            case ScanMessage::Kind::Data:
                picture.add(message->content);
                picture.share();
                break;
            case ScanMessage::Kind::Options:
                if (const auto options = scanOptionsFromJson(message->content)) {
                    require(scanOptionsFromJson(toJson(*options)).has_value(), "options can be told again");
                    automaticScan(*options);
                    resolutionValues(*options, 300);
                }
                break;
            case ScanMessage::Kind::Status:
                statusOf(message->content);
                break;
            }
        }
    }
    picture.end();
    const QImage scanned = picture.picture();
    require(scanned.isNull() || scanned.format() == QImage::Format_RGB32, "a scan is opaque");
    picture.part(0, picture.lines());
}

} // namespace lumora::fuzz
