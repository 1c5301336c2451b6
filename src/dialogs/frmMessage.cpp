#include "dialogs/frmMessage.h"

#include "session/AppContext.h"
#include "widgets/AnimatedButton.h"
#include "widgets/AnswerButtons.h"
#include "widgets/Theme.h"
#include "widgets/Tick.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>

namespace lumora {

frmMessage::frmMessage(AppContext &context, QWidget *owner)
    : BorderlessDialog("frmMessage", owner), m_context(context), lblMessage(new QLabel(this)),
      chkDontShow(new Tick(this)), cmdYes((new AnswerButtons(this))->add("cmdYes", "ok", {})) {
    lblMessage->setObjectName("lblMessage");
    lblMessage->setWordWrap(true);
    lblMessage->setTextFormat(Qt::PlainText);
    lblMessage->setFixedWidth(330);
    auto *picture = new QLabel(this);
    picture->setPixmap(iconPixmap("lumora", 88, devicePixelRatioF()));
    chkDontShow->setObjectName("chkDontShow");
    cmdYes->setLeastSide(simpleButton);

    auto *foot = new QHBoxLayout;
    foot->addWidget(chkDontShow, 1);
    foot->addWidget(cmdYes);
    auto *message = new QHBoxLayout;
    message->setSpacing(18);
    message->addWidget(picture);
    message->addWidget(lblMessage, 1);
    body()->addLayout(message);
    addFoot(foot);
    setDefaultButton(cmdYes);

    setWindowTitle(context.settings.textOr<Setting::NoticeTitle>(context.texts.text("NoticeTitle")));
    lblMessage->setText(context.settings.textOr<Setting::NoticeText>(context.texts.text("NoticeSmallScreen")));
    setAccessibleDescription(lblMessage->text());
    cmdYes->setText(context.settings.textOr<Setting::NoticeButton>(context.texts.text("NoticeOK")));
    chkDontShow->setText(context.texts.text("Welcome_Bubble"));

    connect(cmdYes, &QAbstractButton::clicked, this, &frmMessage::accept);
    cmdYes->setFocus();
}

void frmMessage::accept() {
    m_context.settings.write<Setting::ScreenNotice, Writer::Notice>(chkDontShow->isChecked() ? Switch::Off
                                                                                             : Switch::On);
    BorderlessDialog::accept();
}

} // namespace lumora
