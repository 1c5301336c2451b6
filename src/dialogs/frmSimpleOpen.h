// Simple mode's own open dialog: the photos of one folder as pictures, and the five groups of sample photos.
// Shown by the Open command; it never loads a photo itself.
#pragma once

#include "dialogs/SimpleFileDialog.h"

class QBoxLayout;
class QLabel;

namespace lumora {

class PhotoList;

class frmSimpleOpen : public SimpleFileDialog {
    Q_OBJECT

  public:
    enum class Result { Open, More, Cancelled };

    /// `name` is "frmSimpleOpen" for the Open command, "frmSimpleOpen2" for the one that follows the save prompt.
    frmSimpleOpen(AppContext &ctx, const QString &name, QWidget *owner);

    /// Shows the dialog and waits. Open: fields.txtSimplePath holds the path. More: photo.CurrentFileName holds the
    /// folder, and the system's own dialog is requested.
    Result ask();

  protected:
    bool takeChoice() override;

  private:
    void layOut();
    QBoxLayout *groupColumn();
    void LoadMySettings();
    void showGroup(const QString &folder);
    void markGroup();

    QLabel *lblFiles;
    QLabel *lblSelectedFile;
    PhotoList *File1;
    QList<PictureButton *> m_groups;
};

} // namespace lumora
