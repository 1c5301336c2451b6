#include "output/print/frmPrint.h"

#include "output/print/CopiesBox.h"
#include "output/print/PagePreview.h"
#include "output/print/PrinterChoice.h"
#include "session/AppContext.h"
#include "widgets/AnimatedButton.h"
#include "widgets/AnswerButtons.h"
#include "widgets/ElidedLabel.h"
#include "widgets/Tick.h"
#include "widgets/WindowTexts.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QVBoxLayout>

namespace lumora {

namespace {

constexpr QSize previewSize(340, 260); // pixels

} // namespace

frmPrint::frmPrint(AppContext &ctx, DeviceLists &devices, const QString &helper, QWidget *owner)
    : frmPrint("frmPrint", ctx, devices, helper, owner) {
    showTexts(ctx.texts, *this);
    showPage();
}

frmPrint::frmPrint(const QString &name, AppContext &ctx, DeviceLists &devices, const QString &helper, QWidget *owner)
    : BorderlessDialog(name, owner), m_ctx(ctx), m_printer(new PrinterChoice(ctx, devices, helper, this)),
      picPrint(new PagePreview(pictureForPreview(ctx.photo.picCanvas()), previewSize, this)),
      lblPrompt(new QLabel(this)), lblDevice(new ElidedLabel(Qt::ElideMiddle, this)), m_questions(new QVBoxLayout) {
    setWindowTitle(ctx.texts.text("DlgPrintTitle"));
    body()->setContentsMargins(28, 14, 28, 24);
    body()->setSpacing(8);
    lblPrompt->setObjectName("lblPrompt");
    lblPrompt->setAlignment(Qt::AlignCenter);
    QFont large = lblPrompt->font();
    large.setPointSizeF(18);
    lblPrompt->setFont(large);
    lblDevice->setObjectName("lblDevice");
    lblDevice->setAlignment(Qt::AlignCenter);
    lblDevice->setProperty("faint", true);
    picPrint->setObjectName("picPrint");
    picPrint->setAccessibleName(ctx.texts.text("PrintPreview"));
    m_questions->setSpacing(8);
    body()->addWidget(picPrint, 1);
    body()->addWidget(lblDevice);
    body()->addWidget(lblPrompt);
    body()->addLayout(m_questions);
    addAnswers();
    connect(m_printer, &PrinterChoice::changed, this, &frmPrint::showPage);
}

void frmPrint::addAnswers() {
    auto *buttons = new AnswerButtons(this);
    constexpr AnswerButtons::Look look{PictureButton::CaptionPlace::Below, 72, 14, 150};
    AnimatedButton *cmdYes = buttons->add("cmdYes", "ok", look);
    AnimatedButton *cmdNo = buttons->add("cmdNo", "cancel", look);
    auto *answers = new QHBoxLayout;
    answers->setSpacing(16);
    answers->addWidget(cmdYes, 1);
    answers->addWidget(cmdNo, 1);
    body()->addSpacing(4);
    addFoot(answers);
    connect(cmdYes, &QAbstractButton::clicked, this, &QDialog::accept);
    connect(cmdNo, &QAbstractButton::clicked, this, &QDialog::reject);
    setDefaultButton(cmdYes);
    cmdYes->setFocus();
}

void frmPrint::showPage() {
    const PrinterPaper paper = m_printer->paper().value_or(standardPaper());
    picPrint->setPages(layOutPages(paper, m_ctx.photo.picCanvas().size(), layoutWanted()));
    const Texts &texts = m_ctx.texts;
    lblDevice->setText(m_printer->search() == PrinterChoice::Search::NoAnswer ? texts.text("PrintNoAnswer")
                       : m_printer->isPdf()                                   ? texts.text("PrintToPdf")
                       : m_printer->printer().isEmpty()                       ? texts.text("PrintSearching")
                                                        : texts.text("PrintOn").arg(m_printer->printer()));
}

bool frmPrint::wantsPdf() const {
    return m_printer->isPdf();
}

std::optional<PrintJob> frmPrint::ask() {
    if (exec() != Accepted) {
        return std::nullopt;
    }
    return PrintJob{.photo = m_ctx.photo.picCanvas(),
                    .layout = layoutWanted(),
                    .copies = copies(),
                    .title = m_ctx.texts.text("ApplicationName"),
                    .printer = m_printer->printer(),
                    .pdfFile = {},
                    .paper = m_printer->paper(),
                    .options = {}};
}

frmPrint2::frmPrint2(AppContext &ctx, DeviceLists &devices, const QString &helper, QWidget *owner)
    : frmPrint("frmPrint2", ctx, devices, helper, owner), m_copies(new CopiesBox("txtNumCopies", this)),
      chkCentre(new Tick(this)), chkFit2Page(new Tick(this)) {
    auto *lblNumCopies = new QLabel(this);
    lblNumCopies->setObjectName("lblNumCopies");
    lblNumCopies->setBuddy(m_copies->field());
    auto *row = new QHBoxLayout;
    row->addWidget(lblNumCopies, 1);
    row->addWidget(m_copies);
    questions()->addLayout(row);
    chkCentre->setObjectName("chkCentre");
    chkFit2Page->setObjectName("chkFit2Page");
    for (QCheckBox *box : {chkCentre, chkFit2Page}) {
        box->setChecked(true);
        questions()->addWidget(box);
        connect(box, &QCheckBox::toggled, this, [this] { showPage(); });
    }
    showTexts(ctx.texts, *this);
    m_copies->field()->setAccessibleName(lblNumCopies->text());
    showPage();
}

PrintLayout frmPrint2::layoutWanted() const {
    return {.photos = 1, .centre = chkCentre->isChecked(), .fit = chkFit2Page->isChecked()};
}

int frmPrint2::copies() const {
    return m_copies->copies();
}

} // namespace lumora
