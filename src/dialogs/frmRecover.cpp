#include "dialogs/frmRecover.h"

#include "imaging/Scale.h"
#include "session/AppContext.h"
#include "widgets/AnimatedButton.h"
#include "widgets/Theme.h"
#include "widgets/WindowTexts.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

namespace lumora {

namespace {

constexpr int answerPicture = 72;       // pixels, of the drawings on Yes and No
constexpr QSize largestPhoto(440, 320); // pixels
constexpr int mount = 8;                // pixels of white paper round the photo
constexpr int smallestPhotoSide = 96;   // pixels, with the mount: a strip or a dot is still seen to be a photo

/// The photo on a white mount, as a print lies on the table.
QPixmap print(const QImage &photo, qreal ratio) {
    const QSize room = largestPhoto * ratio;
    const QSize fitted = photo.size().scaled(photo.size().boundedTo(room), Qt::KeepAspectRatio);
    const QImage small = scaleByAveraging(photo, std::max(1, fitted.width()), std::max(1, fitted.height()));
    const int paper = qRound(2 * mount * ratio);
    const int least = qRound(smallestPhotoSide * ratio);
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

/// Breaks a text that does not fit into one line into lines of about the same length.
void balanceLines(QLabel &label) {
    const int whole = label.fontMetrics().horizontalAdvance(label.text());
    const int lines = 1 + whole / largestPhoto.width();
    label.setFixedWidth(std::min(largestPhoto.width(), whole / lines * 6 / 5 + 1));
    label.setMinimumHeight(label.heightForWidth(label.width()));
}

} // namespace

frmRecover::frmRecover(AppContext &ctx, const QImage &photo, QWidget *owner)
    : BorderlessDialog("frmRecover", owner), lblPrompt(new QLabel(this)), tmrYes(this) {
    auto *picture = new QLabel(this);
    picture->setObjectName("picRecover");
    picture->setAlignment(Qt::AlignCenter);
    picture->setPixmap(print(photo, devicePixelRatioF()));
    lblPrompt->setObjectName("lblPrompt");
    QFont large = lblPrompt->font();
    large.setPointSizeF(16);
    lblPrompt->setFont(large);
    lblPrompt->setTextFormat(Qt::PlainText);
    lblPrompt->setAlignment(Qt::AlignCenter);
    lblPrompt->setWordWrap(true);
    body()->setContentsMargins(28, 18, 28, 26);
    body()->addWidget(picture);
    body()->addWidget(lblPrompt, 0, Qt::AlignHCenter);

    cmdYes = addAnswer("cmdYes", "yes", Choice::Yes);
    cmdNo = addAnswer("cmdNo", "no", Choice::No);
    auto *answers = new QHBoxLayout;
    answers->setSpacing(16);
    answers->addWidget(cmdYes, 1);
    answers->addWidget(cmdNo, 1);
    body()->addLayout(answers);
    showTexts(ctx.texts, *this);
    picture->setAccessibleName(lblPrompt->text());
    balanceLines(*lblPrompt);

    cmdYes->setFocus();
    setDefaultButton(cmdYes);
    tmrYes.setObjectName("tmrYes");
    tmrYes.setInterval(AnimatedButton::interval);
    connect(&tmrYes, &QTimer::timeout, this, &frmRecover::nextFrame);
}

AnimatedButton *frmRecover::addAnswer(const QString &name, const QString &loop, Choice choice) {
    auto *button = new AnimatedButton(this);
    button->setObjectName(name);
    button->setLoop(loop);
    button->setLook(PictureButton::Look::Raised);
    button->setCaptionPlace(PictureButton::CaptionPlace::Below);
    button->setPictureSize(answerPicture);
    QFont large = button->font();
    large.setPointSizeF(14);
    button->setFont(large);
    connect(button, &QAbstractButton::clicked, this, [this, choice] {
        m_choice = choice;
        accept();
    });
    return button;
}

void frmRecover::nextFrame() {
    m_frame = AnimatedButton::nextFrame(m_frame);
    cmdYes->setFrame(m_frame);
    cmdNo->setFrame(m_frame);
}

frmRecover::Choice frmRecover::ask() {
    m_choice = Choice::Later;
    tmrYes.start();
    exec();
    tmrYes.stop();
    return m_choice;
}

} // namespace lumora
