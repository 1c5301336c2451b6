#include "options/OptionsDialogs.h"

#include "session/OptionsSettings.h"
#include "widgets/PictureChoice.h"

#include <QLabel>
#include <QVBoxLayout>

namespace lumora {

namespace {

constexpr int pictureSize = 208; // pixels

} // namespace

OptionsDialogs::OptionsDialogs(QWidget *parent)
    : OptionsPage("lblDialogs", parent), optDlg1(new PictureChoice("options-dialog-system", pictureSize, this)),
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
}

void OptionsDialogs::showValues(const OptionsSettings &options) {
    (options.systemDialogs ? optDlg1 : optDlg2)->setChecked(true);
}

void OptionsDialogs::takeValues(OptionsSettings &options) const {
    options.systemDialogs = optDlg1->isChecked();
}

} // namespace lumora
