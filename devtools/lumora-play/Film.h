// Writes a picture of the screen at every beat, while a script goes on: raw frames, for a program that encodes films.
#pragma once

#include <QFile>
#include <QImage>
#include <QTimer>
#include <functional>

namespace lumora::play {

class Film {
  public:
    /// Frames of `camera`'s size follow each other in the file without anything between them: rows from the top, the
    /// bytes of a pixel in the order blue, green, red, 255. The file may be a named pipe; it is then opened only when
    /// the other end is.
    Film(const QString &path, int framesPerSecond, std::function<QImage()> camera);

    /// False when the file could not be opened or takes no more frames.
    bool isWell() const { return m_isWell; }
    int frames() const { return m_frames; }
    /// The last frame is written; false when one of them was not.
    bool end();

  private:
    void takeFrame();

    QFile m_file;
    std::function<QImage()> m_camera;
    QTimer m_beat;
    int m_frames = 0;
    bool m_isWell;
};

} // namespace lumora::play
