#include "Player.h"

#include "Desktop.h"

#include <QAbstractEventDispatcher>
#include <QTimer>
#include <algorithm>
#include <array>

namespace lumora::play {

namespace {

constexpr int tickTime = 10;     // milliseconds
constexpr int inputTime = 1;     // between the events of one movement; 0 would keep the loop from ever waiting
constexpr int settleTime = 20;   // before the next action
constexpr int observeTime = 150; // before looking at the outcome: one-shot timers of the program have run by then

bool observes(const QString &verb) {
    static constexpr std::array looking = {"state", "hash", "shot", "expect-not", "expect-gone", "look", "expect-look"};
    return std::any_of(looking.begin(), looking.end(), [&](const char *one) { return verb == QLatin1String(one); });
}

} // namespace

Player::Player(Program &program, Script script, int patience, QObject *parent)
    : QObject(parent), m_program(program), m_script(std::move(script)), m_patience(patience) {
    // A loop that is about to block has done all its work and takes input. One that only polls, as a long command
    // does to repaint, wakes without ever blocking.
    auto *loop = QAbstractEventDispatcher::instance();
    connect(loop, &QAbstractEventDispatcher::awake, this, [this] { m_waiting = false; });
    connect(loop, &QAbstractEventDispatcher::aboutToBlock, this, [this] { m_waiting = true; });
}

void Player::begin() {
    m_stepClock.start();
    m_inputClock.start();
    orderTick();
}

void Player::orderTick() {
    // A timer of its own for each tick: one that is still in its slot would not fire in a nested event loop.
    // While a film is made each movement is a frame of it.
    const int movement = m_film == nullptr ? inputTime : m_filmBeat;
    QTimer::singleShot(m_hand.isBusy() ? movement : tickTime, Qt::PreciseTimer, this, &Player::tick);
}

void Player::programEnded() {
    m_ended = true;
    // The step that ended it is done; nothing else can be. A monkey is to leave the program on.
    if (m_monkey != nullptr) {
        finish(m_monkey->report("the program has ended"));
        return;
    }
    if (m_phase > 0) {
        ++m_next;
        m_phase = 0;
    }
    const bool nothingLeft = m_next >= m_script.steps.size() || m_script.steps[m_next].verb == "quit";
    finish(nothingLeft ? QString() : QString("the program has ended"));
}

void Player::tick() {
    if (m_finished) {
        return;
    }
    orderTick();
    const bool waits = m_waiting || isDesktopDialogOpen(); // which may run an event loop that is not Qt's
    if (!m_meanwhile && (!waits || !m_program.takesInput())) {
        return;
    }
    if (m_hand.isBusy()) {
        m_inputClock.start();
        m_hand.act();
        return;
    }
    if (m_next >= m_script.steps.size()) {
        finish();
        return;
    }
    const Step &step = m_script.steps[m_next];
    if (isQuiet(step)) {
        attempt(step);
    }
}

bool Player::isQuiet(const Step &step) const {
    return m_inputClock.elapsed() >= (observes(step.verb) ? observeTime : settleTime);
}

void Player::attempt(const Step &step) {
    Step filled = step;
    for (QString &word : filled.words) {
        word = withVariables(word, variables);
    }
    if (m_phase == 0 && beforeStep) {
        beforeStep(filled);
    }
    const auto perform = [&] { return (this->*performerOf(step.verb))(filled); };
    const Outcome outcome = step.verb == "start" ? perform() : m_turns.leaveOut(perform);
    if (m_finished) {
        return;
    }
    switch (outcome.kind) {
    case Outcome::Kind::NotYet:
        if (m_stepClock.elapsed() > m_patience) {
            finish(outcome.reason);
        }
        return;
    case Outcome::Kind::Goes:
        ++m_phase;
        m_inputClock.start();
        return;
    case Outcome::Kind::Done:
        ++m_next;
        m_phase = 0;
        m_lastWidget = nullptr;
        m_undoSteps.clear();
        m_stepClock.start();
        judgeTurns(step);
        return;
    }
}

void Player::judgeTurns(const Step &step) {
    const std::chrono::milliseconds longest = m_turns.takeLongest();
    const QString says = QString("the longest turn of the event loop took %1 ms").arg(longest.count());
    if (logTurn) {
        logTurn(QString("%1: %2").arg(step.line).arg(says));
    }
    if (turnLimit.count() > 0 && longest > turnLimit) {
        --m_next; // the step whose line is said
        finish(says);
    }
}

void Player::goOn(const Step &step) {
    m_stepClock.start();
    if (beforeStep) {
        beforeStep(step);
    }
}

void Player::finish(const QString &problem) {
    if (m_finished) {
        return;
    }
    m_finished = true;
    m_problem = problem;
    if (!problem.isEmpty()) {
        m_problemLine = m_script.steps[std::min(m_next, m_script.steps.size() - 1)].line;
    }
    Q_EMIT finished();
}

} // namespace lumora::play
