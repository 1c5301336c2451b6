#include "Fits.h"

#include "Controls.h"
#include "widgets/ElidedLabel.h"
#include "widgets/FittedText.h"
#include "widgets/FittingLabel.h"
#include "widgets/PictureButton.h"
#include "widgets/PictureChoice.h"
#include "widgets/StatusLine.h"
#include "widgets/Theme.h"

#include <QAbstractScrollArea>
#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyle>
#include <QStyleOptionComboBox>
#include <algorithm>

namespace lumora::play {

namespace {

constexpr QSize leastScreen(800, 600); // on a smaller one buttons become narrower

bool isControl(const QWidget &widget) {
    const auto *label = qobject_cast<const QLabel *>(&widget);
    return (label != nullptr && !label->text().isEmpty()) || qobject_cast<const QAbstractButton *>(&widget) ||
           qobject_cast<const QComboBox *>(&widget) || qobject_cast<const QLineEdit *>(&widget) ||
           qobject_cast<const QAbstractSpinBox *>(&widget) ||
           (qobject_cast<const QAbstractSlider *>(&widget) && !qobject_cast<const QScrollBar *>(&widget));
}

QString described(const QWidget &widget) {
    const QString says = valueOf(widget).left(40);
    return nameOf(*widget.window()) + '.' + nameOf(widget) + (says.isEmpty() ? QString() : " \"" + says + '"');
}

/// A field takes the keyboard wherever it is pressed.
bool isUsualInSimpleMode(const QWidget &control) {
    return qobject_cast<const QLineEdit *>(&control) || qobject_cast<const QComboBox *>(&control);
}

/// Whether a finger may miss it.
bool isSmall(const QWidget &control, int target) {
    const auto *field = qobject_cast<const QLineEdit *>(&control);
    if (qobject_cast<const QLabel *>(&control) || (field != nullptr && field->isReadOnly()) ||
        qobject_cast<const QLineEdit *>(control.parentWidget()) || // the cross that empties a field
        qobject_cast<const QComboBox *>(control.parentWidget()) ||
        qobject_cast<const QAbstractSpinBox *>(control.parentWidget()) || control.window()->inherits("QFileDialog")) {
        return false;
    }
    const QSize screen = control.screen()->size();
    if (screen.width() < leastScreen.width() || screen.height() < leastScreen.height()) {
        return false;
    }
    return std::min(control.width(), control.height()) < (isUsualInSimpleMode(control) ? smallestTarget : target);
}

/// The widget that cuts a part of the control off; null when it is whole or can be scrolled into view.
const QWidget *cutBy(const QWidget &control) {
    QRect place = control.rect();
    for (const QWidget *part = &control; !part->isWindow(); part = part->parentWidget()) {
        const QWidget *above = part->parentWidget();
        place.translate(part->pos());
        const auto *area = qobject_cast<const QAbstractScrollArea *>(above->parentWidget());
        if (area != nullptr && area->viewport() == above) {
            return nullptr;
        }
        if (!above->rect().contains(place)) {
            return above;
        }
    }
    return nullptr;
}

bool isCut(const QWidget &control) {
    if (const auto *label = qobject_cast<const QLabel *>(&control)) {
        const bool isRich = label->textFormat() == Qt::RichText || Qt::mightBeRichText(label->text());
        return isRich && label->wordWrap() && label->heightForWidth(label->width()) > label->height() + 2;
    }
    if (const auto *button = qobject_cast<const QPushButton *>(&control)) {
        return button->fontMetrics().horizontalAdvance(plainCaption(button->text())) > button->width();
    }
    return false;
}

bool isWider(const QWidget &control, const QString &text, const QRect &place) {
    return control.fontMetrics().horizontalAdvance(text) > place.width();
}

bool isElided(const QWidget &control) {
    if (const auto *button = qobject_cast<const PictureButton *>(&control)) {
        return !button->isCaptionWhole();
    }
    if (const auto *line = qobject_cast<const StatusLine *>(&control)) {
        return !line->isTextWhole();
    }
    if (const auto *label = qobject_cast<const ElidedLabel *>(&control)) {
        return label->fontMetrics().horizontalAdvance(label->text()) > label->contentsRect().width();
    }
    if (const auto *label = qobject_cast<const FittingLabel *>(&control)) {
        return !label->isTextWhole();
    }
    if (const auto *choice = qobject_cast<const PictureChoice *>(&control)) {
        return !choice->card().isWhole(*choice);
    }
    if (const auto *tick = qobject_cast<const PictureTick *>(&control)) {
        return !tick->card().isWhole(*tick);
    }
    if (const auto *field = qobject_cast<const QLineEdit *>(&control)) { // what is typed can be scrolled
        QStyleOptionFrame option;
        option.initFrom(field);
        const QRect place = field->style()->subElementRect(QStyle::SE_LineEditContents, &option, field);
        return field->text().isEmpty() && isWider(*field, field->placeholderText(), place);
    }
    if (const auto *list = qobject_cast<const QComboBox *>(&control)) {
        if (list->sizeAdjustPolicy() == QComboBox::AdjustToMinimumContentsLengthWithIcon) {
            return false; // names of devices, which may be shortened
        }
        QStyleOptionComboBox option;
        option.initFrom(list);
        const int icon = list->itemIcon(list->currentIndex()).isNull() ? 0 : list->iconSize().width() + 4;
        const QRect place = list->style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField);
        return isWider(*list, list->currentText(), place.adjusted(icon, 0, 0, 0));
    }
    return isShortened(control);
}

void lookAt(const QWidget &window, int target, Fits &fits) {
    const int shade = window.testAttribute(Qt::WA_TranslucentBackground) ? shadowMargin : 0;
    const QRect surface = window.frameGeometry().adjusted(shade, shade, -shade, -shade);
    if (!window.screen()->availableGeometry().contains(surface)) {
        fits.problems << nameOf(window) + " leaves the screen";
    }
    for (const QScrollArea *area : window.findChildren<QScrollArea *>()) {
        if (area->isVisible() && area->horizontalScrollBar()->maximum() > 0) {
            fits.shortened << QString("%1 has to be scrolled by %2 pixels")
                                  .arg(described(*area))
                                  .arg(area->horizontalScrollBar()->maximum());
        }
    }
    QList<const QWidget *> buttons;
    for (const QWidget *control : window.findChildren<QWidget *>()) {
        if (!control->isVisible() || control->window() != &window || !isControl(*control)) {
            continue;
        }
        if (const QWidget *above = cutBy(*control)) {
            fits.problems << described(*control) + " leaves " + nameOf(*above);
        }
        if (isSmall(*control, target)) {
            fits.problems << QString("%1 has %2 x %3 pixels")
                                 .arg(described(*control))
                                 .arg(control->width())
                                 .arg(control->height());
        }
        if (isCut(*control)) {
            fits.problems << described(*control) + " is cut";
        } else if (isElided(*control)) {
            fits.shortened << described(*control);
        }
        if (qobject_cast<const QAbstractButton *>(control)) {
            for (const QWidget *other : buttons) {
                if (other->parentWidget() == control->parentWidget() &&
                    other->geometry().intersects(control->geometry())) {
                    fits.problems << described(*control) + " covers " + nameOf(*other);
                }
            }
            buttons << control;
        }
    }
}

} // namespace

Fits lookWhatFits(int target) {
    Fits fits;
    for (const QWidget *window : openWindows()) {
        if (!window->windowFlags().testFlag(Qt::Popup) || window->windowType() == Qt::Dialog) {
            lookAt(*window, target, fits);
        }
    }
    return fits;
}

} // namespace lumora::play
