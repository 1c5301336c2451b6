#include "guide/GuideWindow.h"

#include "guide/GuideContents.h"
#include "guide/GuidePages.h"
#include "guide/GuideReader.h"
#include "guide/GuideResults.h"
#include "guide/frmHelp.h"
#include "session/AppContext.h"
#include "widgets/Compositing.h"
#include "widgets/PictureButton.h"
#include "widgets/Theme.h"
#include "widgets/TitleStrip.h"

#include <QAction>
#include <QDesktopServices>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QScreen>
#include <QScrollBar>
#include <QShortcut>
#include <QSizeGrip>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace lumora {

GuideWindow::GuideWindow(AppContext &context, QWidget *owner)
    : QWidget(owner, Qt::Window | Qt::FramelessWindowHint), m_context(context), m_translucent(translucencyWorks()),
      m_strip(new TitleStrip(this)), cmdBack(button("cmdBack", "left")), cmdForward(button("cmdForward", "right")),
      cmdHome(button("cmdHome", "guide")), cmdClose(m_strip->addCloseButton("cmdClose")),
      txtSearch(new QLineEdit(this)), m_sheets(new QStackedWidget(this)),
      m_contents(new GuideContents(context.texts, this)), txtGuide(new GuideReader(context.texts, this)),
      m_results(new GuideResults(context.texts, this)), lblNothing(new QLabel(this)) {
    setObjectName("GuideWindow");
    setAttribute(Qt::WA_DeleteOnClose);
    setAttribute(Qt::WA_TranslucentBackground, m_translucent);
    build();
    LoadLanguage();
    addKeys();
    connect(cmdBack, &QAbstractButton::clicked, this, [this] { step(-1); });
    connect(cmdForward, &QAbstractButton::clicked, this, [this] { step(1); });
    connect(cmdHome, &QAbstractButton::clicked, this, [this] { go({}); });
    connect(cmdClose, &QAbstractButton::clicked, this, &QWidget::close);
    connect(m_contents, &GuideContents::chosen, this, [this](const QString &file) { go({file, {}, {}}); });
    connect(m_results, &GuideResults::chosen, this, [this](const QString &file, const QStringList &words) {
        go({file, txtSearch->text(), words});
    });
    connect(txtGuide, &QTextBrowser::anchorClicked, this, &GuideWindow::follow);
    connect(txtSearch, &QLineEdit::textEdited, this, &GuideWindow::search);
    connect(txtSearch, &QLineEdit::returnPressed, m_results, &GuideResults::choose);
    showPlace();
    m_contents->takeFocus();
}

void GuideWindow::build() {
    txtGuide->setObjectName("txtGuide");
    txtSearch->setObjectName("txtSearch");
    txtSearch->setMaximumWidth(320);
    txtSearch->addAction(QIcon(iconPixmap("search", 24, devicePixelRatioF())), QLineEdit::LeadingPosition);
    txtSearch->installEventFilter(this);
    lblNothing->setObjectName("lblNothing");
    lblNothing->setAlignment(Qt::AlignCenter);
    lblNothing->setWordWrap(true);
    lblNothing->setMargin(40);
    lblNothing->setBackgroundRole(QPalette::Base);
    lblNothing->setAutoFillBackground(true);
    for (QWidget *sheet : {static_cast<QWidget *>(m_contents), static_cast<QWidget *>(txtGuide),
                           static_cast<QWidget *>(m_results), static_cast<QWidget *>(lblNothing)}) {
        m_sheets->addWidget(sheet);
    }

    auto *row = new QHBoxLayout;
    row->addWidget(cmdBack);
    row->addWidget(cmdForward);
    row->addWidget(cmdHome);
    row->addStretch(1);
    row->addWidget(txtSearch, 2);
    auto *inside = new QVBoxLayout;
    inside->setContentsMargins(12, 8, 12, 0);
    inside->addLayout(row);
    inside->addWidget(m_sheets, 1);
    m_strip->setPicture("guide");
    if (m_context.flags.SimpleModeOn) {
        m_strip->setButtonSide(simpleButton);
        for (PictureButton *each : {cmdBack, cmdForward, cmdHome}) {
            each->setLeastSide(simpleButton);
        }
    }
    connect(this, &QWidget::windowTitleChanged, m_strip->lblCaption(), &QLabel::setText);
    const int shade = m_translucent ? shadowMargin : 0;
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(shade + 2, shade + 2, shade + 2, shade + 2);
    column->setSpacing(0);
    column->addWidget(m_strip);
    column->addLayout(inside, 1);
    column->addWidget(new QSizeGrip(this), 0, Qt::AlignRight | Qt::AlignBottom);

    // Six pictures in a row of the contents, and never larger than the screen.
    const QRect room = screen()->availableGeometry();
    resize(QSize(984, 920).boundedTo(room.size() * 0.962) + 2 * QSize(shade, shade));
    QWidget::move(room.center() - rect().center());
}

