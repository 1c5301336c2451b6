// Plays a script: one step after the other, each only when the program has taken in what the last one did and waits for
// its user. Every tick orders the next one before it acts, so that ticks go on in the nested event loop of a modal
// window that it opened: such windows are played through like any other.
#pragma once

#include "Film.h"
#include "Hand.h"
#include "Monkey.h"
#include "Program.h"
#include "Script.h"
#include "TurnWatch.h"

#include <QElapsedTimer>
#include <QHash>
#include <QObject>
#include <functional>
#include <memory>

class QAbstractSlider;
class QComboBox;

namespace lumora::play {

/// The outcome of an attempt at a step.
struct Outcome {
    enum class Kind { Done, Goes, NotYet };
    Kind kind = Kind::Done;
    QString reason; ///< NotYet: what it waits for, reported when patience ends

    static Outcome done() { return {}; }
    /// Input was planned; the step is called again, in its next phase, once the program has taken it in.
    static Outcome goes() { return {Kind::Goes, {}}; }
    static Outcome notYet(const QString &reason) { return {Kind::NotYet, reason}; }
};

class Player : public QObject {
    Q_OBJECT

  public:
    /// `patience`: milliseconds that a step may wait until it can be done (a window has yet to open, a timer to run).
    Player(Program &program, Script script, int patience, QObject *parent = nullptr);

    QHash<QString, QString> variables;
    std::function<void(const QString &)> print;   ///< what state, hash and shot say
    std::function<void(const Step &)> beforeStep; ///< and again before each action of a step that takes many
    std::function<void(const QString &)> log;     ///< the actions of a monkey, if wanted

    /// expect-look writes the files that it is to compare with, where they are not the same, instead.
    bool remakesLooks = false;

    std::function<void(const QString &)> logTurn; ///< the longest turn of each step, where anybody wants to hear of it
    std::chrono::milliseconds turnLimit{0};       ///< a step whose longest turn takes more ends the run; 0: none does

    /// Plays from the next turn of the event loop on.
    void begin();
    /// The program has ended; only "quit" may still follow.
    void programEnded();

    bool succeeded() const { return m_problem.isEmpty(); }
    const QString &problem() const { return m_problem; }
    int problemLine() const { return m_problemLine; }

  Q_SIGNALS:
    void finished();

  private:
    using Performer = Outcome (Player::*)(const Step &);
    static Performer performerOf(const QString &verb);

    // Player.cpp: stepping.
    void tick();
    void orderTick();
    bool isQuiet(const Step &step) const;
    void attempt(const Step &step);
    /// Ends the run when the program has computed for too long in one turn of its event loop.
    void judgeTurns(const Step &step);
    /// A step that takes many actions begins another one: the time limit begins again.
    void goOn(const Step &step);
    void finish(const QString &problem = {});

    // Steps.cpp and, for what only looks, Looking.cpp: one function a verb; m_phase counts how often it has said
    // goes().
    Outcome setting(const Step &step);
    Outcome language(const Step &step);
    Outcome start(const Step &step);
    Outcome resize(const Step &step);
    Outcome expectFits(const Step &step);
    Outcome click(const Step &step);
    Outcome item(const Step &step);
    Outcome type(const Step &step);
    Outcome set(const Step &step);
    Outcome point(const Step &step);
    Outcome press(const Step &step);
    Outcome drag(const Step &step);
    Outcome key(const Step &step);
    Outcome undo(const Step &step);
    Outcome choose(const Step &step);
    Outcome desktop(const Step &step);
    Outcome drop(const Step &step);
    Outcome close(const Step &step);
    Outcome kill(const Step &step);
    Outcome meanwhile(const Step &step);
    Outcome monkey(const Step &step);
    Outcome wait(const Step &step);
    Outcome expect(const Step &step);
    Outcome expectNot(const Step &step);
    Outcome expectGone(const Step &step);
    Outcome look(const Step &step);
    Outcome expectLook(const Step &step);
    Outcome state(const Step &step);
    Outcome hash(const Step &step);
    Outcome mask(const Step &step);
    Outcome shot(const Step &step);
    Outcome pointer(const Step &step);
    Outcome film(const Step &step);
    Outcome cue(const Step &step);
    Outcome quit(const Step &step);

    /// Why the widget cannot be clicked now (it may still be sliding into place); empty when it can.
    QString reach(QWidget &widget);
    Outcome clickOn(QWidget &widget);
    Outcome typeInto(QWidget &widget, const QString &text);
    Outcome setCombo(QComboBox &combo, const QString &value);
    /// Moves a slider by keys; while a film is made, by its handle first.
    Outcome setSlider(QAbstractSlider &slider, int value);
    /// The places of a step's pixels in the canvas; empty with the reason in `problem`.
    std::vector<QPoint> placesOnPicture(const Step &step, QString &problem);
    Outcome onPicture(const Step &step);
    /// The value that expect compares: a control's, "hash", "outside.MASK" or "state.NAME". False with the reason in
    /// `problem`.
    bool observed(const QString &what, QString &value, QString &problem) const;
    /// The look of the photo, or of the control that the step names. False with the reason in `problem`.
    bool seen(const Step &step, QImage &picture, QString &problem) const;
    static QString windowNames();

    Program &m_program;
    Script m_script;
    int m_patience;
    Hand m_hand;
    TurnWatch m_turns;
    bool m_waiting = false; ///< the event loop had nothing to do before this tick
    std::size_t m_next = 0;
    int m_phase = 0;
    bool m_meanwhile = false; ///< steps go on while the program is busy and lets no input in
    bool m_ended = false;
    bool m_finished = false;
    QPoint m_lastPlace;
    const void *m_lastWidget = nullptr;
    const void *m_fileDialog = nullptr; ///< the one that choose answers
    QElapsedTimer m_stepClock;          ///< since the step became the next
    QElapsedTimer m_inputClock;         ///< since the hand last moved
    bool m_pointerShown = false;        ///< in pictures of the screen; films always show it
    int m_filmBeat = 0;                 ///< milliseconds from frame to frame, while a film is made
    std::unique_ptr<Film> m_film;
    QString m_undoSteps; ///< before undo pressed its keys last
    QHash<QString, QImage> m_masks;
    QHash<QString, QImage> m_looks;
    std::unique_ptr<Monkey> m_monkey; ///< while it walks
    QString m_problem;
    int m_problemLine = 0;
};

} // namespace lumora::play
