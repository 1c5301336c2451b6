#include "window/ToolColumn.h"

#include "widgets/Accessibility.h"
#include "widgets/Pager.h"
#include "widgets/PictureButton.h"
#include "widgets/Theme.h"
#include "window/ToolTable.h"

#include <QEvent>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>
#include <algorithm>

namespace lumora {

namespace {
// pixels
constexpr int columnWidth = 218;
constexpr int margin = 6;
constexpr int gap = 4;
constexpr int captionMargin = 3; ///< as PictureButton has it
constexpr int buttonHeight = 50;
constexpr int pictureSize = 38;
constexpr int loneSize = 42; ///< of a button that shares its row
// In Simple mode, with the caption below the picture.
constexpr int lowestLarge = 76; ///< height of a button
constexpr int largestPicture = 72;
constexpr int smallestPicture = 24;
// While a tool has the screen to itself.
constexpr int alonePicture = 72;
constexpr int aloneGap = 16;
constexpr int lowestDone = 64;
constexpr double aloneFont = 14;     // points
constexpr double smallestFont = 9.5; // points, for a caption that has to fit beside its neighbour

/// Only what is different: each change asks for a new layout.
void setLook(PictureButton &button, PictureButton::CaptionPlace place, int picture, const QFont &captions) {
    if (button.captionPlace() != place) {
        button.setCaptionPlace(place);
    }
    if (button.pictureSize() != QSize(picture, picture)) {
        button.setPictureSize(picture);
    }
    if (button.font() != captions) {
        button.setFont(captions);
    }
}

/// The largest font, down to a little smaller, in which the captions of a row are not broken into lines.
QFont fittingFont(const std::vector<PictureButton *> &row, int width) {
    const QFont usual = row.front()->parentWidget()->font();
    const auto fits = [&](const QFont &font) {
        return std::ranges::all_of(row, [&](const PictureButton *button) {
            return QFontMetrics(font).horizontalAdvance(plainCaption(button->text())) <= width - 2 * captionMargin;
        });
    };
    QFont font = usual;
    while (!fits(font) && font.pointSizeF() > smallestFont) {
        font.setPointSizeF(font.pointSizeF() - 0.5);
    }
    return fits(font) ? font : usual; // two lines then
}
} // namespace

ToolColumn::ToolColumn(QWidget *parent) : QWidget(parent), m_column(new QWidget) {
    setObjectName("SidePanel1");
    setFixedWidth(columnWidth);
    setAccessibleRole(*this, QAccessible::ToolBar);
    m_pager = new Pager("Pager1", this);
    auto *box = new QVBoxLayout(this);
    box->setContentsMargins(0, 0, 1, 0);
    box->addWidget(m_pager);
    makeAlone();
    box->addWidget(m_alone);

    for (const ToolRow &row : toolTable()) {
        if (row.iconName == nullptr) {
            continue;
        }
        auto *button = new PictureButton(row.iconName, PictureButton::CaptionPlace::Beside, m_column);
        button->setObjectName(row.control);
        button->setPictureSize(pictureSize);
        button->setCheckable(true);
        setAccessibleRole(*button, QAccessible::RadioButton);
        if (row.whiteWhenHovered) {
            button->setHoverColour(Qt::white);
        }
        const QString control = row.control;
        connect(button, &PictureButton::clicked, this, [this, control] { Q_EMIT pressed(control); });
        m_buttons.insert(control, button);
    }
    placeAll();
    m_pager->setWidget(m_column);
    m_column->installEventFilter(this);
    DisableToolbars();
    setCurrent(toolTable().front().control);
}

void ToolColumn::makeAlone() {
    m_alone = new QWidget(this);
    m_alone->setObjectName("pnlAlone");
    m_aloneTool = new QLabel(m_alone);
    m_aloneTool->setAlignment(Qt::AlignCenter);
    m_aloneName = new QLabel(m_alone);
    m_aloneName->setTextFormat(Qt::PlainText);
    m_aloneName->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    m_aloneName->setWordWrap(true);
    QFont large = font();
    large.setPointSizeF(aloneFont);
    large.setBold(true);
    m_aloneName->setFont(large);
    auto *box = new QVBoxLayout(m_alone);
    box->setContentsMargins(margin + gap, aloneGap, margin + gap, aloneGap);
    box->setSpacing(gap);
    box->addWidget(m_aloneTool);
    box->addWidget(m_aloneName);
    box->addSpacing(aloneGap);
    const auto add = [&](const char *name, const char *icon, int picture, void (ToolColumn::*wanted)()) {
        auto *button = new PictureButton(icon, PictureButton::CaptionPlace::Below, m_alone);
        button->setObjectName(name);
        button->setLook(PictureButton::Look::Raised);
        button->setPictureSize(picture);
        button->setFont(large);
        button->setFocusPolicy(Qt::TabFocus); // a click leaves the focus on the photo
        button->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
        button->setMinimumHeight(lowestDone);
        connect(button, &QAbstractButton::clicked, this, wanted);
        box->addWidget(button);
        return button;
    };
    add("cmdToolDone", "ok", 72, &ToolColumn::doneWanted);
    box->addSpacing(aloneGap);
    m_back = add("cmdToolBack", "left", 56, &ToolColumn::backWanted);
    box->addStretch();
    m_alone->setMinimumHeight(1); // a low window stays low
    m_alone->hide();
}

void ToolColumn::showAlone(const QString &iconName, const QString &name) {
    m_pager->hide();
    m_alone->show();
    m_back->setIconName(isRightToLeft() ? "right" : "left");
    m_aloneTool->setPixmap(iconPixmap(iconName, alonePicture, devicePixelRatioF()));
    m_aloneName->setText(plainCaption(name));
}

void ToolColumn::showButtons() {
    m_pager->show();
    m_alone->hide();
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

void ToolColumn::resizeEvent(QResizeEvent *event) {
    QWidget::resizeEvent(event);
    placeAll();
}

bool ToolColumn::eventFilter(QObject *watched, QEvent *event) {
    if (watched == m_column && event->type() == QEvent::LayoutRequest && m_simple) {
        placeAll(); // a caption has changed
    }
    return QWidget::eventFilter(watched, event);
}

void ToolColumn::placeAll() {
    std::map<int, Row> rows; // by top edge in twips
    int index = 0;
    for (const ToolRow &row : toolTable()) {
        PictureButton *button = m_buttons.value(row.control);
        const int top = m_simple ? row.simpleTop : advancedTop(index);
        ++index;
        if (button != nullptr && (!button->isHidden() || !m_simple)) {
            rows[top].push_back(button);
        }
    }
    const int last = rows.rbegin()->first;
    const int stretched = height() * toolPitch / (last + toolPitch) - gap; // a button of rows that fill the column
    const bool large = m_simple && stretched >= lowestLarge;
    // Rows that are a little too many for the column stand closer together.
    const int needed = twips(last) + buttonHeight;
    const double closer = std::min(1.0, 1.0 * height() / needed);
    const double squeeze = closer * buttonHeight >= smallestButton ? closer : 1;
    int bottom = 0;
    for (const auto &[top, row] : rows) {
        const int y = large ? top * height() / (last + toolPitch) : static_cast<int>(twips(top) * squeeze);
        bottom = y + (large ? stretched : static_cast<int>(buttonHeight * squeeze));
        placeRow(row, y, bottom - y);
        if (large) {
            enlarge(row, stretched);
            continue;
        }
        // Beside the picture of a button that shares its row there is no space for text.
        const bool alone = row.size() == 1;
        for (PictureButton *button : row) {
            setLook(*button, alone ? PictureButton::CaptionPlace::Beside : PictureButton::CaptionPlace::None,
                    alone ? pictureSize : loneSize, font());
        }
    }
    m_column->setMinimumHeight(bottom);
}

int ToolColumn::buttonWidth(const Row &row) {
    const auto count = static_cast<int>(row.size());
    return (columnWidth - 2 * margin - (count - 1) * gap) / count;
}

void ToolColumn::placeRow(const Row &row, int top, int height) {
    const int each = buttonWidth(row);
    int left = margin;
    for (PictureButton *button : row) {
        const bool rightToLeft = button->layoutDirection() == Qt::RightToLeft;
        button->setGeometry(rightToLeft ? columnWidth - left - each : left, top, each, height);
        left += each + gap;
    }
}

/// The pictures of a row are as large as each of its buttons has room for above the caption.
void ToolColumn::enlarge(const Row &row, int height) {
    const int width = buttonWidth(row);
    const QFont captions = fittingFont(row, width);
    int side = largestPicture;
    for (PictureButton *button : row) {
        setLook(*button, PictureButton::CaptionPlace::Below, button->pictureSize().height(), captions);
        side = std::min(side, height - (button->leastHeightAt(width) - button->pictureSize().height()));
    }
    for (PictureButton *button : row) {
        setLook(*button, PictureButton::CaptionPlace::Below, std::max(side, smallestPicture), captions);
    }
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
