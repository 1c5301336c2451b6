#include "dialogs/frmWelcome.h"

#include "session/AppContext.h"
#include "widgets/AnimatedButton.h"
#include "widgets/AnswerButtons.h"
#include "widgets/Theme.h"
#include "widgets/Tick.h"
#include "widgets/WindowTexts.h"

#include <QCheckBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

namespace lumora {

namespace {

constexpr int blinkInterval = 450; // milliseconds: slow enough for photosensitive users
constexpr int ringRoom = 9;        // pixels around the button
constexpr int crayonSize = 76;     // pixels

/// A ring drawn around one button of a window; transparent for mouse clicks.
class Ring : public QWidget {
  public:
    Ring(QWidget *window, QWidget *button) : QWidget(window), m_button(button) {
        setObjectName("picRing");
        setAttribute(Qt::WA_TransparentForMouseEvents);
        setFocusPolicy(Qt::NoFocus);
        button->installEventFilter(this);
        follow();
    }

  protected:
    bool eventFilter(QObject *watched, QEvent *event) override {
        if (event->type() == QEvent::Move || event->type() == QEvent::Resize) {
            follow();
        }
        return QWidget::eventFilter(watched, event);
    }
    void paintEvent(QPaintEvent *) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const QRectF ring = QRectF(rect()).adjusted(3, 3, -3, -3);
        painter.setPen(QPen(colours::coral, 5));
        painter.drawRoundedRect(ring, panelCorner, panelCorner);
    }

  private:
    void follow() {
        const QRect button(m_button->mapTo(parentWidget(), QPoint()), m_button->size());
        setGeometry(button.adjusted(-ringRoom, -ringRoom, ringRoom, ringRoom));
    }

    QWidget *m_button;
};

} // namespace

frmWelcome::frmWelcome(AppContext &context, QWidget *window)
    : Bubble("frmWelcome", window), m_context(context), chkShow(new Tick(this)), picCrayon(new QLabel(this)) {
    setAttribute(Qt::WA_DeleteOnClose);
    label()->setObjectName("lblDesc");
    chkShow->setObjectName("chkShow");
    auto *buttons = new AnswerButtons(this);
    constexpr AnswerButtons::Look look{.captionPlace = PictureButton::CaptionPlace::None};
    cmdOK = buttons->add("cmdOK", "ok", look);
    cmdCancel = buttons->add("cmdCancel", "cancel", look);
    if (context.flags.SimpleModeOn) {
        chkShow->setStyleSheet(QString("min-height: %1px;").arg(simpleButton));
        cmdOK->setLeastSide(simpleButton);
        cmdCancel->setLeastSide(simpleButton);
    }
    auto *answers = new QHBoxLayout;
    answers->addWidget(picCrayon);
    answers->addStretch(1);
    answers->addWidget(cmdOK);
    answers->addWidget(cmdCancel);
    body()->addWidget(chkShow);
    body()->addLayout(answers);
    picCrayon->setObjectName("picCrayon");
    showCrayon(1);
    LoadLanguage();

    connect(cmdOK, &QAbstractButton::clicked, this, &frmWelcome::keepAnswer);
    connect(cmdCancel, &QAbstractButton::clicked, this, &QWidget::close);
    connect(buttons, &AnswerButtons::frameShown, this, &frmWelcome::showCrayon);
    connect(&tmrBlinker, &QTimer::timeout, this, [this] { picRing->setVisible(!picRing->isVisible()); });
    tmrBlinker.setObjectName("tmrBlinker");
}

frmWelcome::~frmWelcome() {
    delete picRing.data();
}

void frmWelcome::LoadLanguage() {
    showTexts(m_context.texts, *this);
    cmdOK->setToolTip(m_context.texts.text("DlgHelpBtnYes"));
    cmdCancel->setToolTip(m_context.texts.text("DlgHelpBtnNo"));
}

void frmWelcome::changeEvent(QEvent *event) {
    if (event->type() == QEvent::LanguageChange) {
        LoadLanguage();
    }
    Bubble::changeEvent(event);
}

void frmWelcome::showAt(QWidget *openButton) {
    delete picRing.data();
    picRing = new Ring(parentWidget(), openButton);
    picRing->show();
    picRing->raise();
    pointAt(openButton);
    if (motionWanted()) {
        tmrBlinker.start(blinkInterval);
    }
    cmdOK->setFocus();
}

void frmWelcome::keepAnswer() {
    m_context.settings.write<Setting::Welcome, Writer::Welcome>(!chkShow->isChecked());
    close();
}

void frmWelcome::showCrayon(int frame) {
    const QString crayon = QString(":/loops/simple-mode-%1.svg").arg(frame);
    picCrayon->setPixmap(iconPixmap(crayon, crayonSize, devicePixelRatioF()));
}

void frmWelcome::keyPressEvent(QKeyEvent *event) {
    if (event->key() == Qt::Key_Escape) {
        close();
    } else {
        Bubble::keyPressEvent(event);
    }
}

} // namespace lumora
