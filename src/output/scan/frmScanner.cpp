#include "output/scan/frmScanner.h"

#include "output/scan/ScanGlass.h"
#include "output/scan/ScanSettings.h"
#include "output/scan/ScanWords.h"
#include "session/AppContext.h"
#include "widgets/AnimatedButton.h"
#include "widgets/AnswerButtons.h"
#include "widgets/Theme.h"
#include "widgets/WindowTexts.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace lumora {

namespace {

constexpr int settingsWidth = 300; // pixels
constexpr int frameTime = 50;      // milliseconds between two pictures of a look that comes in

} // namespace

frmScanner::frmScanner(AppContext &ctx, const QString &device, QWidget *owner, const QString &helper)
    : BorderlessDialog("frmScanner", owner), m_ctx(ctx), m_device(device), m_process(helper),
      m_glass(new ScanGlass(this)), m_settings(new ScanSettings(ctx, this)), lblHint(new QLabel(this)) {
    build();
    LoadLanguage();
    connect(m_settings, &ScanSettings::decisionChanged, this, [this] { want(Task::Options); });
    connect(m_settings, &ScanSettings::paperChosen, this, [this] {
        if (!m_settings->paper().isNull()) {
            m_glass->setArea(m_settings->paper());
        }
    });
    connect(m_glass, &ScanGlass::areaDrawn, m_settings, &ScanSettings::chooseOwnFrame);
    connect(cmdLook, &QAbstractButton::clicked, this, [this] { want(m_asked ? Task::Preview : Task::Options); });
    connect(cmdOK, &QAbstractButton::clicked, this, &QDialog::accept);
    connect(cmdCancel, &QAbstractButton::clicked, this, &QDialog::reject);

    connect(&m_process, &ScanProcess::optionsRead, this, &frmScanner::takeOptions);
    connect(&m_process, &ScanProcess::frameBegan, this, [this](const ScanFrame &frame) {
        if (m_look && m_look->begin(frame) != ScanStatus::Good) {
            m_process.cancel();
        }
    });
    connect(&m_process, &ScanProcess::dataRead, this, [this](const QByteArray &bytes) {
        if (m_look && m_look->add(bytes) != ScanStatus::Good) {
            m_process.cancel();
        }
        showGrowth(false);
    });
    connect(&m_process, &ScanProcess::finished, this, &frmScanner::finished);
    refresh();
}

frmScanner::~frmScanner() = default;

void frmScanner::build() {
    auto *answers = new AnswerButtons(this);
    cmdLook = new PictureButton("search", PictureButton::CaptionPlace::Beside, this);
    cmdLook->setObjectName("cmdScanLook");
    cmdLook->setLook(PictureButton::Look::Raised);
    cmdLook->setPictureSize(40);
    cmdOK = new PictureButton("scan", PictureButton::CaptionPlace::Beside, this);
    cmdOK->setObjectName("cmdScanOK");
    cmdOK->setLook(PictureButton::Look::Raised);
    cmdOK->setPictureSize(48);
    cmdOK->setMinimumWidth(150);
    cmdCancel = answers->add("cmdScanCancel", "cancel", {.pictureSize = 48, .captionPoints = 14, .minimumWidth = 140});
    QFont large = font();
    large.setPointSizeF(14);
    cmdOK->setFont(large);
    setDefaultButton(cmdOK);

    lblHint->setObjectName("lblScanHint");
    lblHint->setWordWrap(true);
    lblHint->setTextFormat(Qt::PlainText);
    lblHint->setMinimumHeight(2 * fontMetrics().lineSpacing());
    m_settings->setMinimumWidth(settingsWidth);
    auto *below = new QHBoxLayout;
    below->setSpacing(12);
    below->addWidget(cmdLook);
    below->addWidget(lblHint, 1);
    auto *left = new QVBoxLayout;
    left->addWidget(m_glass, 1);
    left->addLayout(below);
    auto *buttons = new QHBoxLayout;
    buttons->setSpacing(10);
    buttons->addWidget(cmdOK, 1);
    buttons->addWidget(cmdCancel, 1);
    auto *right = new QVBoxLayout;
    right->addWidget(m_settings, 1);
    right->addLayout(buttons);
    auto *columns = new QHBoxLayout;
    columns->setSpacing(18);
    columns->addLayout(left, 1);
    columns->addLayout(right);
    body()->addLayout(columns);
    body()->setContentsMargins(14, 10, 16, 14);
}

void frmScanner::LoadLanguage() {
    showTexts(m_ctx.texts, *this);
    for (const QLabel *caption : findChildren<QLabel *>()) {
        if (caption->buddy() != nullptr) {
            caption->buddy()->setAccessibleName(caption->text());
        }
    }
}

