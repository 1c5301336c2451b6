#include "tools/pop-art/PopArtTool.h"

#include "imaging/EffectEngine.h"
#include "session/AppContext.h"
#include "tools/canvas/CanvasMouse.h"
#include "tools/canvas/SmallPhoto.h"
#include "tools/pop-art/PopArtPalette.h"
#include "tools/pop-art/PopArtPanel.h"
#include "widgets/Theme.h"

#include <QPainter>

namespace lumora {

namespace {

constexpr int margin = 24; // pixels of table round the row

} // namespace

PopArtTool::PopArtTool(AppContext &ctx, PhotoView &view, CanvasMouse &mouse, QWidget *window)
    : PanelTool(mouse, new PopArtPanel(ctx, window), window), m_ctx(ctx), m_view(view),
      m_panel(static_cast<PopArtPanel *>(panel())) {
    connect(m_panel, &PopArtPanel::pairsChanged, this, &PopArtTool::showPairs);
    connect(m_panel, &PopArtPanel::applyWanted, this, &PopArtTool::apply);
    connect(&view, &PhotoView::visiblePartChanged, this, &PopArtTool::refresh);
    connect(&ctx.photo, &PhotoDocument::changed, this, [this](PhotoChanges what) {
        if (what.testAnyFlags(PhotoChange::Pixels | PhotoChange::Loaded)) {
            refresh();
        }
    });
}

// --- Start and end --------------------------------------------------------------------------------------------------

bool PopArtTool::open(const QString &) {
    if (!m_ctx.photo.PhotoLoaded() || m_ctx.photo.picCanvas().isNull()) {
        return false;
    }
    if (m_ctx.fields.txtAndyStyle == Switch::Off) {
        make(usualPopArtPairs());
        return false;
    }
    begin();
    return true;
}

void PopArtTool::start() {
    m_ctx.flags.endSelection();
    m_mouse.clearMarked(); // the row is always of the whole photo
    m_view.setPhotoHidden(true);
    refresh();
}

void PopArtTool::end() {
    m_photo = QImage();
    m_tableRow = QImage();
    m_view.setPhotoHidden(false);
    m_panel->setPairs(usualPopArtPairs()); // every start uses the defaults
    m_panel->chooseFirst();
    PanelTool::end();
}

// --- What is shown --------------------------------------------------------------------------------------------------

/// The place of the row on the table: centred, as large as fits but not larger than the result.
QRect PopArtTool::tablePlace() const {
    const QSize print = popArtPrintSize(m_ctx.photo.picCanvas().size());
    const QRect room = m_view.viewport()->rect().adjusted(margin, margin, -margin, -margin);
    const QSize row = QSize(4 * print.width(), print.height());
    const QSize size = row.scaled(room.size().boundedTo(row), Qt::KeepAspectRatio).expandedTo({4, 1});
    return {room.center() - QPoint(size.width() / 2, size.height() / 2), size};
}

/// The photo, the view or its size has changed.
void PopArtTool::refresh() {
    if (!isAtWork()) {
        return;
    }
    const QSize print = tablePlace().size();
    m_photo = smallPhoto(m_view, {print.width() / 2, 2 * print.height()}); // a print is half of the photo it comes from
    showPairs();
}

void PopArtTool::showPairs() {
    if (!isAtWork()) {
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
    if (!m_ctx.tasks.run([&] { done = engine.apply({popArtRow, pairs}, false); }, Stopping::Offered)) {
        return;
    }
    if (done) {
        close();
        done = m_ctx.photo.changePhoto(engine.picture());
    }
    if (!done) {
        Q_EMIT message(m_ctx.texts.text("StatusNoMemory"), false);
        return;
    }
    Q_EMIT finished();
    Q_EMIT fitWanted();
    Q_EMIT message(m_ctx.texts.text("PopArtDone"), true);
}

} // namespace lumora
