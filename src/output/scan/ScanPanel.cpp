#include "output/scan/ScanPanel.h"

#include "session/AppContext.h"
#include "widgets/PictureButton.h"
#include "widgets/PictureChoice.h"
#include "widgets/WindowTexts.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace lumora {

namespace {

constexpr int choicePicture = 56; // pixels
constexpr int buttonPicture = 56;
constexpr int listWidth = 130;

} // namespace

ScanPanel::ScanPanel(AppContext &ctx, QWidget *window)
    : SlidingPanel("pnlScan", "cmdPnlScanExit", window), m_ctx(ctx), cboSelect(new QComboBox(this)),
      optAutomatic(new PictureChoice("scan", choicePicture, this)),
      optManual(new PictureChoice("scan-window", choicePicture, this)),
      cmdScanNow(new PictureButton("ok", PictureButton::CaptionPlace::Below, this)) {
    titleLabel()->setObjectName("LN5");
    auto *caption = new QLabel(this);
    caption->setObjectName("lblScanners");
    caption->setBuddy(cboSelect);
    cboSelect->setObjectName("cboSelect");
    cboSelect->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    cboSelect->setMinimumWidth(listWidth);
    optAutomatic->setObjectName("optAutomatic");
    optManual->setObjectName("optManual");
    optAutomatic->setChecked(true);
    cmdScanNow->setObjectName("cmdScanNow");
    cmdScanNow->setPictureSize(buttonPicture);
    cmdScanNow->setLook(PictureButton::Look::Raised);
    cmdScanNow->setMinimumWidth(110);

    auto *list = new QVBoxLayout;
    list->addStretch();
    list->addWidget(caption);
    list->addWidget(cboSelect);
    list->addStretch();
    auto *row = new QHBoxLayout;
    row->setSpacing(12);
    row->addLayout(list, 2);
    row->addWidget(optAutomatic, 1);
    row->addWidget(optManual, 1);
    row->addWidget(cmdScanNow);
    body()->addLayout(row);

    connect(cboSelect, &QComboBox::activated, this, [this](int index) {
        m_ctx.fields.cboSelectIndex = index;
        cboSelect->setToolTip(cboSelect->currentText());
    });
    connect(optAutomatic, &QAbstractButton::clicked, this, [this] { m_automatic = true; });
    connect(optManual, &QAbstractButton::clicked, this, [this] { m_automatic = false; });
    connect(cmdScanNow, &QAbstractButton::clicked, this, &ScanPanel::scanWanted);
    connect(this, &SlidingPanel::opened, this, [this] { cmdScanNow->setFocus(Qt::OtherFocusReason); });
}

void ScanPanel::showScanners() {
    cboSelect->clear();
    cboSelect->addItems(m_ctx.fields.cboSelect);
    showText(m_ctx.texts, *cboSelect, "OptionsChooseScanner", "placeholderText");
    cboSelect->setCurrentIndex(m_ctx.fields.cboSelectIndex);
    cboSelect->setToolTip(cboSelect->currentText()); // may be longer than the list is wide
    const auto *caption = findChild<QLabel *>("lblScanners");
    cboSelect->setAccessibleName(caption->text());
    cboSelect->setAccessibleDescription(caption->text()); // else it is the tool tip: the scanner once more
}

QList<QWidget *> ScanPanel::lockedWhileScanning() const {
    return {cmdScanNow, optAutomatic, optManual, closeButton()};
}

} // namespace lumora
