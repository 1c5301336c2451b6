#include "window/StartBubbles.h"

#include "dialogs/frmFormer.h"
#include "dialogs/frmWelcome.h"
#include "session/AppContext.h"

namespace lumora {

namespace {
constexpr int delay = 700; // milliseconds until a bubble: long enough to see the window first
}

StartBubbles::StartBubbles(AppContext &ctx, QWidget *openButton, QWidget *optionsButton, QWidget *window)
    : QObject(window), m_ctx(ctx), m_open(openButton), m_options(optionsButton), m_window(window) {
    tmrWelcome.setSingleShot(true);
    tmrWelcome.setInterval(delay);
    connect(&tmrWelcome, &QTimer::timeout, this, &StartBubbles::showNext);
    connect(&ctx.photo, &PhotoDocument::changed, this, [this](PhotoChanges what) {
        if (what.testFlag(PhotoChange::Loaded)) {
            welcomeIsOver();
        }
    });
}

void StartBubbles::start() {
    m_ctx.fields.txtWelcome = m_ctx.settings.read<Setting::Welcome>();
    m_welcomeIsDue = m_ctx.fields.txtWelcome && !m_ctx.photo.PhotoLoaded();
    tmrWelcome.start();
}

void StartBubbles::showNext() {
    if (!m_bubble.isNull()) {
        return;
    }
    if (!m_ctx.flags.SimpleModeOn && m_ctx.settings.hasFormer()) {
        auto *former = new frmFormer(m_ctx, m_window);
        connect(former, &frmFormer::broughtBack, this, &StartBubbles::settingsBroughtBack);
        follow(former);
        former->pointAt(m_options);
    } else if (m_welcomeIsDue) {
        m_welcomeIsDue = false;
        auto *welcome = new frmWelcome(m_ctx, m_window);
        follow(welcome);
        welcome->showAt(m_open);
    }
}

void StartBubbles::follow(Bubble *bubble) {
    m_bubble = bubble;
    // Queued: the keyboard leaves a hidden control by itself first.
    connect(bubble, &Bubble::closed, this, &StartBubbles::closed, Qt::QueuedConnection);
    connect(bubble, &Bubble::closed, &tmrWelcome, qOverload<>(&QTimer::start));
}

void StartBubbles::welcomeIsOver() {
    m_welcomeIsDue = false;
    if (qobject_cast<frmWelcome *>(m_bubble.data()) != nullptr) {
        delete m_bubble.data();
    }
}

bool StartBubbles::closeOpen() {
    return !m_bubble.isNull() && m_bubble->isVisible() && m_bubble->close();
}

} // namespace lumora
