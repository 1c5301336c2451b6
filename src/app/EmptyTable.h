// What the main window shows before the first photo: the empty table and one big folder to begin with.
#pragma once

#include "document/PhotoTable.h"

#include <QWidget>

namespace lumora {

class PictureButton;

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
    PictureButton *m_folder;
    PhotoTable m_table;
};

} // namespace lumora
