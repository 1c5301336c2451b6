#include "output/print/frmSimplePrint.h"

#include "output/print/CopiesBox.h"
#include "output/print/DesktopPrintDialog.h"
#include "output/print/PagePreview.h"
#include "output/print/PrinterChoice.h"
#include "output/print/crafts/PaperCrafts.h"
#include "session/AppContext.h"
#include "session/LoadSettings.h"
#include "widgets/AnimatedButton.h"
#include "widgets/AnswerButtons.h"
#include "widgets/Theme.h"
#include "widgets/WindowTexts.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QScreen>
#include <QSignalBlocker>
#include <QTimer>
#include <QVBoxLayout>

namespace lumora {

namespace {

constexpr int photosOnPage[] = {1, 2, 4, 9};
constexpr int choicesInRow = 4;
constexpr int layoutPicture = 76;          // pixels
constexpr int lowScreen = 680;             // pixels: less has no room for two rows of such pictures
constexpr int lowPicture = 42;             // pixels: two lines about the printer may still come
constexpr QSize usualPreview(460, 400);    // pixels
constexpr QSize smallestPreview(253, 266); // pixels
constexpr double bigPoints = 14;
constexpr double howPoints = 13;

bool isLow(const QWidget &window) {
    return window.screen()->availableSize().height() < lowScreen;
}

} // namespace

frmSimplePrint::frmSimplePrint(AppContext &ctx, DeviceLists &devices, const QString &helper, QWidget *owner)
    : BorderlessDialog("frmSimplePrint", owner), m_ctx(ctx), m_printer(new PrinterChoice(ctx, devices, helper, this)),
      lblHow(new QLabel(this)), lblDevice(new QLabel(this)), cboPrinter(new QComboBox(this)), m_hint(new QLabel(this)),
      lblCopies(new QLabel(this)), m_copies(new CopiesBox("txtNumbers", this)),
      cmdAdvanced(new PictureButton("more", PictureButton::CaptionPlace::Beside, this)) {
    fitPhoto();
    makeControls();
    layOut();
    showTexts(ctx.texts, *this);
    cboPrinter->setAccessibleName(lblDevice->text());
    m_copies->field()->setAccessibleName(lblCopies->text());
    picPrint1->setAccessibleName(ctx.texts.text("PrintPreview"));
    LoadPrinters();
    UpdatePreviews();
    connect(m_printer, &PrinterChoice::changed, this, &frmSimplePrint::printersChanged);
}

void frmSimplePrint::makeControls() {
    picPrint1 = new PagePreview(m_picture, usualPreview, this);
    picPrint1->setMinimumSize(smallestPreview);
    picPrint1->setObjectName("picPrint1");
    makeChoices();
    QFont big = font();
    big.setPointSizeF(bigPoints);
    for (QWidget *one : std::initializer_list<QWidget *>{lblDevice, cboPrinter, lblCopies}) {
        one->setFont(big);
    }
    lblHow->setObjectName("lblHow");
    QFont letters = font();
    letters.setPointSizeF(howPoints);
    lblHow->setFont(letters);
    lblHow->setWordWrap(true);
    lblHow->setAlignment(Qt::AlignCenter);
    lblHow->hide();
    lblDevice->setObjectName("lblDevice");
    lblDevice->setBuddy(cboPrinter);
    cboPrinter->setObjectName("cboPrinter");
    cboPrinter->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    cboPrinter->setMinimumContentsLength(14);
    cboPrinter->setIconSize({28, 28});
    connect(cboPrinter, &QComboBox::activated, this, &frmSimplePrint::choosePrinter);
    m_hint->setObjectName("lblPrinterHint");
    m_hint->setWordWrap(true);
    lblCopies->setObjectName("lblCopies");
    lblCopies->setBuddy(m_copies->field());
    cmdAdvanced->setObjectName("cmdAdvanced");
    cmdAdvanced->setLook(PictureButton::Look::Raised);
    cmdAdvanced->setLeastSide(simpleButton);
    connect(cmdAdvanced, &QAbstractButton::clicked, this, [this] {
        // The desktop's dialog asks the print system in the window's thread: only one that answers now may be asked.
        m_wantsDesktop = true;
        m_printer->searchAgain();
    });
}

void frmSimplePrint::makeChoices() {
    for (std::size_t i = 0; i < std::size(photosOnPage); ++i) {
        m_choices.push_back(
            {new PictureButton("print", PictureButton::CaptionPlace::Below, this), {.photos = photosOnPage[i]}});
        m_choices.back().button->setObjectName(QString("ImageX%1").arg(i + 1));
    }
    for (const PaperCraft &craft : paperCrafts()) {
        m_choices.push_back({new PictureButton("print", PictureButton::CaptionPlace::Below, this),
                             {.craft = &craft, .content = contentFor(craft, m_ctx.texts, m_picture)}});
        m_choices.back().button->setObjectName(craft.button);
    }
    auto *group = new QButtonGroup(this);
    const int picture = isLow(*this) ? lowPicture : layoutPicture;
    for (std::size_t i = 0; i < m_choices.size(); ++i) {
        PictureButton *button = m_choices[i].button;
        button->setLook(PictureButton::Look::Raised);
        button->setPictureSize(picture);
        button->setMinimumWidth(layoutPicture + 28);
        button->setCheckable(true);
        button->setChecked(i == 0);
        group->addButton(button);
        connect(button, &QAbstractButton::clicked, this, [this, i] { choose(i); });
    }
}

void frmSimplePrint::choose(std::size_t number) {
    m_layout = m_choices[number].layout;
    lblHow->setText(m_layout.craft != nullptr ? m_ctx.texts.text(m_layout.craft->how) : QString());
    lblHow->setVisible(m_layout.craft != nullptr);
    UpdatePreviews();
}

QVBoxLayout *frmSimplePrint::settingsColumn() {
    auto *layouts = new QGridLayout;
    layouts->setSpacing(8);
    for (int i = 0; i < static_cast<int>(m_choices.size()); ++i) {
        layouts->addWidget(m_choices[static_cast<std::size_t>(i)].button, i / choicesInRow, i % choicesInRow);
        layouts->setColumnStretch(i % choicesInRow, 1);
    }
    auto *copies = new QHBoxLayout;
    copies->addWidget(lblCopies, 1);
    copies->addWidget(m_copies);
    auto *buttons = new AnswerButtons(this);
    constexpr AnswerButtons::Look look{PictureButton::CaptionPlace::Beside, 64, 18, 170};
    AnimatedButton *cmdYes = buttons->add("cmdYes", "ok", look);
    AnimatedButton *cmdNo = buttons->add("cmdNo", "cancel", look);
    connect(cmdYes, &QAbstractButton::clicked, this, &QDialog::accept);
    connect(cmdNo, &QAbstractButton::clicked, this, &QDialog::reject);
    setDefaultButton(cmdYes);
    cmdYes->setFocus();
    auto *answers = new QHBoxLayout;
    answers->setSpacing(12);
    answers->addWidget(cmdYes, 1);
    answers->addWidget(cmdNo, 1);
    auto *column = new QVBoxLayout;
    const int between = isLow(*this) ? 0 : 8;
    column->setSpacing(isLow(*this) ? 6 : 8);
    column->addLayout(layouts);
    column->addSpacing(between);
    column->addWidget(lblDevice);
    column->addWidget(cboPrinter);
    column->addWidget(m_hint);
    column->addSpacing(between);
    column->addLayout(copies);
    column->addStretch(1);
    column->addWidget(cmdAdvanced, 0, Qt::AlignLeading);
    column->addSpacing(between);
    column->addLayout(answers);
    return column;
}

void frmSimplePrint::layOut() {
    auto *row = new QHBoxLayout;
    row->setSpacing(18);
    auto *sheets = new QVBoxLayout;
    sheets->setSpacing(8);
    sheets->addWidget(picPrint1, 1);
    sheets->addWidget(lblHow);
    row->addLayout(sheets, 1);
    row->addLayout(settingsColumn());
    body()->addLayout(row, 1);
}

void frmSimplePrint::resizeEvent(QResizeEvent *event) {
    BorderlessDialog::resizeEvent(event);
    const int shade = testAttribute(Qt::WA_TranslucentBackground) ? shadowMargin : 0;
    const int over = geometry().bottom() - shade - screen()->availableGeometry().bottom();
    if (isVisible() && over > 0) {
        move(x(), y() - over);
    }
}

void frmSimplePrint::fitPhoto() {
    m_picture = pictureForPreview(m_ctx.photo.picCanvas());
}

void frmSimplePrint::LoadPrinters() {
    const QSignalBlocker quiet(cboPrinter);
    QStringList shown;
    for (int i = 0; i < cboPrinter->count(); ++i) {
        shown << cboPrinter->itemText(i);
    }
    const QStringList entries = m_printer->printers() + QStringList{m_ctx.texts.text("PrintToPdf")};
    if (entries != shown) { // a list that is open stays so when the answer brings nothing new
        cboPrinter->clear();
        const qreal ratio = devicePixelRatioF();
        const QIcon printer(iconPixmap("print", 28, ratio));
        for (const QString &name : m_printer->printers()) {
            cboPrinter->addItem(printer, name);
        }
        cboPrinter->addItem(QIcon(iconPixmap("save", 28, ratio)), entries.last());
    }
    const bool looking = m_printer->search() == PrinterChoice::Search::Running;
    cboPrinter->setPlaceholderText(looking ? m_ctx.texts.text("PrintSearching") : QString());
    cboPrinter->setCurrentIndex(m_printer->isPdf()
                                    ? cboPrinter->count() - 1
                                    : static_cast<int>(m_printer->printers().indexOf(m_printer->printer())));
    m_hint->setText(m_printer->search() == PrinterChoice::Search::NoAnswer ? m_ctx.texts.text("PrintNoAnswer")
                                                                           : QString());
    m_hint->setVisible(!m_hint->text().isEmpty());
    cmdAdvanced->setEnabled(!looking);
}

void frmSimplePrint::choosePrinter(int index) {
    if (index == cboPrinter->count() - 1) {
        m_printer->choosePdf();
    } else {
        m_printer->choosePrinter(cboPrinter->itemText(index));
    }
}

void frmSimplePrint::UpdatePreviews() {
    const PrinterPaper paper = m_printer->paper().value_or(standardPaper());
    const QSize photo = m_ctx.photo.picCanvas().size();
    picPrint1->setPages(layOutPages(paper, photo, m_layout));
    for (const auto &[button, layout] : m_choices) {
        button->setPicture(
            sheetPixmap(layOutPages(paper, photo, layout), m_picture, button->pictureSize(), devicePixelRatioF()));
    }
}

void frmSimplePrint::printersChanged() {
    LoadPrinters();
    UpdatePreviews();
    if (m_wantsDesktop && m_printer->search() != PrinterChoice::Search::Running) {
        m_wantsDesktop = false;
        if (m_printer->search() == PrinterChoice::Search::Answered && isVisible()) {
            QTimer::singleShot(0, this, &frmSimplePrint::AdvancedPrinting); // after all who hear of the answer
        }
    }
}

void frmSimplePrint::AdvancedPrinting() {
    PrintJob job = shownJob();
    job.paper.reset();
    if (m_printer->isPdf()) {
        job.pdfFile = photoFolder(m_ctx) + '/' + m_ctx.texts.text("MyPicture") + ".pdf";
    }
    m_desktopJob = askDesktopToPrint(job, this);
    if (m_desktopJob) {
        accept();
    }
}

bool frmSimplePrint::wantsPdf() const {
    return !m_desktopJob && m_printer->isPdf();
}

std::optional<PrintJob> frmSimplePrint::ask() {
    if (exec() != Accepted) {
        return std::nullopt;
    }
    if (m_desktopJob) {
        return m_desktopJob;
    }
    return shownJob();
}

PrintJob frmSimplePrint::shownJob() const {
    return {.photo = m_ctx.photo.picCanvas(),
            .layout = m_layout,
            .copies = m_copies->copies(),
            .title = m_ctx.texts.text("ApplicationName"),
            .printer = m_printer->isPdf() ? QString() : m_printer->printer(),
            .pdfFile = {},
            .paper = m_printer->paper(),
            .options = {}};
}

} // namespace lumora
