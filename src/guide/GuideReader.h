// Shows one page of the user guide. GuideWindow has one.
#pragma once

#include <QTextBrowser>

namespace lumora {

class Texts;

/// The text keeps a width that reads well however wide the window is.
class GuideReader : public QTextBrowser {
    Q_OBJECT

  public:
    GuideReader(const Texts &texts, QWidget *parent);

    /// Shows that page of the guide and marks the words that begin like one of `words` (folded for searching); goes to
    /// the first of them. A click on a link emits anchorClicked.
    void showPage(const QString &file, const QStringList &words);

  protected:
    void resizeEvent(QResizeEvent *event) override;

  private:
    void mark(const QStringList &words);

    const Texts &m_texts;
};

} // namespace lumora
