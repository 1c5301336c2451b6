#include "tools/stickers/StickersPanel.h"

#include "imaging/decorations/LetteringTable.h"
#include "imaging/decorations/PaintDecoration.h"
#include "imaging/decorations/StickerTable.h"
#include "session/AppContext.h"
#include "widgets/Accessibility.h"
#include "widgets/PictureButton.h"
#include "widgets/Theme.h"

#include <QButtonGroup>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QStackedWidget>
#include <QVBoxLayout>
#include <algorithm>

namespace lumora {

namespace {

constexpr int topPicture = 44; // pixels
constexpr int choicePicture = 52;
constexpr int choicesBeside = 10; ///< of a page
constexpr QSize letteringPicture(112, 52);
constexpr int choiceMargin = 4;
constexpr int choiceEdge = 4; ///< of a button round its picture
constexpr int topWidth = 72;  ///< at least
constexpr int letteringWidth = 80;

struct GroupRow {
    StickerGroup group;
    const char *name; ///< of its button
    const char *icon; ///< one of its stickers
    const char *text;
};
constexpr GroupRow groups[] = {
    {StickerGroup::Faces, "cmdStickersFaces", ":/stickers/happy.svg", "StickersFaces"},
    {StickerGroup::DressUp, "cmdStickersDressUp", ":/stickers/top-hat.svg", "StickersDressUp"},
    {StickerGroup::Animals, "cmdStickersAnimals", ":/stickers/cat.svg", "StickersAnimals"},
    {StickerGroup::Outdoors, "cmdStickersOutdoors", ":/stickers/rainbow.svg", "StickersOutdoors"},
    {StickerGroup::Party, "cmdStickersParty", ":/stickers/cake.svg", "StickersParty"},
    {StickerGroup::Comic, "cmdStickersComic", ":/stickers/bang.svg", "StickersComic"},
};

/// Some words in that style, as large as fits.
QPixmap letteringSample(int row, const QString &words, qreal density) {
    QPixmap picture(letteringPicture * density);
    picture.fill(Qt::transparent);
    const DecorationShape shape =
        shapeOf({.kind = Decoration::Kind::Words, .row = row, .text = words, .centre = {}, .size = 100, .speaker = {}});
    const double scale = std::min(picture.width() / shape.bounds.width(), picture.height() / shape.bounds.height());
    QPainter painter(&picture);
    StickerDrawings drawings;
    paintDecoration(painter, shape,
                    QTransform::fromTranslate(-shape.bounds.center().x(), -shape.bounds.center().y()) *
                        QTransform::fromScale(scale, scale) *
                        QTransform::fromTranslate(picture.width() / 2.0, picture.height() / 2.0),
                    drawings);
    painter.end();
    picture.setDevicePixelRatio(density);
    return picture;
}

} // namespace

StickersPanel::StickersPanel(AppContext &ctx, QWidget *window)
    : SlidingPanel("pnlStickers", "cmdpnlStickersExit", window), m_ctx(ctx) {
    titleLabel()->setObjectName("lblStickers");
}

void StickersPanel::prepare() {
    if (m_tops == nullptr) {
        build();
    }
    m_tops->button(0)->click();
    chooseNothing();
}

void StickersPanel::build() {
    m_tops = new QButtonGroup(this);
    m_choices = new QButtonGroup(this);
    m_topRow = new QWidget(this);
    setAccessibleRole(*m_topRow, QAccessible::PageTabList);
    (new QHBoxLayout(m_topRow))->setContentsMargins(0, 0, 0, 0);
    m_topRow->layout()->setSpacing(choiceMargin);
    m_pages = new QStackedWidget(this);
    m_pages->setObjectName("pagesStickers");
    addLetterings();
    addGroups();
    body()->addWidget(m_topRow);
    body()->addWidget(m_pages);
    LoadLanguage();
}

PictureButton *StickersPanel::addTop(const QString &name, const QString &icon, const char *identifier) {
    auto *button = new PictureButton(icon, PictureButton::CaptionPlace::Below, m_topRow);
    button->setObjectName(name);
    button->setPictureSize(topPicture);
    button->setCheckable(true);
    setAccessibleRole(*button, QAccessible::PageTab);
    button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    button->setMinimumWidth(topWidth);
    m_topRow->layout()->addWidget(button);
    m_tops->addButton(button, static_cast<int>(m_tops->buttons().size()));
    m_named.push_back({button, identifier});
    return button;
}

QWidget *StickersPanel::addPage(PictureButton *top) {
    auto *page = new QWidget(m_pages);
    auto *row = new QHBoxLayout(page);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(choiceMargin);
    m_pages->addWidget(page);
    connect(top, &QAbstractButton::clicked, this, [this, page] {
        m_pages->setCurrentWidget(page);
        chooseNothing();
        Q_EMIT pageChosen();
    });
    return page;
}

PictureButton *StickersPanel::addChoice(QWidget *page, const QString &name, const Decoration &prototype,
                                        const char *identifier) {
    auto *button = new PictureButton(page);
    button->setObjectName(name);
    button->setPictureSize(choicePicture);
    button->setCheckable(true);
    button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    button->setMinimumWidth(smallestButton);
    page->layout()->addWidget(button);
    m_choices->addButton(button);
    m_named.push_back({button, identifier});
    connect(button, &QAbstractButton::clicked, this, [this, prototype] { Q_EMIT chosen(prototype); });
    return button;
}

void StickersPanel::addGroups() {
    for (const GroupRow &group : groups) {
        QWidget *page = addPage(addTop(group.name, group.icon, group.text));
        for (int row = 0; row < static_cast<int>(stickers().size()); ++row) {
            const StickerRow &sticker = stickers()[static_cast<std::size_t>(row)];
            if (sticker.group == group.group) {
                const Decoration prototype{.row = row, .text = {}, .centre = {}, .speaker = {}};
                addChoice(page, QStringLiteral("cmdSticker_%1").arg(QLatin1StringView(sticker.name)), prototype,
                          sticker.text)
                    ->setIconName(stickerDrawing(sticker));
            }
        }
    }
}

/// Bubbles and words, which are typed.
void StickersPanel::addLetterings() {
    using Kind = Decoration::Kind;
    QWidget *page = addPage(addTop("cmdStickersWords", "words", "StickersWords"));
    const auto bubble = [&](const char *name, const char *icon, Kind kind, const char *identifier) {
        addChoice(page, name, {.kind = kind, .text = {}, .centre = {}, .speaker = {}}, identifier)->setIconName(icon);
    };
    bubble("cmdBubbleSpeech", "bubble-speech", Kind::SpeechBubble, "BubbleSpeech");
    bubble("cmdBubbleThought", "bubble-thought", Kind::ThoughtBubble, "BubbleThought");
    for (int row = 0; row < static_cast<int>(letterings().size()); ++row) {
        const LetteringRow &style = letterings()[static_cast<std::size_t>(row)];
        PictureButton *button =
            addChoice(page, QStringLiteral("cmdLettering_%1").arg(QLatin1StringView(style.name)),
                      {.kind = Kind::Words, .row = row, .text = {}, .centre = {}, .speaker = {}}, style.text);
        button->setPictureSize(letteringPicture);
        button->setMinimumWidth(letteringWidth);
    }
}

void StickersPanel::LoadLanguage() {
    for (const Named &each : m_named) {
        const QString name = m_ctx.texts.text(each.identifier);
        if (each.button->captionPlace() != PictureButton::CaptionPlace::None) {
            each.button->setText(name);
        } else {
            each.button->setToolTip(name);
        }
        each.button->setAccessibleName(name);
    }
    for (int row = 0; row < static_cast<int>(letterings().size()); ++row) {
        const QString name =
            QStringLiteral("cmdLettering_%1").arg(QLatin1StringView(letterings()[static_cast<std::size_t>(row)].name));
        findChild<PictureButton *>(name)->setPicture(
            letteringSample(row, m_ctx.texts.text("LetteringSample"), devicePixelRatioF()));
    }
}

void StickersPanel::changeEvent(QEvent *event) {
    if (event->type() == QEvent::LanguageChange && m_tops != nullptr) {
        LoadLanguage();
    }
    SlidingPanel::changeEvent(event);
}

/// In a narrow window the pictures are smaller.
void StickersPanel::resizeEvent(QResizeEvent *event) {
    SlidingPanel::resizeEvent(event);
    if (m_choices == nullptr) {
        return;
    }
    const int room = body()->contentsRect().width() / choicesBeside - choiceMargin - 2 * choiceEdge;
    const int side = std::clamp(room, smallestButton - 2 * choiceEdge, choicePicture);
    for (QAbstractButton *choice : m_choices->buttons()) {
        auto *button = static_cast<PictureButton *>(choice);
        const bool wide = button->minimumWidth() == letteringWidth;
        button->setPictureSize(wide ? letteringPicture * side / choicePicture : QSize(side, side));
    }
}

void StickersPanel::chooseNothing() {
    if (QAbstractButton *pressed = m_choices->checkedButton()) {
        m_choices->setExclusive(false);
        pressed->setChecked(false);
        m_choices->setExclusive(true);
    }
}

} // namespace lumora
