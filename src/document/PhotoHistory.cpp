#include "document/PhotoHistory.h"

#include "document/PictureDifference.h"
#include "imaging/Picture.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

namespace lumora {

using Reading = StepStore::Reading;

PhotoHistory::PhotoHistory() : PhotoHistory(Limits()) {}

PhotoHistory::PhotoHistory(const Limits &limits) : m_store(limits.memory, limits.disk, limits.folder) {}

void PhotoHistory::record() {
    Step step;
    step.state = m_now;
    m_steps.insert(m_steps.begin() + m_position, step);
    ++m_position;
    m_now.id = ++m_lastId;
    count();
}

bool PhotoHistory::recordChange(const QImage &before, const QImage &after) {
    try {
        Step step;
        m_run([&] { step = stepTo(before, after); }, Stopping::NotOffered);
        step.state = m_now;
        m_steps.insert(m_steps.begin() + m_position, std::move(step));
    } catch (const std::bad_alloc &) {
        return false;
    }
    ++m_position;
    m_steps.erase(m_steps.begin() + m_position, m_steps.end());
    m_now = {.id = ++m_lastId, .metadata = m_now.metadata, .fileName = m_now.fileName};
    trim();
    count();
    return true;
}

bool PhotoHistory::replaced(const QImage &before, const QImage &after) {
    bool reachable = true;
    while (m_position > 0 && !m_steps[m_position - 1].isWhole()) {
        Step &last = m_steps[m_position - 1];
        Reading reading = Reading::Lost;
        Step next;
        if (reachable) {
            m_run(
                [&] {
                    QImage recorded;
                    reading = apply(last, before, recorded);
                    next = reading == Reading::Done ? stepTo(recorded, after) : Step();
                },
                Stopping::NotOffered);
        }
        if (reading == Reading::NotNow) {
            return false;
        }
        if (reading == Reading::Done) {
            next.state = last.state;
            last = next;
            break;
        }
        reachable = false;
        m_steps.erase(m_steps.begin() + --m_position);
    }
    m_steps.erase(m_steps.begin() + m_position, m_steps.end());
    m_now.small = {};
    trim();
    count();
    return true;
}

/// The step that leads from the picture to the other one.
PhotoHistory::Step PhotoHistory::stepTo(const QImage &other, const QImage &picture) {
    if (other.size() == picture.size() && other.format() == picture.format()) {
        const QRect rect = differingRect(other, picture);
        if (rect.isEmpty()) {
            return {};
        }
        // Above half of the picture, sharing all of it is cheaper than copying a part.
        const bool small = qint64{2} * rect.width() * rect.height() <= qint64{1} * other.width() * other.height();
        const QImage part = small ? other.copy(rect) : QImage();
        if (!part.isNull()) {
            return {m_store.keep(part), rect};
        }
    }
    return {m_store.keep(other), {}};
}

/// What leads back to the picture once the step has been taken from it.
PhotoHistory::Step PhotoHistory::stepBackFrom(const Step &step, const QImage &picture) {
    if (step.pixels == nullptr) {
        return {};
    }
    const QImage part = step.isWhole() ? QImage() : picture.copy(step.rect);
    return part.isNull() ? Step{m_store.keep(picture), {}} : Step{m_store.keep(part), step.rect};
}

StepStore::Reading PhotoHistory::apply(const Step &step, const QImage &picture, QImage &other) const {
    if (step.pixels == nullptr) {
        other = picture;
        return Reading::Done;
    }
    if (step.isWhole()) {
        return m_store.read(step.pixels, other);
    }
    QImage part;
    const Reading reading = m_store.read(step.pixels, part);
    if (reading != Reading::Done) {
        return reading;
    }
    QImage result = picture;
    const PixelView target = writeView(result);
    if (target.isEmpty()) {
        return Reading::NotNow;
    }
    const ConstPixelView source = readView(part);
    for (int y = 0; y < source.height; ++y) {
        std::memcpy(target.row(step.rect.y() + y) + qsizetype{4} * step.rect.x(), source.row(y),
                    size_t{4} * static_cast<size_t>(source.width));
    }
    other = result;
    return Reading::Done;
}

QList<PhotoState> PhotoHistory::states() const {
    QList<PhotoState> states;
    for (int at = 0; at <= static_cast<int>(m_steps.size()); ++at) {
        states += at == m_position ? m_now : m_steps[at < m_position ? at : at - 1].state;
    }
    return states;
}

/// Among states(); -1 when it is not there any more.
int PhotoHistory::indexOf(quint64 id) const {
    const QList<PhotoState> all = states();
    const auto found = std::find_if(all.begin(), all.end(), [id](const PhotoState &state) { return state.id == id; });
    return found == all.end() ? -1 : static_cast<int>(found - all.begin());
}

bool PhotoHistory::moveTo(quint64 id, QImage &picture) {
    bool reached = false;
    m_run(
        [&] {
            m_inTask = true;
            reached = walkTo(id, picture);
            m_inTask = false;
        },
        Stopping::NotOffered);
    count();
    return reached;
}

/// Looked for again after each step: a full disk may have cost some of them.
bool PhotoHistory::walkTo(quint64 id, QImage &picture) {
    int at = indexOf(id);
    const int total = std::abs(at - m_position);
    while (at >= 0 && at != m_position && step(picture, at < m_position)) {
        at = indexOf(id);
        if (TaskControl *task = TaskControl::current()) {
            task->setProgress(total - std::abs(at - m_position), total);
        }
    }
    return at < 0 || at == m_position;
}

void PhotoHistory::run(const std::function<void()> &work) {
    if (m_inTask) {
        work();
    } else {
        m_run(work, Stopping::NotOffered);
    }
}

void PhotoHistory::count() {
    m_undoSteps = m_position;
    m_redoSteps = static_cast<int>(m_steps.size()) - m_position;
}

bool PhotoHistory::move(QImage &picture, bool back) {
    const bool moved = step(picture, back);
    count();
    return moved;
}

bool PhotoHistory::step(QImage &picture, bool back) {
    bool reachable = true; // no longer once a step is lost: from then on only a whole picture helps
    while ((back ? m_position : static_cast<int>(m_steps.size()) - m_position) > 0) {
        const int at = back ? m_position - 1 : m_position;
        Step &step = m_steps[at];
        QImage other;
        Reading reading = Reading::Lost;
        Step reverse;
        if (reachable || step.isWhole()) {
            run([&] {
                reading = apply(step, picture, other);
                reverse = reading == Reading::Done ? stepBackFrom(step, picture) : Step();
            });
        }
        if (reading == Reading::NotNow) {
            return false;
        }
        if (reading == Reading::Done) {
            reverse.state = std::exchange(m_now, step.state);
            step = reverse;
            m_position += back ? -1 : 1;
            picture = other;
            trim();
            return true;
        }
        reachable = false;
        m_steps.erase(m_steps.begin() + at);
        m_position -= back ? 1 : 0;
    }
    return false;
}

/// Brings memory back under the budget: the thread starts to write well before it is spent, and only who changes
/// faster than the disk can follow has to wait for it.
void PhotoHistory::trim() {
    bool again = false;
    do {
        if (m_store.takeFailure() && !dropFarthest()) {
            return; // the disk takes nothing and there is nothing left to give up: above the budget, but not waiting
        }
        spillBeyond(m_store.memoryBudget() / 4 * 3);
        again = false;
        if (m_store.isOverBudget()) {
            run([&] { again = m_store.waitForWriter(); });
        }
    } while (again);
}

/// Sends the steps that are farthest from the picture of now to the disk.
void PhotoHistory::spillBeyond(qint64 bytes) {
    std::vector<Step *> nearestFirst;
    int before = m_position - 1;
    int after = m_position;
    while (before >= 0 || after < static_cast<int>(m_steps.size())) {
        if (before >= 0) {
            nearestFirst.push_back(&m_steps[before--]);
        }
        if (after < static_cast<int>(m_steps.size())) {
            nearestFirst.push_back(&m_steps[after++]);
        }
    }
    qint64 kept = 0;
    std::vector<StepStore::Pixels> farthest;
    for (const Step *step : nearestFirst) {
        if (step->pixels == nullptr || step->pixels->spilled) {
            continue;
        }
        kept += step->pixels->bytes;
        if (kept > bytes) {
            farthest.push_back(step->pixels);
        }
    }
    for (auto pixels = farthest.rbegin(); pixels != farthest.rend(); ++pixels) {
        m_store.spill(*pixels);
    }
}

/// Gives up the oldest step, or when the last one to undo is left the farthest to redo; never both directions' nearest.
bool PhotoHistory::dropFarthest() {
    bool freed = false;
    while (!freed && m_steps.size() > 1) {
        const bool oldest = m_position > 1;
        freed = (oldest ? m_steps.front() : m_steps.back()).pixels != nullptr;
        if (oldest) {
            m_steps.pop_front();
            --m_position;
        } else {
            m_steps.pop_back();
        }
    }
    return freed;
}

void PhotoHistory::waitForWriter() {
    while (m_store.waitForWriter()) {
        if (m_store.takeFailure()) {
            dropFarthest();
            count();
        }
    }
}

} // namespace lumora
