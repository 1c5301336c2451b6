#include "options/OptionsDialogs.h"

#include "session/AppContext.h"
#include "session/MyPictures.h"
#include "session/OptionsSettings.h"
#include "widgets/MessageBox.h"
#include "widgets/PictureButton.h"
#include "widgets/PictureChoice.h"
#include "widgets/Theme.h"

#include <QCheckBox>
#include <QLabel>
#include <QLocale>
#include <QVBoxLayout>

namespace lumora {

namespace {

constexpr int pictureSize = 200; // pixels

} // namespace

OptionsDialogs::OptionsDialogs(AppContext &ctx, QWidget *parent)
    : OptionsPage("lblDialogs", parent), m_ctx(ctx),
      optDlg1(new PictureChoice("options-dialog-system", pictureSize, this)),
      optDlg2(new PictureChoice("options-dialog-own", pictureSize, this)) {
    optDlg1->setObjectName("optDlg1");
    optDlg2->setObjectName("optDlg2");
    auto *choices = new QHBoxLayout;
    choices->setSpacing(14);
    choices->addWidget(optDlg1);
    choices->addWidget(optDlg2);
    column()->addLayout(choices, 1);
    QHBoxLayout *remark = addRow(addSheet());
    remark->addWidget(picture("print"));
    remark->addWidget(note("lblPrintNotice"), 1);
    addKeeping();
}

void OptionsDialogs::addKeeping() {
    QHBoxLayout *row = addRow(addSheet());
    chkKeep = tickBox("chkKeep", "thrown-away");
    cmdEmpty = new PictureButton("trash", PictureButton::CaptionPlace::Beside, this);
    cmdEmpty->setObjectName("cmdEmpty");
    cmdEmpty->setLook(PictureButton::Look::Raised);
    connect(cmdEmpty, &QAbstractButton::clicked, this, &OptionsDialogs::askToEmpty);
    row->addWidget(chkKeep, 1);
    row->addWidget(cmdEmpty);
}

void OptionsDialogs::showThrownAway() {
    const ThrownAway all = thrownAway(m_ctx);
    const QLocale locale(m_ctx.texts.text("Language"));
    const QString size = locale.formattedDataSize(all.bytes, 0, QLocale::DataSizeSIFormat);
    cmdEmpty->setText(all.photos == 0   ? m_ctx.texts.text("OptionsEmptyNone")
                      : all.photos == 1 ? m_ctx.texts.text("OptionsEmptyOne").arg(size)
                                        : m_ctx.texts.text("OptionsEmptyMany").arg(all.photos).arg(size));
    cmdEmpty->setEnabled(all.photos > 0);
}

void OptionsDialogs::askToEmpty() {
    auto *box = new MessageBox("msgEmpty", m_ctx.texts.text("ApplicationName"), m_ctx.texts.text("MsgEmpty"), this,
                               QMessageBox::Yes | QMessageBox::No);
    box->setDefaultButton(QMessageBox::No);
    box->setPicture("thrown-away");
    connect(box, &QDialog::finished, this, [this](int answer) {
        if (answer == QMessageBox::Yes) {
            emptyThrownAway(m_ctx);
            showThrownAway();
        }
    });
    box->showAlone();
}

void OptionsDialogs::showValues(const OptionsSettings &options) {
    (options.systemDialogs ? optDlg1 : optDlg2)->setChecked(true);
    chkKeep->setChecked(options.keepThrownAway);
    showThrownAway();
}

void OptionsDialogs::takeValues(OptionsSettings &options) const {
    options.systemDialogs = optDlg1->isChecked();
    options.keepThrownAway = chkKeep->isChecked();
}

} // namespace lumora
