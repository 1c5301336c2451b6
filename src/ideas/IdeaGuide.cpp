#include "ideas/IdeaGuide.h"

#include "ideas/IdeaPicture.h"
#include "session/AppContext.h"
#include "widgets/PictureButton.h"
#include "widgets/Theme.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QScrollArea>
#include <QVBoxLayout>

namespace lumora {

namespace {

constexpr int guideMargin = 8;         // pixels
constexpr QSize guidePicture(132, 99); // pixels
constexpr int rowIcon = 40;
constexpr int tickIcon = 26;
constexpr double titleLetters = 13; // points
constexpr double guideLetters = 10;

QFont guideFont(const QWidget &widget) {
    QFont letters = widget.font();
    letters.setPointSizeF(guideLetters);
    return letters;
}

} // namespace

/// One step: its tool's picture, with a tick over its corner when it is done, and its sentence.
class IdeaGuide::StepRow : public QWidget {
  public:
    StepRow(int number, QWidget *parent)
        : QWidget(parent), m_icon(new QLabel(this)),
          m_open(new PictureButton("stickers", PictureButton::CaptionPlace::None, this)), m_text(new QLabel(this)) {
        setObjectName(QStringLiteral("stepIdea%1").arg(number));
        m_text->setObjectName(QStringLiteral("lblIdeaTodo%1").arg(number));
        m_text->setWordWrap(true);
        m_text->setFont(guideFont(*m_text));
        m_icon->setFixedSize(rowIcon, rowIcon);
        m_open->setObjectName(QStringLiteral("cmdIdeaOpen%1").arg(number));
        m_open->setLook(PictureButton::Look::Raised);
        m_open->setPictureSize(rowIcon);
        m_open->setFixedSize(smallestButton, smallestButton);
        auto *row = new QHBoxLayout(this);
        row->setContentsMargins(6, 4, 2, 4);
        row->setSpacing(6);
        row->addWidget(m_icon);
        row->addWidget(m_open);
        row->addWidget(m_text, 1);
    }

    /// The button of a step that opens its tool.
    PictureButton *button() const { return m_open; }

    void show(const IdeaStep &step, const QString &text, bool done, bool current) {
        const qreal density = devicePixelRatioF();
        QPixmap picture = iconPixmap(step.icon, rowIcon, density);
        if (done) {
            QPainter painter(&picture);
            painter.drawPixmap(rowIcon - tickIcon, rowIcon - tickIcon, iconPixmap("ok", tickIcon, density));
        }
        m_icon->setPixmap(picture);
        m_icon->setVisible(!opensTool(step));
        m_open->setPicture(picture);
        m_open->setVisible(opensTool(step));
        m_open->setAccessibleName(text);
        m_text->setText(text);
        setProperty("done", done);
        setProperty("current", current);
        setVisible(true);
        update();
    }

  protected:
    void paintEvent(QPaintEvent *) override {
        if (!property("current").toBool()) {
            return;
        }
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(colours::sun, 3));
        painter.setBrush(colours::hover);
        painter.drawRoundedRect(QRectF(rect()).adjusted(1.5, 1.5, -1.5, -1.5), buttonCorner, buttonCorner);
    }

  private:
    QLabel *m_icon;
    PictureButton *m_open; ///< instead of it, where the step's tool has no other button
    QLabel *m_text;
};

