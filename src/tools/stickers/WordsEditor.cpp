#include "tools/stickers/WordsEditor.h"

#include "session/AppContext.h"
#include "tools/stickers/ItemBar.h"
#include "view/PhotoView.h"
#include "widgets/PictureButton.h"
#include "widgets/Theme.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPainter>
#include <QPlainTextEdit>
#include <QSignalBlocker>

namespace lumora {

namespace {

constexpr QSize editorSize(340, 124); // pixels
constexpr int editorMargin = 8;
constexpr int editorPicture = 40;
constexpr double editorLetters = 16; // points

} // namespace

WordsEditor::WordsEditor(AppContext &ctx, PhotoView &view)
    : QWidget(&view), m_ctx(ctx), m_view(view), m_text(new QPlainTextEdit(this)),
      m_done(new PictureButton("ok", PictureButton::CaptionPlace::None, this)) {
    setObjectName("pnlStickerWords");
    m_text->setObjectName("txtStickerWords");
    m_text->setTabChangesFocus(true);
    QFont letters = m_text->font();
    letters.setPointSizeF(editorLetters);
    m_text->setFont(letters);
    m_done->setObjectName("cmdStickerWordsDone");
    m_done->setLook(PictureButton::Look::Raised);
    m_done->setPictureSize(editorPicture);
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(editorMargin, editorMargin, editorMargin, editorMargin);
    row->setSpacing(editorMargin);
    row->addWidget(m_text, 1);
    row->addWidget(m_done, 0, Qt::AlignVCenter);
    m_text->installEventFilter(this);
    connect(m_text, &QPlainTextEdit::textChanged, this, &WordsEditor::tell);
    connect(m_done, &QAbstractButton::clicked, this, &WordsEditor::done);
    LoadLanguage();
    hide();
}

void WordsEditor::LoadLanguage() {
    m_text->setPlaceholderText(m_ctx.texts.text("StickerTypeHere"));
    m_text->setAccessibleName(m_text->placeholderText());
    m_done->setToolTip(m_ctx.texts.text("StickerWordsDone"));
    m_done->setAccessibleName(m_done->toolTip());
}

void WordsEditor::begin(const QString &words, const QRectF &part) {
    {
        const QSignalBlocker quiet(m_text);
        m_text->setPlainText(words);
    }
    m_text->selectAll();
    moveBeside(part);
    show();
    raise();
    takeKeyboard();
}

void WordsEditor::takeKeyboard() {
    m_text->setFocus();
}

void WordsEditor::moveBeside(const QRectF &part) {
    const QRect room = m_view.viewport()->geometry();
    setGeometry(placeBeside(part, editorSize.boundedTo(room.size()), room));
}

void WordsEditor::keepClearOf(const QRectF &part) {
    if (QRectF(geometry()).intersects(part)) {
        moveBeside(part);
    }
}

void WordsEditor::end() {
    const bool hadFocus = isAncestorOf(focusWidget());
    hide();
    if (hadFocus) {
        m_view.setFocus();
    }
}

void WordsEditor::tell() {
    QString words = m_text->toPlainText();
    if (words.size() > mostLetters) {
        const QSignalBlocker quiet(m_text);
        words.truncate(words.at(mostLetters - 1).isHighSurrogate() ? mostLetters - 1 : mostLetters);
        m_text->setPlainText(words);
        m_text->moveCursor(QTextCursor::End);
    }
    Q_EMIT wordsChanged(words);
}

bool WordsEditor::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::ShortcutOverride || event->type() == QEvent::KeyPress) {
        const auto *key = static_cast<QKeyEvent *>(event);
        const bool enter = key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter;
        if (key->key() == Qt::Key_Escape || (enter && key->modifiers().testFlag(Qt::ControlModifier))) {
            event->accept();
            if (event->type() == QEvent::KeyPress) {
                Q_EMIT done();
            }
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

void WordsEditor::changeEvent(QEvent *event) {
    if (event->type() == QEvent::LanguageChange) {
        LoadLanguage();
    }
    QWidget::changeEvent(event);
}

void WordsEditor::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    paintPanel(painter, QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), buttonCorner);
}

} // namespace lumora
