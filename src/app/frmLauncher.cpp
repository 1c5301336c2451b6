#include "app/frmLauncher.h"

#include "guide/frmHelp.h"
#include "session/AppContext.h"
#include "session/LoadSettings.h"
#include "widgets/AnimatedButton.h"
#include "widgets/LockedMark.h"
#include "widgets/PictureButton.h"
#include "widgets/ScenePicture.h"
#include "widgets/Theme.h"
#include "widgets/WindowDragger.h"
#include "widgets/WindowTexts.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QScreen>
#include <QVBoxLayout>
#include <algorithm>

namespace lumora {

namespace {

constexpr int handSize = 64;           // pixels
constexpr int sceneHeight = 112;       // pixels
constexpr QSize modeSize(256, 270);    // pixels, of the two large buttons
constexpr QSize modePicture(160, 178); // the drawing is square: the rest is air above and below it
constexpr int neededHeight = 620;      // pixels of screen: on a lower one everything is smaller
constexpr double smallest = 0.6;
constexpr QColor entered(255, 128, 255, 51); // a tint of 20 per cent: the picture stays what is seen

/// How large the launcher may be on this screen, at most 1.
double roomy(const QScreen &screen) {
    return std::clamp(screen.availableSize().height() / double(neededHeight), smallest, 1.0);
}

/// A button with visible edges at rest, and with a disc of its own colour behind its picture.
class ModeButton : public AnimatedButton {
  public:
    ModeButton(const QString &loop, const QColor &disc, QWidget *parent)
        : AnimatedButton(loop, CaptionPlace::Below, parent), m_disc(disc) {
        setLoop(loop);
    }

  protected:
    void paintEvent(QPaintEvent *event) override {
        QPainter painter(this);
        paintPanel(painter, rect(), buttonCorner, colours::parchment);
        painter.setPen(Qt::NoPen);
        painter.setBrush(m_disc);
        painter.setRenderHint(QPainter::Antialiasing);
        const qreal radius = 0.54 * pictureSize().width();
        painter.drawEllipse(QPointF(width() / 2.0, 8 + pictureSize().height() / 2.0), radius, radius);
        painter.end();
        AnimatedButton::paintEvent(event);
    }

  private:
    const QColor &m_disc; ///< of the colours that are shown
};

/// A small button on the tint of the large ones.
class FootButton : public PictureButton {
  public:
    using PictureButton::PictureButton;

