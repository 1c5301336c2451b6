#include "guide/frmHelp.h"

#include "guide/GuideWindow.h"
#include "session/AppContext.h"
#include "widgets/AnimatedButton.h"
#include "widgets/AnswerButtons.h"
#include "widgets/Theme.h"
#include "widgets/WindowTexts.h"

#include <QDir>
#include <QHBoxLayout>
#include <QMessageBox>
#include <QRadioButton>

namespace lumora {

namespace {

QRadioButton *option(const QString &name, const QString &icon, QWidget *parent) {
    auto *button = new QRadioButton(parent);
    button->setObjectName(name);
    button->setIcon(iconPixmap(icon, 56, parent->devicePixelRatioF()));
    button->setIconSize({56, 56});
    button->setMinimumSize(320, 64);
    return button;
}

} // namespace

frmHelp::frmHelp(AppContext &context, QWidget *owner)
    : BorderlessDialog("frmHelp", owner), m_context(context), optVideos(option("optVideos", "videos", this)),
      optUserGuide(option("optUserGuide", "guide", this)) {
    auto *buttons = new AnswerButtons(this);
    cmdYes = buttons->add("cmdYes", "yes", {});
    cmdNo = buttons->add("cmdNo", "cancel", {});
    auto *answers = new QHBoxLayout;
    answers->addStretch(1);
    answers->addWidget(cmdYes);
    answers->addWidget(cmdNo);
    body()->setSpacing(8);
    body()->addWidget(optVideos);
    body()->addWidget(optUserGuide);
    body()->addSpacing(8);
    body()->addLayout(answers);
    setDefaultButton(cmdYes);
    LoadLanguage();

    connect(cmdYes, &QAbstractButton::clicked, this, &frmHelp::accept);
    connect(cmdNo, &QAbstractButton::clicked, this, &QDialog::reject);
    optUserGuide->setChecked(true);
    optUserGuide->setFocus();
}

void frmHelp::showModal(AppContext &context, QWidget *owner) {
    auto *help = new frmHelp(context, owner);
    help->setAttribute(Qt::WA_DeleteOnClose);
    help->open();
}

void frmHelp::LoadLanguage() {
    showTexts(m_context.texts, *this);
}

void frmHelp::accept() {
    const bool videos = optVideos->isChecked();
    BorderlessDialog::accept();
    if (videos) {
        launchVideos();
    } else {
        GuideWindow::open(m_context, parentWidget());
    }
}

void frmHelp::launchVideos() {
    const QDir videos(m_context.installation.videosFolder());
    if (videos.exists() && !videos.isEmpty()) {
        // A page that shows the films, where there is one; else the desktop shows the folder.
        OpenWithShell(videos.exists("index.html") ? videos.filePath("index.html") : videos.path());
        return;
    }
    auto *box = new QMessageBox(QMessageBox::NoIcon, m_context.texts.text("ApplicationName"),
                                m_context.texts.text("NoHelp"), QMessageBox::Ok, parentWidget());
    box->setObjectName("msgNoHelp");
    box->setIconPixmap(iconPixmap("videos", 64, devicePixelRatioF()));
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
}

} // namespace lumora
