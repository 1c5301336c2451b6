// The list of pages that a search in the user guide has found.
#pragma once

#include "guide/GuideSearch.h"

#include <QListWidget>

namespace lumora {

/// A page a row: its picture, its title, the sentence with the words in it. Click and Enter choose.
class GuideResults : public QListWidget {
    Q_OBJECT

  public:
    GuideResults(const Texts &texts, QWidget *parent);

    void show(const QList<GuideSearch::Hit> &hits);
    /// Chooses the current row, the first where none is current. Nothing in an empty list.
    void choose();

  Q_SIGNALS:
    /// `words` as in the hit.
    void chosen(const QString &file, const QStringList &words);

  protected:
    void resizeEvent(QResizeEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

  private:
    const Texts &m_texts;
};

} // namespace lumora
