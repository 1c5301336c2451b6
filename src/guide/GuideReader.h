// Shows one page of the user guide. GuideWindow has one.
#pragma once

#include <QTextBrowser>

namespace lumora {

/// The text keeps a width that reads well however wide the window is.
class GuideReader : public QTextBrowser {
    Q_OBJECT

  public:
    explicit GuideReader(QWidget *parent);

    /// Shows ":/guide/FILE" and marks the words that begin like one of `words` (folded for searching); goes to the
    /// first of them. A link that is clicked is told as anchorClicked.
    void showPage(const QString &file, const QStringList &words);

  protected:
    void resizeEvent(QResizeEvent *event) override;

  private:
    void mark(const QStringList &words);
};

} // namespace lumora
