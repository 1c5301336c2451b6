// The Simple mode's own save dialog: a name, one of six types, a folder from the settings. Shown by the Save command
// and by the save prompt; it never writes a photo itself.
#pragma once

#include "dialogs/SimpleFileDialog.h"

class QComboBox;
class QLabel;

namespace lumora {

/// The name that a file gets: what was typed and the extension of the type at that position of the type list (0 BMP,
/// 1 JPEG, 2 PNG, 3 GIF, 4 TIFF, 5 TGA), always appended. Empty for another position or without a name.
QString simpleSaveName(const QString &typed, int type);

/// A name to begin with: `base`, or with the first number from 2 that makes it new in the folder, whatever the type of
/// the files there. So whoever cannot write yet can save too, and never over another picture.
QString freeSaveName(const QString &folder, const QString &base);

class frmSimpleSave : public SimpleFileDialog {
    Q_OBJECT

  public:
    enum class Result { Save, More, Cancelled };

    /// `name` is "frmSimpleSave" for the Save command, "frmSimpleSave2" for the save prompt.
    frmSimpleSave(AppContext &ctx, const QString &name, QWidget *owner);

    /// Shows the dialog and waits. Save: path() is where the photo is to go, and its folder stands. More:
    /// photo.CurrentFileName holds the folder, and the system's own dialog is wanted.
    Result ask();
    /// The folder, the name and the type's extension; empty while there is no name.
    QString path() const;

  protected:
    bool takeChoice() override;

  private:
    void fillTypes();
    void layOut();
    QLabel *photoLabel();
    void showName();

    QLabel *lblFile;
    QLabel *lblFileType;
    QComboBox *cboFilter;
    QLabel *m_badge;   ///< the type's picture before the name
    QLabel *lblResult; ///< the name that the file will get
};

} // namespace lumora
