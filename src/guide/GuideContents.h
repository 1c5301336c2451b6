// The first page of the user guide: a picture and a name for each page, so that it can be found without reading.
#pragma once

#include <QScrollArea>

class QLabel;

namespace lumora {

class PictureButton;
class Texts;

class GuideContents : public QScrollArea {
    Q_OBJECT

  public:
    GuideContents(const Texts &texts, QWidget *parent);

    /// The texts again, after a change of the language.
    void LoadLanguage();
    /// The keyboard goes to the first picture.
    void takeFocus();

  Q_SIGNALS:
    void chosen(const QString &file);

  protected:
    void resizeEvent(QResizeEvent *event) override;
    /// The arrow keys go from picture to picture as they are arranged.
    bool eventFilter(QObject *watched, QEvent *event) override;

  private:
    void addPages();
    void placeAll();
    PictureButton *neighbour(const PictureButton &from, int key) const;

    struct Group {
        QLabel *heading;
        QList<PictureButton *> pages;
    };
    const Texts &m_texts;
    QWidget *m_sheet;
    QWidget *m_greeting;
    QList<Group> m_groups;
    QList<PictureButton *> m_buttons; ///< all of them, in order
    int m_columns = 1;
};

} // namespace lumora
