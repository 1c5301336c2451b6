#include "window/PhotoBefore.h"

#include "session/AppContext.h"
#include "view/PhotoView.h"
#include "widgets/PictureButton.h"
#include "widgets/SlidingPanel.h"
#include "widgets/WindowTexts.h"

#include <QKeyEvent>

namespace lumora {

PhotoBefore::PhotoBefore(AppContext &ctx, PhotoView &view, QWidget *window)
    : QObject(window), m_ctx(ctx), m_view(view) {
    window->installEventFilter(this);
    connect(&ctx.photo, &PhotoDocument::changed, this, [this](PhotoChanges what) {
        if (m_panel != nullptr && what.testAnyFlags(PhotoChange::Loaded | PhotoChange::Size)) {
            remember(); // another photo
        }
    });
}

void PhotoBefore::add(SlidingPanel &panel) {
    PictureButton *button = panel.compareButton();
    if (button == nullptr) {
        return;
    }
    showText(m_ctx.texts, *button, "CompareButton");
    showText(m_ctx.texts, *button, "CompareTip", "toolTip");
    connect(button, &QAbstractButton::pressed, this, [this] { show(true); });
    connect(button, &QAbstractButton::released, this, [this] { show(false); });
    connect(&panel, &SlidingPanel::opened, this, [this, &panel] {
        if (m_panel != &panel) {
            m_panel = &panel;
            remember();
        }
    });
    connect(&panel, &SlidingPanel::closed, this, [this] {
        show(false);
        m_panel = nullptr;
        m_before = {};
    });
}

void PhotoBefore::remember() {
    m_before = m_view.visibleLevel().picture;
}

void PhotoBefore::show(bool held) {
    m_view.showInstead(held && m_panel != nullptr ? m_before : QImage());
}

bool PhotoBefore::eventFilter(QObject *watched, QEvent *event) {
    const bool pressed = event->type() == QEvent::KeyPress;
    if (m_panel == nullptr || (!pressed && event->type() != QEvent::KeyRelease)) {
        return QObject::eventFilter(watched, event);
    }
    const auto &key = static_cast<const QKeyEvent &>(*event);
    if (key.key() != Qt::Key_B || key.modifiers() != Qt::NoModifier) {
        return QObject::eventFilter(watched, event);
    }
    if (!key.isAutoRepeat()) {
        show(pressed);
    }
    return true;
}

} // namespace lumora
