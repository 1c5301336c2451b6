#include "app/frmSplash.h"

#include "dialogs/frmMessage.h"
#include "session/AppContext.h"
#include "widgets/AnimatedButton.h"
#include "widgets/ScenePicture.h"
#include "widgets/Theme.h"
#include "widgets/TitleStrip.h"
#include "widgets/WindowTexts.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QScreen>
#include <QSettings>
#include <QVBoxLayout>

namespace lumora {

namespace {

constexpr int sceneWidth = 580;                  // pixels
constexpr int splashHeight = 340;                // pixels
constexpr int throbberSize = 200;                // pixels
constexpr int hillHeight = 84;                   // pixels
constexpr QRect crayonPlace(442, 206, 112, 112); ///< on the hill

QLabel *paintedLabel(const QString &name, double points, bool bold, const QColor &colour, QWidget *parent) {
    auto *label = new QLabel(parent);
    label->setObjectName(name);
    QFont font = label->font();
    font.setPointSizeF(points);
    font.setBold(bold);
    label->setFont(font);
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText, colour);
    label->setPalette(palette);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

} // namespace

SplashEnd decideSplash(Switch displayMessage, QSize screen) {
    if (displayMessage == Switch::Off) {
        return SplashEnd::Launcher;
    }
    if (displayMessage == Switch::On) {
        return screen.width() > 800 && screen.height() > 600 ? SplashEnd::Launcher : SplashEnd::NoticeThenLauncher;
    }
    return SplashEnd::Never;
}

frmSplash::frmSplash(AppContext &context) : BorderlessDialog("frmSplash", nullptr), m_context(context) {
    setAttribute(Qt::WA_DeleteOnClose);
    build();
    lblVersion->setText(context.texts.text("Version").arg(versionNumber()));
    showTexts(context.texts, *this);
    recordInstallation();
    txtDisplayMessage = context.settings.read<Setting::ScreenNotice>();

    tmrThrobber.setObjectName("tmrThrobber");
    tmrLoader.setObjectName("tmrLoader");
    tmr2ndUnloader.setObjectName("tmr2ndUnloader");
    // Without animations there is less to see, so the wait is shorter.
    const int pause = motionWanted() ? 1500 : 700; // milliseconds
    for (QTimer *timer : {&tmrLoader, &tmr2ndUnloader}) {
        timer->setSingleShot(true);
        timer->setInterval(pause);
        connect(timer, &QTimer::timeout, this, &frmSplash::showLauncher);
    }
    connect(&tmrThrobber, &QTimer::timeout, this, &frmSplash::nextPicture);
    if (motionWanted()) {
        tmrThrobber.start(AnimatedButton::interval);
    }
}

void frmSplash::build() {
    picTBar()->hide();
    picTBar()->lblCaption()->setObjectName("lblStripCaption"); // the splash has its own lblCaption
    body()->setContentsMargins(0, 0, 0, 0);
    Frame1 = new ScenePicture("splash", panelCorner - 2, this);
    Frame1->setObjectName("Frame1");
    Frame1->setFixedSize(sceneWidth, splashHeight);
    body()->addWidget(Frame1);

    for (size_t i = 0; i < m_pictures.size(); ++i) {
        const int frame = static_cast<int>(i) % AnimatedButton::frames + 1;
        m_pictures[i] = new QLabel(this);
        m_pictures[i]->setObjectName(QString("Pic%1").arg(i + 1));
        m_pictures[i]->setPixmap(
            iconPixmap(QString(":/loops/throbber-%1.svg").arg(frame), throbberSize, devicePixelRatioF()));
        m_pictures[i]->hide();
    }
    picThrobber = new QLabel(Frame1);
    picThrobber->setObjectName("picThrobber");
    picThrobber->setFixedSize(throbberSize, throbberSize);
    picThrobber->setPixmap(m_pictures.front()->pixmap());
    picCrayon = new QLabel(Frame1);
    picCrayon->setObjectName("picCrayon");
    picCrayon->setGeometry(crayonPlace);
    nextCrayon();
    lblCaption = paintedLabel("lblCaption", 46, true, colours::ink, Frame1);
    lblVersion = paintedLabel("lblVersion", 12, false, colours::ink, Frame1);

    auto *texts = new QVBoxLayout;
    texts->setSpacing(0);
    texts->addStretch(1);
    texts->addWidget(lblCaption);
    texts->addWidget(lblVersion);
    texts->addStretch(1);
    auto *row = new QHBoxLayout(Frame1);
    row->setContentsMargins(36, 0, 24, hillHeight + 12);
    row->setSpacing(24);
    row->addWidget(picThrobber);
    row->addLayout(texts, 1);
}

void frmSplash::recordInstallation() const {
    QSettings store("Corvane Software", "Lumora");
    store.setValue("GlobalInstallPath", m_context.installation.programFolder);
    store.setValue("Version", versionNumber());
}

void frmSplash::showEvent(QShowEvent *event) {
    BorderlessDialog::showEvent(event);
    if (!m_wentOn) {
        m_wentOn = true;
        // Queued, so that the splash is painted before another window covers it.
        QMetaObject::invokeMethod(this, "goOn", Qt::QueuedConnection);
    }
}

/// Esc would close it, and the program with it. Only one that stays for good can be left that way.
void frmSplash::keyPressEvent(QKeyEvent *event) {
    const bool stays = decideSplash(txtDisplayMessage, screenPixels()) == SplashEnd::Never;
    if (event->key() != Qt::Key_Escape || stays) {
        BorderlessDialog::keyPressEvent(event);
    }
}

QSize frmSplash::screenPixels() const {
    return (QSizeF(screen()->size()) * screen()->devicePixelRatio()).toSize();
}

void frmSplash::goOn() {
    switch (decideSplash(txtDisplayMessage, screenPixels())) {
    case SplashEnd::Launcher:
        tmrLoader.start();
        break;
    case SplashEnd::NoticeThenLauncher:
        showNotice();
        break;
    case SplashEnd::Never:
        break;
    }
}

void frmSplash::showNotice() {
    auto *notice = new frmMessage(m_context, this);
    notice->setAttribute(Qt::WA_DeleteOnClose);
    connect(notice, &QDialog::finished, &tmr2ndUnloader, qOverload<>(&QTimer::start));
    notice->open();
}

void frmSplash::nextPicture() {
    m_throbber = AnimatedButton::nextFrame(m_throbber);
    picThrobber->setPixmap(m_pictures[static_cast<size_t>(m_throbber) - 1]->pixmap());
    nextCrayon();
}

void frmSplash::nextCrayon() {
    const QString frame = QString(":/loops/simple-mode-%1.svg").arg(m_throbber);
    picCrayon->setPixmap(iconPixmap(frame, crayonPlace.width(), devicePixelRatioF()));
}

void frmSplash::showLauncher() {
    Q_EMIT launcherWanted();
    close();
}

} // namespace lumora
