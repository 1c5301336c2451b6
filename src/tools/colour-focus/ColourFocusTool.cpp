#include "tools/colour-focus/ColourFocusTool.h"

#include "imaging/effects/ColourFocus.h"
#include "session/AppContext.h"
#include "tools/canvas/CanvasMouse.h"
#include "tools/canvas/SmallPhoto.h"
#include "tools/colour-focus/ColourFocusMagnifier.h"
#include "tools/colour-focus/ColourFocusPanel.h"
#include "view/PhotoView.h"

#include <QEvent>
#include <QPainter>

namespace lumora {

namespace {

constexpr int dropperImage = 2; // image of picTarget
constexpr int faint = 16; // levels between the largest and the smallest channel: with less, the hue is not meaningful

Operation operation(const QColor &colour, int level) {
    return {applyColourFocus, {colour.red(), colour.green(), colour.blue(), level}};
}

bool isGrey(const QColor &colour) {
    const auto [least, most] = std::minmax({colour.red(), colour.green(), colour.blue()});
    return most - least < faint;
}

} // namespace

ColourFocusTool::ColourFocusTool(AppContext &ctx, PhotoView &view, CanvasMouse &mouse, QWidget *window)
    : PanelTool(mouse, new ColourFocusPanel(window), window), m_ctx(ctx), m_view(view), m_flow(ctx), m_live(ctx, view),
      m_panel(static_cast<ColourFocusPanel *>(panel())) {
    view.viewport()->installEventFilter(this);
    connect(&view, &PhotoView::visiblePartChanged, this, [this] {
        if (m_magnifierAt) {
            m_view.viewport()->update(); // scrolling has moved the painted overlay
        }
    });
    connect(m_panel, &ColourFocusPanel::levelChanged, this, &ColourFocusTool::showLevel);
    connect(m_panel, &ColourFocusPanel::applyWanted, this, &ColourFocusTool::similarclr);
    connect(&m_flow, &SelectionFlow::tipWanted, this, &ColourFocusTool::tipWanted);
    connect(&ctx.photo, &PhotoDocument::changed, this, &ColourFocusTool::photoChanged);
}

// --- Start and end --------------------------------------------------------------------------------------------------

bool ColourFocusTool::open(const QString &) {
    if (m_ctx.photo.picCanvas().isNull()) {
        return false;
    }
    begin();
    CreateCMSFX();
    showLevel();
    Q_EMIT hint(m_ctx.texts.text("FocusHint"), HintedAct::Click);
    return true;
}

void ColourFocusTool::start() {
    // The selection is kept and limits the change; a selection tool without a selection ends.
    if (m_ctx.photo.selection().isEmpty()) {
        m_ctx.flags.endSelection();
    }
    m_mouse.showTarget(dropperImage);
}

void ColourFocusTool::end() {
    showMagnifier({});
    setColour({});
    m_panel->resetLevel();
    m_live.clear();
    PanelTool::end();
}

void ColourFocusTool::photoChanged(PhotoChanges what) {
    if (!isAtWork() || !what.testAnyFlags(PhotoChange::Pixels | PhotoChange::Loaded)) {
        return;
    }
    if (what.testFlags(PhotoChange::Pixels | PhotoChange::Loaded)) {
        setColour({}); // it was a colour of the previous photo
    }
    CreateCMSFX();
}

// --- Picking --------------------------------------------------------------------------------------------------------

void ColourFocusTool::press(const PointerEvent &) {
    m_mouse.showTarget(dropperImage);
}

void ColourFocusTool::move(const PointerEvent &at) {
    m_mouse.showTarget(dropperImage);
    const bool overPhoto = m_ctx.photo.picCanvas().rect().contains(m_view.pixelAt(at.view));
    showMagnifier(overPhoto ? std::optional(at.view) : std::nullopt);
}

void ColourFocusTool::clicked(QPoint pixel) {
    m_mouse.showTarget(dropperImage);
    const QImage &photo = m_ctx.photo.picCanvas();
    if (!photo.rect().contains(pixel)) {
        return;
    }
    setColour(QColor(photo.pixel(pixel)));
    CreateCMSFX();
    showLevel();
    if (isGrey(*m_colour)) {
        Q_EMIT message(m_ctx.texts.text("FocusGrey"), false);
    }
}

void ColourFocusTool::setColour(std::optional<QColor> colour) {
    m_colour = colour;
    m_panel->setColour(chosenColour());
}

void ColourFocusTool::showMagnifier(std::optional<QPointF> at) {
    const QRect room = m_view.viewport()->rect();
    for (const std::optional<QPointF> &place : {m_magnifierAt, at}) {
        if (place) {
            m_view.viewport()->update(magnifierPlace(*place, room));
        }
    }
    m_magnifierAt = at;
}

bool ColourFocusTool::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::Leave && m_magnifierAt) {
        showMagnifier({});
    }
    return QObject::eventFilter(watched, event);
}

void ColourFocusTool::paint(QPainter &painter) {
    const QImage &photo = m_ctx.photo.picCanvas();
    if (!m_magnifierAt) {
        return;
    }
    const QPoint pixel = m_view.pixelAt(*m_magnifierAt);
    if (photo.rect().contains(pixel)) {
        paintMagnifier(painter, photo, pixel, magnifierPlace(*m_magnifierAt, m_view.viewport()->rect()));
    }
}

// --- What it does to the photo --------------------------------------------------------------------------------------

void ColourFocusTool::CreateCMSFX() {
    const QImage small = smallPhoto(m_view, ColourFocusPanel::pictureSize);
    if (small.isNull()) {
        return;
    }
    for (int strength = 1; strength <= ColourFocusPanel::strengths; ++strength) {
        EffectEngine engine;
        engine.setPicture(small);
        if (m_colour) {
            engine.apply(operation(*m_colour, ColourFocusPanel::levelOf(strength)), false);
        }
        m_ctx.photo.picCM(strength) = engine.picture();
        m_panel->setPicture(strength, engine.picture());
    }
}

/// On the photo, which is not changed.
void ColourFocusTool::showLevel() {
    if (!isAtWork() || !m_colour) {
        return;
    }
    m_live.show({.operation = [run = operation(*m_colour, m_panel->level())](int) { return run; }});
}

EffectOutcome ColourFocusTool::similarclr() {
    if (!m_colour) {
        Q_EMIT message(m_ctx.texts.text("FocusNoColour"), false);
        return EffectOutcome::Nothing;
    }
    m_live.clear();
    const EffectOutcome outcome = m_flow.apply(operation(*m_colour, m_panel->level()));
    if (isFailure(outcome)) {
        Q_EMIT message(m_ctx.texts.text("StatusNoMemory"), false);
    }
    return outcome;
}

} // namespace lumora
