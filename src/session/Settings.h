// The settings file: one table of everything in Lumora.ini, and typed access to it.
#pragma once

#include "base/MailServer.h"

#include <QString>
#include <optional>

namespace lumora {

class IniFiles;

/// The sender's address until one is entered.
inline constexpr char placeholderAddress[] = "you@example.com";

/// Every setting. The table below has its rows in this order.
enum class Setting {
    DialogStyle,
    AdvancedEffects,
    AdvancedResize,
    AdvancedPopart,
    Grid,
    Email,
    SenderAddress,
    RecipientAddress,
    SlideshowDelay,
    AdvancedScan,
    Scanner,
    ScannerButtonOff,
    Printer,
    PrintLock,
    PrintLockMinutes,
    PrintButtonOff,
    PrintPause,
    CropTip,
    Welcome,
    ScreenNotice,
    WindowSize,
    Language,
    WorkingDirectory,
    MyDocs,
    NoticeTitle,
    NoticeText,
    NoticeButton,
    EmailFrom,
    EmailTo,
    EmailMessage,
    EmailTitle,
    MailHost,
    MailPort,
    MailSecurityKind,
    MailUser,
    MailPhotoSize,
    PrivateDetails,
    KeepThrownAway,
    BeforeSimple,
    ReadAloud,
};

/// A yes or no setting whose readers ignore any other value.
enum class Switch { Off, On, Other };

/// Which file dialogs open and save photos.
enum class DialogStyle { Own, System, Other };

/// How large a photo is mailed.
enum class MailSize { Small, Medium, AsItIs };

/// How a value is parsed.
enum class SettingKind {
    Text,        ///< QString, verbatim
    Number,      ///< int; the default when it is not a whole number
    Index,       ///< std::optional<int>; nullopt when it is not a whole number
    Yes,         ///< bool, true for "1" alone
    YesUnlessNo, ///< bool, false for "0" alone
    Switch,      ///< Switch: "0", "1" or other
    Dialogs,     ///< DialogStyle: "0", "1" or other
    Security,    ///< MailSecurity: "0", "1" or "2"; STARTTLS for any other text
    MailSize,    ///< MailSize: "0", "1" or "2"; Medium for any other text
};

/// The code that writes a setting; a row may have several.
enum class Writer : unsigned {
    Nobody = 0,
    SimpleStart = 1, ///< the start of Simple mode, which writes "0"
    Options = 2,     ///< the options window's OK
    Reset = 4,       ///< its reset button
    CropTip = 8,     ///< the controls of the crop tip
    Welcome = 16,    ///< the OK of the welcome bubble
    Notice = 32,     ///< the OK of the notice about small screens
    EmailWindow = 64,
    PrintLock = 128, ///< the pause of the print button
    Window = 256,    ///< the main window, when it is left
    Former = 512,    ///< what keeps the values from before Simple mode
    ForMe = 1024,    ///< the page "For me"
};

constexpr Writer operator|(Writer a, Writer b) {
    return static_cast<Writer>(static_cast<unsigned>(a) | static_cast<unsigned>(b));
}

struct SettingRow {
    Setting setting;
    const char *section;
    const char *key;
    SettingKind kind;
    const char *standard; ///< the default when the file has no value
    Writer writers;
    const char *standardOfOptions = nullptr; ///< the default of the options window, if different

