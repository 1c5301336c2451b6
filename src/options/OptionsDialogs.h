// The options' page on which a grown-up chooses between the system's dialogs and Lumora's own, and what the latter
// keep of photos that were not saved.
#pragma once

#include "options/OptionsPage.h"

namespace lumora {

class PictureButton;
class PictureChoice;
struct AppContext;

class OptionsDialogs : public OptionsPage {
    Q_OBJECT

  public:
    OptionsDialogs(AppContext &ctx, QWidget *parent);

    void showValues(const OptionsSettings &options) override;
    void takeValues(OptionsSettings &options) const override;

  private:
    void addKeeping();
    void askToEmpty();
    void showThrownAway();

    AppContext &m_ctx;
    PictureChoice *optDlg1; ///< the system's
    PictureChoice *optDlg2; ///< Lumora's own
    QCheckBox *chkKeep = nullptr;
    PictureButton *cmdEmpty = nullptr; ///< says how many photos are kept, and deletes them
};

} // namespace lumora
