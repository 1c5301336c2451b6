#include "options/OptionsPage.h"

#include "session/AppContext.h"
#include "widgets/LockedMark.h"
#include "widgets/Theme.h"
#include "widgets/Tick.h"

#include <QCheckBox>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

namespace lumora {

namespace {

constexpr int rowPicture = 28; // pixels
constexpr int pageWidth = 620; // pixels: remarks wrap to it

// Pixels. What is to press has air of its own, so that the window fits a screen of 800 x 600 with a bar.
constexpr int sheetGap = 6;
constexpr int sheetEdge = 1;
constexpr int rowAir = 4;  ///< above and below fields and buttons
constexpr int noteAir = 4; ///< below a remark

class Sheet : public QWidget {
  public:
    using QWidget::QWidget;

  protected:
    void paintEvent(QPaintEvent *) override {
        QPainter painter(this);
        paintPanel(painter, rect(), buttonCorner);
    }
};

} // namespace

OptionsPage::OptionsPage(const QString &headingName, QWidget *parent)
    : QWidget(parent), m_column(new QVBoxLayout(this)) {
    setMinimumWidth(pageWidth);
    m_column->setContentsMargins(0, 0, 0, 0);
    m_column->setSpacing(sheetGap);
    QLabel *heading = label(headingName);
    QFont large = heading->font();
    large.setPointSizeF(14);
    large.setBold(true);
    heading->setFont(large);
    m_column->addWidget(heading, 0, Qt::AlignLeft); // where the page begins, whatever the font size
}

void OptionsPage::lockWith(Lock lock, const QList<QWidget *> &controls) {
    m_lockable.insert(lock, controls);
}

void OptionsPage::showLocks(const AppContext &context) {
    for (auto [lock, controls] : m_lockable.asKeyValueRange()) {
        if (context.settings.isLocked(lock)) {
            for (QWidget *control : controls) {
                showLocked(*control, context.texts.text("LockedTip"));
            }
        }
    }
}

QVBoxLayout *OptionsPage::addSheet() {
    auto *sheet = new Sheet(this);
    auto *rows = new QVBoxLayout(sheet);
    rows->setContentsMargins(14, sheetEdge, 14, sheetEdge);
    rows->setSpacing(0);
    m_column->addWidget(sheet);
    return rows;
}

QHBoxLayout *OptionsPage::addRow(QBoxLayout *sheet) {
    auto *row = new QHBoxLayout;
    row->setContentsMargins(0, rowAir, 0, rowAir);
    row->setSpacing(10);
    sheet->addLayout(row);
    return row;
}

QCheckBox *OptionsPage::tickBox(const QString &name, const QString &icon) {
    auto *box = new Tick(this);
    box->setObjectName(name);
    if (!icon.isEmpty()) {
        box->setIcon(iconPixmap(icon, rowPicture, devicePixelRatioF()));
        box->setIconSize({rowPicture + 8, rowPicture}); // margin on both sides
    }
    return box;
}

QLabel *OptionsPage::label(const QString &name) {
    auto *text = new QLabel(this);
    text->setObjectName(name);
    text->setTextFormat(Qt::PlainText);
    return text;
}

QLabel *OptionsPage::note(const QString &name) {
    QLabel *text = label(name);
    QFont small = text->font();
    small.setPointSizeF(small.pointSizeF() - 1);
    text->setFont(small);
    setFaint(*text);
    text->setWordWrap(true);
    return text;
}

void OptionsPage::addNote(QBoxLayout *sheet, const QString &name) {
    sheet->addWidget(note(name));
    sheet->addSpacing(noteAir);
}

QLabel *OptionsPage::picture(const QString &icon) {
    auto *sign = new QLabel(this);
    sign->setPixmap(iconPixmap(icon, rowPicture, devicePixelRatioF()));
    return sign;
}

} // namespace lumora