    constexpr bool isWrittenBy(Writer writer) const {
        return (static_cast<unsigned>(writers) & static_cast<unsigned>(writer)) != 0;
    }
    /// Whether each user has their own value.
    constexpr bool isUsersOwn() const { return isWrittenBy(Writer::ForMe); }
};

// clang-format off
inline constexpr SettingRow settingRows[] = {
    {Setting::DialogStyle, "Dialogs", "Style", SettingKind::Dialogs, "0", Writer::SimpleStart | Writer::Options, "1"},
    {Setting::AdvancedEffects, "SFX", "Advanced", SettingKind::Switch, "0", Writer::SimpleStart | Writer::Options},
    {Setting::AdvancedResize, "Resize", "Advanced", SettingKind::Yes, "0", Writer::SimpleStart | Writer::Options},
    {Setting::AdvancedPopart, "Popart", "Level", SettingKind::Switch, "0", Writer::Options, "1"},
    {Setting::Grid, "Grid", "Value", SettingKind::Yes, "1", Writer::SimpleStart | Writer::Options},
    {Setting::Email, "E-mail", "Value", SettingKind::Switch, "0", Writer::SimpleStart | Writer::Options},
    {Setting::SenderAddress, "Sender", "Address", SettingKind::Text, placeholderAddress, Writer::Options},
    {Setting::RecipientAddress, "Recipient", "Address", SettingKind::Text, "", Writer::EmailWindow},
    {Setting::SlideshowDelay, "Slideshow", "Delay", SettingKind::Number, "2000", Writer::Options}, // seconds
    {Setting::AdvancedScan, "Scan", "Autoscan", SettingKind::Yes, "0", Writer::Options},
    {Setting::Scanner, "Scanner", "Device", SettingKind::Index, "-1", Writer::Options}, // -1: none
    {Setting::ScannerButtonOff, "Scanner Button", "Value", SettingKind::Yes, "0", Writer::Options},
    {Setting::Printer, "Printer", "Device", SettingKind::Text, "", Writer::Options}, // "": the system default
    {Setting::PrintLock, "Printer", "Timed", SettingKind::Yes, "0", Writer::SimpleStart | Writer::Options, "1"},
    {Setting::PrintLockMinutes, "Printer", "Timer", SettingKind::Number, "1", Writer::Options},
    {Setting::PrintButtonOff, "Print Button", "Value", SettingKind::Yes, "0", Writer::Options},
    {Setting::PrintPause, "Printer", "Pause", SettingKind::Text, "", Writer::PrintLock}, // "": none
    {Setting::CropTip, "Tips", "Crop", SettingKind::Switch, "0", Writer::SimpleStart | Writer::Options | Writer::Reset | Writer::CropTip},
    {Setting::Welcome, "Welcome", "Show", SettingKind::Yes, "1", Writer::Reset | Writer::Welcome},
    {Setting::ScreenNotice, "Display Message", "Value", SettingKind::Switch, "1", Writer::Notice},
    {Setting::WindowSize, "Window", "Size", SettingKind::Text, "", Writer::Window}, // "900x640", while not maximised
    {Setting::Language, "Language", "File", SettingKind::Text, "", Writer::Options}, // see languageInUse()
    {Setting::WorkingDirectory, "Working Directory", "Path", SettingKind::Text, "", Writer::Options}, // see workingDirectory()
    {Setting::MyDocs, "MyDocs", "Value", SettingKind::YesUnlessNo, "1", Writer::Options},
    {Setting::NoticeTitle, "ScreenMessageTitle", "Caption", SettingKind::Text, "Notice", Writer::Nobody},
    {Setting::NoticeText, "ScreenMessage", "Caption", SettingKind::Text, "Lumora is designed to run best on screen size 1024 x 768 or higher.", Writer::Nobody},
    {Setting::NoticeButton, "ScreenMessageButton", "Caption", SettingKind::Text, "OK", Writer::Nobody},
    {Setting::EmailFrom, "DlgEmailYourEmail", "Caption", SettingKind::Text, "Your Address:", Writer::Nobody},
    {Setting::EmailTo, "DlgEmailSendto", "Caption", SettingKind::Text, "Send to:", Writer::Nobody},
    {Setting::EmailMessage, "DlgEmailMessage", "Caption", SettingKind::Text, "Your Message:", Writer::Nobody},
    {Setting::EmailTitle, "DlgEmailTitle", "caption", SettingKind::Text, "E-mail Photo", Writer::Nobody},
    {Setting::MailHost, "Mail Server", "Server", SettingKind::Text, "", Writer::Options},
    {Setting::MailPort, "Mail Server", "Port", SettingKind::Number, "587", Writer::Options},
    {Setting::MailSecurityKind, "Mail Server", "Security", SettingKind::Security, "1", Writer::Options},
    {Setting::MailUser, "Mail Server", "User", SettingKind::Text, "", Writer::Options},
    {Setting::MailPhotoSize, "E-mail", "Size", SettingKind::MailSize, "1", Writer::Options},
    {Setting::PrivateDetails, "Saved Photos", "Private", SettingKind::Yes, "0", Writer::Options}, // place, serial numbers
    {Setting::KeepThrownAway, "My Pictures", "Keep", SettingKind::YesUnlessNo, "1", Writer::Options}, // for a week
    {Setting::BeforeSimple, "Before Simple Mode", "Values", SettingKind::Text, "", Writer::Former}, // see switchSimpleOn
    {Setting::ReadAloud, "For me", "ReadAloud", SettingKind::Yes, "0", Writer::ForMe},
};
// clang-format on

constexpr const SettingRow &rowOf(Setting setting) {
    return settingRows[static_cast<size_t>(setting)];
}

namespace settings {

/// A whole number, with blanks around it or none; nothing for any other text.
std::optional<int> number(const QString &text);

/// Parses a text of the file.
template <Setting S> auto valueOf(const QString &text) {
    constexpr SettingKind kind = rowOf(S).kind;
    if constexpr (kind == SettingKind::Number) {
        return number(text).value_or(number(rowOf(S).standard).value_or(0));
    } else if constexpr (kind == SettingKind::Index) {
        return number(text);
    } else if constexpr (kind == SettingKind::Yes) {
        return text == QLatin1StringView("1");
    } else if constexpr (kind == SettingKind::YesUnlessNo) {
        return text != QLatin1StringView("0");
    } else if constexpr (kind == SettingKind::Switch) {
        return text == QLatin1StringView("0")   ? Switch::Off
               : text == QLatin1StringView("1") ? Switch::On
                                                : Switch::Other;
    } else if constexpr (kind == SettingKind::Dialogs) {
        return text == QLatin1StringView("0")   ? DialogStyle::Own
               : text == QLatin1StringView("1") ? DialogStyle::System
                                                : DialogStyle::Other;
    } else if constexpr (kind == SettingKind::Security) {
        return text == QLatin1StringView("0")   ? MailSecurity::None
               : text == QLatin1StringView("2") ? MailSecurity::Tls
                                                : MailSecurity::StartTls;
    } else if constexpr (kind == SettingKind::MailSize) {
        return text == QLatin1StringView("0")   ? MailSize::Small
               : text == QLatin1StringView("2") ? MailSize::AsItIs
                                                : MailSize::Medium;
    } else {
        return text;
    }
}

/// The default of a setting for all readers except the options window.
template <Setting S> auto standard() {
    return valueOf<S>(QString::fromUtf8(rowOf(S).standard));
}

/// The text in the file; nothing for a value that is neither yes nor no.
std::optional<QString> textOf(const QString &value);
std::optional<QString> textOf(bool value);
std::optional<QString> textOf(int value);
std::optional<QString> textOf(std::optional<int> value);
std::optional<QString> textOf(Switch value);
std::optional<QString> textOf(DialogStyle value);
std::optional<QString> textOf(MailSecurity value);
std::optional<QString> textOf(MailSize value);

} // namespace settings

template <Setting S> using SettingValue = decltype(settings::standard<S>());

/// The values of one settings file.
class Settings {
  public:
    Settings(IniFiles &files, QString file);

