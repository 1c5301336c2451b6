// Scanning: what the Scan button does, with the panel and without it. Owned by the main window, which connects to the
// signals.
#pragma once

#include "output/scan/ScanReader.h"

#include <QObject>
#include <QRect>

class QWidget;

namespace lumora {

struct AppContext;
class DeviceLists;
class GrowingScan;
class ScanPanel;
class SlidingPanel;

class ScanCommands : public QObject {
    Q_OBJECT

  public:
    /// `helper` as ScanProcess takes it.
    ScanCommands(AppContext &ctx, DeviceLists &devices, QWidget *window, QString helper = {});

    /// The Scan button: scans at once, or slides the panel in, as the options say.
    void scan();
    /// Scans without a question.
    void SimpleScan();
    /// Scans as the panel says, perhaps after the scanner window.
    void ScanNow();

    /// The panel is in view.
    bool ScanPanelOpen() const;
    SlidingPanel *panel() const;
    void closePanel();
    /// The part of the window for the photo, in the window's pixels: the panel slides over its lower edge, and scans
    /// grow there.
    void setArea(const QRect &area);

  Q_SIGNALS:
    /// Open panels should be closed and the Arrow tool become current.
    void firstToolWanted();
    /// The panel was closed by its button: no floating bar stays open.
    void barsToHide();
    /// The canvas and the side panel should be shown.
    void canvasWanted();
    /// A scan begins, or has ended: progress should leave the table to be seen meanwhile.
    void scanning(bool now);
    /// A scan is on the table.
    void scanned();
    /// The panel has finished opening or was closed.
    void panelChanged();
    void buttonsToRefresh();
    /// A message for the status line: success or failure.
    void done(const QString &text);
    void failed(const QString &text);

  private:
    QString chosenDevice() const;
    void acquire(const ScanRequest &request);
    void take(const ScanResult &result, const QList<ScanValue> &settings);

    AppContext &m_ctx;
    DeviceLists &m_devices;
    QWidget *m_window;
    QString m_helper;
    QRect m_area;
    GrowingScan *m_growth;
    ScanPanel *m_panel;
};

} // namespace lumora
