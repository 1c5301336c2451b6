#include "options/OptionsDevices.h"

#include "session/AppContext.h"
#include "session/OptionsSettings.h"
#include "widgets/Tick.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QRadioButton>
#include <QVBoxLayout>

namespace lumora {

namespace {

constexpr int offeredMinutes[] = {1, 2, 3, 4, 5, 10, 15, 20, 30, 45, longestPrintLock};

/// Shows in an empty list what it is waiting for, or that nothing was found.
void sayInstead(QComboBox &list, const QString &text) {
    list.clear();
    list.setPlaceholderText(text);
    list.setCurrentIndex(-1);
    list.setEnabled(false);
}

} // namespace

OptionsDevices::OptionsDevices(AppContext &ctx, const QString &helper, QWidget *parent)
    : OptionsPage("lblDevices", parent), m_ctx(ctx), m_search(helper) {
    addScanners();
    addPrinters();
    column()->addStretch(1);
    connect(&m_search, &DeviceSearch::answered, this, [this](DeviceKind kind, const DeviceAnswer &answer) {
        kind == DeviceKind::Scanners ? fillScanners(answer) : fillPrinters(answer);
    });
}

QComboBox *OptionsDevices::addList(QVBoxLayout *sheet, const char *icon, const char *caption, const char *name) {
    auto *box = new QComboBox(this);
    box->setObjectName(name);
    box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    box->setMinimumContentsLength(12);
    sayInstead(*box, m_ctx.texts.text("OptionsSearching"));
    QLabel *before = label(caption);
    before->setBuddy(box);
    QHBoxLayout *row = addRow(sheet);
    row->addWidget(picture(icon));
    row->addWidget(before);
    row->addWidget(box, 1);
    return box;
}

void OptionsDevices::addScanners() {
    QVBoxLayout *sheet = addSheet();
    cboScanners = addList(sheet, "scan", "lblScanners", "cboScanners");
    chkScan = tickBox("chkScan");
    chkDisScanner = tickBox("chkDisScanner");
    sheet->addWidget(chkScan);
    sheet->addWidget(chkDisScanner);
}

void OptionsDevices::addPrinters() {
    QVBoxLayout *sheet = addSheet();
    cboPrinters = addList(sheet, "print", "lblPrinters", "cboPrinters");
    chkDisPrinter = tickBox("chkDisPrinter");
    sheet->addWidget(chkDisPrinter);
    addPrintLock(sheet);
}

void OptionsDevices::addPrintLock(QVBoxLayout *sheet) {
    optPrint1 = new Choice(this);
    optPrint1->setObjectName("optPrint1");
    optPrint2 = new Choice(this);
    optPrint2->setObjectName("optPrint2");
    cboMinutes = new QComboBox(this);
    cboMinutes->setObjectName("cboMinutes");
    QLabel *caption = label("lblPrintMinutes");
    caption->setBuddy(cboMinutes);
    connect(optPrint1, &QRadioButton::toggled, cboMinutes, &QWidget::setEnabled);
    cboMinutes->setEnabled(false);
    QHBoxLayout *row = addRow(sheet);
    row->addWidget(optPrint1);
    row->addWidget(cboMinutes);
    row->addWidget(caption);
    row->addStretch(1);
    sheet->addWidget(optPrint2);
    lockWith(Lock::Printing, {chkDisPrinter, optPrint1, cboMinutes, optPrint2});
    addNote(sheet, "lblPrintInfo");
}

void OptionsDevices::showEvent(QShowEvent *event) {
    OptionsPage::showEvent(event);
    if (!m_searched) {
        m_searched = true;
        m_search.start(DeviceKind::Scanners);
        m_search.start(DeviceKind::Printers);
    }
}

void OptionsDevices::fillScanners(const DeviceAnswer &answer) {
    if (answer.devices.isEmpty()) {
        sayInstead(*cboScanners, m_ctx.texts.text("OptionsNoScanner"));
        return;
    }
    cboScanners->setPlaceholderText(m_ctx.texts.text("OptionsChooseScanner"));
    for (const FoundDevice &scanner : answer.devices) {
        cboScanners->addItem(scanner.shown);
    }
    cboScanners->setCurrentIndex(m_scanner < cboScanners->count() ? m_scanner : -1);
    cboScanners->setEnabled(true);
}

void OptionsDevices::fillPrinters(const DeviceAnswer &answer) {
    if (answer.devices.isEmpty() && m_printer.isEmpty()) {
        sayInstead(*cboPrinters, m_ctx.texts.text("OptionsNoPrinter"));
        return;
    }
    cboPrinters->addItem(m_ctx.texts.text("OptionsUsualPrinter"), QString());
    for (const FoundDevice &printer : answer.devices) {
        cboPrinters->addItem(printer.shown, printer.name);
    }
    if (cboPrinters->findData(m_printer) < 0) {
        cboPrinters->addItem(m_ctx.texts.text("OptionsPrinterAway").arg(m_printer), m_printer);
    }
    cboPrinters->setCurrentIndex(cboPrinters->findData(m_printer));
    cboPrinters->setEnabled(true);
}

void OptionsDevices::showValues(const OptionsSettings &options) {
    m_scanner = options.scanner;
    m_printer = options.printer;
    chkScan->setChecked(options.advancedScan);
    chkDisScanner->setChecked(options.scannerButtonOff);
    chkDisPrinter->setChecked(options.printButtonOff);
    (options.printLock ? optPrint1 : optPrint2)->setChecked(true);
    cboMinutes->clear();
    for (const int minutes : offeredMinutes) {
        if (options.printLockMinutes < minutes && cboMinutes->findData(options.printLockMinutes) < 0) {
            cboMinutes->addItem(QString::number(options.printLockMinutes), options.printLockMinutes);
        }
        cboMinutes->addItem(QString::number(minutes), minutes);
    }
    cboMinutes->setCurrentIndex(cboMinutes->findData(options.printLockMinutes));
}

void OptionsDevices::takeValues(OptionsSettings &options) const {
    options.scanner = cboScanners->count() > 0 ? cboScanners->currentIndex() : m_scanner;
    options.printer = cboPrinters->count() > 0 ? cboPrinters->currentData().toString() : m_printer;
    options.advancedScan = chkScan->isChecked();
    options.scannerButtonOff = chkDisScanner->isChecked();
    options.printButtonOff = chkDisPrinter->isChecked();
    options.printLock = optPrint1->isChecked();
    options.printLockMinutes = cboMinutes->currentData().toInt();
}

} // namespace lumora
