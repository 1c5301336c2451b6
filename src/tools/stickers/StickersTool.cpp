#include "tools/stickers/StickersTool.h"

#include "session/AppContext.h"
#include "tools/canvas/CanvasMouse.h"
#include "tools/canvas/KeyboardPointer.h"
#include "tools/stickers/ItemBar.h"
#include "tools/stickers/ItemMoves.h"
#include "tools/stickers/StickersPanel.h"
#include "tools/stickers/WordsEditor.h"

#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <algorithm>
#include <cmath>

namespace lumora {

namespace {

constexpr int readyTarget = 5; // images of picTarget
constexpr int placingTarget = 3;
constexpr int stickerSlop = 3;      // pixels of the view that an unsteady hand may move within a click
constexpr double ghost = 0.6;       // opacity of what is to be placed
constexpr double stickerPart = 0.3; // sizes of what is placed, of the shorter side of what is in view
constexpr double wordsPart = 0.15;
constexpr double bubblePart = 0.08;

double usualSize(Decoration::Kind kind, double side) {
    return side * (kind == Decoration::Kind::Sticker ? stickerPart
                   : kind == Decoration::Kind::Words ? wordsPart
                                                     : bubblePart);
}

bool isEnter(int key) {
    return key == Qt::Key_Return || key == Qt::Key_Enter;
}

} // namespace

StickersTool::StickersTool(AppContext &ctx, PhotoView &view, CanvasMouse &mouse, QWidget *window)
    : PanelTool(mouse, new StickersPanel(ctx, window), window), m_ctx(ctx), m_view(view),
      m_panel(static_cast<StickersPanel *>(panel())) {
    connect(&ctx.photo, &PhotoDocument::changed, this, [this](PhotoChanges what) {
        if (what.testAnyFlags(PhotoChange::Pixels | PhotoChange::Size | PhotoChange::Loaded)) {
            if (m_editor != nullptr) {
                m_editor->end();
            }
            m_list.forget(); // they were for the photo as it was
            select(-1);
            changed();
        }
    });
}

void StickersTool::makeControls() {
    m_bar = new ItemBar(m_ctx, m_view);
    m_editor = new WordsEditor(m_ctx, m_view);
    connect(m_bar, &ItemBar::wordsWanted, this, &StickersTool::typeWords);
    connect(m_bar, &ItemBar::frontWanted, this, &StickersTool::bringToFront);
    connect(m_bar, &ItemBar::deleteWanted, this, &StickersTool::throwAway);
    connect(m_editor, &WordsEditor::wordsChanged, this, [this](const QString &words) {
        Decoration item = m_beforeTyping;
        item.text = words;
        change(fittedOnPhoto(item, photoSize()));
        m_editor->keepClearOf(partOfView());
    });
    connect(m_editor, &WordsEditor::done, this, &StickersTool::finishWords);
    connect(m_panel, &StickersPanel::chosen, this, &StickersTool::pick);
    connect(m_panel, &StickersPanel::pageChosen, this, &StickersTool::putDown);
    connect(&m_view, &PhotoView::visiblePartChanged, this, [this] {
        placeBar();
        if (m_editor->isActive()) {
            m_editor->moveBeside(partOfView());
        }
    });
}

// --- Start and end --------------------------------------------------------------------------------------------------

bool StickersTool::open(const QString &) {
    if (!m_ctx.photo.PhotoLoaded() || m_ctx.photo.picCanvas().isNull()) {
        return false;
    }
    if (isAtWork()) {
        return true;
    }
    if (m_bar == nullptr) {
        makeControls();
    }
    m_panel->prepare();
    begin();
    m_ctx.flags.endSelection();
    m_mouse.clearMarked();
    m_mouse.showTarget(readyTarget);
    m_view.setFocus(); // for the keys
    Q_EMIT stepsChanged();
    if (m_list.canStep(true)) {
        Q_EMIT message(m_ctx.texts.text("StickersBack"), true);
    }
    return true;
}

void StickersTool::end() {
    finishWords();
    m_drag.reset();
    m_picked.reset();
    select(-1);
    m_list.removeAll(); // undone, they are there again
    m_list.record();
    m_pictures.clear();
    m_bar->hide();
    PanelTool::end();
    Q_EMIT stepsChanged();
}

void StickersTool::accept() {
    if (apply(Stopping::Offered)) {
        leave();
    }
}

void StickersTool::settle() {
    if (isAtWork()) {
        apply(Stopping::NotOffered);
    }
}

bool StickersTool::apply(Stopping stopping) {
    finishWords();
    m_drag.reset();
    if (m_list.count() == 0) {
        return true;
    }
    const QImage photo = m_ctx.photo.picCanvas();
    const std::vector<Decoration> items = m_list.items();
    QImage next;
    if (!m_ctx.tasks.run([&] { next = decorated(photo, items); }, stopping)) {
        return false;
    }
    if (!m_ctx.photo.changePhoto(next)) {
        Q_EMIT message(m_ctx.texts.text("StatusNoMemory"), false);
        return false;
    }
    return true;
}

void StickersTool::step(bool back) {
    finishWords();
    m_drag.reset();
    m_list.step(back);
    select(std::min(m_selected, m_list.count() - 1));
    changed();
}

// --- Changes --------------------------------------------------------------------------------------------------------

QSize StickersTool::photoSize() const {
    return m_ctx.photo.picCanvas().size();
}

QTransform StickersTool::toView() const {
    const QPointF origin = m_view.toView({0, 0});
    const double scale = m_view.toView({1, 0}).x() - origin.x();
    return QTransform::fromScale(scale, scale) * QTransform::fromTranslate(origin.x(), origin.y());
}

ItemHandles StickersTool::handles() {
    const Decoration &item = m_list.at(m_selected);
    return handlesOf(item, m_pictures.shape(item), toView(), m_view.viewport()->rect());
}

/// The part of the view that the chosen one and its handles cover.
QRectF StickersTool::partOfView() {
    return handles().bounds().translated(m_view.viewport()->pos());
}

void StickersTool::pick(const Decoration &prototype) {
    finishWords();
    select(-1);
    m_picked = prototype;
    const QRect part = m_view.visiblePart();
    m_picked->size = usualSize(prototype.kind, std::min(part.width(), part.height()));
    m_picked->centre = QRectF(part).center();
    m_mouse.showTarget(placingTarget);
    m_view.setFocus();
    refresh();
}

/// What was picked is not wanted any more.
void StickersTool::putDown() {
    finishWords();
    m_picked.reset();
    m_panel->chooseNothing();
    m_mouse.showTarget(readyTarget);
    refresh();
}

void StickersTool::place(QPointF where) {
    Decoration item = *m_picked;
    item.centre = where;
    item = keptOnPhoto(item, photoSize());
    m_list.add(item.hasWords() ? fittedOnPhoto(item, photoSize()) : item);
    putDown();
    select(m_list.count() - 1);
}

void StickersTool::select(int index) {
    m_selected = index;
    m_drag.reset(); // it was of the one that was chosen
    refresh();
}

void StickersTool::change(const Decoration &item) {
    m_list.set(m_selected, item);
    refresh();
}

/// A step is complete.
void StickersTool::changed() {
    m_list.record();
    refresh();
    Q_EMIT stepsChanged();
}

void StickersTool::refresh() {
    placeBar();
    m_view.viewport()->update();
}

void StickersTool::placeBar() {
    if (m_bar == nullptr) {
        return;
    }
    const bool wanted = isAtWork() && m_selected >= 0 && !m_editor->isActive() && !(m_drag && m_drag->moved) &&
                        handles().isIn(m_view.viewport()->rect());
    if (wanted) {
        m_bar->showBeside(partOfView(), m_list.at(m_selected).hasWords());
    } else {
        m_bar->hide();
    }
}

void StickersTool::throwAway() {
    if (m_selected < 0) {
        return;
    }
    m_list.remove(m_selected);
    select(-1);
    changed();
}

void StickersTool::bringToFront() {
    if (m_selected >= 0) {
        m_list.moveToFront(m_selected);
        select(m_list.count() - 1);
        changed();
    }
}

void StickersTool::typeWords() {
    if (m_selected >= 0 && m_list.at(m_selected).hasWords()) {
        m_beforeTyping = m_list.at(m_selected);
        m_editor->begin(m_list.at(m_selected).text, partOfView());
        refresh();
    }
}

/// Words that are empty are nothing to look at.
void StickersTool::finishWords() {
    if (m_editor == nullptr || !m_editor->isActive()) {
        return;
    }
    m_editor->end();
    const Decoration item = m_list.at(m_selected);
    if (!item.isBubble() && item.text.trimmed().isEmpty()) {
        m_list.remove(m_selected);
        select(-1);
    }
    changed();
}

// --- Mouse ----------------------------------------------------------------------------------------------------------

/// The uppermost there; -1 for none.
int StickersTool::itemAt(QPointF view) {
    const QTransform place = toView();
    for (int i = m_list.count() - 1; i >= 0; --i) {
        if (meets(m_list.at(i), m_pictures.shape(m_list.at(i)), place, view)) {
            return i;
        }
    }
    return -1;
}

void StickersTool::press(const PointerEvent &at) {
    if (!isAtWork()) {
        return;
    }
    m_view.setFocus();
    finishWords();
    const bool placing = m_picked.has_value();
    ItemHandle handle = placing || m_selected < 0 ? ItemHandle::None : handleAt(handles(), at.view);
    if (placing) {
        place(at.picture);
        handle = ItemHandle::Inside;
    } else if (handle == ItemHandle::None || handle == ItemHandle::Inside) {
        // What is on top of the chosen one can be reached, too; but the chosen one is moved wherever it is covered.
        const int met = itemAt(at.view);
        if (handle == ItemHandle::None) {
            select(met);
        }
        handle = m_selected >= 0 ? ItemHandle::Inside : ItemHandle::None;
    }
    if (handle != ItemHandle::None) {
        m_drag = Drag{handle, m_list.at(m_selected), at.picture, at.view, placing, false};
    }
    showCursor(at.view);
}

void StickersTool::move(const PointerEvent &at) {
    if (!isAtWork()) {
        return;
    }
    if (!m_drag) {
        if (m_picked) {
            m_picked->centre = at.picture;
            m_view.viewport()->update();
        }
        showCursor(at.view);
        return;
    }
    m_drag->moved = m_drag->moved || (at.view - m_drag->pressedView).manhattanLength() >= stickerSlop;
    if (m_drag->moved) {
        change(draggedItem(m_drag->before, m_drag->handle, m_drag->pressed, at.picture, photoSize()));
    }
    showCursor(at.view);
}

void StickersTool::release(const PointerEvent &at) {
    if (m_drag) {
        endDrag(at);
    }
    if (isAtWork()) {
        showCursor(at.view);
    }
}

void StickersTool::endDrag(const PointerEvent &at) {
    const Drag drag = *m_drag;
    m_drag.reset();
    if (!drag.moved && !drag.placed && drag.handle == ItemHandle::Inside) {
        select(itemAt(at.view)); // a click chooses what is on top
    }
    if (drag.placed && m_list.at(m_selected).hasWords()) {
        typeWords(); // one step, with its words
    } else {
        changed();
    }
}

void StickersTool::doubleClick(const PointerEvent &at) {
    if (m_editor->isActive()) {
        m_editor->takeKeyboard(); // its first click has placed words, the second one has taken the keyboard
        return;
    }
    press(at);
    m_drag.reset();
    typeWords();
}

bool StickersTool::scrollsAtEdge() const {
    return m_drag && m_drag->moved && m_drag->handle == ItemHandle::Inside;
}

void StickersTool::showCursor(QPointF view) {
    if (m_picked) {
        m_mouse.showTarget(placingTarget);
        return;
    }
    ItemHandle handle = m_drag ? m_drag->handle : m_selected >= 0 ? handleAt(handles(), view) : ItemHandle::None;
    if (handle == ItemHandle::None && itemAt(view) >= 0) {
        handle = ItemHandle::Inside;
    }
    if (handle == ItemHandle::None) {
        m_mouse.showTarget(readyTarget);
    } else {
        m_view.setToolCursor(handle == ItemHandle::Inside ? (m_drag ? Qt::ClosedHandCursor : Qt::OpenHandCursor)
                                                          : Qt::PointingHandCursor);
    }
}

// --- Keys -----------------------------------------------------------------------------------------------------------

/// The item that Tab goes to, forwards or back; as many as there are when it leaves the photo.
int StickersTool::nextItem(const QKeyEvent &key) const {
    const bool forwards = key.key() == Qt::Key_Tab && !key.modifiers().testFlag(Qt::ShiftModifier);
    const int next = forwards ? m_selected + 1 : m_selected < 0 ? m_list.count() - 1 : m_selected - 1;
    return next < 0 ? m_list.count() : next;
}

std::optional<Decoration> StickersTool::keyed(const QKeyEvent &key) const {
    return keyedItem(m_list.at(m_selected), key, toView().m11(), photoSize());
}

bool StickersTool::wantsKey(const QKeyEvent &key) const {
    // [ and ] are on the third level of many keyboards.
    const bool bracket = key.key() == Qt::Key_BracketLeft || key.key() == Qt::Key_BracketRight;
    const Qt::KeyboardModifiers held = key.modifiers() & ~(Qt::KeypadModifier | Qt::ShiftModifier);
    if (!isAtWork() || (held != Qt::NoModifier && !bracket)) {
        return false;
    }
    switch (key.key()) {
    case Qt::Key_Escape:
        return true;
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
        return nextItem(key) < m_list.count();
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return m_picked.has_value() || m_selected >= 0;
    case Qt::Key_Delete:
    case Qt::Key_Backspace:
    case Qt::Key_PageUp:
        return m_selected >= 0;
    default:
        return m_selected >= 0 && keyed(key).has_value();
    }
}

void StickersTool::keyPress(const QKeyEvent &key) {
    if (m_drag) {
        return; // the mouse has it
    }
    if (m_editor->isActive()) { // and the photo has the keyboard, after it was moved by hand for one
        finishWords();
        if (key.key() == Qt::Key_Escape || !wantsKey(key)) {
            return;
        }
    }
    if (key.key() == Qt::Key_Escape) {
        if (m_picked) {
            putDown();
        } else if (m_selected >= 0) {
            select(-1);
        } else {
            leave();
        }
    } else if (key.key() == Qt::Key_Tab || key.key() == Qt::Key_Backtab) {
        select(nextItem(key));
    } else if (m_picked && isEnter(key.key())) {
        place(m_picked->centre);
        if (m_list.at(m_selected).hasWords()) {
            typeWords();
        } else {
            changed();
        }
    } else if (isEnter(key.key())) {
        typeWords();
    } else if (key.key() == Qt::Key_Delete || key.key() == Qt::Key_Backspace) {
        throwAway();
    } else if (key.key() == Qt::Key_PageUp) {
        bringToFront();
    } else if (const std::optional<Decoration> item = keyed(key)) {
        change(*item);
        changed();
    }
}

// --- What is shown --------------------------------------------------------------------------------------------------

void StickersTool::paint(QPainter &painter) {
    if (!isAtWork()) {
        return;
    }
    const QTransform place = toView();
    const QPointF origin(place.dx(), place.dy());
    painter.save();
    painter.setClipRect(m_view.photoRect());
    for (const Decoration &item : m_list.items()) {
        m_pictures.paint(painter, item, origin, place.m11());
    }
    if (m_picked) {
        painter.setOpacity(ghost);
        m_pictures.paint(painter, *m_picked, origin, place.m11());
    }
    painter.restore();
    m_pictures.dropUnused();
    if (m_selected >= 0 && !m_editor->isActive()) {
        paintItemHandles(painter, handles());
    }
}

} // namespace lumora