void frmScanner::showEvent(QShowEvent *event) {
    BorderlessDialog::showEvent(event);
    if (!m_asked && !m_running) {
        want(Task::Options);
    }
}

QList<ScanValue> frmScanner::values() const {
    return m_settings->values(m_glass->area());
}

void frmScanner::done(int result) {
    if (m_running) {
        m_leaving = result;
        m_process.cancel();
    } else {
        BorderlessDialog::done(result);
    }
}

// --- The scanner ----------------------------------------------------------------------------------------------------

void frmScanner::want(Task task) {
    if (m_running) {
        m_next = task;
        m_process.cancel();
    } else {
        start(task);
    }
    refresh();
}

void frmScanner::start(Task task) {
    m_running = task;
    if (task == Task::Options) {
        m_process.readOptions(m_device, m_asked ? m_settings->decidingValues() : QList<ScanValue>());
    } else {
        m_looked = false;
        m_look.emplace();
        m_shown.start();
        m_glass->showPreview({}, 0);
        m_process.scan(m_device, ScanProcess::Settings::AsGiven, m_settings->previewValues());
    }
}

void frmScanner::takeOptions(const QList<ScanOption> &options) {
    const bool again = m_asked;
    m_settings->setOptions(options);
    if (m_settings->isFeeder()) {
        m_looked = false; // what lies on the glass does not matter
    }
    const QSizeF glass = m_settings->glass();
    const bool other = !glass.isEmpty() && glass != m_glass->glass();
    m_glass->setGlass(glass.isEmpty() ? m_glass->glass() : glass, !glass.isEmpty());
    if ((other || !again) && !m_settings->paper().isNull()) {
        m_looked = false;
        m_glass->setArea(m_settings->paper());
    }
    m_asked = true;
    if (!again) {
        cmdOK->setEnabled(true);
        cmdOK->setFocus(Qt::OtherFocusReason);
    }
}

void frmScanner::showGrowth(bool atEnd) {
    if (!m_look || (!atEnd && m_shown.elapsed() < frameTime)) {
        return;
    }
    m_shown.start();
    const QImage picture = m_look->picture();
    if (!picture.isNull()) {
        if (m_settings->glass().isEmpty() && m_look->wholeSize().height() > 0) {
            m_glass->setGlass(m_look->wholeSize(), false); // its shape is known now
        }
        const double share = double(picture.height()) / std::max(m_look->wholeSize().height(), picture.height());
        m_glass->showPreview(picture, share);
        m_glass->setMessage({});
        m_glass->setWaiting(false);
    }
}

void frmScanner::finished(ScanStatus status) {
    const std::optional<Task> ended = m_running;
    m_running.reset();
    if (m_leaving) {
        done(*m_leaving);
        return;
    }
    if (ended == Task::Preview && status == ScanStatus::Good && m_look) {
        m_look->end();
        showGrowth(true);
        m_looked = !m_look->picture().isNull();
        status = m_looked ? status : ScanStatus::NotAnswering;
    }
    m_look.reset();
    if (!m_looked) {
        m_glass->showPreview({}, 0);
    }
    if (m_next) {
        const Task next = *m_next;
        m_next.reset();
        start(next);
    }
    refresh();
    if (!m_running && status != ScanStatus::Good) {
        m_glass->setMessage(plainWords(m_ctx.texts, status));
        lblHint->clear();
    }
}

// --- What shows -----------------------------------------------------------------------------------------------------

void frmScanner::refresh() {
    m_settings->setVisible(m_asked);
    cmdOK->setEnabled(m_asked);
    cmdLook->setEnabled(!m_running);
    cmdLook->setVisible(!m_asked || !m_settings->isFeeder());
    m_glass->setWaiting(m_running.has_value());
    sayWhatToDo();
}

void frmScanner::sayWhatToDo() {
    const Texts &texts = m_ctx.texts;
    QString onGlass;
    QString hint;
    if (!m_asked) {
        onGlass = texts.text("ScannerStarting");
    } else if (m_running == Task::Preview) {
        onGlass = texts.text("ScannerLooking");
    } else if (m_settings->isFeeder()) {
        onGlass = texts.text("ScannerFeed");
    } else if (!m_looked) {
        onGlass = texts.text("ScannerPutIn");
    } else {
        hint = texts.text(m_settings->glass().isEmpty() ? "ScannerReady" : "ScannerDrag");
    }
    m_glass->setMessage(onGlass);
    lblHint->setText(hint);
}

} // namespace lumora