void GuideWindow::LoadLanguage() {
    const Texts &texts = m_context.texts;
    setWindowTitle(texts.text("ApplicationName") + " - " + texts.text("DlgHelpTitle"));
    cmdBack->setToolTip(texts.text("GuideBack"));
    cmdForward->setToolTip(texts.text("GuideForward"));
    cmdHome->setToolTip(texts.text("GuideHome"));
    cmdClose->setToolTip(texts.text("GuideClose"));
    txtGuide->setAccessibleName(texts.text("DlgHelpTitle"));
    const QString find = texts.text("GuideSearch");
    txtSearch->setPlaceholderText(find);
    txtSearch->setAccessibleName(find);
    txtSearch->setAccessibleDescription( // else it is the placeholder once more
        QKeySequence(QKeySequence::Find).toString(QKeySequence::NativeText));
    m_results->setAccessibleName(find);
    // Which button goes back follows the direction in which the language is read.
    cmdBack->setIconName(isRightToLeft() ? "right" : "left");
    cmdForward->setIconName(isRightToLeft() ? "left" : "right");
}

void GuideWindow::changeEvent(QEvent *event) {
    if (event->type() == QEvent::LanguageChange || event->type() == QEvent::LayoutDirectionChange) {
        m_search.reset(); // the pages of the other language
        LoadLanguage();
        m_contents->LoadLanguage();
        leave();
        showPlace();
    }
    QWidget::changeEvent(event);
}

void GuideWindow::addKeys() {
    const std::pair<QKeySequence, std::function<void()>> keys[] = {
        {QKeySequence::Find,
         [this] {
             txtSearch->setFocus(Qt::ShortcutFocusReason);
             txtSearch->selectAll();
         }},
        {QKeySequence("Alt+Left"), [this] { step(-1); }},
        {QKeySequence("Alt+Right"), [this] { step(1); }},
        {QKeySequence("Alt+Home"), [this] { go({}); }},
    };
    for (const auto &[sequence, act] : keys) {
        connect(new QShortcut(sequence, this), &QShortcut::activated, this, act);
    }
}

PictureButton *GuideWindow::button(const QString &name, const QString &icon) {
    auto *made = new PictureButton(icon, PictureButton::CaptionPlace::None, this);
    made->setObjectName(name);
    return made;
}

GuideWindow *GuideWindow::of(QWidget *owner) {
    return owner == nullptr ? nullptr : owner->findChild<GuideWindow *>(QString(), Qt::FindDirectChildrenOnly);
}

void GuideWindow::move(QWidget *from, QWidget *to) {
    GuideWindow *guide = of(from);
    if (guide != nullptr && guide->isVisible()) {
        const QRect place = guide->geometry();
        guide->setParent(to, guide->windowFlags());
        guide->setGeometry(place);
        guide->show();
        guide->raise();
    }
}

void GuideWindow::open(AppContext &context, QWidget *owner, const QString &page) {
    GuideWindow *guide = of(owner);
    if (guide == nullptr) {
        guide = new GuideWindow(context, owner);
    }
    if (!page.isEmpty()) {
        guide->go({page, {}, {}});
    }
    guide->show();
    guide->raise();
    guide->activateWindow();
}

