// What each verb of a script does.
#include "Controls.h"
#include "Desktop.h"
#include "Fits.h"
#include "Items.h"
#include "MadeLanguages.h"
#include "Player.h"

#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QKeySequence>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QStyle>
#include <QTimer>
#include <QWindow>
#include <algorithm>
#include <csignal>
#include <cstdlib>

namespace lumora::play {

namespace {

const QKeyCombination selectAll = Qt::ControlModifier | Qt::Key_A;

/// Where the middle of a slider's handle is when it shows that value, in the slider's pixels.
QPoint handlePlace(const QAbstractSlider &slider, int value) {
    const int handle = slider.style()->pixelMetric(QStyle::PM_SliderLength, nullptr, &slider);
    const bool mirrored = slider.isRightToLeft() != slider.invertedAppearance();
    const int left =
        QStyle::sliderPositionFromValue(slider.minimum(), slider.maximum(), value, slider.width() - handle, mirrored);
    return {left + handle / 2, slider.rect().center().y()};
}

/// The key presses that bring a slider from its value to another one.
void moveSlider(Hand &hand, QWidget &window, const QAbstractSlider &slider, int value) {
    const int wanted = std::clamp(value, slider.minimum(), slider.maximum());
    int distance = wanted - slider.value();
    const bool mirrored = slider.invertedControls();
    const auto steps = [&](int size, Qt::Key more, Qt::Key less) {
        for (; size > 0 && std::abs(distance) >= size; distance -= distance > 0 ? size : -size) {
            hand.press(window, (distance > 0) != mirrored ? more : less);
        }
    };
    steps(slider.pageStep(), Qt::Key_PageUp, Qt::Key_PageDown);
    steps(slider.singleStep(), Qt::Key_Up, Qt::Key_Down);
}

} // namespace

Player::Performer Player::performerOf(const QString &verb) {
    static const QHash<QString, Performer> performers = {
        {"setting", &Player::setting},
        {"site-setting", &Player::setting},
        {"language", &Player::language},
        {"start", &Player::start},
        {"resize", &Player::resize},
        {"expect-fits", &Player::expectFits},
        {"click", &Player::click},
        {"item", &Player::item},
        {"type", &Player::type},
        {"set", &Player::set},
        {"point", &Player::point},
        {"pointer", &Player::pointer},
        {"film", &Player::film},
        {"cue", &Player::cue},
        {"press", &Player::press},
        {"drag", &Player::drag},
        {"key", &Player::key},
        {"undo", &Player::undo},
        {"redo", &Player::undo},
        {"choose", &Player::choose},
        {"monkey", &Player::monkey},
        {"wait", &Player::wait},
        {"expect", &Player::expect},
        {"expect-not", &Player::expectNot},
        {"expect-gone", &Player::expectGone},
        {"state", &Player::state},
        {"hash", &Player::hash},
        {"mask", &Player::mask},
        {"shot", &Player::shot},
        {"quit", &Player::quit},
        {"look", &Player::look},
        {"expect-look", &Player::expectLook},
        {"desktop", &Player::desktop},
        {"drop", &Player::drop},
        {"close", &Player::close},
        {"kill", &Player::kill},
        {"meanwhile", &Player::meanwhile},
    };
    return performers.value(verb);
}

Outcome Player::setting(const Step &step) {
    const QString place = step.word(0).section('=', 0, 0);
    const auto whose = step.verb == "setting" ? Program::Whose::Users : Program::Whose::Sites;
    m_program.setting(place.section('/', 0, 0), place.section('/', 1), step.word(0).section('=', 1), whose);
    return Outcome::done();
}

Outcome Player::language(const Step &step) {
    const QString kind = step.word(0);
    const QString folder = variables.value("PROGRAM") + "/languages";
    const bool isThere = QFileInfo(folder + "/language-" + kind + ".ini").isFile();
    const QString file = isThere ? "language-" + kind + ".ini" : makeLanguage(kind, folder);
    if (file.isEmpty()) {
        finish(QString("there is no language %1").arg(kind));
    }
    m_program.setting("Language", "File", file);
    return Outcome::done();
}

/// As a window system does it: the main window, or the one in front, is restored, resized or maximised.
Outcome Player::resize(const Step &step) {
    if (m_phase > 0) {
        return Outcome::done();
    }
    const QWidget *canvas = m_program.canvas();
    QWidget *window = canvas == nullptr ? QApplication::activeWindow() : canvas->window();
    if (window == nullptr) {
        return Outcome::notYet("there is no window");
    }
    if (step.word(0) == "maximised") {
        window->showMaximized();
    } else {
        window->showNormal();
        const QStringList sides = step.word(0).split('x');
        if (step.word(0) != "restored") {
            window->resize(sides.value(0).toInt(), sides.value(1).toInt());
        }
    }
    return Outcome::goes();
}

Outcome Player::expectFits(const Step &step) {
    const Fits fits = lookWhatFits(step.word(0) == "simple" ? simpleTarget : smallestTarget);
    if (!fits.problems.isEmpty()) {
        return Outcome::notYet(fits.problems.join("; "));
    }
    if (step.word(0) == "whole" && !fits.shortened.isEmpty()) {
        return Outcome::notYet("shortened: " + fits.shortened.join("; "));
    }
    if (log) {
        for (const QString &text : fits.shortened) {
            log("shortened: " + text);
        }
    }
    return Outcome::done();
}

Outcome Player::start(const Step &step) {
    if (m_phase > 0) {
        return openWindows().isEmpty() ? Outcome::notYet("no window has opened") : Outcome::done();
    }
    const QString problem = m_program.start(step.words);
    if (!problem.isEmpty()) {
        finish(problem);
    }
    return Outcome::goes();
}

QString Player::reach(QWidget &widget) {
    QString problem = m_program.isMoving() ? "something is still moving" : obstacle(widget);
    QPoint point;
    if (problem.isEmpty() && findClickPoint(widget, point)) {
        // Twice at the same place: a layout may be about to move it.
        const QPoint place = widget.mapToGlobal(point);
        if (m_lastWidget != &widget || m_lastPlace != place) {
            problem = "it is still moving";
        }
        m_lastWidget = &widget;
        m_lastPlace = place;
    }
    return problem;
}

Outcome Player::clickOn(QWidget &widget) {
    const QString problem = reach(widget);
    if (!problem.isEmpty()) {
        return Outcome::notYet(problem);
    }
    QPoint point;
    findClickPoint(widget, point);
    activate(*widget.window());
    m_hand.click(widget, point);
    return Outcome::goes();
}

Outcome Player::click(const Step &step) {
    if (m_phase > 0) {
        return Outcome::done();
    }
    const FoundControl found = findControl(step.word(0));
    return found.widget == nullptr ? Outcome::notYet(found.problem) : clickOn(*found.widget);
}

Outcome Player::item(const Step &step) {
    if (m_phase > 0) {
        return Outcome::done();
    }
    const FoundControl bar = findControl(step.word(0));
    if (bar.widget == nullptr) {
        return Outcome::notYet(bar.problem);
    }
    const FoundItem found = findItem(*bar.widget, step.word(1));
    if (found.widget == nullptr) {
        return Outcome::notYet(QString("%1 has no item %2").arg(step.word(0), step.word(1)));
    }
    if (found.area.isNull()) {
        return clickOn(*found.widget);
    }
    const QString problem = found.enabled ? reach(*found.widget) : "it is disabled";
    if (!problem.isEmpty()) {
        return Outcome::notYet(problem);
    }
    activate(*found.widget->window());
    m_hand.click(*found.widget, found.area.center());
    return Outcome::goes();
}

Outcome Player::typeInto(QWidget &widget, const QString &text) {
    switch (m_phase) {
    case 0:
        return clickOn(widget);
    case 1:
        m_hand.press(*widget.window(), selectAll);
        m_hand.type(*widget.window(), text);
        return Outcome::goes();
    default:
        return Outcome::done();
    }
}

Outcome Player::type(const Step &step) {
    const FoundControl found = findControl(step.word(0));
    return found.widget == nullptr ? Outcome::notYet(found.problem) : typeInto(*found.widget, step.word(1));
}

Outcome Player::set(const Step &step) {
    const FoundControl found = findControl(step.word(0));
    if (found.widget == nullptr) {
        return Outcome::notYet(found.problem);
    }
    const QString value = step.word(1);
    if (auto *button = qobject_cast<QAbstractButton *>(found.widget); button != nullptr && button->isCheckable()) {
        const bool on = value == "1" || value == "on" || value == "true";
        if (button->isChecked() == on) {
            return Outcome::done();
        }
        return m_phase == 0 ? clickOn(*button) : Outcome::notYet("it does not change");
    }
    if (auto *slider = qobject_cast<QAbstractSlider *>(found.widget)) {
        return setSlider(*slider, value.toInt());
    }
    if (auto *combo = qobject_cast<QComboBox *>(found.widget); combo != nullptr && !combo->isEditable()) {
        return setCombo(*combo, value);
    }
    if (qobject_cast<QAbstractSpinBox *>(found.widget) != nullptr && m_phase == 2) {
        m_hand.press(*found.widget->window(), Qt::Key_Tab);
        return Outcome::goes();
    }
    return typeInto(*found.widget, value);
}

Outcome Player::setSlider(QAbstractSlider &slider, int value) {
    const int byHand = m_film == nullptr ? -1 : 0; // the phase in which it is drawn
    const int byKeys = byHand + 1;
    if (m_phase > byKeys) {
        return slider.value() == value ? Outcome::done() : Outcome::notYet("it does not take that value");
    }
    const QString problem = reach(slider);
    if (!problem.isEmpty()) {
        return Outcome::notYet(problem);
    }
    activate(*slider.window());
    if (m_phase == byHand) {
        m_hand.drag(slider, {handlePlace(slider, slider.value()), handlePlace(slider, value)});
    } else {
        slider.setFocus(Qt::TabFocusReason);
        moveSlider(m_hand, *slider.window(), slider, value);
    }
    return Outcome::goes();
}

Outcome Player::setCombo(QComboBox &combo, const QString &value) {
    const int exact = combo.findText(value);
    const int wanted = exact >= 0 ? exact : combo.findText(value, Qt::MatchWildcard);
    if (wanted < 0) {
        return Outcome::notYet(QString("it does not offer %1").arg(value));
    }
    if (m_phase == 0) {
        return clickOn(combo);
    }
    QWidget *list = QApplication::activePopupWidget();
    if (m_phase == 1 && list != nullptr) {
        m_hand.press(*list, Qt::Key_Home);
        for (int row = 0; row < wanted; ++row) {
            m_hand.press(*list, Qt::Key_Down);
        }
        m_hand.press(*list, Qt::Key_Return);
        return Outcome::goes();
    }
    return combo.currentIndex() == wanted ? Outcome::done() : Outcome::notYet("its list does not open");
}

std::vector<QPoint> Player::placesOnPicture(const Step &step, QString &problem) {
    QWidget *canvas = m_program.canvas();
    if (canvas == nullptr) {
        problem = "there is no photo";
        return {};
    }
    problem = reach(*canvas);
    std::vector<QPoint> places;
    const std::vector<int> numbers = coordinates(step.word(0));
    for (std::size_t index = 0; index + 1 < numbers.size() && problem.isEmpty(); index += 2) {
        places.push_back(m_program.onCanvas({numbers[index], numbers[index + 1]}));
        if (!canvas->rect().contains(places.back())) {
            problem = QString("pixel %1, %2 is not in view").arg(numbers[index]).arg(numbers[index + 1]);
        }
    }
    return problem.isEmpty() ? places : std::vector<QPoint>();
}

Outcome Player::onPicture(const Step &step) {
    if (m_phase > 0) {
        return Outcome::done();
    }
    QString problem;
    const std::vector<QPoint> places = placesOnPicture(step, problem);
    if (places.empty()) {
        return Outcome::notYet(problem);
    }
    activate(*m_program.canvas()->window());
    m_hand.drag(*m_program.canvas(), places);
    return Outcome::goes();
}

Outcome Player::point(const Step &step) {
    if (m_phase > 0) {
        return Outcome::done();
    }
    if (!coordinates(step.word(0)).empty()) {
        QString problem;
        const std::vector<QPoint> places = placesOnPicture(step, problem);
        if (places.empty()) {
            return Outcome::notYet(problem);
        }
        m_hand.point(*m_program.canvas(), places.front());
        return Outcome::goes();
    }
    const FoundControl found = findControl(step.word(0));
    if (found.widget == nullptr) {
        return Outcome::notYet(found.problem);
    }
    const QString problem = reach(*found.widget);
    QPoint place;
    if (!problem.isEmpty() || !findClickPoint(*found.widget, place)) {
        return Outcome::notYet(problem);
    }
    m_hand.point(*found.widget, place);
    return Outcome::goes();
}

Outcome Player::press(const Step &step) {
    return onPicture(step);
}

Outcome Player::drag(const Step &step) {
    return onPicture(step);
}

Outcome Player::key(const Step &step) {
    if (m_phase > 1) {
        return Outcome::done();
    }
    const QKeySequence keys = QKeySequence::fromString(step.word(0));
    if (keys.isEmpty() || keys[0].key() == Qt::Key_unknown) {
        finish(QString("there is no key %1").arg(step.word(0)));
        return Outcome::done();
    }
    QWidget *window = keyboardWindow();
    if (window == nullptr || window->windowHandle() == nullptr) {
        return Outcome::notYet("no window is open");
    }
    if (m_phase == 0) {
        activate(*window);
        return Outcome::goes();
    }
    for (int index = 0; index < keys.count(); ++index) {
        m_hand.press(*window, keys[static_cast<uint>(index)]);
    }
    return Outcome::goes();
}

Outcome Player::undo(const Step &step) {
    const bool undoes = step.verb == "undo";
    QString steps;
    QString problem;
    if (!observed(undoes ? "state.undo" : "state.redo", steps, problem) || steps == "0") {
        return problem.isEmpty() ? Outcome::done() : Outcome::notYet(problem);
    }
    QWidget *window = keyboardWindow();
    if (steps == m_undoSteps || window == nullptr) {
        return Outcome::notYet(QString("it does not %1; %2 steps are left").arg(step.verb, steps));
    }
    m_undoSteps = steps;
    activate(*window);
    m_hand.press(*window, Qt::ControlModifier | (undoes ? Qt::Key_Z : Qt::Key_Y));
    goOn(step);
    return Outcome::goes();
}

Outcome Player::monkey(const Step &step) {
    if (m_monkey == nullptr) {
        m_monkey = std::make_unique<Monkey>(m_program, m_hand, step.word(0).toUInt(), step.word(1).toInt(),
                                            step.words.value(2));
    }
    const QString problem = m_monkey->problem();
    if (!problem.isEmpty()) {
        return Outcome::notYet(problem);
    }
    if (m_monkey->isDone()) {
        m_monkey.reset();
        return Outcome::done();
    }
    const QString action = m_monkey->act();
    if (log) {
        log(action);
    }
    goOn(step);
    return Outcome::goes();
}

Outcome Player::choose(const Step &step) {
    constexpr int clicked = 3; // the phase after the dialog's Open or Save was clicked
    auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
    if (m_phase >= clicked && dialog != m_fileDialog) {
        return Outcome::done(); // it has closed, or asks whether to replace the file
    }
    if (dialog == nullptr) {
        return Outcome::notYet("no file dialog is open");
    }
    auto *name = dialog->findChild<QLineEdit *>("fileNameEdit");
    const QString path = QDir::current().absoluteFilePath(step.word(0));
    QWidget *completions = QApplication::activePopupWidget();
    if (m_phase >= 2 && completions != nullptr) {
        m_hand.press(*completions, Qt::Key_Escape); // the list of names that go on like this one
        m_phase = 1;
        return Outcome::goes();
    }
    if (m_phase < 2) {
        return typeInto(*name, path);
    }
    if (m_phase >= clicked) {
        return Outcome::notYet("the dialog does not take this file");
    }
    if (name->text() != path) {
        return Outcome::notYet(QString("its name field says %1").arg(name->text()));
    }
    m_fileDialog = dialog;
    const bool saves = dialog->acceptMode() == QFileDialog::AcceptSave;
    const auto *buttons = dialog->findChild<QDialogButtonBox *>();
    return clickOn(*buttons->button(saves ? QDialogButtonBox::Save : QDialogButtonBox::Open));
}

/// Keys for the file dialog of the desktop, whose window is not one of Qt's.
Outcome Player::desktop(const Step &step) {
    if (!isDesktopDialogOpen()) {
        return Outcome::notYet("no dialog of the desktop is open");
    }
    constexpr int breath = 1000; // milliseconds: GTK looks a typed name up before it takes the Return key
    if (step.word(0) == "key" && m_inputClock.elapsed() < breath) {
        return Outcome::notYet("the dialog still looks the name up");
    }
    const auto give = step.word(0) == "type" ? typeIntoDesktop : pressOnDesktop;
    const QString problem = give(QApplication::activeModalWidget()->windowTitle(), step.word(1));
    m_inputClock.start();
    return problem.isEmpty() ? Outcome::done() : Outcome::notYet(problem);
}

/// As the window system tells of it: the drag comes over the window, and is let go there when the window wants it.
Outcome Player::drop(const Step &step) {
    const QWidget *canvas = m_program.canvas();
    const QPointer<QWidget> window = canvas == nullptr ? QApplication::activeWindow() : canvas->window();
    if (window == nullptr || window->windowHandle() == nullptr) {
        return Outcome::notYet("there is no window");
    }
    const bool taken = dropOn(*window, QDir::current().absoluteFilePath(step.word(0)));
    if (print) {
        print(taken ? "drop: taken" : "drop: refused");
    }
    m_inputClock.start();
    return Outcome::done();
}

/// The desktop's request to close the main window.
Outcome Player::close(const Step &) {
    const QWidget *canvas = m_program.canvas();
    QWidget *window = canvas == nullptr ? QApplication::activeWindow() : canvas->window();
    if (window == nullptr) {
        return Outcome::notYet("there is no window");
    }
    // Qt lets no such request through to a window that waits for another one's answer.
    QTimer::singleShot(0, window, [window] {
        const QWidget *modal = QApplication::activeModalWidget();
        if (modal == nullptr || modal == window) {
            window->close();
        }
    });
    m_inputClock.start();
    return Outcome::done();
}

/// As a crash ends it: nothing is put in order.
Outcome Player::kill(const Step &) {
    std::raise(SIGKILL);
    return Outcome::done();
}

Outcome Player::meanwhile(const Step &step) {
    m_meanwhile = step.word(0) == "on";
    return Outcome::done();
}

Outcome Player::wait(const Step &step) {
    if (m_film != nullptr && m_phase == 0) { // the film's own time, however slowly it is made
        m_hand.rest(step.word(0).toInt());
        return Outcome::goes();
    }
    if (m_film != nullptr) {
        return Outcome::done();
    }
    if (m_stepClock.elapsed() >= step.word(0).toInt()) {
        return Outcome::done();
    }
    return Outcome::goes();
}

Outcome Player::quit(const Step &) {
    finish();
    return Outcome::done();
}

} // namespace lumora::play
