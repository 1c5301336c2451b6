#include "dialogs/frmPrompt.h"

#include "imaging/Scale.h"
#include "session/AppContext.h"
#include "view/PhotoTable.h"
#include "view/Thumbnails.h"
#include "widgets/AnimatedButton.h"
#include "widgets/AnswerButtons.h"
#include "widgets/Theme.h"
#include "widgets/TitleStrip.h"
#include "widgets/WindowTexts.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QScreen>
#include <QVBoxLayout>

namespace lumora {

/// What is shown above the question.
enum class PromptPicture {
    Drawing, ///< the row's icon
    File,    ///< the photo in the file that would be replaced, once it is read; the icon until then
    Photo,   ///< the photo with the changes that may be lost
    Print,   ///< the photo that the question is about, large
};

struct PromptRow {
    PromptKind kind;
    const char *window; // also finds the texts
    PromptPicture picture;
    const char *icon;
    double textPoints;
    int answerPicture; // pixels
    int answerGap;     // pixels above the answers, beside the usual spacing
    bool cancelButton; // a third way to close it, cmdExit
    bool noLoses;      // No throws work away: it is smaller and stands apart, so that it is not hit in a hurry
    Answer enter;      // the initial default button: never the answer that loses data
};

namespace {

constexpr PromptRow prompts[] = {
    {PromptKind::Exit, "frmExit", PromptPicture::Drawing, "exit", 18, 88, 6, false, false, Answer::Yes},
    {PromptKind::Save, "frmSave", PromptPicture::Photo, "save", 18, 88, 6, true, true, Answer::Yes},
    {PromptKind::SaveBeforeOpen, "frmSave2", PromptPicture::Photo, "save", 18, 88, 6, true, true, Answer::Yes},
    {PromptKind::Overwrite, "frmOverwrite", PromptPicture::File, "save", 18, 88, 6, false, false, Answer::No},
    {PromptKind::Recover, "frmRecover", PromptPicture::Print, "", 16, 72, 0, false, true, Answer::Yes},
};

const PromptRow &rowOf(PromptKind kind) {
    return prompts[static_cast<int>(kind)];
}

constexpr int drawingSize = 88;         // pixels
constexpr int gapBeforeLoss = 40;       // pixels
constexpr QSize filePhoto(200, 150);    // pixels
constexpr QSize largestPrint(440, 320); // pixels
constexpr QSize aroundPrint(120, 340);  // pixels of the screen that the rest of the window needs
constexpr int mount = 8;                // pixels of white paper round a print
constexpr int smallestPrintSide = 96;   // pixels, with the mount: a strip or a dot is still seen to be a photo

/// The photo on a white mount, like a print on a table; smaller where the screen is.
QPixmap print(const QImage &photo, const QScreen &screen, qreal ratio) {
    const QSize free = screen.availableSize() - aroundPrint;
    const QSize room = largestPrint.boundedTo(free.expandedTo({smallestPrintSide, smallestPrintSide})) * ratio;
    const QSize fitted = photo.size().scaled(photo.size().boundedTo(room), Qt::KeepAspectRatio);
    const QImage small = scaleByAveraging(photo, std::max(1, fitted.width()), std::max(1, fitted.height()));
    const int paper = qRound(2 * mount * ratio);
    const int least = qRound(smallestPrintSide * ratio);
    QPixmap pixmap((small.size() + QSize(paper, paper)).expandedTo(QSize(least, least)));
    pixmap.fill(Qt::white);
    QPainter painter(&pixmap);
    painter.drawImage((pixmap.width() - small.width()) / 2, (pixmap.height() - small.height()) / 2, small);
    painter.setPen(colours::line);
    painter.drawRect(0, 0, pixmap.width() - 1, pixmap.height() - 1);
    painter.end();
    pixmap.setDevicePixelRatio(ratio);
    return pixmap;
}

/// Breaks a text that does not fit on one line into lines of similar length.
void balanceLines(QLabel &label) {
    const int whole = label.fontMetrics().horizontalAdvance(label.text());
    const int lines = 1 + whole / largestPrint.width();
    label.setWordWrap(true);
    label.setFixedWidth(std::min(largestPrint.width(), whole / lines * 6 / 5 + 1));
    label.setMinimumHeight(label.heightForWidth(label.width()));
}

} // namespace

frmPrompt::frmPrompt(AppContext &ctx, PromptKind kind, QWidget *owner, const QImage &photo)
    : BorderlessDialog(rowOf(kind).window, owner), picPrompt(new QLabel(this)), lblPrompt(new QLabel(this)) {
    const PromptRow &row = rowOf(kind);
    body()->setContentsMargins(28, 18, 28, 26);
    addQuestion(row);
    addAnswers(ctx, row);
    showTexts(ctx.texts, *this);
    setAccessibleDescription(lblPrompt->text());
    showPicture(ctx, row, photo);
}

void frmPrompt::addQuestion(const PromptRow &row) {
    picPrompt->setObjectName(row.picture == PromptPicture::Print ? "picRecover" : "picPrompt");
    picPrompt->setAlignment(Qt::AlignCenter);
    lblPrompt->setObjectName("lblPrompt");
    QFont large = lblPrompt->font();
    large.setPointSizeF(row.textPoints);
    lblPrompt->setFont(large);
    lblPrompt->setTextFormat(Qt::PlainText);
    lblPrompt->setAlignment(Qt::AlignCenter);
    body()->addWidget(picPrompt);
    body()->addWidget(lblPrompt, 0, row.picture == PromptPicture::Print ? Qt::AlignHCenter : Qt::Alignment());
}

void frmPrompt::addAnswers(AppContext &ctx, const PromptRow &row) {
    auto *buttons = new AnswerButtons(this);
    const AnswerButtons::Look large{PictureButton::CaptionPlace::Below, row.answerPicture, 14, 150};
    const AnswerButtons::Look small{PictureButton::CaptionPlace::Below, row.answerPicture / 2, 11, 96};
    auto *answers = new QHBoxLayout;
    answers->setSpacing(16);
    const struct {
        const char *name, *loop;
        Answer answer;
    } rows[] = {{"cmdYes", "ok", Answer::Yes}, {"cmdNo", "cancel", Answer::No}};
    for (const auto &[name, loop, answer] : rows) {
        const bool apart = row.noLoses && answer == Answer::No;
        AnimatedButton *button = buttons->add(name, loop, apart ? small : large);
        answers->addSpacing(apart ? gapBeforeLoss : 0);
        answers->addWidget(button, apart ? 0 : 1, apart ? Qt::AlignBottom : Qt::Alignment());
        connect(button, &QAbstractButton::clicked, this, [this, chosen = answer] {
            m_answer = chosen;
            accept();
        });
        if (answer == row.enter) {
            button->setFocus();
            setDefaultButton(button);
        }
    }
    body()->addSpacing(row.answerGap);
    addFoot(answers);
    if (row.cancelButton) {
        PictureButton *cmdExit = picTBar()->addCloseButton("cmdExit");
        picTBar()->setButtonSide(ctx.flags.SimpleModeOn ? simpleButton : titleButton);
        cmdExit->setToolTip(ctx.texts.text("DlgSaveCancelButton"));
        connect(cmdExit, &QAbstractButton::clicked, this, &QDialog::reject);
    }
}

void frmPrompt::showPicture(AppContext &ctx, const PromptRow &row, const QImage &photo) {
    if (row.picture == PromptPicture::Print) {
        picPrompt->setPixmap(print(photo, *screen(), devicePixelRatioF()));
        picPrompt->setAccessibleName(lblPrompt->text());
        balanceLines(*lblPrompt);
        return;
    }
    picPrompt->setPixmap(iconPixmap(row.icon, drawingSize, devicePixelRatioF()));
    if (row.picture == PromptPicture::File) {
        showFile(ctx.fields.txtSimpleSavePath);
    } else if (const QImage photoNow = ctx.photo.pic2nd(); row.picture == PromptPicture::Photo && !photoNow.isNull()) {
        picPrompt->setPixmap(smallPhoto(photoNow, filePhoto, devicePixelRatioF(), Beneath::Checks));
        picPrompt->setAccessibleName(lblPrompt->text());
    }
}

void frmPrompt::showFile(const QString &path) {
    picPrompt->setMinimumHeight(filePhoto.height());
    const qreal ratio = devicePixelRatioF();
    auto *thumbnails = new Thumbnails(qRound(filePhoto.width() * ratio), this);
    connect(thumbnails, &Thumbnails::made, this, [this, ratio](const QString &, const QImage &photo) {
        if (!photo.isNull()) {
            picPrompt->setPixmap(smallPhoto(photo, filePhoto, ratio, Beneath::Checks));
        }
    });
    thumbnails->want({path});
}

Answer frmPrompt::ask() {
    m_answer = Answer::Cancelled;
    exec();
    return m_answer;
}

Answer ask(AppContext &ctx, PromptKind kind, QWidget *owner, const QImage &photo) {
    return frmPrompt(ctx, kind, owner, photo).ask();
}

} // namespace lumora
