#include "tools/pop-art/PopArtTool.h"

#include "imaging/EffectEngine.h"
#include "session/AppContext.h"
#include "tools/canvas/CanvasMouse.h"
#include "tools/canvas/SmallPhoto.h"
#include "tools/pop-art/PopArtPalette.h"
#include "tools/pop-art/PopArtPanel.h"
#include "widgets/Theme.h"

#include <QKeyEvent>
#include <QLabel>
#include <QPainter>

namespace lumora {

namespace {

constexpr int margin = 24; // pixels of table round the row

} // namespace

PopArtTool::PopArtTool(AppContext &ctx, PhotoView &view, CanvasMouse &mouse, QWidget *window)
    : QObject(window), m_ctx(ctx), m_view(view), m_mouse(mouse), m_panel(new PopArtPanel(ctx, window)) {
    connect(m_panel, &PopArtPanel::pairsChanged, this, &PopArtTool::showPairs);
    connect(m_panel, &PopArtPanel::applyWanted, this, &PopArtTool::apply);
    connect(m_panel, &SlidingPanel::closed, this, &PopArtTool::leave);
    connect(&view, &PhotoView::visiblePartChanged, this, &PopArtTool::refresh);
    connect(&ctx.photo, &PhotoDocument::changed, this, [this](PhotoChanges what) {
        if (what.testAnyFlags(PhotoChange::Pixels | PhotoChange::Loaded)) {
            refresh();
        }
    });
}

SlidingPanel *PopArtTool::panel() const {
    return m_panel;
}

// --- Start and end --------------------------------------------------------------------------------------------------

void PopArtTool::open() {
    if (!m_ctx.photo.PhotoLoaded() || m_ctx.photo.picCanvas().isNull()) {
        return;
    }
    Q_EMIT hideFloatingToolbars();
    if (m_ctx.fields.txtAndyStyle == "0") {
        make(usualPopArtPairs());
        return;
    }
    m_mouse.setTool(this);
    m_panel->setAccessibleName(m_panel->titleLabel()->text());
    m_ctx.flags.ToolPanelShown = true;
    m_panel->slideIn();
}

void PopArtTool::start() {
    ToolFlags &flags = m_ctx.flags;
    flags.SelectionActive = false;
    flags.RDMode = false;
    flags.CropToolActive = false;
    flags.FreeResizeActive = false;
    flags.ColorPickerMode = false;
    m_mouse.clearMarked(); // the row is always of the whole photo
    m_view.setPhotoHidden(true);
    refresh();
}

void PopArtTool::close() {
    if (m_mouse.tool() == this) {
        m_mouse.setTool(nullptr);
    }
}

/// The user has closed it; not so when the panel goes because the tool has ended.
void PopArtTool::leave() {
    if (m_mouse.tool() == this) {
        close();
        Q_EMIT arrowWanted();
    }
}

void PopArtTool::end() {
    m_photo = QImage();
    m_tableRow = QImage();
    m_view.setPhotoHidden(false);
    m_panel->setPairs(usualPopArtPairs()); // every start is the same
    m_panel->chooseFirst();
    m_ctx.flags.ToolPanelShown = false;
    m_panel->slideOut();
}

bool PopArtTool::wantsKey(const QKeyEvent &key) const {
    return key.key() == Qt::Key_Escape && key.modifiers() == Qt::NoModifier;
}

void PopArtTool::keyPress(const QKeyEvent &) {
    leave();
}

// --- What is shown --------------------------------------------------------------------------------------------------

/// Where the row stands on the table: in its middle, as large as fits but not larger than it will be.
QRect PopArtTool::tablePlace() const {
    const QSize print = popArtPrintSize(m_ctx.photo.picCanvas().size());
    const QRect room = m_view.viewport()->rect().adjusted(margin, margin, -margin, -margin);
    const QSize row = QSize(4 * print.width(), print.height());
    const QSize size = row.scaled(room.size().boundedTo(row), Qt::KeepAspectRatio).expandedTo({4, 1});
    return {room.center() - QPoint(size.width() / 2, size.height() / 2), size};
}

/// The photo, the view or its size has changed.
void PopArtTool::refresh() {
    if (m_mouse.tool() != this) {
        return;
    }
    const QSize print = tablePlace().size();
    m_photo = smallPhoto(m_view, {print.width() / 2, 2 * print.height()}); // a print is half of the photo it comes from
    showPairs();
}

void PopArtTool::showPairs() {
    if (m_mouse.tool() != this) {
        return;
    }
    m_panel->setRow(popArtRow(smallPhoto(m_view, 2 * PopArtPanel::pictureSize), m_panel->pairs()));
    m_tableRow = popArtRow(m_photo, m_panel->pairs());
    m_view.viewport()->update();
}

void PopArtTool::paint(QPainter &painter) {
    if (m_tableRow.isNull()) {
        return;
    }
    const QRect place = tablePlace();
    painter.save();
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(place, m_tableRow);
    painter.setPen(colours::line);
    painter.drawRect(place.adjusted(-1, -1, 0, 0));
    painter.restore();
}

// --- What it does to the photo --------------------------------------------------------------------------------------

void PopArtTool::apply() {
    make(m_panel->pairs());
}

void PopArtTool::make(const PopArtPairs &pairs) {
    EffectEngine engine;
    engine.setPicture(m_ctx.photo.picCanvas());
    bool done = false;
    m_ctx.tasks.run([&] { done = engine.popArtRow(pairs); });
    if (done) {
        close();
        done = m_ctx.photo.changePhoto(engine.picture());
    }
    if (!done) {
        Q_EMIT message(m_ctx.texts.text("StatusNoMemory"), false);
        return;
    }
    Q_EMIT arrowWanted();
    Q_EMIT fitWanted();
    Q_EMIT message(m_ctx.texts.text("PopArtDone"), true);
}

} // namespace lumora
