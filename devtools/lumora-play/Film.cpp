#include "Film.h"

namespace lumora::play {

Film::Film(const QString &path, int framesPerSecond, std::function<QImage()> camera)
    : m_file(path), m_camera(std::move(camera)), m_isWell(m_file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) {
    QObject::connect(&m_beat, &QTimer::timeout, &m_beat, [this] { takeFrame(); });
    m_beat.setTimerType(Qt::PreciseTimer);
    m_beat.start(1000 / framesPerSecond);
}

void Film::takeFrame() {
    const QImage frame = m_camera();
    for (int y = 0; y < frame.height() && m_isWell; ++y) {
        const qint64 bytes = qint64(frame.width()) * 4;
        m_isWell = m_file.write(reinterpret_cast<const char *>(frame.constScanLine(y)), bytes) == bytes;
    }
    ++m_frames;
}

bool Film::end() {
    m_beat.stop();
    m_file.close();
    return m_isWell && m_file.error() == QFile::NoError;
}

} // namespace lumora::play
