#include "options/OptionsGeneral.h"

#include "session/AppContext.h"
#include "session/OptionsSettings.h"
#include "widgets/PictureButton.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QSlider>
#include <QVBoxLayout>
#include <algorithm>

namespace lumora {

OptionsGeneral::OptionsGeneral(AppContext &ctx, QWidget *parent)
    : OptionsPage("lblGeneral", parent), m_ctx(ctx), chkAdvSFX(tickBox("chkAdvSFX", "tool10")),
      chkAdvResize(tickBox("chkAdvResize", "tool4")), chkAdvPopart(tickBox("chkAdvPopart", "pop-art")),
      chkGrid(tickBox("chkGrid", "tool5")) {
    addLanguages();
    QVBoxLayout *tools = addSheet();
    for (QCheckBox *box : {chkAdvSFX, chkAdvResize, chkAdvPopart, chkGrid}) {
        tools->addWidget(box);
    }
    addSlideshow();
    addFolder();
    column()->addStretch(1);
}

void OptionsGeneral::addLanguages() {
    QHBoxLayout *row = addRow(addSheet());
    QLabel *caption = label("lblLanguage");
    cboLanguage = new QComboBox(this);
    cboLanguage->setObjectName("cboLanguage");
    for (const InstalledLanguage &language : installedLanguages(m_ctx.installation)) {
        cboLanguage->addItem(language.name, language.file);
    }
    caption->setBuddy(cboLanguage);
    row->addWidget(picture("language"));
    row->addWidget(caption);
    row->addWidget(cboLanguage, 1);
}

QString OptionsGeneral::languageInUse() const {
    return lumora::languageInUse(m_ctx.installation, m_ctx.settings, m_ctx.ini);
}

void OptionsGeneral::addSlideshow() {
    QHBoxLayout *row = addRow(addSheet());
    QLabel *caption = label("lblSlideshowDelay");
    sldDelay = new QSlider(Qt::Horizontal, this);
    sldDelay->setObjectName("sldDelay");
    sldDelay->setRange(shortestSlide, longestSlide);
    sldDelay->setPageStep(5);
    caption->setBuddy(sldDelay);
    lblDelay = label("lblDelay");
    lblDelay->setMinimumWidth(lblDelay->fontMetrics().horizontalAdvance("00 s") + 4);
    lblDelay->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    connect(sldDelay, &QSlider::valueChanged, this,
            [this](int seconds) { lblDelay->setText(m_ctx.texts.text("SlideshowSeconds").arg(seconds)); });
    row->addWidget(picture("slideshow"));
    row->addWidget(caption);
    row->addWidget(sldDelay, 1);
    row->addWidget(lblDelay);
}

void OptionsGeneral::addFolder() {
    QVBoxLayout *sheet = addSheet();
    QHBoxLayout *row = addRow(sheet);
    QLabel *caption = label("lblWD");
    txtWD = new QLineEdit(this);
    txtWD->setObjectName("txtWD");
    txtWD->setReadOnly(true); // chosen, so that no folder can be mistyped
    txtWD->setLayoutDirection(Qt::LeftToRight);
    caption->setBuddy(txtWD);
    auto *cmdBrowse = new PictureButton("folder", PictureButton::CaptionPlace::None, this);
    cmdBrowse->setObjectName("cmdBrowse");
    cmdBrowse->setLook(PictureButton::Look::Raised);
    cmdBrowse->setToolTip(m_ctx.texts.text("DlgOptionsBrowse"));
    connect(cmdBrowse, &QAbstractButton::clicked, this, &OptionsGeneral::browse);
    row->addWidget(caption);
    row->addWidget(txtWD, 1);
    row->addWidget(cmdBrowse);
    chkMyDocs = tickBox("chkMyDocs");
    for (QWidget *part : {static_cast<QWidget *>(caption), static_cast<QWidget *>(txtWD),
                          static_cast<QWidget *>(cmdBrowse)}) { // without effect while it is ticked
        connect(chkMyDocs, &QCheckBox::toggled, part, &QWidget::setDisabled);
    }
    sheet->addWidget(chkMyDocs);
    lockWith(Lock::WorkingFolder, {chkMyDocs, txtWD, cmdBrowse});
}

void OptionsGeneral::browse() {
    QFileDialog dialog(this, m_ctx.texts.text("DlgOptionsBrowse"));
    dialog.setObjectName("dlgBrowse");
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly);
    const bool there = QFileInfo(txtWD->text()).isDir();
    dialog.setDirectory(there ? txtWD->text() : GetSpecialFolderPath(5));
    if (dialog.exec() == QDialog::Accepted && !dialog.selectedFiles().isEmpty()) {
        setFolder(dialog.selectedFiles().constFirst());
    }
}

void OptionsGeneral::setFolder(const QString &folder) {
    txtWD->setText(folder);
    txtWD->setToolTip(folder);
}

void OptionsGeneral::showValues(const OptionsSettings &options) {
    chkAdvSFX->setChecked(options.advancedEffects);
    chkAdvResize->setChecked(options.advancedResize);
    chkAdvPopart->setChecked(options.advancedPopart);
    chkGrid->setChecked(options.grid);
    m_language = options.language;
    cboLanguage->setCurrentIndex(std::max(0, cboLanguage->findData(languageInUse())));
    sldDelay->setValue(options.slideshowDelay);
    lblDelay->setText(m_ctx.texts.text("SlideshowSeconds").arg(sldDelay->value()));
    setFolder(options.workingDirectory);
    chkMyDocs->setChecked(options.myDocs);
}

void OptionsGeneral::takeValues(OptionsSettings &options) const {
    options.advancedEffects = chkAdvSFX->isChecked();
    options.advancedResize = chkAdvResize->isChecked();
    options.advancedPopart = chkAdvPopart->isChecked();
    options.grid = chkGrid->isChecked();
    // Who has not touched the list has chosen nothing: the language goes on following the desktop.
    const QString language = cboLanguage->currentData().toString();
    options.language = language == languageInUse() ? m_language : language;
    options.slideshowDelay = sldDelay->value();
    options.workingDirectory = txtWD->text();
    options.myDocs = chkMyDocs->isChecked();
}

} // namespace lumora
