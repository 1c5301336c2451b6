// A picture that grows as a scanner sends it: whatever the depth, the colours, the number of passes, and also where the
// scanner does not know how long the paper is.
#pragma once

#include "devices/ScanProtocol.h"

#include <QImage>

namespace lumora {

class ScanPicture {
  public:
    static constexpr int longestSide = 65'535; ///< pixels; more is no scan

    /// A pass begins. Good, TooLarge for more pixels than Lumora takes in, NoMemory, or Crashed for what cannot be: a
    /// depth that is none, lines too short for their pixels, a pass of another width.
    ScanStatus begin(const ScanFrame &frame);
    /// The next bytes of the pass. Good, or as above; the same from then on. Lines beyond those announced are passed
    /// over.
    ScanStatus add(const QByteArray &bytes);
    /// The pass is over: a line of which only a part has come counts, what it lacks is white.
    void end();

    /// What has come, with the height that has come: opaque, 32 bits. Null before the first line. Of three passes the
    /// colours of those that have not come are black.
    QImage picture() const;
    /// Some of its lines, without a copy: valid until more bytes are added.
    QImage part(int firstLine, int lines) const;
    /// The lines of this pass that have come.
    int lines() const { return m_line; }
    /// The size when all has come; the height is -1 while nobody knows.
    QSize wholeSize() const { return {m_frame.width, m_frame.lines}; }
    /// Of all passes, 0 to 1; negative while nobody knows.
    double share() const;

  private:
    ScanStatus makeRoom(int lines);
    void takeLine();

    ScanFrame m_frame;
    ScanStatus m_status = ScanStatus::Good;
    QImage m_picture;  ///< as high as announced, or as there is room for now
    QByteArray m_rest; ///< the begin of a line
    int m_passes = 0;  ///< begun
    int m_line = 0;
    int m_height = 0; ///< lines of the first pass
};

} // namespace lumora
