#include "guide/GuideReader.h"

#include "base/Texts.h"
#include "guide/GuidePages.h"
#include "guide/GuidePictures.h"
#include "guide/GuideSearch.h"
#include "widgets/Theme.h"

#include <QAbstractTextDocumentLayout>
#include <QScrollBar>
#include <QTextCursor>
#include <algorithm>

namespace lumora {

namespace {
constexpr int widestText = 780;    // pixels
constexpr int documentMargin = 28; // pixels
} // namespace

GuideReader::GuideReader(const Texts &texts, QWidget *parent) : QTextBrowser(parent), m_texts(texts) {
    setOpenLinks(false);
    setThemedSheet(*this, "QTextBrowser { background: @paper; border: none; padding: 0px; }");
    document()->setDocumentMargin(documentMargin);
    document()->documentLayout()->registerHandler(QTextFormat::ImageObject, new GuidePictures(this));
}

void GuideReader::showPage(const QString &file, const QStringList &words) {
    document()->setDefaultStyleSheet(guideStyle()); // in the colours of now
    setHtml(m_texts.shown(guideHtml(guideLanguage(m_texts), file)));
    moveCursor(QTextCursor::Start);
    verticalScrollBar()->setValue(0); // above the margin too
    mark(words);
}

void GuideReader::mark(const QStringList &words) {
    const QString text = foldedForSearch(document()->toPlainText());
    QList<ExtraSelection> marks;
    for (const QString &word : words) {
        for (qsizetype at = findWord(text, word); at >= 0; at = findWord(text, word, at + 1)) {
            ExtraSelection found;
            found.cursor = QTextCursor(document());
            found.cursor.setPosition(static_cast<int>(at));
            found.cursor.setPosition(static_cast<int>(at + word.size()), QTextCursor::KeepAnchor);
            found.format.setBackground(colours::sun);
            marks << found;
        }
    }
    setExtraSelections(marks);
    const auto first = std::min_element(marks.begin(), marks.end(), [](const auto &one, const auto &other) {
        return one.cursor.position() < other.cursor.position();
    });
    if (first != marks.end()) {
        verticalScrollBar()->setValue(cursorRect(first->cursor).top() - viewport()->height() / 3);
    }
}

void GuideReader::resizeEvent(QResizeEvent *event) {
    const int side = std::max(0, (width() - widestText - 2 * documentMargin) / 2);
    if (viewportMargins().left() != side) {
        setViewportMargins(side, 0, side, 0);
    }
    QTextBrowser::resizeEvent(event);
}

} // namespace lumora
