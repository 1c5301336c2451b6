// The scanner window behind "Use Scanner's Software": the glass with a quick look at what lies on it, and the settings
// that this scanner has, in plain words.
#pragma once

#include "devices/ScanProcess.h"
#include "output/scan/ScanPicture.h"
#include "widgets/BorderlessDialog.h"

#include <QElapsedTimer>
#include <optional>

class QLabel;

namespace lumora {

struct AppContext;
class PictureButton;
class ScanGlass;
class ScanSettings;

/// Modal with exec(): accepted when a scan with values() is wanted. Asks the scanner in the background; the window can
/// be used and left at any time.
class frmScanner : public BorderlessDialog {
    Q_OBJECT

  public:
    /// `helper` as ScanProcess takes it.
    frmScanner(AppContext &ctx, const QString &device, QWidget *owner, const QString &helper = {});
    ~frmScanner() override;

    /// What was chosen, for the scan.
    QList<ScanValue> values() const;
    void LoadLanguage();
    /// What the scanner is at is stopped first: it is free for the scan, or for others.
    void done(int result) override;

  protected:
    void showEvent(QShowEvent *event) override;

  private:
    enum class Task { Options, Preview };
    void build();
    void want(Task task);
    void start(Task task);
    void takeOptions(const QList<ScanOption> &options);
    void showGrowth(bool atEnd);
    void finished(ScanStatus status);
    void refresh();
    void sayWhatToDo();

    AppContext &m_ctx;
    QString m_device;
    ScanProcess m_process;
    std::optional<Task> m_running;
    std::optional<Task> m_next;   ///< once the running one has ended
    std::optional<int> m_leaving; ///< the window's result, likewise
    bool m_asked = false;         ///< the scanner has told its options
    std::optional<ScanPicture> m_look;
    bool m_looked = false; ///< a whole look is on the glass
    QElapsedTimer m_shown; ///< since the look was last painted

    ScanGlass *m_glass;
    ScanSettings *m_settings;
    QLabel *lblHint;
    PictureButton *cmdLook;
    PictureButton *cmdOK;
    PictureButton *cmdCancel;
};

} // namespace lumora
