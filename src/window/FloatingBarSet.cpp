#include "window/FloatingBarSet.h"

#include "widgets/FloatingToolbar.h"
#include "window/FloatingBars.h"

#include <algorithm>

namespace lumora {

FloatingBarSet::FloatingBarSet(QWidget *window) : QObject(window) {
    for (const FloatingBarRow &row : floatingBars()) {
        const QString name = row.bar;
        auto *bar = new FloatingToolbar(name, window);
        bar->setPictureSize(row.pictureSize);
        connect(bar, &FloatingToolbar::itemClicked, this,
                [this, control = QString(row.tool)](const QString &key) { Q_EMIT itemClicked(control, key); });
        connect(bar, &FloatingToolbar::itemPointed, this,
                [this, control = QString(row.tool)](const QString &key) { Q_EMIT itemPointed(control, key); });
        connect(bar, &FloatingToolbar::hidden, this, &FloatingBarSet::barHidden);
        m_bars.insert(name, bar);
    }
    for (const FloatingItemRow &row : floatingItems()) {
        m_bars[row.bar]->addItem(row.key, row.iconName);
    }
}

FloatingToolbar *FloatingBarSet::barOfTool(const QString &control) const {
    for (const FloatingBarRow &row : floatingBars()) {
        if (control == row.tool) {
            return m_bars[row.bar];
        }
    }
    return nullptr;
}

QString FloatingBarSet::openTool() const {
    const auto bars = floatingBars();
    const auto open =
        std::ranges::find_if(bars, [this](const FloatingBarRow &row) { return m_bars[row.bar]->isVisible(); });
    return open != bars.end() ? open->tool : QString();
}

void FloatingBarSet::setSimple(bool fromLauncher) {
    for (const FloatingBarRow &row : floatingBars()) {
        if (row.simpleWidth > 0 && (fromLauncher || !row.fromLauncherOnly)) {
            m_bars[row.bar]->setWidthTwips(row.simpleWidth);
        }
    }
}

bool FloatingBarSet::isAnyOpen() const {
    return std::ranges::any_of(m_bars, &QWidget::isVisible);
}

bool FloatingBarSet::holds(const QWidget *part) const {
    return part != nullptr && std::ranges::any_of(m_bars, [part](const FloatingToolbar *bar) {
               return bar == part || bar->isAncestorOf(part);
           });
}

void FloatingBarSet::HideFloatingToolbars() {
    for (FloatingToolbar *bar : m_bars) {
        bar->hide();
    }
}

} // namespace lumora
