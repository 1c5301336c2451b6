#include "window/SystemDialogs.h"

#include "dialogs/frmPrompt.h"
#include "dialogs/frmSimpleSave.h"
#include "session/AppContext.h"
#include "session/FileTypeText.h"
#include "session/LoadSettings.h"

#include <QFileDialog>
#include <QFileInfo>
#include <algorithm>

namespace lumora {

namespace {

constexpr int documentsFolder = 5;

/// One row per type that the save dialog offers.
struct SaveFilter {
    const char *text;
    const char *pattern;
    const char *suffix;
};
const SaveFilter saveFilters[] = {
    {"FileTypeBMP", "*.bmp", "bmp"}, {"FileTypeGIF", "*.gif", "gif"}, {"FileTypeJPEG", "*.jpg", "jpg"},
    {"FileTypePNG", "*.png", "png"}, {"FileTypeTIF", "*.tif", "tif"}, {"FileTypeAll", "*", ""},
};

/// Starts the dialog in `folder`, or in the documents folder when that does not exist.
void startIn(QFileDialog &dialog, const QString &folder) {
    dialog.setDirectory(QFileInfo(folder).isDir() ? folder : GetSpecialFolderPath(documentsFolder));
}

/// The initial name may be a folder: the Simple dialogs pass theirs after "More...".
void offerName(QFileDialog &dialog, const QString &name) {
    if (QFileInfo(name).isDir()) {
        dialog.setDirectory(name);
    } else if (!name.isEmpty()) {
        dialog.selectFile(name);
    }
}

QString answer(QFileDialog &dialog) {
    return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
}

} // namespace

QString askForPhotoToOpen(AppContext &ctx, QWidget *owner) {
    QFileDialog dialog(owner, ctx.texts.text("Open"));
    dialog.setFileMode(QFileDialog::ExistingFile);
    dialog.setNameFilter(fileTypeText(ctx.texts, "FileTypeSupported", {"*.gif", "*.jpg", "*.png", "*.tif", "*.bmp"}));
    startIn(dialog, workingDirectory(ctx));
    offerName(dialog, ctx.photo.CurrentFileName);
    return answer(dialog);
}

QString askWhereToSave(AppContext &ctx, QWidget *owner, const SaveQuestion &question) {
    QFileDialog dialog(owner, ctx.texts.text("Save"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    QStringList filters;
    for (const SaveFilter &row : saveFilters) {
        filters << fileTypeText(ctx.texts, row.text, {row.pattern});
    }
    dialog.setNameFilters(filters);
    QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog, [&](const QString &chosen) {
        dialog.setDefaultSuffix(saveFilters[std::max<qsizetype>(0, filters.indexOf(chosen))].suffix);
    });
    for (qsizetype i = 0; i < filters.size(); ++i) {
        if (qstrcmp(saveFilters[i].suffix, question.suffix) == 0) {
            dialog.selectNameFilter(filters[i]);
            dialog.setDefaultSuffix(saveFilters[i].suffix);
        }
    }
    startIn(dialog, question.workingDirectoryOnly ? workingDirectory(ctx) : photoFolder(ctx));
    offerName(dialog, question.initialName);
    return answer(dialog);
}

QString askWhereToPrintPdf(AppContext &ctx, QWidget *owner) {
    if (ctx.fields.txtDlgs == DialogStyle::System) {
        QFileDialog dialog(owner, ctx.texts.text("PrintToPdf"));
        dialog.setAcceptMode(QFileDialog::AcceptSave);
        dialog.setFileMode(QFileDialog::AnyFile);
        dialog.setNameFilter(fileTypeText(ctx.texts, "FileTypePDF", {"*.pdf"}));
        dialog.setDefaultSuffix("pdf");
        startIn(dialog, photoFolder(ctx));
        const QString photo = QFileInfo(ctx.photo.CurrentFileName).completeBaseName();
        dialog.selectFile((photo.isEmpty() ? ctx.texts.text("MyPicture") : photo) + ".pdf");
        return answer(dialog);
    }
    frmSimpleSave dialog(ctx, "frmSimpleSave", owner, frmSimpleSave::Saves::PdfPage);
    if (dialog.ask() != frmSimpleSave::Result::Save) {
        return {};
    }
    ctx.fields.txtSimpleSavePath = dialog.path(); // which the question shows
    const bool free = !QFileInfo::exists(dialog.path());
    return free || ask(ctx, PromptKind::Overwrite, owner) == Answer::Yes ? dialog.path() : QString();
}

} // namespace lumora
