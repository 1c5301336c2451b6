// The options' page on which a grown-up chooses between the system's dialogs and Lumora's own.
#pragma once

#include "options/OptionsPage.h"

namespace lumora {

class PictureChoice;

class OptionsDialogs : public OptionsPage {
    Q_OBJECT

  public:
    explicit OptionsDialogs(QWidget *parent);

    void showValues(const OptionsSettings &options) override;
    void takeValues(OptionsSettings &options) const override;

  private:
    PictureChoice *optDlg1; ///< the system's
    PictureChoice *optDlg2; ///< Lumora's own
};

} // namespace lumora
