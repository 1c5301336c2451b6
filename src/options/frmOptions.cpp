#include "options/frmOptions.h"

#include "devices/mail/MailPasswords.h"
#include "options/OptionsDevices.h"
#include "options/OptionsDialogs.h"
#include "options/OptionsGeneral.h"
#include "options/OptionsMiscellaneous.h"
#include "options/OptionsTabs.h"
#include "session/AppContext.h"
#include "session/LoadSettings.h"
#include "session/OptionsSettings.h"
#include "widgets/AnimatedButton.h"
#include "widgets/AnswerButtons.h"
#include "widgets/MessageBox.h"
#include "widgets/PictureButton.h"
#include "widgets/Theme.h"
#include "widgets/TitleStrip.h"
#include "widgets/WindowTexts.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QShortcut>
#include <QStackedWidget>

namespace lumora {

frmOptions::frmOptions(AppContext &ctx, QWidget *owner, const QString &helper)
    : BorderlessDialog("frmOptions", owner), m_ctx(ctx), TabStrip1(new OptionsTabs("TabStrip1", this)),
      m_pages(new QStackedWidget(this)) {
    // All tabs before the first page: the tab order is the order of creation.
    TabStrip1->addTab("keyGeneral", "options-general");
    TabStrip1->addTab("keyDevices", "options-devices");
    TabStrip1->addTab("keyDialogs", "options-dialogs");
    TabStrip1->addTab("keyMiscellaneous", "options-miscellaneous");
    addPage(new OptionsGeneral(ctx, this));
    addPage(new OptionsDevices(ctx, helper, this));
    addPage(new OptionsDialogs(ctx, this));
    m_miscellaneous = new OptionsMiscellaneous(ctx, this);
    addPage(m_miscellaneous);
    auto *cmdAbout = new PictureButton("lumora", PictureButton::CaptionPlace::Beside, this);
    cmdAbout->setObjectName("cmdAbout");
    auto *cmdForMe = new PictureButton("for-me", PictureButton::CaptionPlace::Beside, this);
    cmdForMe->setObjectName("cmdForMe");
    auto *buttons = new AnswerButtons(this);
    constexpr AnswerButtons::Look look{.pictureSize = 32, .minimumWidth = 130};
    cmdOK = buttons->add("cmdOK", "ok", look);
    cmdCancel = buttons->add("cmdCancel", "cancel", look);
    setDefaultButton(cmdOK);

    auto *middle = new QHBoxLayout;
    middle->setSpacing(12);
    middle->addWidget(TabStrip1);
    middle->addWidget(m_pages, 1);
    auto *answers = new QHBoxLayout;
    answers->addWidget(cmdAbout);
    answers->addWidget(cmdForMe);
    answers->addStretch(1);
    answers->addWidget(cmdOK);
    answers->addWidget(cmdCancel);
    body()->setContentsMargins(12, 10, 12, 12);
    body()->setSpacing(10);
    body()->addLayout(middle, 1);
    addFoot(answers);
    picTBar()->setPicture("options");

    connect(TabStrip1, &OptionsTabs::currentChanged, m_pages, &QStackedWidget::setCurrentIndex);
    connect(cmdOK, &QAbstractButton::clicked, this, &frmOptions::accept);
    connect(cmdCancel, &QAbstractButton::clicked, this, &QDialog::reject);
    connect(cmdAbout, &QAbstractButton::clicked, this, &frmOptions::aboutWanted);
    connect(cmdForMe, &QAbstractButton::clicked, this, &frmOptions::forMeWanted);
    connect(new QShortcut(QKeySequence("Ctrl+Tab"), this), &QShortcut::activated, this, [this] { TabStrip1->step(1); });
    connect(new QShortcut(QKeySequence("Ctrl+Shift+Tab"), this), &QShortcut::activated, this,
            [this] { TabStrip1->step(-1); });
    LoadLanguage();
    LoadMyINISettings();
}

frmOptions *frmOptions::showModal(AppContext &ctx, QWidget *owner) {
    auto *options = new frmOptions(ctx, owner);
    options->setAttribute(Qt::WA_DeleteOnClose);
    options->open();
    return options;
}

void frmOptions::addPage(OptionsPage *page) {
    m_pages->addWidget(page);
    m_allPages << page;
}

void frmOptions::LoadLanguage() {
    showTexts(m_ctx.texts, *this);
    for (const QLabel *caption : findChildren<QLabel *>()) {
        if (caption->buddy() != nullptr) {
            caption->buddy()->setAccessibleName(caption->text());
        }
    }
}

void frmOptions::changeEvent(QEvent *event) {
    if (event->type() == QEvent::LanguageChange) {
        LoadLanguage();
    }
    BorderlessDialog::changeEvent(event);
}

void frmOptions::LoadMyINISettings() {
    const OptionsSettings options = readOptions(m_ctx);
    for (OptionsPage *page : m_allPages) {
        page->showValues(options);
        page->showLocks(m_ctx);
    }
}

void frmOptions::SaveMyINISettings() {
    OptionsSettings options;
    for (const OptionsPage *page : m_allPages) {
        page->takeValues(options);
    }
    writeOptions(m_ctx, options);
    if (!options.mailPassword.isEmpty()) {
        mailPasswords::keep(options.mailServer, options.mailPassword);
    }
}

void frmOptions::accept() {
    OptionsSettings options;
    m_miscellaneous->takeValues(options);
    if (options.email && !isMailAddress(options.sender)) {
        askForAddress();
        return;
    }
    SaveMyINISettings();
    LoadSettingsFromINIFile(m_ctx);
    BorderlessDialog::accept();
}

void frmOptions::askForAddress() {
    TabStrip1->setCurrent(m_pages->indexOf(m_miscellaneous));
    m_miscellaneous->editAddress();
    auto *box = new MessageBox("msgNoAddress", m_ctx.texts.text("ApplicationName"),
                               m_ctx.texts.text("DlgOptionsNoAddress"), this);
    box->setPicture("email");
    box->showAlone();
}

} // namespace lumora
