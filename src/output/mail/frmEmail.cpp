#include "output/mail/frmEmail.h"

#include "imaging/Scale.h"
#include "session/AppContext.h"
#include "widgets/AnimatedButton.h"
#include "widgets/AnswerButtons.h"
#include "widgets/Theme.h"
#include "widgets/TitleStrip.h"
#include "widgets/WindowTexts.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPlainTextEdit>

namespace lumora {

namespace {

constexpr QSize largestPhoto(220, 220); // pixels
constexpr int mount = 8;                // pixels of white paper round the photo
constexpr int fieldsWidth = 400;        // pixels
constexpr int messageHeight = 150;

/// Like a print that goes into the envelope.
QPixmap print(const QImage &photo, qreal ratio) {
    const QSize room = largestPhoto * ratio;
    const QSize size = photo.size().scaled(photo.size().boundedTo(room), Qt::KeepAspectRatio).expandedTo(QSize(1, 1));
    const QImage small = scaleByAveraging(photo, size.width(), size.height());
    const int paper = qRound(mount * ratio);
    QPixmap pixmap(small.size() + QSize(2 * paper, 2 * paper));
    pixmap.fill(Qt::white);
    QPainter painter(&pixmap);
    painter.drawImage(paper, paper, small);
    painter.setPen(colours::line);
    painter.drawRect(0, 0, pixmap.width() - 1, pixmap.height() - 1);
    painter.end();
    pixmap.setDevicePixelRatio(ratio);
    return pixmap;
}

} // namespace

frmEmail::frmEmail(AppContext &ctx, const QImage &photo, QWidget *owner)
    : BorderlessDialog("frmEmail", owner), m_ctx(ctx), lblYourAddress(new QLabel(this)), lblSend(new QLabel(this)),
      lblMessage(new QLabel(this)), txtYourAddress(new QLineEdit(this)), txtAddress(new QLineEdit(this)),
      txtMessage(new QPlainTextEdit(this)) {
    picTBar()->lblCaption()->setObjectName("lblTitle");
    txtYourAddress->setReadOnly(true);
    txtYourAddress->setFocusPolicy(Qt::NoFocus);
    txtAddress->setInputMethodHints(Qt::ImhEmailCharactersOnly);
    txtMessage->setTabChangesFocus(true);
    txtMessage->setFixedHeight(messageHeight);
    auto *lblSeveral = new QLabel(this);
    lblSeveral->setObjectName("lblSeveral");
    setFaint(*lblSeveral);

    auto *fields = new QGridLayout;
    fields->setHorizontalSpacing(10);
    fields->setVerticalSpacing(8);
    const struct {
        QLabel *label;
        QWidget *field;
        const char *labelName, *fieldName;
    } rows[] = {{lblYourAddress, txtYourAddress, "lblYourAddress", "txtYourAddress"},
                {lblSend, txtAddress, "lblSend", "txtAddress"},
                {lblMessage, txtMessage, "lblMessage", "txtMessage"}};
    int place = 0;
    for (const auto &row : rows) {
        row.label->setObjectName(row.labelName);
        row.label->setTextFormat(Qt::PlainText);
        row.label->setBuddy(row.field);
        row.field->setObjectName(row.fieldName);
        const bool high = row.field == txtMessage;
        fields->addWidget(row.label, place, 0, high ? Qt::AlignTop : Qt::Alignment());
        fields->addWidget(row.field, place++, 1);
        if (row.field == txtAddress) {
            fields->addWidget(lblSeveral, place++, 1);
        }
    }
    fields->setColumnMinimumWidth(1, fieldsWidth);
    for (QLineEdit *address : {txtYourAddress, txtAddress}) {
        address->setLayoutDirection(Qt::LeftToRight); // addresses are written so in every language
    }

    auto *picPhoto = new QLabel(this);
    picPhoto->setObjectName("picPhoto");
    picPhoto->setPixmap(print(photo, devicePixelRatioF()));
    auto *middle = new QHBoxLayout;
    middle->setSpacing(18);
    middle->addWidget(picPhoto, 0, Qt::AlignCenter);
    middle->addLayout(fields, 1);

    auto *buttons = new AnswerButtons(this);
    constexpr AnswerButtons::Look big{.pictureSize = 56, .captionPoints = 14, .minimumWidth = 170};
    cmdOK = buttons->add("cmdOK", "email", big);
    cmdCancel = buttons->add("cmdCancel", "cancel", big);
    setDefaultButton(cmdOK);
    auto *answers = new QHBoxLayout;
    answers->setSpacing(14);
    answers->addStretch(1);
    answers->addWidget(cmdOK);
    answers->addWidget(cmdCancel);
    body()->addLayout(middle, 1);
    addFoot(answers);

    connect(cmdOK, &QAbstractButton::clicked, this, &frmEmail::accept);
    connect(cmdCancel, &QAbstractButton::clicked, this, &QDialog::reject);
    SetMeUp();
}

void frmEmail::SetMeUp() {
    const Settings &settings = m_ctx.settings;
    showTexts(m_ctx.texts, *this);
    lblYourAddress->setText(settings.textOr<Setting::EmailFrom>(lblYourAddress->text()));
    lblSend->setText(settings.textOr<Setting::EmailTo>(lblSend->text()));
    lblMessage->setText(settings.textOr<Setting::EmailMessage>(lblMessage->text()));
    setWindowTitle(settings.textOr<Setting::EmailTitle>(windowTitle()));
    for (const QLabel *label : {lblYourAddress, lblSend, lblMessage}) {
        label->buddy()->setAccessibleName(label->text());
    }
    findChild<QLabel *>("picPhoto")->setAccessibleName(windowTitle());
    txtYourAddress->setText(settings.read<Setting::SenderAddress>());
    txtAddress->setText(settings.read<Setting::RecipientAddress>());
    (txtAddress->text().isEmpty() ? static_cast<QWidget *>(txtAddress) : txtMessage)->setFocus();
}

void frmEmail::accept() {
    if (txtAddress->text().isEmpty()) {
        txtAddress->setFocus();
        return;
    }
    m_ctx.fields.txtEmailAddress = txtAddress->text();
    m_ctx.fields.txtMessage = txtMessage->toPlainText();
    m_ctx.settings.write<Setting::RecipientAddress, Writer::EmailWindow>(txtAddress->text());
    BorderlessDialog::accept();
}

} // namespace lumora
