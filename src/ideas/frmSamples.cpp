#include "ideas/frmSamples.h"

#include "ideas/IdeaPicture.h"
#include "session/AppContext.h"
#include "widgets/AnimatedButton.h"
#include "widgets/AnswerButtons.h"
#include "widgets/Theme.h"
#include "widgets/WindowTexts.h"

#include <QButtonGroup>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>
#include <algorithm>

namespace lumora {

namespace {

// Pixels on a screen of 1024 x 768; a larger one gets more of each, a smaller one less.
constexpr QSize choicePicture(88, 66);
constexpr int choiceWidth = 112;
constexpr QSize examplePicture(512, 384);
constexpr int stepsWidth = 380;
constexpr int stepIcon = 44;
constexpr double stepText = 13; // points
constexpr double mostRoom = 1.7;
constexpr double leastRoom = 0.6;

QFont larger(QFont font, double points, bool bold) {
    font.setPointSizeF(points);
    font.setBold(bold);
    return font;
}

} // namespace

frmSamples::frmSamples(AppContext &context, QWidget *owner)
    : BorderlessDialog("frmSamples", owner), m_context(context), m_choices(new QButtonGroup(this)) {
    QWidget *choices = makeChoices();
    m_picture = new IdeaPicture(examplePicture * roomy(), this);
    auto *middle = new QHBoxLayout;
    middle->setSpacing(18);
    auto *example = new QVBoxLayout;
    example->setSpacing(14);
    example->addWidget(m_picture);
    middle->addLayout(example);
    middle->addWidget(makeSteps());
    example->addWidget(cmdIdeaStickers, 0, Qt::AlignHCenter);
    example->addStretch();
    cmdYes = (new AnswerButtons(this))->add("cmdYes", "ok", {.minimumWidth = 130});
    cmdYes->setLeastSide(simpleButton);
    connect(cmdYes, &QAbstractButton::clicked, this, [this] {
        accept();
        Q_EMIT ideaChosen(chosen());
    });
    auto *answers = new QHBoxLayout;
    answers->addStretch(1);
    answers->addWidget(cmdYes);
    body()->setSpacing(10);
    body()->addWidget(choices);
    body()->addLayout(middle);
    addFoot(answers);
    setDefaultButton(cmdYes);
    LoadLanguage();
    connect(m_choices, &QButtonGroup::idToggled, this, [this](int index, bool on) {
        if (on) {
            choose(index);
        }
    });
    reserveRoom();
    m_choices->button(0)->setChecked(true);
    m_choices->button(0)->setFocus();
}

frmSamples *frmSamples::showModal(AppContext &context, QWidget *owner) {
    auto *samples = new frmSamples(context, owner);
    samples->setAttribute(Qt::WA_DeleteOnClose);
    samples->open();
    return samples;
}

void frmSamples::LoadLanguage() {
    const Texts &texts = m_context.texts;
    showTexts(texts, *this);
    m_needsPhoto->setText(texts.text("IdeaNeedsPhoto"));
    cmdMakePopArt->setText(texts.text("IdeaMakePopArt"));
    cmdMakePopArt->setAccessibleName(cmdMakePopArt->text());
    cmdIdeaStickers->setText(texts.text("Stickers"));
    cmdIdeaStickers->setAccessibleName(cmdIdeaStickers->text());
    for (int i = 0; i < static_cast<int>(ideas().size()); ++i) {
        const Idea &idea = ideas()[std::size_t(i)];
        m_choices->button(i)->setText(texts.text(idea.name));
        m_choices->button(i)->setAccessibleName(texts.text(idea.title));
    }
}

/// How much larger than on a screen of 1024 x 768 everything may be.
double frmSamples::roomy() const {
    const QWidget *owner = parentWidget();
    const QSize room = owner != nullptr ? owner->window()->size() : QSize(1024, 768);
    return std::clamp(std::min(room.width() / 1024.0, room.height() / 768.0), leastRoom, mostRoom);
}

// --- What is in it --------------------------------------------------------------------------------------------------

QWidget *frmSamples::makeChoices() {
    auto *choices = new QWidget(this);
    auto *row = new QHBoxLayout(choices);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(4);
    const QSize size = choicePicture * roomy();
    for (int i = 0; i < static_cast<int>(ideas().size()); ++i) {
        const Idea &idea = ideas()[std::size_t(i)];
        auto *button = new PictureButton("ideas", PictureButton::CaptionPlace::Below, choices);
        button->setObjectName(QStringLiteral("cmdIdea_%1").arg(QLatin1StringView(idea.id)));
        button->setPictureSize(size);
        button->setPicture(paintIdea(idea, size, devicePixelRatioF()));
        button->setCheckable(true);
        button->setFixedWidth(qRound(choiceWidth * roomy()));
        m_choices->addButton(button, i);
        row->addWidget(button);
    }
    return choices;
}

QWidget *frmSamples::makeSteps() {
    m_guide = new QWidget(this);
    m_guide->setFixedWidth(qRound(stepsWidth * roomy()));
    auto *column = new QVBoxLayout(m_guide);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(8);
    const double words = stepText * (1 + roomy()) / 2; // grows half as fast as the pictures
    const auto label = [this](const char *name, double points, bool bold) {
        auto *made = new QLabel(m_guide);
        made->setObjectName(name);
        made->setFont(larger(made->font(), points, bold));
        made->setWordWrap(true);
        return made;
    };
    m_title = label("lblIdea", 1.3 * words, true);
    column->addWidget(m_title);
    auto *grid = new QGridLayout;
    grid->setHorizontalSpacing(12);
    grid->setVerticalSpacing(10);
    grid->setColumnStretch(1, 1);
    for (int i = 0; i < static_cast<int>(m_steps.size()); ++i) {
        Step &step = m_steps.at(std::size_t(i));
        step.icon = new QLabel(m_guide);
        step.icon->setObjectName(QStringLiteral("picIdeaStep%1").arg(i + 1));
        step.icon->setFixedSize(QSize(stepIcon, stepIcon) * roomy());
        step.text = label(qPrintable(QStringLiteral("lblIdeaStep%1").arg(i + 1)), words, false);
        grid->addWidget(step.icon, i, 0, Qt::AlignVCenter);
        grid->addWidget(step.text, i, 1, Qt::AlignVCenter);
    }
    column->addLayout(grid);
    m_then = label("lblIdeaThen", words, true);
    column->addWidget(m_then);
    column->addStretch();
    const auto button = [&](const char *name, const char *icon) {
        auto *made = new PictureButton(icon, PictureButton::CaptionPlace::Beside, m_guide);
        made->setObjectName(name);
        made->setLook(PictureButton::Look::Raised);
        made->setPictureSize(48);
        made->setFont(larger(made->font(), 14, true));
        return made;
    };
    cmdMakePopArt = button("cmdMakePopArt", "pop-art");
    connect(cmdMakePopArt, &QAbstractButton::clicked, this, &frmSamples::make);
    column->addWidget(cmdMakePopArt);
    cmdIdeaStickers = button("cmdIdeaStickers", "stickers");
    connect(cmdIdeaStickers, &QAbstractButton::clicked, this, [this] {
        accept();
        Q_EMIT ideaChosen(chosen());
        Q_EMIT toolWanted(toolOf(*stepThatOpensTool(chosen())));
    });
    m_needsPhoto = label("lblIdeaNeedsPhoto", 11, false);
    column->addWidget(m_needsPhoto);
    return m_guide;
}

// --- What it shows --------------------------------------------------------------------------------------------------

void frmSamples::choose(int index) {
    const Idea &idea = ideas()[std::size_t(index)];
    const QString title = m_context.texts.text(idea.title);
    m_picture->setIdea(idea);
    m_picture->setAccessibleName(title);
    m_title->setText(title);
    m_title->show(); // counts for the height before the window is up
    m_then->setText(m_context.texts.text(idea.then));
    m_then->show();
    showSteps(idea);
    const bool hasPhoto = m_context.photo.PhotoLoaded() && !m_context.photo.picCanvas().isNull();
    cmdMakePopArt->setVisible(idea.canBeMade);
    cmdIdeaStickers->setVisible(stepThatOpensTool(idea) != nullptr);
    for (PictureButton *button : {cmdMakePopArt, cmdIdeaStickers}) {
        button->setEnabled(hasPhoto);
        button->setToolTip(hasPhoto ? QString() : m_needsPhoto->text());
    }
    m_needsPhoto->setVisible((idea.canBeMade || stepThatOpensTool(idea) != nullptr) && !hasPhoto);
}

/// Those whose tools are on the screen.
void frmSamples::showSteps(const Idea &idea) {
    std::size_t shown = 0;
    for (const IdeaStep &step : idea.steps) {
        if (isShown(step, m_context.flags, m_context.fields)) {
            const Step &place = m_steps.at(shown++);
            place.icon->setPixmap(iconPixmap(step.icon, place.icon->width(), devicePixelRatioF()));
            place.text->setText(m_context.texts.text(step.text));
        }
    }
    for (std::size_t i = 0; i < m_steps.size(); ++i) {
        m_steps.at(i).icon->setVisible(i < shown);
        m_steps.at(i).text->setVisible(i < shown);
    }
}

/// The window keeps its size whichever idea is chosen.
void frmSamples::reserveRoom() {
    for (QWidget *child : m_guide->findChildren<QWidget *>()) {
        child->ensurePolished(); // with the font that it will have
    }
    int height = m_picture->height();
    for (int i = 0; i < static_cast<int>(ideas().size()); ++i) {
        choose(i);
        m_guide->layout()->activate(); // forgets the heights of other texts
        height = std::max(height, m_guide->layout()->heightForWidth(m_guide->width()));
    }
    m_guide->setFixedHeight(height);
}

const Idea &frmSamples::chosen() const {
    return ideas()[std::size_t(m_choices->checkedId())];
}

void frmSamples::make() {
    accept();
    Q_EMIT popArtWanted();
}

} // namespace lumora