IdeaGuide::IdeaGuide(AppContext &context, QWidget *window)
    : QWidget(window), m_context(context), m_title(new QLabel(this)),
      m_close(new PictureButton("close", PictureButton::CaptionPlace::None, this)), m_area(new QScrollArea(this)) {
    setObjectName("pnlIdea");
    setFixedWidth(guideWidth);
    m_title->setObjectName("lblIdeaTitle");
    QFont bold = m_title->font();
    bold.setPointSizeF(titleLetters);
    bold.setBold(true);
    m_title->setFont(bold);
    m_title->setWordWrap(true);
    m_close->setObjectName("cmdIdeaClose");
    m_close->setPictureSize(closePicture);
    connect(m_close, &QAbstractButton::clicked, this, &QWidget::hide);

    auto *sheet = new QWidget;
    sheet->setAutoFillBackground(false);
    m_picture = new IdeaPicture(guidePicture, sheet);
    m_picture->setObjectName("picIdeaSmall");
    auto *column = new QVBoxLayout(sheet);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(2);
    column->addWidget(m_picture, 0, Qt::AlignHCenter);
    for (std::size_t i = 0; i < m_rows.size(); ++i) {
        m_rows.at(i) = new StepRow(static_cast<int>(i) + 1, sheet);
        column->addWidget(m_rows.at(i));
        connect(m_rows.at(i)->button(), &QAbstractButton::clicked, this,
                [this, i] { Q_EMIT toolWanted(toolOf(*m_progress.steps().at(i))); });
    }
    m_make = new PictureButton("pop-art", PictureButton::CaptionPlace::Beside, sheet);
    m_make->setObjectName("cmdIdeaMake");
    m_make->setLook(PictureButton::Look::Raised);
    m_make->setPictureSize(rowIcon);
    connect(m_make, &QAbstractButton::clicked, this, &IdeaGuide::popArtWanted);
    column->addWidget(m_make);
    m_then = new QLabel(sheet);
    m_then->setObjectName("lblIdeaNext");
    m_then->setWordWrap(true);
    m_then->setMargin(6);
    column->addWidget(m_then);
    column->addStretch(1);
    m_area->setFrameShape(QFrame::NoFrame);
    m_area->setWidgetResizable(true);
    m_area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_area->setFocusPolicy(Qt::NoFocus);
    m_area->setWidget(sheet);
    sheet->setAutoFillBackground(false);
    m_area->viewport()->setAutoFillBackground(false);

    auto *head = new QHBoxLayout;
    head->setSpacing(4);
    head->addWidget(m_title, 1);
    head->addWidget(m_close, 0, Qt::AlignTop);
    auto *rows = new QVBoxLayout(this);
    rows->setContentsMargins(guideMargin, guideMargin, guideMargin, guideMargin);
    rows->addLayout(head);
    rows->addWidget(m_area, 1);
    hide();
    window->installEventFilter(this);
    connect(&context.photo, &PhotoDocument::changed, this, [this](PhotoChanges what) {
        using Kind = IdeaEvent::Kind;
        const bool stepped = what.testFlag(PhotoChange::History) && !what.testFlag(PhotoChange::Edited);
        if (what.testFlag(PhotoChange::Loaded)) {
            m_progress.tell({Kind::Opened});
        } else if (what.testFlag(PhotoChange::Saved)) {
            m_progress.tell({Kind::Saved});
        } else if (stepped && m_context.photo.history().redoSteps() > 0) {
            m_progress.tell({Kind::Undone});
        } else {
            return;
        }
        refresh();
    });
}

bool IdeaGuide::hasRoom() const {
    return parentWidget()->width() >= narrowestWindow;
}

void IdeaGuide::begin(const Idea &idea) {
    std::vector<const IdeaStep *> shown;
    for (const IdeaStep &step : idea.steps) {
        if (isShown(step, m_context.flags, m_context.fields)) {
            shown.push_back(&step);
        }
    }
    m_progress.begin(idea, std::move(shown), m_context.photo.PhotoLoaded());
    m_picture->setIdea(idea);
    LoadLanguage();
    setVisible(hasRoom());
}

void IdeaGuide::photoChangedBy(const QString &tool, const QString &item) {
    m_progress.tell({IdeaEvent::Kind::Changed, tool, item});
    refresh();
}

void IdeaGuide::LoadLanguage() {
    const Idea *idea = m_progress.idea();
    if (idea == nullptr) {
        return;
    }
    m_title->setText(m_context.texts.text(idea->title));
    m_picture->setAccessibleName(m_title->text());
    m_then->setText(m_context.texts.text(idea->then));
    m_make->setVisible(idea->canBeMade);
    refresh();
}

void IdeaGuide::refresh() {
    const auto &steps = m_progress.steps();
    const std::size_t current = m_progress.current();
    for (std::size_t i = 0; i < m_rows.size(); ++i) {
        if (i < steps.size()) {
            const QString text = m_context.texts.text(steps.at(i)->text);
            m_rows.at(i)->show(*steps.at(i), text, m_progress.isDone(i), i == current);
        } else {
            m_rows.at(i)->hide();
        }
    }
    m_make->setEnabled(m_context.photo.PhotoLoaded());
    for (const StepRow *row : m_rows) {
        row->button()->setEnabled(m_context.photo.PhotoLoaded());
    }
    QFont letters = guideFont(*this);
    letters.setBold(current == steps.size()); // all is done: this is next
    m_then->setFont(letters);
    if (isVisible()) {
        m_area->ensureWidgetVisible(current < steps.size() ? static_cast<QWidget *>(m_rows.at(current)) : m_then);
    }
}

void IdeaGuide::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.fillRect(rect(), colours::parchment);
    painter.fillRect(isRightToLeft() ? width() - 1 : 0, 0, 1, height(), colours::line);
}

bool IdeaGuide::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::Resize && !hasRoom()) {
        hide();
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace lumora
