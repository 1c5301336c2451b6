// Simple mode's own open dialog: the photos of one folder as pictures, the user's own from everywhere, and the five
// groups of sample photos.
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
    void leadToSamples();
    void showGroup(const QString &folder);
    void showMyPictures();
    void markGroup();

    QLabel *lblFiles;
    QLabel *lblSelectedFile;
    PhotoList *File1;
    PictureButton *cmdMyPictures;
    QList<PictureButton *> m_groups;
    bool m_showsMine = false; ///< "My Pictures" instead of a folder
};

} // namespace lumora
