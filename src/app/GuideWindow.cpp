#include "app/GuideWindow.h"

#include "app/settings/AppContext.h"
#include "widgets/PictureButton.h"
#include "widgets/Theme.h"

#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QScreen>
#include <QTextBrowser>
#include <QVBoxLayout>

namespace lumora {

GuideWindow::GuideWindow(AppContext &context, QWidget *owner)
    : QWidget(owner, Qt::Window), m_context(context),
      cmdBack(button("cmdBack", "left", context.texts.text("GuideBack", "Back"))),
      cmdHome(button("cmdHome", "guide", context.texts.text("GuideHome", "First Page"))),
      cmdClose(button("cmdClose", "close", context.texts.text("GuideClose", "Close"))),
      txtGuide(new QTextBrowser(this)) {
    setObjectName("GuideWindow");
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(context.texts.text("ApplicationName") + " - " + context.texts.text("DlgHelpTitle"));
    build();
    connect(cmdBack, &QAbstractButton::clicked, txtGuide, &QTextBrowser::backward);
    connect(cmdHome, &QAbstractButton::clicked, txtGuide, &QTextBrowser::home);
    connect(cmdClose, &QAbstractButton::clicked, this, &QWidget::close);
    connect(txtGuide, &QTextBrowser::backwardAvailable, cmdBack, &QWidget::setEnabled);
    cmdBack->setEnabled(false);
    txtGuide->setSource(QUrl("qrc:/guide/index.html"));
    txtGuide->setFocus();
}

void GuideWindow::build() {
    txtGuide->setObjectName("txtGuide");
    txtGuide->setAccessibleName(m_context.texts.text("DlgHelpTitle"));
    txtGuide->setOpenExternalLinks(true);
    txtGuide->document()->setDocumentMargin(24);

    auto *row = new QHBoxLayout;
    row->addWidget(cmdBack);
    row->addWidget(cmdHome);
    row->addStretch(1);
    row->addWidget(cmdClose);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(12, 8, 12, 12);
    column->addLayout(row);
    column->addWidget(txtGuide, 1);

    // A comfortable line of text, and never larger than the screen.
    const QRect room = screen()->availableGeometry();
    resize(QSize(860, 720).boundedTo(room.size() * 0.9));
    move(room.center() - rect().center());
}

PictureButton *GuideWindow::button(const QString &name, const QString &icon, const QString &tip) {
    auto *made = new PictureButton(icon, PictureButton::CaptionPlace::None, this);
    made->setObjectName(name);
    made->setToolTip(tip);
    return made;
}

void GuideWindow::open(AppContext &context, QWidget *owner) {
    auto *guide = owner == nullptr ? nullptr : owner->findChild<GuideWindow *>(QString(), Qt::FindDirectChildrenOnly);
    if (guide == nullptr) {
        guide = new GuideWindow(context, owner);
    }
    guide->show();
    guide->raise();
    guide->activateWindow();
}

void GuideWindow::keyPressEvent(QKeyEvent *event) {
    if (event->key() == Qt::Key_Escape) {
        close();
    } else {
        QWidget::keyPressEvent(event);
    }
}

} // namespace lumora
