// The state that the tools share: the mode of the program and whether a selection tool is current.
#pragma once

#include "document/PhotoSelection.h"

namespace lumora {

class ToolFlags {
  public:
    bool SimpleModeOn = false; ///< start-up and launcher write; everything that differs between the modes reads

    /// A selection tool is current, so that the selection limits effects and adjustments: from startSelection() to
    /// endSelection(), which every other tool's start calls, and an effect when it has changed what was marked.
    bool SelectionActive() const { return m_selectionActive; }
    /// The shape that the selection tool marks. Still the last one when no selection tool is current any more; None
    /// before the first.
    PhotoSelection::Shape SelectionKind() const { return m_selectionKind; }

    void startSelection(PhotoSelection::Shape kind) {
        m_selectionActive = true;
        m_selectionKind = kind;
    }
    void endSelection() { m_selectionActive = false; }

  private:
    bool m_selectionActive = false;
    PhotoSelection::Shape m_selectionKind = PhotoSelection::Shape::None;
};

} // namespace lumora
