// pnlScan, which slides in when the options ask for more than one click: which scanner, and how.
#pragma once

#include "widgets/SlidingPanel.h"

class QComboBox;

namespace lumora {

struct AppContext;
class PictureButton;
class PictureChoice;

class ScanPanel : public SlidingPanel {
    Q_OBJECT

  public:
    ScanPanel(AppContext &ctx, QWidget *window);

    /// Shows the scanners found and the chosen one.
    void showScanners();
    /// "Scan Automatically" is chosen, not "Use Scanner's Software".
    bool ScanAutomatic() const { return m_automatic; }
    /// The controls that cannot be used while a scan comes in.
    QList<QWidget *> lockedWhileScanning() const;

  Q_SIGNALS:
    void scanWanted();

  private:
    AppContext &m_ctx;
    QComboBox *cboSelect;
    PictureChoice *optAutomatic;
    PictureChoice *optManual;
    PictureButton *cmdScanNow;
    bool m_automatic = true;
};

} // namespace lumora