  protected:
    void paintEvent(QPaintEvent *event) override {
        QPainter painter(this);
        paintPanel(painter, rect(), buttonCorner, colours::parchment);
        painter.end();
        PictureButton::paintEvent(event);
    }
};

} // namespace

frmLauncher::frmLauncher(AppContext &context)
    : BorderlessDialog("frmLauncher", nullptr), m_context(context), lblTitle(new QLabel(this)),
      lblVersion(new QLabel(this)), picHand(new QLabel(this)), HR1(new QFrame(this)),
      cmdSimpleMode(modeButton("cmdSimpleMode", "simple-mode", colours::pressed)),
      cmdAdvMode(modeButton("cmdAdvMode", "advanced-mode", colours::checked)),
      cmdVideos(footButton("cmdVideos", "help")),
      cmdForMe(new PictureButton("for-me", PictureButton::CaptionPlace::None, this)),
      cmdExit(footButton("cmdExit", "exit")) {
    setAttribute(Qt::WA_DeleteOnClose);
    build();
    LoadLanguage();

    connect(cmdSimpleMode, &QAbstractButton::clicked, this, &frmLauncher::simpleModeWanted);
    connect(cmdAdvMode, &QAbstractButton::clicked, this, &frmLauncher::advancedModeWanted);
    connect(cmdVideos, &QAbstractButton::clicked, this, &frmLauncher::showHelp);
    connect(cmdForMe, &QAbstractButton::clicked, this, &frmLauncher::forMeWanted);
    connect(cmdExit, &QAbstractButton::clicked, this, &QWidget::close);
    for (PictureButton *button : std::initializer_list<PictureButton *>{cmdSimpleMode, cmdAdvMode, cmdVideos}) {
        button->setHoverColour(entered);
    }
    tmrHand.setObjectName("tmrHand");
    connect(&tmrHand, &QTimer::timeout, this, &frmLauncher::wave);
    (cmdSimpleMode->isEnabled() ? cmdSimpleMode : cmdAdvMode)->setFocus();
}

void frmLauncher::build() {
    lblTitle->setObjectName("lblTitle");
    lblTitle->setTextFormat(Qt::PlainText);
    QFont large = lblTitle->font();
    large.setPointSizeF(24 * roomy(*screen()));
    large.setBold(true);
    lblTitle->setFont(large);
    WindowDragger::install(lblTitle);
    picHand->setObjectName("picHand");
    picHand->setFixedSize(handSize, handSize);
    wave();
    lblVersion->setObjectName("lblVersion");
    lblVersion->setAlignment(Qt::AlignCenter);
    setFaint(*lblVersion);
    HR1->setObjectName("HR1");
    HR1->setFixedHeight(2);
    setThemedSheet(*HR1, "background: @line");

    auto *scene = new ScenePicture("launcher", buttonCorner, this);
    scene->setFixedHeight(qRound(sceneHeight * roomy(*screen())));
    // The window is as wide as its two large buttons; a long title becomes smaller, then shorter.
    scene->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    WindowDragger::install(scene);
    auto *title = new QHBoxLayout(scene);
    title->setContentsMargins(0, 0, 0, 24); // the text is drawn above the hills
    title->addStretch(1);
    title->addWidget(picHand);
    title->addWidget(lblTitle);
    title->addStretch(1);
    auto *modes = new QHBoxLayout;
    modes->setSpacing(20);
    modes->addWidget(cmdSimpleMode);
    modes->addWidget(cmdAdvMode);
    cmdForMe->setObjectName("cmdForMe");
    cmdForMe->setPictureSize(46);
    auto *foot = new QHBoxLayout;
    foot->addWidget(cmdVideos);
    foot->addWidget(cmdForMe);
    foot->addWidget(lblVersion, 1);
    foot->addWidget(cmdExit);
    body()->setContentsMargins(28, 10, 28, 20);
    body()->setSpacing(16);
    body()->addWidget(scene);
    body()->addLayout(modes);
    body()->addWidget(HR1);
    addFoot(foot);
}

AnimatedButton *frmLauncher::modeButton(const QString &name, const QString &loop, const QColor &disc) {
    auto *button = new ModeButton(loop, disc, this);
    button->setObjectName(name);
    QFont font = button->font();
    font.setPointSizeF(16);
    font.setBold(true);
    button->setFont(font);
    const double scale = roomy(*screen());
    button->setPictureSize(modePicture * scale);
    button->setFixedSize(modeSize.width(), qRound(modeSize.height() * scale));
    return button;
}

PictureButton *frmLauncher::footButton(const QString &name, const QString &icon) {
    auto *button = new FootButton(icon, PictureButton::CaptionPlace::Beside, this);
    button->setObjectName(name);
    button->setPictureSize(40);
    return button;
}

void frmLauncher::LoadLanguage() {
    showTexts(m_context.texts, *this);
    lblVersion->setText(m_context.texts.text("Version").arg(versionNumber()));
    cmdExit->setText(m_context.texts.text("Exit"));
    const QString why = m_context.texts.text("LockedTip");
    if (const auto mode = m_context.settings.onlyMode()) {
        showLocked(*(mode == Settings::Mode::Simple ? cmdAdvMode : cmdSimpleMode), why);
    }
    if (m_context.settings.isLocked(Lock::Exit)) {
        showLocked(*cmdExit, why);
    }
}

void frmLauncher::SetupSimpleMode() {
    ApplySimpleSettings(m_context);
}

void frmLauncher::wave() {
    m_handFrame = AnimatedButton::nextFrame(m_handFrame);
    picHand->setPixmap(iconPixmap(QString(":/loops/hand-%1.svg").arg(m_handFrame), handSize, devicePixelRatioF()));
    for (AnimatedButton *button : {cmdSimpleMode, cmdAdvMode}) { // animate the button that Enter or a click would press
        const bool chosen = button->hasFocus() || button->underMouse();
        button->setFrame(chosen ? AnimatedButton::nextFrame(button->frame()) : 1);
    }
}

void frmLauncher::showEvent(QShowEvent *event) {
    BorderlessDialog::showEvent(event);
    wakeHand();
}

void frmLauncher::wakeHand() {
    if (isVisible() && motionWanted()) {
        tmrHand.start(AnimatedButton::interval);
    } else {
        tmrHand.stop();
        m_handFrame = AnimatedButton::frames;
        wave(); // to the first picture
    }
}

void frmLauncher::hideEvent(QHideEvent *event) {
    tmrHand.stop();
    BorderlessDialog::hideEvent(event);
}

void frmLauncher::changeEvent(QEvent *event) {
    if (event->type() == QEvent::LanguageChange) {
        LoadLanguage();
        wakeHand();
    }
    BorderlessDialog::changeEvent(event);
}

void frmLauncher::closeEvent(QCloseEvent *event) {
    if (m_context.settings.isLocked(Lock::Exit)) {
        event->ignore(); // the desktop's log-out ends the program by a signal
        return;
    }
    BorderlessDialog::closeEvent(event);
}

void frmLauncher::showHelp() {
    frmHelp::showModal(m_context, this);
}

void frmLauncher::keyPressEvent(QKeyEvent *event) {
    switch (event->key()) {
    case Qt::Key_F1:
        showHelp();
        break;
    case Qt::Key_Escape: // closes a prompt, not the program
        break;
    default:
        BorderlessDialog::keyPressEvent(event);
    }
}

} // namespace lumora
