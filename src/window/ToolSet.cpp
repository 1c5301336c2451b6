#include "window/ToolSet.h"

#include "session/AppContext.h"
#include "tools/canvas/CanvasMouse.h"
#include "tools/select/AgainButton.h"
#include "tools/select/SelectionOutline.h"
#include "tools/select/SelectionTool.h"
#include "view/PhotoView.h"
#include "widgets/Bubble.h"
#include "widgets/FloatingToolbar.h"
#include "widgets/PictureButton.h"
#include "widgets/SlidingPanel.h"
#include "window/FloatingBarSet.h"
#include "window/FloatingBars.h"
#include "window/HintBubble.h"
#include "window/PhotoBefore.h"
#include "window/PointedEffect.h"
#include "window/ToolColumn.h"
#include "window/ToolTable.h"

#include <QAbstractSlider>
#include <QApplication>
#include <QLabel>
#include <algorithm>
#include <utility>

namespace lumora {

ToolSet::ToolSet(AppContext &ctx, PhotoView &view, ToolColumn &column, FloatingBarSet &bars, QWidget *window)
    : QObject(window), m_ctx(ctx), m_view(view), m_column(column), m_bars(bars),
      m_outline(new SelectionOutline(ctx.photo, view, this)),
      m_mouse(new CanvasMouse(ctx.photo, ctx.flags, view, this)), m_before(new PhotoBefore(ctx, view, window)),
      m_pointed(new PointedEffect(ctx, view, this)), picTip(new Bubble("picTip", window)), m_hint(new HintBubble(view)),
      m_again(new AgainButton(view)) {
    picTip->label()->setObjectName("lblBubble");
    for (const ToolRow &row : toolTable()) {
        FloatingToolbar *bar = bars.barOfTool(row.control);
        if (bar != nullptr) {
            bar->setColumn(&column);
        }
        const ToolPlace place{ctx, view, *m_mouse, *m_outline, bar, window};
        m_entries.push_back({&row, row.make != nullptr ? row.make(place) : nullptr});
    }
    for (const Entry &entry : m_entries) {
        if (entry.tool != nullptr) {
            connectTool(entry);
        }
    }
    connect(m_mouse, &CanvasMouse::toolChanged, this, &ToolSet::showCurrent);
    connect(m_mouse, &CanvasMouse::arrowWanted, this, &ToolSet::ResetTools);
    connect(m_mouse, &CanvasMouse::moved, picTip, &QWidget::hide);
    connect(&ctx.photo, &PhotoDocument::changed, this, [this](PhotoChanges what) {
        if (what.testAnyFlags(PhotoChange::Pixels | PhotoChange::Loaded)) {
            HideFloatingToolbars(); // their previews are of another photo
            m_pictures.stop();
        }
        if (what.testFlag(PhotoChange::Loaded)) {
            m_stepsBefore = -1; // "Back" goes no further than to this photo
            showCurrent();
        }
        if (what.testFlag(PhotoChange::Edited) && m_worker != nullptr) {
            m_ctx.photo.setMadeBy(workerIcon());
            Q_EMIT photoChangedBy(m_worker->row->control, m_workerKey);
        }
        if (what.testFlag(PhotoChange::Selection)) {
            offerAgain();
        }
    });
    connect(m_again, &QAbstractButton::clicked, this,
            [this] { pick(markingEntry().row->control, SelectionTool::keyAgain); });
    connect(&m_pictures, &QTimer::timeout, this, &ToolSet::makeSmallPictures);
    connect(&column, &ToolColumn::pressed, this, &ToolSet::press);
    connect(&column, &ToolColumn::doneWanted, this, [this] {
        if (EditorTool *tool = currentEntry().tool; tool != nullptr && tool->excludesOthers()) {
            tool->accept();
        }
    });
    connect(&column, &ToolColumn::backWanted, this, &ToolSet::goBack);
    connect(&bars, &FloatingBarSet::barHidden, this, &ToolSet::showCurrent);
    connect(&bars, &FloatingBarSet::itemPointed, this, [this](const QString &control, const QString &key) {
        if (key.isEmpty() || openPanel() != nullptr) { // the photo shows what the panel is set to
            m_pointed->clear();
        } else {
            m_pointed->show(control, key);
        }
    });
    connect(&bars, &FloatingBarSet::itemClicked, this, &ToolSet::pick);
}

ToolSet::~ToolSet() {
    m_mouse->disconnect(this);
    m_mouse->setTool(nullptr);
    for (const Entry &entry : m_entries) {
        delete entry.tool; // destroyed before the mouse and the view that they use
    }
}

void ToolSet::connectTool(const Entry &entry) {
    EditorTool *tool = entry.tool;
    connect(tool, &EditorTool::finished, this, &ToolSet::ResetTools);
    connect(tool, &EditorTool::tipWanted, this, &ToolSet::showTip);
    connect(tool, &EditorTool::message, this,
            [this, control = QString(entry.row->control)](const QString &text, bool good) {
                say(*entryOf(control), text, good);
            });
    connect(tool, &EditorTool::hint, this,
            [this, control = QString(entry.row->control)](const QString &text, HintedAct act) {
                hint(*entryOf(control), text, act);
            });
    connect(tool, &EditorTool::statusText, this, &ToolSet::statusText);
    connect(tool, &EditorTool::noticeWanted, this, &ToolSet::noticeWanted);
    connect(tool, &EditorTool::stepsChanged, this, &ToolSet::buttonsToRefresh);
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
        tabInto(panel);
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

/// From the photo the Tab key goes into the panel that is open, to what closes it at last. Of a group of buttons only
/// the chosen one takes the Tab key, and later that may be another.
void ToolSet::tabInto(SlidingPanel &panel) {
    QWidgetList controls;
    for (QWidget *each = m_view.nextInFocusChain(); each != &m_view; each = each->nextInFocusChain()) {
        if (panel.isAncestorOf(each) && each->focusPolicy() != Qt::NoFocus && each->focusProxy() == nullptr) {
            controls.append(each);
        }
    }
    QWidget *close = panel.closeButton();
    if (controls.removeOne(close)) {
        controls.append(close);
    }
    QWidget *before = &m_view;
    for (QWidget *each : std::as_const(controls)) {
        QWidget::setTabOrder(before, each);
        before = each;
    }
}

void ToolSet::makeReady() {
    if (!std::exchange(m_isReady, true)) {
        for (const Entry &entry : m_entries) {
            if (entry.tool != nullptr) {
                entry.tool->makeReady();
            }
        }
    }
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
    makeReady();
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
    m_hint->dismiss(); // the bar may be where it is
    entry.tool->barOpens();
    bar->showBeside(m_column.button(entry.row->control));
    showCurrent();
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
    if (currentEntry().tool != entry.tool) {
        settle();
    }
    endTools(entry.tool);
    if (!entry.row->marks) {
        m_worker = &entry;
        m_workerKey = key;
    }
    entry.tool->open(key);
    showCurrent();
}

/// Of the item that was picked, or of the tool.
QString ToolSet::workerIcon() const {
    for (const FloatingItemRow &item : floatingItems()) {
        if (!m_workerKey.isEmpty() && item.key == m_workerKey) {
            return item.iconName;
        }
    }
    const ToolRow &row = *m_worker->row;
    return row.iconName != nullptr    ? QString(row.iconName)
           : row.aloneIcon != nullptr ? QString(row.aloneIcon)
                                      : QStringLiteral("pop-art");
}

/// The tool that marks a part of the photo.
const ToolSet::Entry &ToolSet::markingEntry() const {
    return *std::ranges::find_if(m_entries, [](const Entry &each) { return each.row->marks; });
}

/// The part that an effect has changed can be taken again, unless another tool has the mouse on the photo.
void ToolSet::offerAgain() {
    const Entry &current = currentEntry();
    const bool isFree = current.tool == nullptr || current.row->marks || !current.tool->hasMouse();
    const bool nothingMarked = m_ctx.photo.selection().isEmpty();
    m_again->offer(isFree && nothingMarked ? m_ctx.photo.usedSelection().shape() : PhotoSelection::Shape::None);
}

void ToolSet::showTip() {
    const SlidingPanel *panel = openPanel();
    QWidget *button = m_column.button(markingEntry().row->control);
    picTip->pointAt(panel != nullptr && !button->isEnabled() ? panel->titleLabel() : button);
    say(currentEntry(), picTip->label()->text(), false); // stays when the pointer moves
}

/// What a tool says while it is active is over when it is not any more.
void ToolSet::say(const Entry &entry, const QString &text, bool good) {
    m_said = nullptr;
    m_saying = text;
    if (isActive(entry)) {
        hint(entry, text, good ? HintedAct::Drag : HintedAct::Click); // a problem is read and then left
    }
    Q_EMIT message(text, good);
}

void ToolSet::hint(const Entry &entry, const QString &text, HintedAct act) {
    m_said = &entry;
    m_saying = text;
    m_hint->say(text, act);
}

/// The current tool's button is pressed, and while it excludes others only that button and the Arrow tool's can be
/// used, without a photo only the Arrow tool's. A tool with a bar does not use its own button meanwhile.
void ToolSet::showCurrent() {
    if (m_said != nullptr && !isActive(*m_said)) {
        m_said = nullptr;
        picTip->hide();
        m_hint->dismiss();
        Q_EMIT messageOver(m_saying);
    }
    const Entry &current = currentEntry();
    const bool excludes = current.tool != nullptr && current.tool->excludesOthers();
    for (const Entry &entry : m_entries) {
        const bool ownButton = &entry == &current && m_bars.barOfTool(entry.row->control) == nullptr;
        if (entry.row->iconName != nullptr) {
            m_column.button(entry.row->control)
                ->setEnabled(entry.tool == nullptr || (m_ctx.photo.PhotoLoaded() && (!excludes || ownButton)));
        }
    }
    if (!excludes) {
        m_stepsBefore = -1;
    } else if (m_stepsBefore < 0) {
        m_stepsBefore = m_ctx.photo.history().undoSteps();
    }
    showAlone(excludes ? current.row : nullptr);
    const QString openBar = m_bars.openTool();
    m_column.setCurrent(openBar.isEmpty() ? QString(current.row->control) : openBar);
    offerAgain();
}

void ToolSet::showAlone(const ToolRow *row) {
    if (row == nullptr) {
        m_column.showButtons();
    } else if (const PictureButton *button = m_column.button(row->control)) {
        m_column.showAlone(button->iconName(), button->text());
    } else {
        m_column.showAlone(row->aloneIcon, m_ctx.texts.text(row->aloneName));
    }
}

// --- The whole ------------------------------------------------------------------------------------------------------

bool ToolSet::isActive(const Entry &entry) {
    return entry.tool != nullptr &&
           (entry.tool->hasMouse() || (entry.tool->panel() != nullptr && entry.tool->panel()->isOpen()));
}

const ToolSet::Entry &ToolSet::currentEntry() const {
    const auto hasMouse = [](const Entry &each) { return each.tool != nullptr && each.tool->hasMouse(); };
    auto found = std::ranges::find_if(m_entries, hasMouse);
    if (found == m_entries.end()) {
        found = std::ranges::find_if(m_entries, &ToolSet::isActive);
    }
    return found != m_entries.end() ? *found : m_entries.front();
}

QString ToolSet::current() const {
    return currentEntry().row->control;
}

void ToolSet::HideFloatingToolbars() {
    if (m_bars.holds(QApplication::focusWidget())) {
        m_view.setFocus(); // else it would go to the next button of the window
    }
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

void ToolSet::settle() {
    if (EditorTool *tool = currentEntry().tool) {
        tool->settle();
    }
}

EditorTool *ToolSet::toolWithSteps() const {
    EditorTool *tool = currentEntry().tool;
    return tool != nullptr && tool->hasOwnSteps() ? tool : nullptr;
}

void ToolSet::HideBoxes() {
    HideFloatingToolbars();
    settle();
    if (openPanel() != nullptr) {
        ResetTools();
    }
}

void ToolSet::ResetTools() {
    endTools(nullptr);
    m_mouse->setTool(nullptr);
    m_ctx.flags.endSelection();
    if (!m_ctx.photo.selection().isEmpty()) {
        m_mouse->clearMarked();
    }
    picTip->hide();
    showCurrent();
}

/// "Back": the tool ends, and the photo is as it was when the tool began.
void ToolSet::goBack() {
    const int before = m_stepsBefore;
    ResetTools();
    while (before >= 0 && m_ctx.photo.history().undoSteps() > before && m_ctx.photo.PerformUndo()) {
    }
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
