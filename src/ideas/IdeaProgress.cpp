#include "ideas/IdeaProgress.h"

#include <algorithm>
#include <utility>

namespace lumora {

namespace {

using Kind = IdeaEvent::Kind;

/// What the step's picture stands for.
Kind kindOf(const IdeaStep &step) {
    const QLatin1StringView icon(step.icon);
    return icon == QLatin1StringView("open")   ? Kind::Opened
           : icon == QLatin1StringView("save") ? Kind::Saved
           : icon == QLatin1StringView("undo") ? Kind::Undone
                                               : Kind::Changed;
}

bool isMeant(const IdeaStep &step, const IdeaEvent &event) {
    if (kindOf(step) != event.kind) {
        return false;
    }
    return event.kind != Kind::Changed ||
           (event.tool == toolOf(step) && (step.item == nullptr || event.item == QLatin1StringView(step.item)));
}

} // namespace

void IdeaProgress::begin(const Idea &idea, std::vector<const IdeaStep *> shown, bool opened) {
    m_idea = &idea;
    m_steps = std::move(shown);
    clear();
    if (opened) {
        tell({Kind::Opened});
    }
}

void IdeaProgress::clear() {
    m_done.assign(m_steps.size(), false);
}

void IdeaProgress::tell(const IdeaEvent &event) {
    const auto meant = [&](const IdeaStep *step) { return isMeant(*step, event); };
    if (m_idea == nullptr || std::ranges::none_of(m_steps, meant)) {
        return;
    }
    const bool nextPicture = event.kind == Kind::Opened;
    const bool nextRound = event.kind == Kind::Changed && current() == m_steps.size(); // with the photo as it was
    const bool begun = std::ranges::any_of(m_steps, [this, i = 0U](const IdeaStep *step) mutable {
        return m_done.at(i++) && kindOf(*step) == Kind::Changed;
    });
    if ((event.kind == Kind::Saved || event.kind == Kind::Undone) && !begun) {
        return; // of what was made before
    }
    if (nextPicture || nextRound) {
        clear();
    }
    for (std::size_t i = 0; i < m_steps.size(); ++i) {
        const bool wasOpened = nextRound && kindOf(*m_steps.at(i)) == Kind::Opened;
        m_done.at(i) = m_done.at(i) || wasOpened || meant(m_steps.at(i));
    }
}

std::size_t IdeaProgress::current() const {
    std::size_t next = 0;
    for (std::size_t i = 0; i < m_done.size(); ++i) {
        next = m_done.at(i) ? i + 1 : next;
    }
    return next;
}

} // namespace lumora
