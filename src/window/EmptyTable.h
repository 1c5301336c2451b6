// What the main window shows before the first photo: an empty table, a photo outline drawn with a crayon, and one big
// folder to start with.
#pragma once

#include "view/PhotoTable.h"

#include <QWidget>

class QLabel;

namespace lumora {

class PictureButton;
class ScenePicture;

class EmptyTable : public QWidget {
    Q_OBJECT

  public:
    explicit EmptyTable(QWidget *parent = nullptr);
    /// The folder's text for screen readers and as a tool tip.
    void setOpenText(const QString &text);
    /// Why there is still no photo, below the folder; empty: nothing.
    void setSentence(const QString &text);

  Q_SIGNALS:
    void openWanted();

  protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

  private:
    void placeAll();

    ScenePicture *m_place;
    QLabel *m_crayon;
    PictureButton *m_folder;
    QLabel *m_sentence;
    PhotoTable m_table;
};

} // namespace lumora
