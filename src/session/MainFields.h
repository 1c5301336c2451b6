// The main window's hidden fields: filled once from the settings file, read by the tools instead of the file.
// A few carry a path from a dialog to the timer that acts on it.
#pragma once

#include "session/Settings.h"

#include <QString>
#include <QStringList>

namespace lumora {

struct MainFields {
    DialogStyle txtDlgs = settings::standard<Setting::DialogStyle>();
    Switch txtSFX = settings::standard<Setting::AdvancedEffects>();
    bool txtResizeMode = settings::standard<Setting::AdvancedResize>(); ///< free resizing at once, without the panel
    int txtSSSFX = settings::standard<Setting::SlideshowDelay>();       ///< seconds
    bool txtAutoScan = settings::standard<Setting::AdvancedScan>();
    bool txtScannerButton = settings::standard<Setting::ScannerButtonOff>(); ///< the button is switched off
    Switch txtAndyStyle = settings::standard<Setting::AdvancedPopart>();
    bool txtGrid = settings::standard<Setting::Grid>();
    Switch txtEmail = settings::standard<Setting::Email>();
    bool txtPrintTimer = settings::standard<Setting::PrintLock>();
    int txtCountDown = settings::standard<Setting::PrintLockMinutes>(); ///< minutes
    QString txtPrinter = settings::standard<Setting::Printer>();
    QString txtYourEmail = settings::standard<Setting::SenderAddress>();
    QString txtEmailAddress; ///< the recipients that frmEmail got, read by EmailSignlePhoto
    QString txtMessage;      ///< the same of its message
    QChar txtComma = '"';    ///< quotes the link below the message
    MailServer mailServer;   ///< read by EmailSignlePhoto
    MailSize mailSize = settings::standard<Setting::MailPhotoSize>();
    Switch txtCropTip = settings::standard<Setting::CropTip>();
    bool txtWelcome = settings::standard<Setting::Welcome>();
    bool txtMyDox = settings::standard<Setting::MyDocs>(); ///< read just before a photo dialog opens
    QString txtSimplePath;                                 ///< the open dialog's result, read by tmrLoadPhoto
    QString txtSimpleSavePath;                             ///< the save dialog's result, read by tmrSavePhoto

    QStringList cboSelect;    ///< scanners, in the driver's order
    int cboSelectIndex = -1;  ///< the chosen scanner, -1 none
    QStringList cboPrinter;   ///< printers, in the system's order
    int cboPrinterIndex = -1; ///< the chosen printer, -1 none
};

} // namespace lumora
