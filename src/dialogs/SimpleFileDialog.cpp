#include "dialogs/SimpleFileDialog.h"

#include "session/AppContext.h"
#include "widgets/AnimatedButton.h"
#include "widgets/AnswerButtons.h"
#include "widgets/MessageBox.h"
#include "widgets/Theme.h"
#include "widgets/TitleStrip.h"

#include <QLabel>
#include <QLineEdit>

namespace lumora {

SimpleFileDialog::SimpleFileDialog(AppContext &ctx, const QString &name, QWidget *owner, const QString &okLoop)
    : BorderlessDialog(name, owner), m_ctx(ctx), txtPath(new QLineEdit(this)), txtFile(new QLineEdit(this)),
      cmdAdvCMDLG(new PictureButton("more", PictureButton::CaptionPlace::Beside, this)) {
    auto *buttons = new AnswerButtons(this);
    constexpr AnswerButtons::Look big{.pictureSize = 56, .captionPoints = 14};
    cmdOK = buttons->add("cmdOK", okLoop, big);
    cmdCancel = buttons->add("cmdCancel", "cancel", big);
    txtPath->setObjectName("txtPath");
    txtPath->hide();
    txtFile->setObjectName("txtFile");
    cmdAdvCMDLG->setObjectName("cmdAdvCMDLG");
    cmdAdvCMDLG->setLook(PictureButton::Look::Raised);
    cmdAdvCMDLG->setLeastSide(simpleButton);
    cmdOK->setEnabled(false);
    setDefaultButton(cmdOK);
    connect(txtFile, &QLineEdit::textChanged, this,
            [this](const QString &text) { cmdOK->setEnabled(!text.isEmpty()); });
    connect(cmdOK, &QAbstractButton::clicked, this, &SimpleFileDialog::pressOK);
    connect(cmdCancel, &QAbstractButton::clicked, this, &QDialog::reject);
    connect(cmdAdvCMDLG, &QAbstractButton::clicked, this, [this] {
        m_ctx.photo.CurrentFileName = folder();
        m_ending = Ending::More;
        accept();
    });
}

SimpleFileDialog::Ending SimpleFileDialog::run() {
    m_ending = Ending::Cancelled;
    exec();
    return m_ending;
}

void SimpleFileDialog::pressOK() {
    if (!fileName().isEmpty() && takeChoice()) {
        m_ending = Ending::OK;
        accept();
    }
}

void SimpleFileDialog::setFolder(const QString &folder) {
    txtPath->setText(folder);
    // A path runs from the left, whatever the language around it.
    const QString path = isRightToLeft() ? QChar(0x2066) + folder + QChar(0x2069) : folder;
    setTitleEnd(path);
}

void SimpleFileDialog::setTitleEnd(const QString &text) {
    picTBar()->lblCaption()->setText(windowTitle() + " - " + text);
}

QString SimpleFileDialog::folder() const {
    return txtPath->text();
}

QString SimpleFileDialog::fileName() const {
    return txtFile->text();
}

QString SimpleFileDialog::pathOf(const QString &name) const {
    return folder() + '/' + name;
}

void SimpleFileDialog::showError(const QString &description) {
    MessageBox box("msgError", m_ctx.texts.text("ErrorTitle"), description, isVisible() ? this : parentWidget());
    box.setIcon(QMessageBox::Critical);
    box.exec();
}

} // namespace lumora
