#include "base/TaskControl.h"

#include <algorithm>
#include <utility>

namespace lumora {

namespace {
thread_local TaskControl *currentControl = nullptr;
}

void TaskControl::setProgress(std::int64_t done, std::int64_t total) {
    if (total > 0) {
        m_percent = static_cast<int>(std::clamp<std::int64_t>(done, 0, total) * 100 / total);
    }
}

TaskControl *TaskControl::current() {
    return currentControl;
}

bool TaskControl::isCurrentCancelled() {
    return currentControl != nullptr && currentControl->isCancelled();
}

TaskControl::Scope::Scope(TaskControl *control) : m_before(std::exchange(currentControl, control)) {}

TaskControl::Scope::~Scope() {
    currentControl = m_before;
}

} // namespace lumora
