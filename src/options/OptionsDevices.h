// The options' page of scanners and printers. The lists fill after the page is first seen; until then, and when nothing
// is found, the settings stay unchanged.
#pragma once

#include "devices/DeviceSearch.h"
#include "options/OptionsPage.h"

class QComboBox;
class QRadioButton;

namespace lumora {

struct AppContext;

class OptionsDevices : public OptionsPage {
    Q_OBJECT

  public:
    /// `helper` as in DeviceSearch.
    OptionsDevices(AppContext &ctx, const QString &helper, QWidget *parent);

    void showValues(const OptionsSettings &options) override;
    void takeValues(OptionsSettings &options) const override;

  protected:
    void showEvent(QShowEvent *event) override;

  private:
    void addScanners();
    void addPrinters();
    void addPrintLock(QVBoxLayout *sheet);
    QComboBox *addList(QVBoxLayout *sheet, const char *icon, const char *caption, const char *name);
    void fillScanners(const DeviceAnswer &answer);
    void fillPrinters(const DeviceAnswer &answer);

    AppContext &m_ctx;
    DeviceSearch m_search;
    bool m_searched = false;
    int m_scanner = -1; ///< the saved choices, until a list is filled
    QString m_printer;

    QComboBox *cboScanners = nullptr;
    QCheckBox *chkScan = nullptr;
    QCheckBox *chkDisScanner = nullptr;
    QComboBox *cboPrinters = nullptr;
    QCheckBox *chkDisPrinter = nullptr;
    QRadioButton *optPrint1 = nullptr;
    QRadioButton *optPrint2 = nullptr;
    QComboBox *cboMinutes = nullptr;
};

} // namespace lumora
