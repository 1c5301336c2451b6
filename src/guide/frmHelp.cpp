#include "guide/frmHelp.h"

#include "guide/GuidePages.h"
#include "guide/GuideWindow.h"
#include "session/AppContext.h"
#include "widgets/AnimatedButton.h"
#include "widgets/AnswerButtons.h"
#include "widgets/MessageBox.h"
#include "widgets/PictureButton.h"
#include "widgets/Theme.h"
#include "widgets/Tick.h"
#include "widgets/WindowTexts.h"

#include <QDir>
#include <QHBoxLayout>
#include <QRadioButton>

namespace lumora {

namespace {

QRadioButton *option(const QString &name, const QString &icon, QWidget *parent) {
    auto *button = new Choice(parent);
    button->setObjectName(name);
    button->setIcon(iconPixmap(icon, 56, parent->devicePixelRatioF()));
    button->setIconSize({56, 56});
    button->setMinimumWidth(320);
    button->setStyleSheet(QString("min-height: %1px;").arg(simpleButton)); // what the theme's has instead counts
    return button;
}

} // namespace

void tellNoProgram(const Texts &texts, const QString &what, QWidget *owner) {
    auto *box =
        new MessageBox("msgNoProgram", texts.text("ApplicationName"), texts.text("MsgNoProgram").arg(what), owner);
    box->setPicture("help");
    box->showAlone();
}

frmHelp::frmHelp(AppContext &context, QWidget *owner)
    : BorderlessDialog("frmHelp", owner), m_context(context), optVideos(option("optVideos", "videos", this)),
      optUserGuide(option("optUserGuide", "guide", this)) {
    auto *buttons = new AnswerButtons(this);
    cmdYes = buttons->add("cmdYes", "ok", {});
    cmdNo = buttons->add("cmdNo", "cancel", {});
    cmdAbout = new PictureButton("lumora", PictureButton::CaptionPlace::Beside, this);
    cmdAbout->setObjectName("cmdAbout");
    for (PictureButton *button :
         {static_cast<PictureButton *>(cmdYes), static_cast<PictureButton *>(cmdNo), cmdAbout}) {
        button->setLeastSide(simpleButton);
    }
    auto *answers = new QHBoxLayout;
    answers->addWidget(cmdAbout);
    answers->addSpacing(24);
    answers->addStretch(1);
    answers->addWidget(cmdYes);
    answers->addWidget(cmdNo);
    body()->setSpacing(8);
    body()->addWidget(optVideos);
    body()->addWidget(optUserGuide);
    body()->addSpacing(8);
    addFoot(answers);
    setDefaultButton(cmdYes);
    LoadLanguage();

    connect(cmdYes, &QAbstractButton::clicked, this, &frmHelp::accept);
    connect(cmdNo, &QAbstractButton::clicked, this, &QDialog::reject);
    connect(cmdAbout, &QAbstractButton::clicked, this, &frmHelp::showAbout);
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

void frmHelp::showAbout() {
    BorderlessDialog::accept();
    GuideWindow::open(m_context, parentWidget(), aboutPage);
}

void frmHelp::launchVideos() {
    const QDir videos(m_context.installation.videosFolder());
    if (videos.exists() && !videos.isEmpty()) {
        // A page that shows the films, best in the program's language; else the desktop shows the folder.
        QString films = videos.path();
        for (const QString &page : {guideLanguage(m_context.texts) + "/index.html", QString("index.html")}) {
            if (videos.exists(page)) {
                films = videos.filePath(page);
                break;
            }
        }
        if (!OpenWithShell(films)) {
            tellNoProgram(m_context.texts, films, parentWidget());
        }
        return;
    }
    auto *box = new MessageBox("msgNoHelp", m_context.texts.text("ApplicationName"), m_context.texts.text("NoHelp"),
                               parentWidget());
    box->setPicture("videos");
    box->showAlone();
}

} // namespace lumora
