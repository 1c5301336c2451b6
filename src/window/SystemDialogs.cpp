#include "window/SystemDialogs.h"

#include "dialogs/frmPrompt.h"
#include "dialogs/frmSimpleSave.h"
#include "imaging/PictureFile.h"
#include "session/AppContext.h"
#include "session/FileTypeText.h"
#include "session/LoadSettings.h"

#include <QFileDialog>
#include <QFileInfo>
#include <algorithm>

namespace lumora {

namespace {

constexpr int documentsFolder = 5;

/// One row per entry of a dialog's list of types.
struct TypeRow {
    const char *text;
    QStringList extensions; ///< as the list shows them; none: every file

    QString shown(const Texts &texts) const {
        QStringList patterns;
        for (const QString &extension : extensions) {
            patterns << "*." + extension;
        }
        return fileTypeText(texts, text, patterns.isEmpty() ? QStringList("*") : patterns);
    }
};

/// What the ordered types of the open dialog leave out.
QStringList otherExtensions(const QStringList &ordered) {
    QStringList others;
    for (const QStringList &format : readableExtensions()) {
        if (!ordered.contains(format.constFirst())) {
            others += format;
        }
    }
    return others;
}

/// "*.jpg" as every dialog understands it in any case: GTK's compares letters exactly.
QString inAnyCase(const QString &extension) {
    QString pattern = "*.";
    for (const QChar letter : extension) {
        pattern += letter.isLetter() ? QString("[%1%2]").arg(letter.toLower()).arg(letter.toUpper()) : QString(letter);
    }
    return pattern;
}

/// What the row lets through: all extensions of its formats, in any case. The first pattern is plain, since Qt's own
/// save dialog takes its extension from it.
QStringList patternsOf(const TypeRow &row) {
    if (row.extensions.isEmpty()) {
        return {"*"};
    }
    QStringList patterns = {"*." + row.extensions.constFirst()};
    for (const QString &extension : row.extensions) {
        QStringList all = {extension};
        for (const QStringList &format : readableExtensions()) {
            if (format.contains(extension)) {
                all = format;
            }
        }
        std::transform(all.begin(), all.end(), std::back_inserter(patterns), inAnyCase);
    }
    patterns.removeDuplicates();
    return patterns;
}

/// Fills the dialog's list. Of an entry the last brackets are the patterns, which no dialog then shows.
void offerTypes(QFileDialog &dialog, const Texts &texts, const QList<TypeRow> &rows) {
    QStringList entries;
    for (const TypeRow &row : rows) {
        entries << row.shown(texts) + " (" + patternsOf(row).join(' ') + ')';
    }
    dialog.setOption(QFileDialog::HideNameFilterDetails);
    dialog.setNameFilters(entries);
}

/// The extension of the chosen entry; `usual` for an entry of every file. It depends on the dialog and on Qt's version
/// whether the entry is told with its patterns.
QString chosenExtension(const QFileDialog &dialog, const Texts &texts, const QList<TypeRow> &rows, const char *usual) {
    const QString chosen = dialog.selectedNameFilter();
    for (const TypeRow &row : rows) {
        const QString shown = row.shown(texts);
        if (!row.extensions.isEmpty() && (chosen == shown || chosen.startsWith(shown + " ("))) {
            return row.extensions.constFirst();
        }
    }
    return usual;
}

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

bool mayReplace(AppContext &ctx, QWidget *owner, const QString &path) {
    ctx.fields.txtSimpleSavePath = path; // the question shows what would be replaced
    return ask(ctx, PromptKind::Overwrite, owner) == Answer::Yes;
}

} // namespace

QString askForPhotoToOpen(AppContext &ctx, QWidget *owner) {
    const QStringList ordered = {"gif", "jpg", "png", "tif", "bmp"};
    QFileDialog dialog(owner, ctx.texts.text("Open"));
    dialog.setFileMode(QFileDialog::ExistingFile);
    offerTypes(dialog, ctx.texts, {{"FileTypeSupported", ordered}, {"FileTypeOther", otherExtensions(ordered)}});
    startIn(dialog, workingDirectory(ctx));
    offerName(dialog, ctx.photo.CurrentFileName);
    return answer(dialog);
}

QString askWhereToSave(AppContext &ctx, QWidget *owner, const SaveQuestion &question) {
    const QList<TypeRow> types = {
        {"FileTypeBMP", {"bmp"}}, {"FileTypeGIF", {"gif"}}, {"FileTypeJPEG", {"jpg"}},
        {"FileTypePNG", {"png"}}, {"FileTypeTIF", {"tif"}}, {"FileTypeAll", {}},
    };
    QFileDialog dialog(owner, ctx.texts.text("Save"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    offerTypes(dialog, ctx.texts, types);
    for (qsizetype i = 0; i < types.size(); ++i) {
        if (types[i].extensions == QStringList(question.suffix)) {
            dialog.selectNameFilter(dialog.nameFilters().at(i));
        }
    }
    startIn(dialog, question.workingDirectoryOnly ? workingDirectory(ctx) : photoFolder(ctx));
    offerName(dialog, question.initialName);
    QString answered = answer(dialog);
    if (answered.isEmpty() || hasWritableExtension(answered)) {
        return answered; // the dialog has asked before it gives the name of a file that exists
    }
    const QString path = answered + '.' + chosenExtension(dialog, ctx.texts, types, question.suffix);
    return !QFileInfo::exists(path) || mayReplace(ctx, owner, path) ? path : QString();
}

QString askWhereToPrintPdf(AppContext &ctx, QWidget *owner) {
    if (ctx.fields.txtDlgs == DialogStyle::System) {
        QFileDialog dialog(owner, ctx.texts.text("PrintToPdf"));
        dialog.setAcceptMode(QFileDialog::AcceptSave);
        dialog.setFileMode(QFileDialog::AnyFile);
        dialog.setNameFilter(fileTypeText(ctx.texts, "FileTypePDF", {"*.pdf"}));
        startIn(dialog, photoFolder(ctx));
        const QString photo = QFileInfo(ctx.photo.CurrentFileName).completeBaseName();
        dialog.selectFile((photo.isEmpty() ? ctx.texts.text("MyPicture") : photo) + ".pdf");
        QString answered = answer(dialog);
        if (answered.isEmpty() || answered.endsWith(".pdf", Qt::CaseInsensitive)) {
            return answered;
        }
        const QString path = answered + ".pdf";
        return !QFileInfo::exists(path) || mayReplace(ctx, owner, path) ? path : QString();
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
