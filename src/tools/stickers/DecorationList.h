// The decorations that are being put on the photo, and the steps that led to them. They become part of the photo when
// the tool ends.
#pragma once

#include "imaging/decorations/Decoration.h"

#include <vector>

namespace lumora {

/// Changes are seen at once; record() makes of what has changed since the last one a step to undo.
class DecorationList {
  public:
    /// The first is the lowest.
    const std::vector<Decoration> &items() const { return m_items; }
    const Decoration &at(int index) const { return m_items.at(static_cast<std::size_t>(index)); }
    int count() const { return static_cast<int>(m_items.size()); }

    /// Puts it on top.
    void add(const Decoration &item) { m_items.push_back(item); }
    void set(int index, const Decoration &item) { m_items.at(static_cast<std::size_t>(index)) = item; }
    void remove(int index) { m_items.erase(m_items.begin() + index); }
    void moveToFront(int index);
    void removeAll() { m_items.clear(); }

    /// Nothing where nothing has changed.
    void record();
    bool canStep(bool back) const { return back ? m_now > 0 : m_now + 1 < m_steps.size(); }
    /// One step back or forward; what is not recorded is dropped. Does nothing where there is none.
    void step(bool back);
    /// Nothing is there, and nothing can be undone.
    void forget();

  private:
    std::vector<Decoration> m_items;
    std::vector<std::vector<Decoration>> m_steps = {{}};
    std::size_t m_now = 0; ///< the step that m_items began with
};

} // namespace lumora
