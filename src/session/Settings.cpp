#include "session/Settings.h"

#include "base/IniFiles.h"
#include "base/basMisc.h"

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

Settings::Settings(IniFiles &files, const Installation &where)
    : m_files(files), m_file(where.settingsFile()), m_usersFile(where.usersFile()) {
    if (!where.siteFile.isEmpty()) {
        m_files.addSiteFile(m_file, where.siteFile);
    }
}

QString Settings::lockValue(Lock lock) const {
    constexpr const char *keys[] = {"", "Mode", "Options", "Exit", "Printing", "E-mail", "Working Directory"};
    return lock == Lock::None ? QString() : m_files.siteValue(m_file, "Locked", keys[static_cast<size_t>(lock)]);
}

bool Settings::isLocked(Lock lock) const {
    return lock == Lock::Mode ? onlyMode().has_value() : lockValue(lock) == u"1";
}

std::optional<Settings::Mode> Settings::onlyMode() const {
    const QString value = lockValue(Lock::Mode);
    const auto is = [&value](const char *mode) {
        return value.compare(QLatin1StringView(mode), Qt::CaseInsensitive) == 0;
    };
    return is("Simple") ? std::optional(Mode::Simple) : is("Advanced") ? std::optional(Mode::Advanced) : std::nullopt;
}

void Settings::switchSimpleOn() {
    QList<IniFiles::Value> values;
    QStringList former;
    bool isOtherNow = false;
    for (const SettingRow &row : settingRows) {
        if (row.isWrittenBy(Writer::SimpleStart)) {
            const QString before = text(row, nullptr);
            isOtherNow = isOtherNow || !(before.isNull() || before == u"0" || isLocked(row.lock));
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
    const QString section = QString::fromUtf8(row.section);
    const QString key = QString::fromUtf8(row.key);
    const QString otherwise = standard == nullptr ? QString() : QString::fromUtf8(standard);
    if (isLocked(row.lock)) {
        const QString value = m_files.siteValue(m_file, section, key);
        return value.isNull() ? otherwise : value;
    }
    return m_files.ReadIniValue(fileOf(row), section, key, otherwise);
}

void Settings::writeText(const SettingRow &row, const QString &value) {
    if (isLocked(row.lock)) {
        return;
    }
    if (row.isUsersOwn()) {
        QDir().mkpath(QFileInfo(m_usersFile).path());
    }
    m_files.WriteIniValue(fileOf(row), QString::fromUtf8(row.section), QString::fromUtf8(row.key), value);
}

} // namespace lumora
