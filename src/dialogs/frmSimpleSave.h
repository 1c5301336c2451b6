// Simple mode's own save dialog: a name, one of six types, a folder from the settings. Shown by the Save command
// and by the save prompt; it never writes a photo itself.
#pragma once

#include "dialogs/SimpleFileDialog.h"

class QComboBox;
class QLabel;

namespace lumora {

/// The resulting file name: the typed text and the extension of the type at that position of the type list (0 BMP,
/// 1 JPEG, 2 PNG, 3 GIF, 4 TIFF, 5 TGA, 6 PDF), always appended. Empty for any other position or without a name.
QString simpleSaveName(const QString &typed, int type);

/// A suggested name: `base`, or `base` with the first number from 2 that is unused in the folder, whatever the file
/// types there. So a child who cannot write yet can save too, and never overwrites another picture.
QString freeSaveName(const QString &folder, const QString &base);

class frmSimpleSave : public SimpleFileDialog {
    Q_OBJECT

  public:
    enum class Result { Save, More, Cancelled };
    /// What is to be saved: a photo, in one of its types, or a page that is printed into a PDF file.
    enum class Saves { Photo, PdfPage };

    /// `name` is "frmSimpleSave" for the Save command, "frmSimpleSave2" for the save prompt.
    frmSimpleSave(AppContext &ctx, const QString &name, QWidget *owner, Saves what = Saves::Photo);

    /// Shows the dialog and waits. Save: path() is the target, and its folder exists. More:
    /// photo.CurrentFileName holds the folder, and the system's own dialog is requested.
    Result ask();
    /// The folder, the name and the type's extension; empty while there is no name.
    QString path() const;

  protected:
    bool takeChoice() override;

  private:
    void fillTypes(Saves what);
    int type() const; ///< the position in the type list; -1 none
    void layOut();
    void showName();

    QLabel *lblFile;
    QLabel *lblFileType;
    QComboBox *cboFilter;
    QLabel *m_photo;   ///< as a file of the chosen type will have it
    QLabel *m_badge;   ///< the type's picture before the name
    QLabel *lblResult; ///< the name that the file will get
};

} // namespace lumora
