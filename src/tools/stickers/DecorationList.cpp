#include "tools/stickers/DecorationList.h"

#include <algorithm>

namespace lumora {

void DecorationList::moveToFront(int index) {
    std::rotate(m_items.begin() + index, m_items.begin() + index + 1, m_items.end());
}

void DecorationList::record() {
    if (m_items == m_steps.at(m_now)) {
        return;
    }
    m_steps.resize(m_now + 1); // what was undone cannot be redone any more
    m_steps.push_back(m_items);
    ++m_now;
}

void DecorationList::step(bool back) {
    if (canStep(back)) {
        m_now = back ? m_now - 1 : m_now + 1;
        m_items = m_steps.at(m_now);
    }
}

void DecorationList::forget() {
    m_items.clear();
    m_steps = {{}};
    m_now = 0;
}

} // namespace lumora
