#include "output/scan/ScanCommands.h"

#include "output/DeviceLists.h"
#include "output/scan/GrowingScan.h"
#include "output/scan/ScanPanel.h"
#include "output/scan/ScanWords.h"
#include "output/scan/frmScanner.h"
#include "session/AppContext.h"
#include "session/PlainWords.h"
#include "widgets/Theme.h"

#include <QDateTime>
#include <QPointer>
#include <QScopeGuard>

namespace lumora {

namespace {

/// Disables them for its own lifetime.
class Locked {
  public:
    explicit Locked(const QList<QWidget *> &controls) {
        for (QWidget *control : controls) {
            if (control != nullptr) {
                control->setEnabled(false);
                m_controls.append(control);
            }
        }
    }
    Locked(const Locked &) = delete;
    Locked &operator=(const Locked &) = delete;
    ~Locked() {
        for (QWidget *control : std::as_const(m_controls)) {
            if (control != nullptr) {
                control->setEnabled(true);
            }
        }
    }

  private:
    QList<QPointer<QWidget>> m_controls;
};

/// Now, and the resolution where it was chosen.
PictureMetadata metadataOf(const QList<ScanValue> &settings) {
    PictureMetadata metadata;
    metadata.made = QDateTime::currentDateTime();
    for (const ScanValue &setting : settings) {
        const bool both = setting.name == "resolution";
        if (both || setting.name == "x-resolution") {
            metadata.dotsPerInchX = setting.value.toDouble();
        }
        if (both || setting.name == "y-resolution") {
            metadata.dotsPerInchY = setting.value.toDouble();
        }
    }
    return metadata;
}

} // namespace

ScanCommands::ScanCommands(AppContext &ctx, DeviceLists &devices, QWidget *window, QString helper)
    : QObject(window), m_ctx(ctx), m_devices(devices), m_window(window), m_helper(std::move(helper)),
      m_growth(new GrowingScan(window)), m_panel(new ScanPanel(ctx, window)) {
    connect(m_panel, &ScanPanel::scanWanted, this, &ScanCommands::ScanNow);
    connect(m_panel, &SlidingPanel::opened, this, &ScanCommands::panelChanged);
    connect(m_panel, &SlidingPanel::closed, this, [this] {
        m_ctx.flags.endSelection();
        Q_EMIT barsToHide();
        Q_EMIT panelChanged();
        Q_EMIT buttonsToRefresh();
    });
    connect(&devices, &DeviceLists::scannersLoaded, this, [this] {
        m_panel->showScanners();
        Q_EMIT buttonsToRefresh();
    });
}

bool ScanCommands::ScanPanelOpen() const {
    return m_panel->isOpen();
}

SlidingPanel *ScanCommands::panel() const {
    return m_panel;
}

void ScanCommands::closePanel() {
    m_panel->slideOut();
}

void ScanCommands::setArea(const QRect &area) {
    m_area = area;
    m_panel->setArea(area);
}

void ScanCommands::scan() {
    Q_EMIT firstToolWanted();
    if (!m_ctx.fields.txtAutoScan) {
        SimpleScan();
    } else {
        m_panel->showScanners();
        m_panel->slideIn();
    }
    Q_EMIT buttonsToRefresh();
}

/// Empty when no scanner is chosen.
QString ScanCommands::chosenDevice() const {
    const QList<FoundDevice> &scanners = m_devices.scanners();
    const int index = m_ctx.fields.cboSelectIndex;
    return index >= 0 && index < scanners.size() ? scanners[index].name : QString();
}

void ScanCommands::SimpleScan() {
    const QString device = chosenDevice();
    if (device.isEmpty()) {
        Q_EMIT failed(m_ctx.texts.text("ScanChoose"));
        return;
    }
    const Locked locked({m_window->findChild<QWidget *>("SidePanel1"), m_window->findChild<QWidget *>("Toolbar1"),
                         m_window->findChild<QWidget *>("cmdOpen")});
    acquire({.device = device, .helper = m_helper});
}

void ScanCommands::ScanNow() {
    const QString device = chosenDevice();
    if (device.isEmpty()) {
        Q_EMIT failed(m_ctx.texts.text("ScanChoose"));
        return;
    }
    const Locked locked(m_panel->lockedWhileScanning() + QList<QWidget *>{m_window->findChild<QWidget *>("SidePanel1"),
                                                                          m_window->findChild<QWidget *>("Toolbar1"),
                                                                          m_window->findChild<QWidget *>("cmdOpen")});
    ScanRequest request{.device = device, .helper = m_helper};
    if (!m_panel->ScanAutomatic()) {
        frmScanner window(m_ctx, device, m_window, m_helper);
        if (window.exec() != QDialog::Accepted) {
            return;
        }
        request.settings = ScanProcess::Settings::AsGiven;
        request.values = window.values();
    }
    acquire(request);
}

void ScanCommands::acquire(const ScanRequest &request) {
    Q_EMIT scanning(true);
    const int covered = m_panel->isOpen() ? m_panel->height() - shadowMargin : 0;
    m_growth->setGeometry(m_area.adjusted(0, 0, 0, -covered));
    m_growth->begin();
    const auto ended = qScopeGuard([this] {
        m_growth->end();
        Q_EMIT scanning(false);
    });
    const auto grown = [growth = m_growth](const ScanStrip &strip) {
        QMetaObject::invokeMethod(
            growth, [growth, strip] { growth->add(strip); }, Qt::QueuedConnection);
    };
    ScanResult result;
    if (!m_ctx.tasks.run([&] { result = readScan(request, grown); }, Stopping::Offered)) {
        return; // the user stopped it
    }
    if (result.status == ScanStatus::Good) {
        take(result, request.values);
    } else {
        Q_EMIT failed(plainWords(m_ctx.texts, result.status));
    }
}

void ScanCommands::take(const ScanResult &result, const QList<ScanValue> &settings) {
    Q_EMIT canvasWanted();
    const PictureError error = m_ctx.photo.openPicture({result.picture, PictureError::None, {}, metadataOf(settings)},
                                                       PhotoDocument::OpenRoute::Unsaved);
    if (error != PictureError::None) {
        Q_EMIT failed(plainWords(m_ctx.texts, error));
        return;
    }
    m_ctx.photo.setMadeBy(QStringLiteral("scan"));
    Q_EMIT scanned();
    Q_EMIT done(m_ctx.texts.text("ScanDone"));
}

} // namespace lumora