void GuideWindow::follow(const QUrl &link) {
    if (!link.scheme().isEmpty()) {
        if (!QDesktopServices::openUrl(link)) {
            tellNoProgram(m_context.texts, link.toString(), this);
        }
    } else if (link.path() == "index.html") {
        go({});
    } else if (guidePage(link.path()) != nullptr) {
        go({link.path(), {}, {}});
    }
}

/// While somebody types, one search of the way changes; an empty field brings back what was before it.
void GuideWindow::search(const QString &question) {
    Place &place = m_way[m_at];
    const bool isEmpty = question.trimmed().isEmpty();
    if (place.isSearch() && isEmpty) {
        step(-1);
        txtSearch->clear();
    } else if (place.isSearch()) {
        place.question = question;
        showFound(question);
    } else if (!isEmpty) {
        go({{}, question, {}});
    } else {
        place.question.clear();
        place.words.clear();
        leave();
        showPlace();
    }
}

void GuideWindow::showFound(const QString &question) {
    if (!m_search) {
        m_search = GuideSearch::overGuide(m_context.texts);
    }
    const QList<GuideSearch::Hit> hits = m_search->find(question);
    m_results->show(hits);
    const QString nothing = m_context.texts.text("GuideNothing");
    lblNothing->setText("<p style=\"font-size: 15pt\">" + nothing.arg(question.trimmed()).toHtmlEscaped() + "</p>");
    m_sheets->setCurrentWidget(hits.isEmpty() ? static_cast<QWidget *>(lblNothing) : m_results);
}

void GuideWindow::go(const Place &place) {
    leave();
    const bool isNew = place.page != m_way[m_at].page || place.question != m_way[m_at].question;
    if (isNew) {
        m_way.resize(m_at + 1);
        m_way << place;
        ++m_at;
    }
    showPlace();
    if (!place.page.isEmpty()) {
        txtGuide->setFocus();
    } else if (!place.isSearch()) {
        m_contents->takeFocus();
    }
}

void GuideWindow::step(int by) {
    if (m_at + by >= 0 && m_at + by < m_way.size()) {
        leave();
        m_at += by;
        showPlace();
    }
}

void GuideWindow::leave() {
    m_way[m_at].scrolled = txtGuide->verticalScrollBar()->value();
}

void GuideWindow::showPlace() {
    const Place &place = m_way[m_at];
    if (txtSearch->text() != place.question) {
        txtSearch->setText(place.question);
    }
    if (place.isSearch()) {
        showFound(place.question);
    } else if (place.page.isEmpty()) {
        m_sheets->setCurrentWidget(m_contents);
    } else {
        m_sheets->setCurrentWidget(txtGuide); // first, for the width that the page is laid out in
        txtGuide->showPage(place.page, place.words);
        if (place.scrolled > 0) {
            txtGuide->verticalScrollBar()->setValue(place.scrolled);
        }
    }
    cmdBack->setEnabled(m_at > 0);
    cmdForward->setEnabled(m_at + 1 < m_way.size());
}

bool GuideWindow::eventFilter(QObject *watched, QEvent *event) {
    const bool isDown = event->type() == QEvent::KeyPress && static_cast<QKeyEvent *>(event)->key() == Qt::Key_Down;
    if (isDown && m_sheets->currentWidget() == m_results) {
        m_results->setFocus(Qt::TabFocusReason);
        m_results->setCurrentRow(0);
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

void GuideWindow::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    paintWindow(painter, rect(), m_translucent);
}

void GuideWindow::resizeEvent(QResizeEvent *event) {
    QWidget::resizeEvent(event);
    if (!m_translucent) {
        setMask(windowShape(size()));
    }
}

void GuideWindow::keyPressEvent(QKeyEvent *event) {
    if (event->key() != Qt::Key_Escape) {
        QWidget::keyPressEvent(event);
    } else if (txtSearch->text().isEmpty()) {
        close();
    } else {
        txtSearch->clear();
        search({});
    }
}

} // namespace lumora
