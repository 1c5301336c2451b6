#include "app/ReadingAloud.h"

#include "devices/speech/SpeechService.h"
#include "widgets/ReadAloud.h"

#include <QLocale>
#include <QTimer>

namespace lumora {

struct ReadingAloud::Parts {
    SpeechService speech;
    ReadAloud reader;
};

ReadingAloud::ReadingAloud(const Settings &settings) : m_settings(settings) {}

ReadingAloud::~ReadingAloud() = default;

void ReadingAloud::follow() {
    if (!m_settings.read<Setting::ReadAloud>()) {
        m_parts.reset();
        return;
    }
    if (!m_parts) {
        m_parts = std::make_unique<Parts>();
        SpeechService *speech = &m_parts->speech;
        QObject::connect(&m_parts->reader, &ReadAloud::wordsChosen, speech,
                         [speech](const QString &words) { speech->say(QLocale().name(), words); });
        QObject::connect(&m_parts->reader, &ReadAloud::movedOn, speech, &SpeechService::stop);
    }
    SpeechService *speech = &m_parts->speech;
    QTimer::singleShot(0, speech, [speech] { speech->prepare(QLocale().name()); }); // the window comes first
}

} // namespace lumora
