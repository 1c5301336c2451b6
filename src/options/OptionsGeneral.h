// The options' first page: advanced settings of the tools, the slideshow, and where photos are kept.
#pragma once

#include "options/OptionsPage.h"

class QComboBox;
class QLineEdit;
class QSlider;

namespace lumora {

struct AppContext;

class OptionsGeneral : public OptionsPage {
    Q_OBJECT

  public:
    OptionsGeneral(AppContext &ctx, QWidget *parent);

    void showValues(const OptionsSettings &options) override;
    void takeValues(OptionsSettings &options) const override;

  private:
    void addLanguages();
    QString languageInUse() const;
    void addSlideshow();
    void addFolder();
    void browse();
    void setFolder(const QString &folder);

    AppContext &m_ctx;
    QCheckBox *chkAdvSFX;
    QCheckBox *chkAdvResize;
    QCheckBox *chkAdvPopart;
    QCheckBox *chkGrid;
    QComboBox *cboLanguage = nullptr;
    QString m_language; ///< the setting: empty while none is chosen
    QSlider *sldDelay = nullptr;
    QLabel *lblDelay = nullptr;
    QLineEdit *txtWD = nullptr;
    QCheckBox *chkMyDocs = nullptr;
};

} // namespace lumora
