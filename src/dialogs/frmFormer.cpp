#include "dialogs/frmFormer.h"

#include "session/AppContext.h"
#include "widgets/AnimatedButton.h"
#include "widgets/AnswerButtons.h"
#include "widgets/Theme.h"
#include "widgets/WindowTexts.h"

#include <QHBoxLayout>
#include <QLabel>

namespace lumora {

namespace {
constexpr int smallCrayon = 76; // pixels
}

frmFormer::frmFormer(AppContext &context, QWidget *window) : Bubble("frmFormer", window), m_context(context) {
    setAttribute(Qt::WA_DeleteOnClose);
    label()->setObjectName("lblFormer");
    auto *buttons = new AnswerButtons(this);
    constexpr AnswerButtons::Look look{.pictureSize = 32};
    auto *cmdYes = buttons->add("cmdYes", "ok", look);
    auto *cmdNo = buttons->add("cmdNo", "cancel", look);
    auto *crayon = new QLabel(this);
    auto *answers = new QHBoxLayout;
    auto *column = new QVBoxLayout;
    column->addWidget(cmdYes);
    column->addWidget(cmdNo);
    answers->addWidget(crayon);
    answers->addLayout(column, 1);
    body()->addLayout(answers);
    connect(buttons, &AnswerButtons::frameShown, crayon, [this, crayon](int frame) {
        crayon->setPixmap(
            iconPixmap(QString(":/loops/advanced-mode-%1.svg").arg(frame), smallCrayon, devicePixelRatioF()));
    });
    crayon->setPixmap(iconPixmap(":/loops/advanced-mode-1.svg", smallCrayon, devicePixelRatioF()));
    LoadLanguage();

    connect(cmdYes, &QAbstractButton::clicked, this, [this] {
        m_context.settings.bringFormerBack();
        Q_EMIT broughtBack();
        close();
    });
    connect(cmdNo, &QAbstractButton::clicked, this, &QWidget::close);
}

void frmFormer::LoadLanguage() {
    showTexts(m_context.texts, *this);
}

void frmFormer::closeEvent(QCloseEvent *event) {
    m_context.settings.forgetFormer();
    Bubble::closeEvent(event);
}

} // namespace lumora
