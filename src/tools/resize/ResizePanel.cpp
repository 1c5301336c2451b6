#include "tools/resize/ResizePanel.h"

#include "imaging/Scale.h"
#include "session/AppContext.h"
#include "widgets/Accessibility.h"
#include "widgets/PictureButton.h"
#include "widgets/Theme.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QTimer>
#include <charconv>
#include <cmath>

namespace lumora {

namespace {

/// optSize0 to optSize3; optSize4 leaves the boxes to be typed in.
struct PresetRow {
    const char *width;
    const char *height;
    const char *icon; ///< what the size is good for
    const char *use;  ///< identifier: the same in words
};
const PresetRow presets[] = {
    {"340", "200", "size-message", "ResizeForMessage"},
    {"640", "480", "size-phone", "ResizeForPhone"},
    {"800", "600", "size-page", "ResizeForPage"},
    {"1024", "768", "size-wall", "ResizeForWall"},
};
constexpr size_t custom = std::size(presets);

constexpr QSize optionPicture(76, 60); // pixels
constexpr QSize photoRoom(64, 48);     // in its upper part, the drawing of the use over the lower corner
constexpr int useIcon = 34;
constexpr int optionWidth = 88;
constexpr int narrowestOption = 66; // in a narrow window
constexpr int boxWidth = 72;

/// The number that a text begins with; 0 where it begins with none.
double numberIn(const QString &text) {
    const QByteArray plain = text.trimmed().toLatin1();
    double number = 0;
    std::from_chars(plain.constBegin(), plain.constEnd(), number);
    return std::isfinite(number) ? number : 0;
}

} // namespace

// --- The box --------------------------------------------------------------------------------------------------------

void PixelBox::keyPressEvent(QKeyEvent *event) {
    const bool isCommand = event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
    const QString typed = event->text();
    const bool isCharacter = !isCommand && !typed.isEmpty() && typed.front().isPrint();
    if (!isCharacter || QStringLiteral("0123456789").contains(typed)) {
        QLineEdit::keyPressEvent(event);
    }
}

void PixelBox::focusInEvent(QFocusEvent *event) {
    QLineEdit::focusInEvent(event);
    selectAll();
    if (event->reason() == Qt::MouseFocusReason) {
        QTimer::singleShot(0, this, &QLineEdit::selectAll); // after the click, which sets the cursor
    }
}

// --- The panel ------------------------------------------------------------------------------------------------------

ResizePanel::ResizePanel(AppContext &ctx, QWidget *window)
    : SlidingPanel("pnlResize", "cmdResizeExit", window), m_ctx(ctx) {
    auto *row = new QHBoxLayout;
    row->setSpacing(12);
    addOptions(*row);
    addBoxes(*row);
    addButtons(*row);
    row->addStretch();
    body()->addLayout(row);
    choose(custom);
    connect(this, &SlidingPanel::opened, this, [this] { m_options[custom]->setFocus(Qt::OtherFocusReason); });
    connect(&ctx.photo, &PhotoDocument::changed, this, [this](PhotoChanges what) {
        if (isOpen() && what.testAnyFlags(PhotoChange::Pixels | PhotoChange::Loaded)) {
            showPhoto();
        }
    });
}

void ResizePanel::addOptions(QHBoxLayout &row) {
    auto *options = new QHBoxLayout;
    options->setSpacing(4);
    for (size_t i = 0; i < m_options.size(); ++i) {
        auto *option = new PictureButton("tool4", PictureButton::CaptionPlace::Below, this);
        option->setObjectName(QString("optSize%1").arg(i));
        option->setPictureSize(optionPicture);
        option->setCheckable(true);
        setAccessibleRole(*option, QAccessible::RadioButton);
        option->setMinimumWidth(narrowestOption);
        option->setMaximumWidth(optionWidth);
        option->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        connect(option, &QAbstractButton::clicked, this, [this, i] { choose(i); });
        m_options.at(i) = option;
        options->addWidget(option);
    }
    nameOptions();
    row.addLayout(options);
}

void ResizePanel::changeEvent(QEvent *event) {
    if (event->type() == QEvent::LanguageChange) {
        nameOptions();
    }
    SlidingPanel::changeEvent(event);
}

void ResizePanel::nameOptions() {
    for (size_t i = 0; i < custom; ++i) {
        m_options.at(i)->setText(m_ctx.texts.text("PointerSize").arg(presets[i].width, presets[i].height));
        m_options.at(i)->setToolTip(m_ctx.texts.text(presets[i].use));
        m_options.at(i)->setAccessibleDescription(m_ctx.texts.text(presets[i].use));
    }
}

void ResizePanel::addBoxes(QHBoxLayout &row) {
    auto *grid = new QGridLayout;
    grid->setHorizontalSpacing(8);
    const auto add = [&](int line, const char *label, const char *name) {
        auto *caption = new QLabel(this);
        caption->setObjectName(label);
        auto *box = new PixelBox(this);
        box->setObjectName(name);
        box->setFixedWidth(boxWidth);
        box->setAlignment(Qt::AlignCenter);
        caption->setBuddy(box);
        connect(box, &QLineEdit::returnPressed, this, &ResizePanel::apply);
        grid->addWidget(caption, line, 0, Qt::AlignTrailing);
        grid->addWidget(box, line, 1);
        return box;
    };
    txtWidth = add(0, "lblResizeWidth", "txtWidth");
    txtHeight = add(1, "lblResizeHeight", "txtHeight");
    row.addLayout(grid);
}

void ResizePanel::addButtons(QHBoxLayout &row) {
    auto *column = new QVBoxLayout;
    column->setSpacing(6);
    const auto add = [&](const char *name, const char *icon) {
        auto *button = new PictureButton(icon, PictureButton::CaptionPlace::Beside, this);
        button->setObjectName(name);
        button->setLook(PictureButton::Look::Raised);
        column->addWidget(button);
        return button;
    };
    connect(add("cmdApplyResize", "ok"), &QAbstractButton::clicked, this, &ResizePanel::apply);
    connect(add("cmdFreeResize", "resize-free"), &QAbstractButton::clicked, this, &ResizePanel::freeResizeWanted);
    row.addLayout(column);
}

void ResizePanel::open() {
    titleLabel()->setText(m_ctx.texts.text("Tool4", "ReSize Tool"));
    const QSize photo = m_ctx.photo.picCanvas().size();
    const bool fits = photo.width() <= longestSide && photo.height() <= longestSide;
    const QSize size = fits ? photo : photo.scaled(longestSide, longestSide, Qt::KeepAspectRatio);
    txtWidth->setText(QString::number(size.width()));
    txtHeight->setText(QString::number(size.height()));
    setButtonSide(m_ctx.flags.SimpleModeOn ? simpleButton : smallestButton);
    for (PictureButton *option : m_options) {
        option->setMinimumHeight(option->heightAt(narrowestOption)); // with its caption on two lines in some languages
    }
    for (const char *name : {"lblResizeWidth", "lblResizeHeight"}) { // the buttons' captions beside can wrap instead
        auto *caption = findChild<QLabel *>(name);
        caption->setMinimumWidth(caption->sizeHint().width());
    }
    choose(custom);
    showPhoto();
    slideIn();
}

void ResizePanel::choose(size_t option) {
    for (size_t i = 0; i < m_options.size(); ++i) {
        m_options.at(i)->setChecked(i == option);
    }
    if (option < custom) {
        txtWidth->setText(presets[option].width);
        txtHeight->setText(presets[option].height);
    }
    for (PixelBox *box : {txtWidth, txtHeight}) {
        box->setReadOnly(option < custom);
    }
}

/// The result of each fixed size, and what it is good for.
void ResizePanel::showPhoto() {
    const qreal density = devicePixelRatioF();
    const QSize room = (QSizeF(photoRoom) * density).toSize();
    const QImage &photo = m_ctx.photo.picCanvas();
    const QSize small = photo.size().scaled(room * 2, Qt::KeepAspectRatio).boundedTo(photo.size()).expandedTo({1, 1});
    const QImage reduced = scaled(photo, small.width(), small.height());
    for (size_t i = 0; i < custom; ++i) {
        const QSize shape(QString(presets[i].width).toInt(), QString(presets[i].height).toInt());
        const QSize size = shape.scaled(room, Qt::KeepAspectRatio);
        QPixmap result = QPixmap::fromImage(scaled(reduced, size.width(), size.height()));
        result.setDevicePixelRatio(density);
        QPixmap picture((QSizeF(optionPicture) * density).toSize());
        picture.setDevicePixelRatio(density);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        painter.drawPixmap(QPointF(0, (photoRoom.height() - size.height() / density) / 2), result);
        const QSize corner = optionPicture - QSize(useIcon, useIcon);
        painter.drawPixmap(corner.width(), corner.height(), iconPixmap(presets[i].icon, useIcon, density));
        painter.end();
        m_options.at(i)->setPicture(picture);
    }
}

void ResizePanel::apply() {
    const double width = numberIn(txtWidth->text());
    const double height = numberIn(txtHeight->text());
    if (width > longestSide || height > longestSide) {
        Q_EMIT sizeRefused();
        txtWidth->setFocus();
    } else if (txtWidth->text().isEmpty() || txtHeight->text().isEmpty() || width < 0 || height < 0) {
        txtWidth->setText("0");
        txtHeight->setText("0");
    } else {
        // Round half to even (default FP mode).
        Q_EMIT sizeWanted({static_cast<int>(std::nearbyint(width)), static_cast<int>(std::nearbyint(height))});
    }
}

} // namespace lumora