    /// A value, or the default where the file has none.
    template <Setting S> SettingValue<S> read() const {
        return settings::valueOf<S>(text(rowOf(S), rowOf(S).standard));
    }

    /// The same with the options window's own default.
    template <Setting S> SettingValue<S> readForOptions() const {
        constexpr const char *own = rowOf(S).standardOfOptions;
        return settings::valueOf<S>(text(rowOf(S), own != nullptr ? own : rowOf(S).standard));
    }

    /// Writes a value at once; one that is neither yes nor no is left unchanged in the file.
    template <Setting S, Writer W> void write(const SettingValue<S> &value) {
        static_assert(rowOf(S).isWrittenBy(W), "the table says who writes a setting");
        if (const auto words = settings::textOf(value)) {
            writeText(rowOf(S), *words);
        }
    }

    /// The text from the file, or `otherwise` (in the user's language) where the file has none.
    template <Setting S> QString textOr(const QString &otherwise) const {
        return isInFile<S>() ? read<S>() : otherwise;
    }

    /// Whether the file has a value, be it an empty one.
    template <Setting S> bool isInFile() const { return !text(rowOf(S), nullptr).isNull(); }

    /// Writes "0" to every setting of Simple mode, in the table's order. Where the file had another value, all former
    /// ones are kept in "Before Simple Mode". The file is replaced once.
    void switchSimpleOn();
    /// Whether there are values from before Simple mode.
    bool hasFormer() const { return !read<Setting::BeforeSimple>().isEmpty(); }
    /// Writes the values from before Simple mode back and forgets them.
    void bringFormerBack();
    void forgetFormer();

  private:
    QString text(const SettingRow &row, const char *standard) const;
    void writeText(const SettingRow &row, const QString &value);

    IniFiles &m_files;
    QString m_file;
};

} // namespace lumora
