#include "window/ToolSet.h"

#include "session/AppContext.h"
#include "tools/canvas/CanvasMouse.h"
#include "tools/select/SelectionOutline.h"
#include "view/PhotoView.h"
#include "widgets/Bubble.h"
#include "widgets/FloatingToolbar.h"
#include "widgets/PictureButton.h"
#include "widgets/SlidingPanel.h"
#include "window/FloatingBarSet.h"
#include "window/PhotoBefore.h"
#include "window/ToolColumn.h"
#include "window/ToolTable.h"

#include <QAbstractSlider>
#include <QLabel>
#include <algorithm>

namespace lumora {

ToolSet::ToolSet(AppContext &ctx, PhotoView &view, ToolColumn &column, FloatingBarSet &bars, QWidget *window)
    : QObject(window), m_ctx(ctx), m_view(view), m_column(column), m_bars(bars),
      m_outline(new SelectionOutline(ctx.photo, view, this)),
      m_mouse(new CanvasMouse(ctx.photo, ctx.flags, view, this)), m_before(new PhotoBefore(ctx, view, window)),
      picTip(new Bubble("picTip", window)) {
    picTip->label()->setObjectName("lblBubble");
    for (const ToolRow &row : toolTable()) {
        const ToolPlace place{ctx, view, *m_mouse, *m_outline, bars.barOfTool(row.control), window};
        m_entries.push_back({&row, row.make != nullptr ? row.make(place) : nullptr});
    }
    m_current = &m_entries.front();
    for (const Entry &entry : m_entries) {
        if (entry.tool != nullptr) {
            connectTool(entry);
        }
    }
    connect(m_mouse, &CanvasMouse::arrowWanted, this, &ToolSet::ResetTools);
    connect(m_mouse, &CanvasMouse::moved, picTip, &QWidget::hide);
    connect(&ctx.photo, &PhotoDocument::changed, this, [this](PhotoChanges what) {
        if (what.testAnyFlags(PhotoChange::Pixels | PhotoChange::Loaded)) {
            HideFloatingToolbars(); // their previews are of another photo
            m_pictures.stop();
        }
        if (what.testFlag(PhotoChange::Loaded)) {
            showCurrent();
        }
    });
    connect(&m_pictures, &QTimer::timeout, this, &ToolSet::makeSmallPictures);
    connect(&column, &ToolColumn::pressed, this, &ToolSet::press);
    connect(&bars, &FloatingBarSet::itemClicked, this, &ToolSet::pick);
}

ToolSet::~ToolSet() {
    m_mouse->setTool(nullptr);
    for (const Entry &entry : m_entries) {
        delete entry.tool; // destroyed before the mouse and the view that they use
    }
}

void ToolSet::connectTool(const Entry &entry) {
    EditorTool *tool = entry.tool;
    connect(tool, &EditorTool::finished, this, &ToolSet::ResetTools);
    connect(tool, &EditorTool::stateChanged, this, &ToolSet::showCurrent);
    connect(tool, &EditorTool::tipWanted, this, &ToolSet::showTip);
    connect(tool, &EditorTool::message, this, &ToolSet::message);
    connect(tool, &EditorTool::statusText, this, &ToolSet::statusText);
    connect(tool, &EditorTool::noticeWanted, this, &ToolSet::noticeWanted);
    connect(tool, &EditorTool::fitWanted, this, &ToolSet::fitWanted);
    connect(tool, &EditorTool::iconChanged, this, [this, control = QString(entry.row->control)](const QString &icon) {
        m_column.button(control)->setIconName(icon);
    });
    connect(tool, &EditorTool::smallPicturesWanted, this, [this] {
        std::vector<Entry> wanted = m_entries;
        std::erase_if(wanted, [](const Entry &each) { return each.row->picturesTurn == 0; });
        std::ranges::sort(wanted, {}, [](const Entry &each) { return each.row->picturesTurn; });
        m_picturesWaiting.clear();
        for (const Entry &each : wanted) {
            m_picturesWaiting.append(each.tool);
        }
        m_pictures.start(0);
    });
    SlidingPanel *panel = tool->panel();
    if (panel != nullptr && !m_panels.contains(panel)) { // two tools may share one
        m_panels.append(panel);
        connectPanel(*panel);
    }
}

void ToolSet::connectPanel(SlidingPanel &panel) {
    m_before->add(panel);
    connect(&panel, &SlidingPanel::opened, this, [this, &panel] {
        for (auto *slider : panel.findChildren<QAbstractSlider *>()) {
            if (slider->isVisible()) {
                slider->setFocus(Qt::OtherFocusReason);
                break;
            }
        }
        Q_EMIT panelChanged();
    });
    connect(&panel, &SlidingPanel::closed, this, [this] {
        HideFloatingToolbars();
        m_view.setFocus();
        Q_EMIT buttonsToRefresh();
        Q_EMIT panelChanged();
    });
}

void ToolSet::makeSmallPictures() {
    if (!m_picturesWaiting.isEmpty()) {
        m_picturesWaiting.takeFirst()->makeSmallPictures();
    }
    if (m_picturesWaiting.isEmpty()) {
        m_pictures.stop();
    }
}

// --- Buttons and items ----------------------------------------------------------------------------------------------

const ToolSet::Entry *ToolSet::entryOf(const QString &control) const {
    const auto found = std::ranges::find_if(m_entries, [&](const Entry &each) { return control == each.row->control; });
    return found != m_entries.end() ? &*found : nullptr;
}

void ToolSet::press(const QString &control) {
    Q_EMIT toolWanted();
    const Entry *entry = entryOf(control);
    if (entry == nullptr || entry->tool == nullptr || !m_ctx.photo.PhotoLoaded()) {
        HideFloatingToolbars();
        ResetTools();
    } else if (m_bars.barOfTool(control) != nullptr) {
        toggleBar(*entry);
    } else {
        start(*entry, {});
    }
}

/// Opens the tool's bar beside its button, or closes it. No tool starts or ends before an item is picked.
void ToolSet::toggleBar(const Entry &entry) {
    FloatingToolbar *bar = m_bars.barOfTool(entry.row->control);
    const bool wasOpen = bar->isVisible();
    HideFloatingToolbars();
    if (wasOpen) {
        return;
    }
    entry.tool->barOpens();
    m_column.setCurrent(entry.row->control);
    bar->showBeside(m_column.button(entry.row->control));
}

void ToolSet::pick(const QString &control, const QString &key) {
    const Entry *entry = entryOf(control);
    if (entry != nullptr && entry->tool != nullptr && m_ctx.photo.PhotoLoaded()) {
        m_view.setFocus(); // the item that had the focus was deleted
        start(*entry, key);
    }
}

void ToolSet::start(const Entry &entry, const QString &key) {
    HideFloatingToolbars();
    endTools(entry.tool);
    const Entry *before = m_current;
    m_current = &entry;
    if (!entry.tool->open(key) && m_current == &entry) {
        m_current = before; // it has acted at once
    }
    showCurrent();
}

void ToolSet::showTip() {
    const auto marks = std::ranges::find_if(m_entries, [](const Entry &each) { return each.row->marks; });
    const SlidingPanel *panel = openPanel();
    QWidget *button = m_column.button(marks->row->control);
    picTip->pointAt(panel != nullptr && !button->isEnabled() ? panel->titleLabel() : button);
    Q_EMIT message(picTip->label()->text(), false); // stays when the pointer moves
}

/// The current tool's button is pressed, and while it excludes others only that button and the Arrow tool's can be
/// used, without a photo only the Arrow tool's. A tool with a bar does not use its own button meanwhile.
void ToolSet::showCurrent() {
    const bool excludes = m_current->tool != nullptr && m_current->tool->excludesOthers();
    for (const Entry &entry : m_entries) {
        const bool ownButton = &entry == m_current && m_bars.barOfTool(entry.row->control) == nullptr;
        if (entry.row->iconName != nullptr) {
            m_column.button(entry.row->control)
                ->setEnabled(entry.tool == nullptr || (m_ctx.photo.PhotoLoaded() && (!excludes || ownButton)));
        }
    }
    m_column.setCurrent(m_current->row->control);
}

// --- The whole ------------------------------------------------------------------------------------------------------

QString ToolSet::current() const {
    return m_current->row->control;
}

void ToolSet::HideFloatingToolbars() {
    m_bars.HideFloatingToolbars();
    showCurrent();
}

/// Ends every tool except those that stay active with the next one. The selection is kept unless its tool drops it.
void ToolSet::endTools(const EditorTool *next) {
    for (const Entry &entry : m_entries) {
        if (entry.tool != nullptr && (next == nullptr || !entry.tool->staysFor(*next))) {
            entry.tool->close();
        }
    }
}

void ToolSet::HideBoxes() {
    HideFloatingToolbars();
    if (openPanel() != nullptr) {
        ResetTools();
    }
}

void ToolSet::ResetTools() {
    endTools(nullptr);
    m_current = &m_entries.front();
    m_mouse->setTool(nullptr);
    m_ctx.flags.endSelection();
    if (!m_ctx.photo.selection().isEmpty()) {
        m_mouse->clearMarked();
    }
    picTip->hide();
    showCurrent();
}

void ToolSet::escape() {
    if (m_bars.isAnyOpen()) {
        HideFloatingToolbars();
    } else {
        ResetTools();
    }
}

void ToolSet::setArea(const QRect &area) {
    for (SlidingPanel *panel : m_panels) {
        panel->setArea(area);
    }
}

SlidingPanel *ToolSet::openPanel() const {
    const auto open = std::ranges::find_if(m_panels, &SlidingPanel::isOpen);
    return open != m_panels.end() ? *open : nullptr;
}

} // namespace lumora
