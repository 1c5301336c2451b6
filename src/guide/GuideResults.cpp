#include "guide/GuideResults.h"

#include "guide/GuidePages.h"
#include "widgets/Theme.h"

#include <QAbstractTextDocumentLayout>
#include <QKeyEvent>
#include <QPainter>
#include <QStyledItemDelegate>
#include <QTextDocument>

namespace lumora {

namespace {

enum Role { fileRole = Qt::UserRole, wordsRole, iconRole, sentenceRole };

constexpr int pictureSize = 52; // pixels
constexpr int padding = 12;

class RowPainter : public QStyledItemDelegate {
  public:
    explicit RowPainter(QListWidget *list) : QStyledItemDelegate(list), m_list(list) {}

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override {
        QTextDocument text;
        lay(text, option, index, m_list->viewport()->width());
        const int height = qRound(text.size().height());
        return {m_list->viewport()->width(), std::max(height, pictureSize) + 2 * padding};
    }

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override {
        QStyleOptionViewItem row = option;
        initStyleOption(&row, index);
        row.text.clear();
        m_list->style()->drawControl(QStyle::CE_ItemViewItem, &row, painter, m_list);
        const QString icon = index.data(iconRole).toString();
        const QPoint iconPlace = option.rect.topLeft() + QPoint(padding, padding);
        painter->drawPixmap(iconPlace, iconPixmap(icon, pictureSize, painter->device()->devicePixelRatioF()));
        QTextDocument text;
        lay(text, option, index, option.rect.width());
        painter->save();
        painter->translate(iconPlace + QPoint(pictureSize + padding,
                                              (option.rect.height() - 2 * padding - qRound(text.size().height())) / 2));
        QAbstractTextDocumentLayout::PaintContext context;
        context.palette = option.palette;
        context.palette.setColor(QPalette::Text, colours::ink);
        text.documentLayout()->draw(painter, context);
        painter->restore();
    }

  private:
    static void lay(QTextDocument &text, const QStyleOptionViewItem &option, const QModelIndex &index, int width) {
        text.setDocumentMargin(0);
        text.setDefaultFont(option.font);
        text.setHtml(QString("<span style=\"font-size: large; font-weight: bold\">%1</span><br>%2")
                         .arg(index.data().toString().toHtmlEscaped(), index.data(sentenceRole).toString()));
        text.setTextWidth(width - pictureSize - 3 * padding);
    }

    QListWidget *m_list;
};

} // namespace

GuideResults::GuideResults(const Texts &texts, QWidget *parent) : QListWidget(parent), m_texts(texts) {
    setObjectName("lstGuideFound");
    setItemDelegate(new RowPainter(this));
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setMouseTracking(true);
    connect(this, &QListWidget::itemClicked, this, &GuideResults::choose);
}

void GuideResults::show(const QList<GuideSearch::Hit> &hits) {
    clear();
    for (const GuideSearch::Hit &hit : hits) {
        const GuidePage *page = guidePage(hit.file);
        auto *row = new QListWidgetItem(guideTitle(m_texts, page->title), this);
        row->setData(fileRole, hit.file);
        row->setData(wordsRole, hit.words);
        row->setData(iconRole, page->icon);
        row->setData(sentenceRole, hit.sentence);
        row->setData(Qt::AccessibleDescriptionRole, QString(hit.sentence).remove("<b>").remove("</b>"));
    }
}

void GuideResults::choose() {
    const QListWidgetItem *row = currentItem() == nullptr ? item(0) : currentItem();
    if (row != nullptr) {
        Q_EMIT chosen(row->data(fileRole).toString(), row->data(wordsRole).toStringList());
    }
}

void GuideResults::resizeEvent(QResizeEvent *event) {
    QListWidget::resizeEvent(event);
    scheduleDelayedItemsLayout(); // sentences wrap again
}

void GuideResults::keyPressEvent(QKeyEvent *event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        choose();
    } else {
        QListWidget::keyPressEvent(event);
    }
}

} // namespace lumora
