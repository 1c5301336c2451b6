#include "dialogs/frmPrompt.h"

#include "session/AppContext.h"
#include "view/Thumbnails.h"
#include "widgets/AnimatedButton.h"
#include "widgets/PictureButton.h"
#include "widgets/Theme.h"
#include "widgets/TitleStrip.h"
#include "widgets/WindowTexts.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace lumora {

namespace {

struct PromptRow {
    PromptKind kind;
    const char *window;
    const char *picture;
    bool cancelButton;  // a third way out, cmdExit
    Answer enterAnswer; // what Enter gives at first: never the answer that loses something
};

constexpr PromptRow prompts[] = {
    {PromptKind::Exit, "frmExit", "exit", false, Answer::Yes},
    {PromptKind::Save, "frmSave", "save", true, Answer::Yes},
    {PromptKind::SaveBeforeOpen, "frmSave2", "save", true, Answer::Yes},
    {PromptKind::Overwrite, "frmOverwrite", "save", false, Answer::No},
};

const PromptRow &rowOf(PromptKind kind) {
    return prompts[static_cast<int>(kind)];
}

constexpr int pictureSize = 88; // pixels, of the question and of its answers
constexpr int photoSize = 200;  // pixels, of the photo that would be replaced

} // namespace

frmPrompt::frmPrompt(AppContext &ctx, PromptKind kind, QWidget *owner)
    : BorderlessDialog(rowOf(kind).window, owner), m_picture(new QLabel(this)), lblPrompt(new QLabel(this)),
      tmrYes(this) {
    const PromptRow &row = rowOf(kind);
    lblPrompt->setObjectName("lblPrompt");
    QFont large = lblPrompt->font();
    large.setPointSizeF(18);
    lblPrompt->setFont(large);
    lblPrompt->setTextFormat(Qt::PlainText);
    lblPrompt->setAlignment(Qt::AlignCenter);
    m_picture->setAlignment(Qt::AlignCenter);
    body()->setContentsMargins(28, 18, 28, 26);
    body()->addWidget(m_picture);
    body()->addWidget(lblPrompt);

    cmdYes = addAnswer("cmdYes", "yes", Answer::Yes);
    cmdNo = addAnswer("cmdNo", "no", Answer::No);
    auto *answers = new QHBoxLayout;
    answers->setSpacing(16);
    answers->addWidget(cmdYes, 1);
    answers->addWidget(cmdNo, 1);
    body()->addSpacing(6);
    body()->addLayout(answers);
    if (row.cancelButton) {
        PictureButton *cmdExit = picTBar()->addCloseButton("cmdExit");
        cmdExit->setToolTip(ctx.texts.text("DlgSaveCancelButton"));
        connect(cmdExit, &QAbstractButton::clicked, this, &QDialog::reject);
    }
    showTexts(ctx.texts, *this);
    addPicture(ctx, kind);

    AnimatedButton *first = row.enterAnswer == Answer::Yes ? cmdYes : cmdNo;
    first->setFocus();
    setDefaultButton(first);
    tmrYes.setObjectName("tmrYes");
    tmrYes.setInterval(AnimatedButton::interval);
    connect(&tmrYes, &QTimer::timeout, this, &frmPrompt::nextFrame);
}

AnimatedButton *frmPrompt::addAnswer(const QString &name, const QString &loop, Answer answer) {
    auto *button = new AnimatedButton(this);
    button->setObjectName(name);
    button->setLoop(loop);
    button->setLook(PictureButton::Look::Raised);
    button->setCaptionPlace(PictureButton::CaptionPlace::Below);
    button->setPictureSize(pictureSize);
    QFont large = button->font();
    large.setPointSizeF(14);
    button->setFont(large);
    button->setMinimumWidth(150);
    connect(button, &QAbstractButton::clicked, this, [this, answer] {
        m_answer = answer;
        accept();
    });
    return button;
}

void frmPrompt::addPicture(AppContext &ctx, PromptKind kind) {
    m_picture->setPixmap(iconPixmap(rowOf(kind).picture, pictureSize, devicePixelRatioF()));
    if (kind != PromptKind::Overwrite) {
        return;
    }
    // Which photo would be replaced is best said by showing it.
    m_picture->setMinimumHeight(photoSize * 3 / 4);
    const qreal ratio = devicePixelRatioF();
    auto *thumbnails = new Thumbnails(qRound(photoSize * ratio), this);
    connect(thumbnails, &Thumbnails::made, this, [this, ratio](const QString &, const QImage &photo) {
        if (!photo.isNull()) {
            QPixmap pixmap = QPixmap::fromImage(photo).scaled(QSize(photoSize, photoSize * 3 / 4) * ratio,
                                                              Qt::KeepAspectRatio, Qt::SmoothTransformation);
            pixmap.setDevicePixelRatio(ratio);
            m_picture->setPixmap(pixmap);
        }
    });
    thumbnails->want({ctx.fields.txtSimpleSavePath});
}

void frmPrompt::nextFrame() {
    m_frame = AnimatedButton::nextFrame(m_frame);
    cmdYes->setFrame(m_frame);
    cmdNo->setFrame(m_frame);
}

Answer frmPrompt::ask() {
    m_answer = Answer::Cancelled;
    tmrYes.start();
    exec();
    tmrYes.stop();
    return m_answer;
}

Answer ask(AppContext &ctx, PromptKind kind, QWidget *owner) {
    return frmPrompt(ctx, kind, owner).ask();
}

} // namespace lumora
