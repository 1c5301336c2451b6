#include "window/ToolColumn.h"

#include "widgets/Pager.h"
#include "widgets/PictureButton.h"
#include "widgets/Theme.h"
#include "window/ToolTable.h"

#include <QPainter>
#include <QVBoxLayout>
#include <algorithm>
#include <map>
#include <vector>

namespace lumora {

namespace {
// pixels
constexpr int columnWidth = 218;
constexpr int margin = 6;
constexpr int gap = 4;
constexpr int buttonHeight = 50;
constexpr int pictureSize = 38;
constexpr int loneSize = 42; ///< of a button that shares its row
} // namespace

ToolColumn::ToolColumn(QWidget *parent) : QWidget(parent), m_column(new QWidget) {
    setObjectName("SidePanel1");
    setFixedWidth(columnWidth);
    m_pager = new Pager("Pager1", this);
    auto *box = new QVBoxLayout(this);
    box->setContentsMargins(0, 0, 1, 0);
    box->addWidget(m_pager);

    for (const ToolRow &row : toolTable()) {
        if (row.iconName == nullptr) {
            continue;
        }
        auto *button = new PictureButton(row.iconName, PictureButton::CaptionPlace::Beside, m_column);
        button->setObjectName(row.control);
        button->setPictureSize(pictureSize);
        button->setCheckable(true);
        if (row.whiteWhenHovered) {
            button->setHoverColour(Qt::white);
        }
        const QString control = row.control;
        connect(button, &PictureButton::clicked, this, [this, control] { Q_EMIT pressed(control); });
        m_buttons.insert(control, button);
    }
    placeAll();
    m_pager->setWidget(m_column);
    DisableToolbars();
    setCurrent(toolTable().front().control);
}

void ToolColumn::setSimple(bool fromLauncher) {
    m_simple = true;
    for (const ToolRow &row : toolTable()) {
        if (PictureButton *button = m_buttons.value(row.control)) {
            button->setVisible(row.simpleTop != hiddenInSimple && !(fromLauncher && row.hiddenFromLauncher));
        }
    }
    placeAll();
}

void ToolColumn::placeAll() {
    std::map<int, std::vector<PictureButton *>> rows; // by top edge in pixels
    int index = 0;
    for (const ToolRow &row : toolTable()) {
        PictureButton *button = m_buttons.value(row.control);
        const int top = m_simple ? row.simpleTop : advancedTop(index);
        ++index;
        if (button != nullptr && (!button->isHidden() || !m_simple)) {
            rows[twips(top)].push_back(button);
        }
    }
    const int width = columnWidth - 2 * margin;
    int bottom = 0;
    for (const auto &[top, buttons] : rows) {
        const int count = static_cast<int>(buttons.size());
        const int each = (width - (count - 1) * gap) / count;
        int left = margin;
        for (PictureButton *button : buttons) {
            if (count > 1) { // no space for text beside the picture: it is shown alone and large
                button->setCaptionPlace(PictureButton::CaptionPlace::None);
                button->setPictureSize(loneSize);
            }
            button->setGeometry(left, top, each, buttonHeight);
            left += each + gap;
        }
        bottom = std::max(bottom, top + buttonHeight);
    }
    m_column->setMinimumHeight(bottom);
}

void ToolColumn::EnableToolbars() {
    for (PictureButton *button : m_buttons) {
        button->setEnabled(true);
    }
}

void ToolColumn::DisableToolbars() {
    for (auto it = m_buttons.cbegin(); it != m_buttons.cend(); ++it) {
        it.value()->setEnabled(it.key() == toolTable().front().control);
    }
}

void ToolColumn::setCurrent(const QString &control) {
    for (auto it = m_buttons.cbegin(); it != m_buttons.cend(); ++it) {
        it.value()->setChecked(it.key() == control);
    }
}

void ToolColumn::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.fillRect(rect(), colours::parchment);
    painter.fillRect(layoutDirection() == Qt::RightToLeft ? 0 : width() - 1, 0, 1, height(), colours::line);
}

} // namespace lumora
