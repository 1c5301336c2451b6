#include "devices/helper/Speech.h"

#include "devices/helper/Lines.h"

#include <QHash>
#include <QLocale>
#include <QString>
#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <libspeechd.h>
#include <optional>
#include <poll.h>
#include <unistd.h>

namespace {

/// What speaks a language: a module of the service, and the language as that module names it.
struct Voice {
    QString module, language;
};

/// How well a voice's language suits the locale: 0 is best; nothing for another language.
std::optional<int> rankOf(const QString &language, const QLocale &locale) {
    const QString spoken = QString(language).replace(u'_', u'-').toLower();
    const QString wanted = QString(locale.name()).replace(u'_', u'-').toLower();
    const QString plain = wanted.section(u'-', 0, 0);
    if (spoken.section(u'-', 0, 0) != plain) {
        return std::nullopt;
    }
    const QString usual = QLocale(locale.language()).name().replace(u'_', u'-').toLower();
    const QString best[] = {wanted, plain, usual};
    for (int rank = 0; rank < 3; ++rank) {
        if (spoken == best[rank]) {
            return rank;
        }
    }
    return 3;
}

/// The dummy only says that nothing works; eSpeak names the characters of Japanese instead of reading them.
bool canRead(const QString &module, const QLocale &locale) {
    return module != u"dummy" && !(module.startsWith(u"espeak") && locale.language() == QLocale::Japanese);
}

/// A connection to the speech service, made again where it was lost.
class Speaker {
  public:
    Speaker() = default;
    ~Speaker() { close(); }
    Speaker(const Speaker &) = delete;
    Speaker &operator=(const Speaker &) = delete;

    /// Starts the service where the system allows it.
    bool open() {
        if (m_service == nullptr) {
            m_service = spd_open2("lumora", "names", nullptr, SPD_MODE_SINGLE, nullptr, 1, nullptr);
        }
        return m_service != nullptr;
    }

    void stop() {
        if (m_service != nullptr && spd_cancel(m_service) != 0) {
            close();
        }
    }

    void say(const QLocale &locale, const QString &text) {
        for (int attempt = 0; attempt < 2 && open(); ++attempt) { // the service may have been started again meanwhile
            const auto voice = voiceFor(locale);
            if (!voice) {
                return;
            }
            if (spd_set_output_module(m_service, voice->module.toUtf8().constData()) == 0 &&
                spd_set_language(m_service, voice->language.toUtf8().constData()) == 0 &&
                spd_say(m_service, SPD_TEXT, text.toUtf8().constData()) >= 0) {
                return;
            }
            close();
        }
    }

    /// Of the module that the user prefers, or of the first other one that speaks the language. Needs open(). Listing
    /// the voices takes the service up to two seconds, so each answer is kept.
    std::optional<Voice> voiceFor(const QLocale &locale) {
        const auto known = m_voices.constFind(locale);
        if (known != m_voices.constEnd()) {
            return *known;
        }
        std::optional<Voice> best;
        const QStringList modules = modulesByPreference();
        for (const QString &module : modules) {
            if (canRead(module, locale) && (best = voiceOf(module, locale))) {
                break;
            }
        }
        if (!modules.isEmpty()) { // else the connection is lost
            m_voices.insert(locale, best);
        }
        return best;
    }

  private:
    void close() {
        if (m_service != nullptr) {
            spd_close(m_service);
        }
        m_service = nullptr;
        m_voices.clear();
    }

    QStringList modulesByPreference() const {
        QStringList modules;
        if (char *const preferred = spd_get_output_module(m_service)) {
            modules << QString::fromUtf8(preferred);
            std::free(preferred);
        }
        if (char **const others = spd_list_modules(m_service)) {
            for (char **each = others; *each != nullptr; ++each) {
                modules << QString::fromUtf8(*each);
            }
            free_spd_modules(others);
        }
        modules.removeDuplicates();
        return modules;
    }

    std::optional<Voice> voiceOf(const QString &module, const QLocale &locale) const {
        SPDVoice **const voices = spd_set_output_module(m_service, module.toUtf8().constData()) == 0
                                      ? spd_list_synthesis_voices(m_service)
                                      : nullptr;
        if (voices == nullptr) {
            return std::nullopt;
        }
        std::optional<Voice> best;
        int bestRank = 0;
        for (SPDVoice **each = voices; *each != nullptr; ++each) {
            const QString language = QString::fromUtf8((*each)->language);
            const auto rank = rankOf(language, locale);
            if (rank && (!best || *rank < bestRank)) {
                best = Voice{module, language};
                bestRank = *rank;
            }
        }
        free_spd_voices(voices);
        return best;
    }

    SPDConnection *m_service = nullptr;
    QHash<QLocale, std::optional<Voice>> m_voices;
};

/// Adds what is there to read, and waits for it if asked to. False at the end.
bool readMore(QByteArray &lines, bool wait) {
    pollfd input{STDIN_FILENO, POLLIN, 0};
    if (poll(&input, 1, wait ? -1 : 0) <= 0) {
        return true;
    }
    char bytes[4096];
    const ssize_t count = read(STDIN_FILENO, bytes, sizeof bytes);
    lines.append(bytes, count > 0 ? count : 0);
    return count > 0 && (!wait || readMore(lines, false));
}

} // namespace

void speakLines() {
    std::signal(SIGPIPE, SIG_IGN); // the service may end at any time
    Speaker speaker;
    QByteArray lines;
    while (readMore(lines, true)) {
        const qsizetype end = lines.lastIndexOf('\n');
        if (end < 0) {
            continue;
        }
        const QList<QByteArray> waiting = lines.left(end).split('\n');
        lines.remove(0, end + 1);
        // A locale alone has a voice looked for, so that the first word need not wait for it.
        const auto last = std::find_if(waiting.crbegin(), waiting.crend(),
                                       [](const QByteArray &line) { return line.isEmpty() || line.contains('\t'); });
        const QByteArray &line = last == waiting.crend() ? waiting.constLast() : *last;
        const qsizetype tab = line.indexOf('\t');
        const QLocale locale(QString::fromUtf8(tab < 0 ? line : line.left(tab)));
        if (last == waiting.crend()) {
            if (speaker.open()) {
                speaker.voiceFor(locale);
            }
            continue;
        }
        speaker.stop();
        const QString text = QString::fromUtf8(line.mid(tab + 1)).simplified();
        if (tab >= 0 && !text.isEmpty()) {
            speaker.say(locale, text);
        }
    }
    speaker.stop();
}

bool printVoice(const char *locale) {
    std::signal(SIGPIPE, SIG_IGN);
    Speaker speaker;
    if (!speaker.open()) {
        return false;
    }
    if (const auto voice = speaker.voiceFor(QLocale(QString::fromUtf8(locale)))) {
        printLine("voice", voice->language, voice->module);
    }
    return true;
}
