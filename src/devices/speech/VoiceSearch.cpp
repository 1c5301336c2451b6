#include "devices/speech/VoiceSearch.h"

namespace lumora {

VoiceSearch::VoiceSearch(const QString &helper, QObject *parent) : QObject(parent), m_run(helper) {
    connect(&m_run, &HelperRun::finished, this, [this](const QByteArray &output) {
        const QList<QByteArray> lines = output.split('\n');
        bool hasVoice = false;
        for (const QByteArray &line : lines) {
            hasVoice = hasVoice || line.startsWith("voice\t");
        }
        Q_EMIT answered(hasVoice && lines.contains("done"));
    });
}

} // namespace lumora
