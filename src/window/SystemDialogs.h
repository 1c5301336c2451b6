// The desktop's own file dialogs, as Advanced mode uses them to open and save, and the question for a PDF file.
#pragma once

#include <QString>

class QWidget;

namespace lumora {

struct AppContext;

/// Asks for a picture to open, starting in the working directory: GIF, JPEG, PNG, TIFF and BMP, or as a second choice
/// what else Lumora reads. An empty text when the dialog was cancelled.
QString askForPhotoToOpen(AppContext &ctx, QWidget *owner);

/// The initial state of a save dialog.
struct SaveQuestion {
    QString initialName;
    const char *suffix = "jpg";        ///< the type selected at first
    bool workingDirectoryOnly = false; ///< true: the "MyDocs" setting is not consulted
};

/// Asks where to save: in the documents folder or, if so configured, in the working directory; asks before an
/// existing file is replaced. A name without an extension that Lumora writes gets the one of the chosen type; where
/// that makes it the name of an existing file, frmOverwrite asks once more, since desktops' dialogs only know what was
/// typed. An empty text when the dialog was cancelled or the file is not to be replaced.
QString askWhereToSave(AppContext &ctx, QWidget *owner, const SaveQuestion &question);

/// Asks which PDF file a page is to be printed into: with the system's dialog, or with Simple mode's own where the
/// settings say so. Asks before an existing file is replaced. An empty text when the person did not want to.
QString askWhereToPrintPdf(AppContext &ctx, QWidget *owner);

} // namespace lumora
