#include "session/Settings.h"

#include "base/IniFiles.h"

#include <QDir>
#include <QFileInfo>

namespace lumora {

namespace {

constexpr bool isInOrder() {
    for (size_t i = 0; i < std::size(settingRows); ++i) {
        if (settingRows[i].setting != static_cast<Setting>(i)) {
            return false;
        }
    }
    return true;
}
static_assert(isInOrder(), "the rows follow the enumeration");

constexpr QChar formerSeparator = u';';

IniFiles::Value valueFor(const SettingRow &row, const QString &text) {
    return {QString::fromUtf8(row.section), QString::fromUtf8(row.key), text};
}

} // namespace

namespace settings {

std::optional<int> number(const QString &text) {
    bool isNumber = false;
    const int value = text.trimmed().toInt(&isNumber);
    return isNumber ? std::optional(value) : std::nullopt;
}

std::optional<QString> textOf(const QString &value) {
    return value;
}

std::optional<QString> textOf(bool value) {
    return value ? QStringLiteral("1") : QStringLiteral("0");
}

std::optional<QString> textOf(int value) {
    return QString::number(value);
}

std::optional<QString> textOf(std::optional<int> value) {
    return value ? textOf(*value) : std::nullopt;
}

std::optional<QString> textOf(Switch value) {
    return value == Switch::Other ? std::nullopt : textOf(value == Switch::On);
}

std::optional<QString> textOf(DialogStyle value) {
    return value == DialogStyle::Other ? std::nullopt : textOf(value == DialogStyle::System);
}

std::optional<QString> textOf(MailSecurity value) {
    return textOf(static_cast<int>(value));
}

std::optional<QString> textOf(MailSize value) {
    return textOf(static_cast<int>(value));
}

std::optional<QString> textOf(ButtonSize value) {
    return textOf(static_cast<int>(value));
}

} // namespace settings

Settings::Settings(IniFiles &files, QString file, QString usersFile)
    : m_files(files), m_file(std::move(file)), m_usersFile(std::move(usersFile)) {}

void Settings::switchSimpleOn() {
    QList<IniFiles::Value> values;
    QStringList former;
    bool isOtherNow = false;
    for (const SettingRow &row : settingRows) {
        if (row.isWrittenBy(Writer::SimpleStart)) {
            const QString before = text(row, nullptr);
            isOtherNow = isOtherNow || !(before.isNull() || before == u"0");
            const bool canBeKept = !before.isNull() && !before.contains(formerSeparator);
            former << (canBeKept ? before : QString::fromUtf8(row.standard));
            values.append(valueFor(row, QStringLiteral("0")));
        }
    }
    if (isOtherNow) {
        values.append(valueFor(rowOf(Setting::BeforeSimple), former.join(formerSeparator)));
    }
    m_files.writeValues(m_file, values);
}

void Settings::bringFormerBack() {
    const QStringList former = read<Setting::BeforeSimple>().split(formerSeparator);
    QList<IniFiles::Value> values;
    for (const SettingRow &row : settingRows) {
        if (row.isWrittenBy(Writer::SimpleStart)) {
            values.append(valueFor(row, former.value(values.size())));
        }
    }
    if (former.size() == values.size()) {
        m_files.writeValues(m_file, values);
    }
    forgetFormer();
}

void Settings::forgetFormer() {
    if (hasFormer()) {
        write<Setting::BeforeSimple, Writer::Former>(QString());
    }
}

QString Settings::text(const SettingRow &row, const char *standard) const {
    return m_files.ReadIniValue(fileOf(row), QString::fromUtf8(row.section), QString::fromUtf8(row.key),
                                standard == nullptr ? QString() : QString::fromUtf8(standard));
}

void Settings::writeText(const SettingRow &row, const QString &value) {
    if (row.isUsersOwn()) {
        QDir().mkpath(QFileInfo(m_usersFile).path());
    }
    m_files.WriteIniValue(fileOf(row), QString::fromUtf8(row.section), QString::fromUtf8(row.key), value);
}

} // namespace lumora
