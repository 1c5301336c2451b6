// The main window's hidden fields: filled once from the settings file, read by the tools instead of the file.
// A few carry a path from a dialog to the timer that acts on it.
#pragma once

#include <QString>
#include <QStringList>

namespace lumora {

/// The sender's address as long as nobody has entered one.
inline constexpr char placeholderAddress[] = "you@example.com";

struct MainFields {
    QString txtDlgs = "0";                     ///< "Dialogs"/"Style": "0" own dialogs, "1" the system's
    QString txtSFX = "0";                      ///< "SFX"/"Advanced"
    QString txtResizeMode = "0";               ///< "Resize"/"Advanced"
    QString txtSSSFX = "2000";                 ///< "Slideshow"/"Delay"
    QString txtAutoScan = "0";                 ///< "Scan"/"Autoscan"
    QString txtScannerButton = "0";            ///< "Scanner Button"/"Value"
    QString txtAndyStyle = "0";                ///< "Popart"/"Level"
    QString txtGrid = "1";                     ///< "Grid"/"Value"
    QString txtEmail = "0";                    ///< "E-mail"/"Value"
    QString txtPrintTimer = "0";               ///< "Printer"/"Timed"
    QString txtCountDown = "1";                ///< "Printer"/"Timer", minutes
    QString txtPrinter;                        ///< "Printer"/"Device"
    QString txtYourEmail = placeholderAddress; ///< "Sender"/"Address"
    QString txtCropTip = "0";                  ///< "Tips"/"Crop"
    QString txtWelcome = "1";                  ///< "Welcome"/"Show"
    QString txtMyDox = "1";                    ///< "MyDocs"/"Value", read just before a save dialog opens
    QString txtSimplePath;                     ///< the open dialog's answer, read by tmrLoadPhoto
    QString txtSimpleSavePath;                 ///< the save dialog's answer, read by tmrSavePhoto

    QStringList cboSelect;    ///< scanners, in the driver's order
    int cboSelectIndex = -1;  ///< the chosen scanner, -1 none
    QStringList cboPrinter;   ///< printers, in the system's order
    int cboPrinterIndex = -1; ///< the chosen printer, -1 none
};

} // namespace lumora
