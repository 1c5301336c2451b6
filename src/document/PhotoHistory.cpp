#include "document/PhotoHistory.h"

#include "document/PictureDifference.h"
#include "imaging/Picture.h"

#include <QDir>
#include <cstring>
#include <new>
#include <utility>

namespace lumora {

using Reading = StepStore::Reading;

PhotoHistory::PhotoHistory() : PhotoHistory(Limits()) {}

PhotoHistory::PhotoHistory(const Limits &limits)
    : m_store(limits.memory, limits.disk, limits.folder.isEmpty() ? QDir::tempPath() : limits.folder) {}

void PhotoHistory::record() {
    Step step;
    step.metadata = m_metadata;
    m_steps.insert(m_steps.begin() + m_position, step);
    ++m_position;
}

bool PhotoHistory::recordChange(const QImage &before, const QImage &after) {
    try {
        Step step;
        m_run([&] { step = stepTo(before, after); }, Stopping::NotOffered);
        step.metadata = m_metadata;
        m_steps.insert(m_steps.begin() + m_position, std::move(step));
    } catch (const std::bad_alloc &) {
        return false;
    }
    ++m_position;
    m_steps.erase(m_steps.begin() + m_position, m_steps.end());
    trim();
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
        if (reading == Reading::NoMemory) {
            return false;
        }
        if (reading == Reading::Done) {
            next.metadata = last.metadata;
            last = next;
            break;
        }
        reachable = false;
        m_steps.erase(m_steps.begin() + --m_position);
    }
    m_steps.erase(m_steps.begin() + m_position, m_steps.end());
    trim();
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
        return Reading::NoMemory;
    }
    const ConstPixelView source = readView(part);
    for (int y = 0; y < source.height; ++y) {
        std::memcpy(target.row(step.rect.y() + y) + qsizetype{4} * step.rect.x(), source.row(y),
                    size_t{4} * static_cast<size_t>(source.width));
    }
    other = result;
    return Reading::Done;
}

bool PhotoHistory::move(QImage &picture, bool back) {
    bool reachable = true; // no longer once a step is lost: from then on only a whole picture helps
    while ((back ? undoSteps() : redoSteps()) > 0) {
        const int at = back ? m_position - 1 : m_position;
        Step &step = m_steps[at];
        QImage other;
        Reading reading = Reading::Lost;
        Step reverse;
        if (reachable || step.isWhole()) {
            m_run(
                [&] {
                    reading = apply(step, picture, other);
                    reverse = reading == Reading::Done ? stepBackFrom(step, picture) : Step();
                },
                Stopping::NotOffered);
        }
        if (reading == Reading::NoMemory) {
            return false;
        }
        if (reading == Reading::Done) {
            reverse.metadata = std::exchange(m_metadata, step.metadata);
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
        if (m_store.takeFailure()) {
            dropFarthest();
        }
        spillBeyond(m_store.memoryBudget() / 4 * 3);
        again = false;
        if (m_store.isOverBudget()) {
            m_run([&] { again = m_store.waitForWriter(); }, Stopping::NotOffered);
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
        }
    }
}

} // namespace lumora
