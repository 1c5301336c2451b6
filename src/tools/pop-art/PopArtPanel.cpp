#include "tools/pop-art/PopArtPanel.h"

#include "session/AppContext.h"
#include "tools/pop-art/PopArtPalette.h"
#include "widgets/PictureButton.h"
#include "widgets/Theme.h"

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QLabel>
#include <QRandomGenerator>
#include <QVBoxLayout>

namespace lumora {

namespace {

constexpr int gap = 8;      // pixels between the panel's parts: they all fit on the smallest screen
constexpr int printGap = 4; // between prints
constexpr QSize surpriseButton(72, 64);

} // namespace

PopArtPanel::PopArtPanel(AppContext &ctx, QWidget *window)
    : SlidingPanel("pnlAndy", "cmdExitPnlAndy", window), m_ctx(ctx), m_pairs(usualPopArtPairs()),
      m_swatches(new QButtonGroup(this)), m_palette(new PopArtPalette(this)) {
    titleLabel()->setObjectName("lblPopArt");
    auto *row = new QHBoxLayout;
    row->setSpacing(gap);
    auto *printRow = new QWidget(this);
    printRow->setLayoutDirection(Qt::LeftToRight); // in the order of the picture, also in right-to-left languages
    auto *prints = new QHBoxLayout(printRow);
    prints->setContentsMargins(0, 0, 0, 0);
    prints->setSpacing(printGap);
    for (int number = 1; number <= static_cast<int>(m_pairs.size()); ++number) {
        prints->addWidget(makePrint(number));
    }
    row->addWidget(printRow);
    row->addWidget(m_palette);
    row->addStretch();
    row->addWidget(makeButtons());
    body()->addLayout(row);
    connect(m_swatches, &QButtonGroup::idToggled, this, &PopArtPanel::showColours);
    connect(m_palette, &PopArtPalette::chosen, this, &PopArtPanel::chooseColour);
    connect(this, &SlidingPanel::opened, this, [this] { m_swatches->checkedButton()->setFocus(Qt::OtherFocusReason); });
    chooseFirst();
}

/// The picture and below it its two colours.
QWidget *PopArtPanel::makePrint(int number) {
    auto *print = new QWidget(this);
    auto *picture = new QLabel(print);
    picture->setObjectName(QStringLiteral("picAndy%1").arg(number));
    picture->setFixedSize(pictureSize);
    picture->setAlignment(Qt::AlignCenter);
    m_pictures.at(static_cast<std::size_t>(number - 1)) = picture;
    auto *swatches = new QHBoxLayout;
    swatches->setSpacing(0);
    for (const char *part : {"Dark", "Light"}) {
        auto *swatch = new PictureButton(print);
        swatch->setObjectName(QStringLiteral("cmdPopArt%1%2").arg(QLatin1StringView(part)).arg(number));
        swatch->setPictureSize(popArtSwatchSize);
        swatch->setFixedSize(smallestButton, smallestButton);
        swatch->setCheckable(true);
        m_swatches->addButton(swatch, static_cast<int>(m_swatches->buttons().size()));
        swatches->addWidget(swatch);
    }
    auto *column = new QVBoxLayout(print);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(4);
    column->addWidget(picture, 0, Qt::AlignHCenter);
    column->addLayout(swatches);
    column->addStretch();
    return print;
}

QWidget *PopArtPanel::makeButtons() {
    auto *buttons = new QWidget(this);
    auto *column = new QVBoxLayout(buttons);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(printGap);
    auto *surprise = new PictureButton("dice", PictureButton::CaptionPlace::None, buttons);
    surprise->setObjectName("cmdPopArtSurprise");
    surprise->setPictureSize(48);
    surprise->setFixedSize(surpriseButton);
    auto *apply = new PictureButton("ok", PictureButton::CaptionPlace::Beside, buttons);
    apply->setObjectName("cmdApplyPopArt");
    apply->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed); // its caption is never cut
    for (PictureButton *button : {surprise, apply}) {
        button->setLook(PictureButton::Look::Raised);
        column->addWidget(button, 0, Qt::AlignHCenter);
    }
    connect(apply, &QAbstractButton::clicked, this, &PopArtPanel::applyWanted);
    connect(surprise, &QAbstractButton::clicked, this, [this] {
        PopArtPairs next = m_pairs;
        while (next == m_pairs) {
            next = surprisePopArtPairs(*QRandomGenerator::global());
        }
        setPairs(next);
    });
    column->addStretch();
    return buttons;
}

std::uint32_t &PopArtPanel::colourOf(int swatch) {
    PopArtColours &pair = m_pairs.at(static_cast<std::size_t>(swatch / 2));
    return swatch % 2 == 0 ? pair.dark : pair.light;
}

void PopArtPanel::chooseColour(quint32 rgb) {
    colourOf(m_swatches->checkedId()) = rgb;
    showColours();
    Q_EMIT pairsChanged();
}

void PopArtPanel::setPairs(const PopArtPairs &pairs) {
    m_pairs = pairs;
    showColours();
    Q_EMIT pairsChanged();
}

void PopArtPanel::changeEvent(QEvent *event) {
    if (event->type() == QEvent::LanguageChange) {
        showColours();
    }
    SlidingPanel::changeEvent(event);
}

void PopArtPanel::chooseFirst() {
    m_swatches->button(0)->setChecked(true);
    showColours();
}

/// On the swatches, in their names, and the chosen one's in the palette.
void PopArtPanel::showColours() {
    for (int i = 0; i < static_cast<int>(m_swatches->buttons().size()); ++i) {
        const std::uint32_t rgb = colourOf(i);
        QString colour;
        for (const PopArtColour &row : popArtColours()) {
            if (row.rgb == rgb) {
                colour = m_ctx.texts.text(row.text);
            }
        }
        auto *swatch = static_cast<PictureButton *>(m_swatches->button(i));
        swatch->setPicture(popArtSwatch(rgb, popArtSwatchSize));
        const QString name = m_ctx.texts.text(i % 2 == 0 ? "PopArtDark" : "PopArtLight").arg(i / 2 + 1).arg(colour);
        swatch->setToolTip(name);
        swatch->setAccessibleName(name);
    }
    m_palette->setColour(colourOf(std::max(0, m_swatches->checkedId())));
}

void PopArtPanel::setRow(const QImage &row) {
    const int prints = static_cast<int>(m_pictures.size());
    const int width = row.width() / prints;
    for (int i = 0; i < prints; ++i) {
        const QImage print = row.copy(i * width, 0, width, row.height());
        QPixmap pixmap = QPixmap::fromImage(print);
        pixmap.setDevicePixelRatio(devicePixelRatioF());
        m_pictures.at(static_cast<std::size_t>(i))->setPixmap(pixmap);
    }
}

} // namespace lumora
