// What the main window shows before the first photo: the empty table, on it the place of the photo to come, drawn by a
// crayon, and one big folder to begin with.
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
    /// The folder's words, for those who hear the screen or rest the pointer on it.
    void setOpenText(const QString &text);

  Q_SIGNALS:
    void openWanted();

  protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

  private:
    ScenePicture *m_place;
    QLabel *m_crayon;
    PictureButton *m_folder;
    PhotoTable m_table;
};

} // namespace lumora
