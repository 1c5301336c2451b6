#include "app/frmForMe.h"

#include "app/InterfaceScale.h"
#include "base/Capitals.h"
#include "session/AppContext.h"
#include "widgets/AnimatedButton.h"
#include "widgets/AnswerButtons.h"
#include "widgets/PictureChoice.h"
#include "widgets/Theme.h"
#include "widgets/TitleStrip.h"
#include "widgets/WindowTexts.h"

#include <QEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLocale>
#include <QScreen>
#include <algorithm>

namespace lumora {

namespace {

constexpr int forMePicture = 56; // pixels
constexpr int forMeGap = 10;     // pixels between the cards
constexpr int forMeMargin = 20;  // pixels between the cards and the edge of the window
constexpr std::pair<const char *, const char *> forMeSizes[] = {
    {"optSize1", "buttons-usual"}, {"optSize2", "buttons-large"}, {"optSize3", "buttons-largest"}};

/// What is switched on and off: its control, its picture, its setting.
constexpr struct {
    const char *name;
    const char *icon;
    bool ForMe::*value;
} forMeTicks[] = {
    {"chkCalm", "calm", &ForMe::calm},
    {"chkEasyLetters", "easy-letters", &ForMe::easyLetters},
    {"chkHighContrast", "high-contrast", &ForMe::highContrast},
    {"chkClickMoveClick", "click-move-click", &ForMe::clickMoveClick},
    {"chkLargePointer", "large-pointer", &ForMe::largePointer},
    {"chkReadAloud", "read-aloud", &ForMe::readAloud},
    {"chkCapitals", "capitals", &ForMe::capitals}, // last: some languages have none
};

/// At most three rows, which the smallest screen has room for.
constexpr int forMeColumns = (std::size(forMeSizes) + std::size(forMeTicks) + 2) / 3;

} // namespace

frmForMe::frmForMe(AppContext &context, QWidget *owner)
    : BorderlessDialog("frmForMe", owner), m_context(context), m_cards(new QGridLayout),
      cmdReset(new PictureButton("undo", PictureButton::CaptionPlace::Beside, this)) {
    build();
    LoadLanguage();
    showValues();
    connect(&m_voices, &VoiceSearch::answered, this, [this](bool hasVoice) {
        m_hasVoice = hasVoice;
        showVoice();
    });
    m_voices.start(QLocale().name());
}

frmForMe *frmForMe::showModal(AppContext &context, QWidget *owner) {
    auto *page = new frmForMe(context, owner);
    page->setAttribute(Qt::WA_DeleteOnClose);
    page->open();
    return page;
}

void frmForMe::build() {
    picTBar()->setPicture("for-me");
    m_cards->setSpacing(forMeGap);
    for (const auto &[name, icon] : forMeSizes) {
        auto *choice = new PictureChoice(icon, forMePicture, this);
        choice->setObjectName(name);
        connect(choice, &QAbstractButton::clicked, this, &frmForMe::take);
        addCard(choice);
        m_sizes << choice;
    }
    for (const auto &tick : forMeTicks) {
        auto *choice = new PictureTick(tick.icon, forMePicture, this);
        choice->setObjectName(tick.name);
        connect(choice, &QAbstractButton::clicked, this, &frmForMe::take);
        addCard(choice);
        m_ticks << choice;
    }
    cmdReset->setObjectName("cmdReset");
    cmdReset->setLook(PictureButton::Look::Raised);
    connect(cmdReset, &QAbstractButton::clicked, this, [this] { write({}); });
    auto *buttons = new AnswerButtons(this);
    AnimatedButton *cmdOK = buttons->add("cmdOK", "ok", {.pictureSize = 32, .minimumWidth = 130});
    connect(cmdOK, &QAbstractButton::clicked, this, &QDialog::accept);
    setDefaultButton(cmdOK);
    auto *foot = new QHBoxLayout;
    foot->addWidget(cmdReset);
    foot->addStretch(1);
    foot->addWidget(cmdOK);
    body()->setContentsMargins(forMeMargin - 2, 10, forMeMargin - 2, 12);
    body()->setSpacing(forMeGap);
    body()->addLayout(m_cards, 1);
    addFoot(foot);
}

void frmForMe::addCard(QWidget *card) {
    const int place = m_cards->count();
    m_cards->addWidget(card, place / forMeColumns, place % forMeColumns);
}

void frmForMe::LoadLanguage() {
    showTexts(m_context.texts, *this);
    findChild<QCheckBox *>("chkClickMoveClick")->setToolTip(m_context.texts.text("ForMeClicksTip"));
    findChild<QCheckBox *>("chkCapitals")->setVisible(hasCapitals(m_context.texts.text("Language")));
    showVoice();
    level();
}

/// Without a voice there is nothing to switch on.
void frmForMe::showVoice() {
    auto *choice = findChild<QCheckBox *>("chkReadAloud");
    choice->setEnabled(m_hasVoice || choice->isChecked());
    choice->setText(m_context.texts.text(m_hasVoice ? "ForMeReadAloud" : "ForMeNoVoice"));
    choice->setToolTip(m_hasVoice ? QString() : m_context.texts.text("ForMeNoVoiceTip"));
    level();
}

/// All columns are as wide as the widest card, where the screen has the room.
void frmForMe::level() {
    int widest = 0;
    for (int place = 0; place < m_cards->count(); ++place) {
        QWidget *card = m_cards->itemAt(place)->widget();
        card->ensurePolished(); // before it is shown its letters are not the style's
        widest = std::max(widest, card->sizeHint().width());
    }
    const int room = screen()->availableGeometry().width() - 2 * forMeMargin - (forMeColumns - 1) * forMeGap;
    widest = std::min(widest, room / forMeColumns);
    for (int column = 0; column < forMeColumns; ++column) {
        m_cards->setColumnMinimumWidth(column, widest);
        m_cards->setColumnStretch(column, 1);
    }
}

void frmForMe::showValues() {
    const ForMe forMe = readForMe(m_context.settings);
    for (qsizetype i = 0; i < m_sizes.size(); ++i) {
        const auto size = static_cast<ButtonSize>(i);
        m_sizes[i]->setChecked(size == forMe.size);
        // On a small screen, and where the desktop has set the scale, there is no other size.
        m_sizes[i]->setEnabled(size == ButtonSize::Usual || size == forMe.size || isScaledAt(size));
    }
    for (qsizetype i = 0; i < m_ticks.size(); ++i) {
        m_ticks[i]->setChecked(forMe.*forMeTicks[i].value);
    }
    cmdReset->setEnabled(forMe != ForMe());
}

void frmForMe::take() {
    ForMe forMe;
    for (qsizetype i = 0; i < m_sizes.size(); ++i) {
        forMe.size = m_sizes[i]->isChecked() ? static_cast<ButtonSize>(i) : forMe.size;
    }
    for (qsizetype i = 0; i < m_ticks.size(); ++i) {
        forMe.*forMeTicks[i].value = m_ticks[i]->isChecked();
    }
    write(forMe);
}

void frmForMe::write(const ForMe &forMe) {
    writeForMe(m_context.settings, forMe);
    showValues();
    Q_EMIT forMeChanged();
}

void frmForMe::changeEvent(QEvent *event) {
    if (event->type() == QEvent::LanguageChange) {
        LoadLanguage();
    } else if (event->type() == QEvent::FontChange && m_cards->count() > 0) {
        level();
    }
    BorderlessDialog::changeEvent(event);
}

} // namespace lumora
