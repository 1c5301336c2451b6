#include "LumoraOrder.h"

#include "Controls.h"
#include "ideas/frmSamples.h"
#include "session/AppContext.h"
#include "tools/rotate/RotateControls.h"
#include "view/PhotoView.h"
#include "widgets/CommandBar.h"
#include "widgets/FloatingToolbar.h"
#include "widgets/SlidingPanel.h"
#include "window/CommandRow.h"
#include "window/ToolColumn.h"
#include "window/frmMain.h"

#include <QGuiApplication>
#include <QMenu>
#include <QMessageBox>
#include <QPointer>
#include <QScreen>
#include <QScrollBar>
#include <algorithm>
#include <iterator>

namespace lumora::play {

namespace {

/// By name or by key.
const char *const leftAlone[] = {
    "cmdExit",      // leaves the program
    "cmdMin",       // takes the window off the screen
    "cmdOptions",   // changes the settings that the walk was started with
    "cmdOpen",      // asks for another photo
    "EmptyTable",   // the same, before the first photo
    "cmdSave",      // asks for a file
    "cmdScan",      // waits for a scanner, brings another photo
    "cmdPrint",     // opens the printer's window
    "keyEmail",     // opens the mail window
    "keyPaste",     // replaces the photo by what the desktop holds
    "keySlideShow", // fills the screen with other photos
    "keyHelp",      // opens the guide or the desktop's player
};

const char *const leaving[] = {
    "cmdExit", // also of the questions before leaving
    "cmdMin",
};

/// Come and go with the photo's history, with what the desktop holds and with the page of the tools that is shown.
const char *const changing[] = {"keyUndo", "keyRedo", "keyPaste", "cmdPageUp", "cmdPageDown"};
/// The options switch them off and on.
const char *const optional[] = {"cmdScan", "cmdPrint", "keyEmail"};

template <std::size_t count> bool isAmong(const char *const (&names)[count], const QWidget &control) {
    const QString key = control.property("key").toString();
    return std::any_of(std::begin(names), std::end(names), [&](const char *name) {
        return control.objectName() == QLatin1String(name) || key == QLatin1String(name);
    });
}

template <typename Widget> QList<Widget *> visible(const frmMain &window) {
    QList<Widget *> found = window.findChildren<Widget *>();
    found.removeIf([](const Widget *one) { return !one->isVisible(); });
    return found;
}

template <typename Widget> QString names(const QList<Widget *> &widgets) {
    QStringList names;
    for (const Widget *widget : widgets) {
        names << nameOf(*widget);
    }
    return names.join(" and ");
}

/// Messages that a walk may well bring up, by how they begin; every other message box is one too many.
const char *const messages[] = {
    "Invalid Size!", // a size that is too large was typed
};

/// What does not belong on the screen; empty when all does.
QString strangerAmong(const QList<QWidget *> &windows, const frmMain &main) {
    for (const QWidget *open : windows) {
        const auto *box = qobject_cast<const QMessageBox *>(open);
        const bool isMessage = box != nullptr && std::any_of(std::begin(messages), std::end(messages), [&](auto *text) {
                                   return box->text().startsWith(QLatin1String(text));
                               });
        if (open != &main && !isMessage && qobject_cast<const frmSamples *>(open) == nullptr &&
            qobject_cast<const QMenu *>(open) == nullptr && !open->inherits("QComboBoxPrivateContainer")) {
            return QString("the window %1 is open %2").arg(nameOf(*open), box == nullptr ? "" : box->text()).trimmed();
        }
    }
    return {};
}

/// A window that has left the screen so far that nobody can take hold of its title; empty when there is none.
QString outOfReachAmong(const QList<QWidget *> &windows) {
    constexpr int hold = 24; // pixels
    for (const QWidget *open : windows) {
        const QRect screen = open->screen()->geometry();
        const QRect place = open->frameGeometry();
        const QRect seen = place & screen;
        if (seen.width() < std::min(hold, place.width()) || seen.height() < std::min(hold, place.height()) ||
            place.top() < screen.top()) {
            return QString("the window %1 lies outside the screen").arg(nameOf(*open));
        }
    }
    return {};
}

bool hasArrow(const frmMain &window) {
    const auto *arrow = window.findChild<PictureButton *>("cmdTool1");
    return arrow != nullptr && arrow->isChecked();
}

QString stuckCursor(const frmMain &window, const PhotoView &view) {
    if (QGuiApplication::overrideCursor() != nullptr) {
        return "a cursor overrides all others";
    }
    switch (view.viewport()->cursor().shape()) {
    case Qt::WaitCursor:
    case Qt::BusyCursor:
    case Qt::ClosedHandCursor:
        return "the cursor of the photo has stuck";
    case Qt::OpenHandCursor: // a tool's own, perhaps
        return hasArrow(window) ? "the Arrow tool has a hand" : QString();
    default:
        return {};
    }
}

/// The tools and commands that can be used, without those that come and go.
QList<QPointer<PictureButton>> usable(const frmMain &window, Walk walk) {
    QList<QPointer<PictureButton>> buttons;
    const QWidget *const rows[] = {window.findChild<ToolColumn *>(), window.findChild<CommandRow *>()};
    for (const QWidget *row : rows) {
        for (PictureButton *button : row->findChildren<PictureButton *>()) {
            const bool changes = isAmong(changing, *button) || (walk == Walk::Everywhere && isAmong(optional, *button));
            if (button->isEnabled() && !changes) {
                buttons << button;
            }
        }
    }
    return buttons;
}

/// What a tool has painted over the photo and left there, a preview that was not applied for one.
bool showsOnlyThePhoto(PhotoView &view, PhotoDocument &photo) {
    const auto asIn = [](const QScrollBar *bar) {
        return bar->isVisible() ? Qt::ScrollBarAlwaysOn : Qt::ScrollBarAlwaysOff;
    };
    PhotoView fresh(photo);
    fresh.setHorizontalScrollBarPolicy(asIn(view.horizontalScrollBar()));
    fresh.setVerticalScrollBarPolicy(asIn(view.verticalScrollBar()));
    fresh.setAttribute(Qt::WA_DontShowOnScreen);
    fresh.resize(view.size());
    fresh.show(); // lays it out
    fresh.horizontalScrollBar()->setValue(view.horizontalScrollBar()->value());
    fresh.verticalScrollBar()->setValue(view.verticalScrollBar()->value());
    return fresh.viewport()->grab().toImage() == view.viewport()->grab().toImage();
}

} // namespace

bool leavesOrReplaces(const QWidget &control) {
    return control.inherits("lumora::EmptyTable") || isAmong(leftAlone, control);
}

bool leavesTheProgram(const QWidget &control) {
    return isAmong(leaving, control) || control.inherits("QFileDialog") || control.inherits("QPrintDialog");
}

bool isPanelSliding(const frmMain &window) {
    const auto panels = window.findChildren<SlidingPanel *>();
    return std::any_of(panels.begin(), panels.end(), [](const SlidingPanel *panel) { return panel->isSliding(); });
}

bool hasArrowOnly(const frmMain &window) {
    return visible<SlidingPanel>(window).isEmpty() && visible<FloatingToolbar>(window).isEmpty() && hasArrow(window);
}

std::function<QString()> orderOf(const frmMain &window, AppContext &context, Walk walk) {
    return [&window, &context, walk, tools = usable(window, walk)]() -> QString {
        PhotoView &view = *window.view();
        QString stranger = walk == Walk::Photo ? strangerAmong(openWindows(), window) : outOfReachAmong(openWindows());
        if (!stranger.isEmpty()) {
            return stranger;
        }
        const auto panels = visible<SlidingPanel>(window);
        const auto bars = visible<FloatingToolbar>(window);
        if (panels.size() > 1 || bars.size() > 1) {
            return QString("%1 are open").arg(panels.size() > 1 ? names(panels) : names(bars));
        }
        QString cursor = stuckCursor(window, view);
        if (!cursor.isEmpty() || !panels.isEmpty() || !bars.isEmpty()) {
            return cursor;
        }
        // While the photo is sized or turned by hand no tool can be chosen.
        const auto *alone = window.findChild<QWidget *>("cmdToolDone");
        const bool isByHand = alone != nullptr && alone->isVisible();
        for (const PictureButton *tool : tools) {
            if (tool != nullptr && !tool->isEnabled() && !isByHand) {
                return QString("%1 is disabled").arg(nameOf(*tool));
            }
        }
        const bool isPlain = hasArrow(window) && context.photo.selection().isEmpty();
        return isPlain && !showsOnlyThePhoto(view, context.photo) ? "the view shows something else than the photo"
                                                                  : QString();
    };
}

} // namespace lumora::play
