// Simple mode's print window: the page as it will come out, one, two, four or nine photos to a page, what can be made
// of photo and paper, the printer, the number of copies, Yes and No. The print button shows it.
#pragma once

#include "output/print/PrintJob.h"
#include "widgets/BorderlessDialog.h"

#include <QImage>
#include <vector>

class QComboBox;
class QLabel;
class QVBoxLayout;

namespace lumora {

struct AppContext;
class CopiesBox;
class DeviceLists;
class PagePreview;
class PictureButton;
class PrinterChoice;

class frmSimplePrint : public BorderlessDialog {
    Q_OBJECT

  public:
    /// For the photo on the table. `helper` as HelperRun takes it.
    frmSimplePrint(AppContext &ctx, DeviceLists &devices, const QString &helper, QWidget *owner);

    /// Shows the window, modal over its owner. Returns the job after Yes or after the desktop's own print dialog; a PDF
    /// job has no file yet.
    std::optional<PrintJob> ask();
    bool wantsPdf() const;

    /// Fills the list of printers with those that are known; "Print to PDF" is the last.
    void LoadPrinters();
    /// Lays out the page, and the small ones on the buttons, for the chosen printer's paper.
    void UpdatePreviews();
    /// Makes the small copy of the photo that the previews are drawn with.
    void fitPhoto();

  protected:
    /// Keeps the window on the screen when a line about the printer makes it higher.
    void resizeEvent(QResizeEvent *event) override;

  private:
    void makeControls();
    void makeChoices();
    void choose(std::size_t number);
    void layOut();
    QVBoxLayout *settingsColumn();
    void choosePrinter(int index);
    void printersChanged();
    void AdvancedPrinting();
    PrintJob shownJob() const;

    AppContext &m_ctx;
    PrinterChoice *m_printer;
    QImage m_picture;
    PagePreview *picPrint1 = nullptr;
    /// What can be chosen: the layouts, then the crafts.
    struct Choice {
        PictureButton *button; ///< ImageX1 to ImageX4, then those of paperCrafts()
        PrintLayout layout;
    };
    std::vector<Choice> m_choices;
    PrintLayout m_layout; ///< the chosen one
    QLabel *lblHow;       ///< what to do with the paper of a craft
    QLabel *lblDevice;
    QComboBox *cboPrinter;
    QLabel *m_hint; ///< why there are no printers
    QLabel *lblCopies;
    CopiesBox *m_copies;
    PictureButton *cmdAdvanced;
    bool m_wantsDesktop = false;          ///< the desktop's dialog opens when the printers have answered
    std::optional<PrintJob> m_desktopJob; ///< what the desktop's dialog asked for
};

} // namespace lumora
