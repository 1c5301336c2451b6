#include "dialogs/frmMessage.h"

#include "session/AppContext.h"
#include "widgets/AnimatedButton.h"
#include "widgets/AnswerButtons.h"
#include "widgets/Theme.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>

namespace lumora {

frmMessage::frmMessage(AppContext &context, QWidget *owner)
    : BorderlessDialog("frmMessage", owner), m_context(context), lblMessage(new QLabel(this)),
      chkDontShow(new QCheckBox(this)), cmdYes((new AnswerButtons(this))->add("cmdYes", "yes", {})) {
    lblMessage->setObjectName("lblMessage");
    lblMessage->setWordWrap(true);
    lblMessage->setTextFormat(Qt::PlainText);
    lblMessage->setFixedWidth(330);
    auto *picture = new QLabel(this);
    picture->setPixmap(iconPixmap("lumora", 88, devicePixelRatioF()));
    chkDontShow->setObjectName("chkDontShow");

    auto *foot = new QHBoxLayout;
    foot->addWidget(chkDontShow, 1);
    foot->addWidget(cmdYes);
    auto *message = new QHBoxLayout;
    message->setSpacing(18);
    message->addWidget(picture);
    message->addWidget(lblMessage, 1);
    body()->addLayout(message);
    body()->addLayout(foot);
    setDefaultButton(cmdYes);

    setWindowTitle(context.setting("ScreenMessageTitle", "Caption", "Notice"));
    lblMessage->setText(context.setting("ScreenMessage", "Caption",
                                        "Lumora is designed to run best on screen size 1024 x 768 or higher."));
    cmdYes->setText(context.setting("ScreenMessageButton", "Caption", "OK"));
    chkDontShow->setText(context.texts.text("Welcome_Bubble"));

    connect(chkDontShow, &QCheckBox::toggled, this, [this](bool ticked) { txtDontShow = ticked ? "0" : "1"; });
    connect(cmdYes, &QAbstractButton::clicked, this, &frmMessage::accept);
    cmdYes->setFocus();
}

void frmMessage::accept() {
    m_context.writeSetting("Display Message", "Value", txtDontShow);
    BorderlessDialog::accept();
}

} // namespace lumora
