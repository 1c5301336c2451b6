// How far a project is: which of its steps have been done. No widgets; IdeaGuide shows it.
#pragma once

#include "ideas/Ideas.h"

#include <vector>

namespace lumora {

/// Something that the user has done.
struct IdeaEvent {
    enum class Kind { Opened, Changed, Saved, Undone } kind;
    QString tool = {}; ///< of Changed: the tool's name in the table of tools
    QString item = {}; ///< of Changed: the item of its floating bar
};

class IdeaProgress {
  public:
    /// Begins a project; `opened` when there is a photo already.
    void begin(const Idea &idea, std::vector<const IdeaStep *> shown, bool opened);
    void tell(const IdeaEvent &event);

    /// Null before the first begin().
    const Idea *idea() const { return m_idea; }
    const std::vector<const IdeaStep *> &steps() const { return m_steps; }
    bool isDone(std::size_t step) const { return m_done.at(step); }
    /// The step to do next: the first after the last one that was done, since some can be left out. As many as there
    /// are steps when all is done.
    std::size_t current() const;

  private:
    void clear();

    const Idea *m_idea = nullptr;
    std::vector<const IdeaStep *> m_steps;
    std::vector<bool> m_done;
};

} // namespace lumora
