#include "session/LoadSettings.h"

#include "session/AppContext.h"

#include <QDir>

namespace lumora {

void LoadSettingsFromINIFile(AppContext &context) {
    const Settings &settings = context.settings;
    MainFields &fields = context.fields;
    fields.txtSFX = settings.read<Setting::AdvancedEffects>();
    fields.txtResizeMode = settings.read<Setting::AdvancedResize>();
    fields.txtSSSFX = settings.read<Setting::SlideshowDelay>();
    fields.txtAutoScan = settings.read<Setting::AdvancedScan>();
    if (!fields.cboSelect.isEmpty()) {
        const int index = settings.read<Setting::Scanner>().value_or(-1);
        fields.cboSelectIndex = index >= 0 && index < fields.cboSelect.size() ? index : -1;
    }
    fields.txtScannerButton = settings.read<Setting::ScannerButtonOff>();
    fields.txtDlgs = settings.read<Setting::DialogStyle>();
    fields.txtAndyStyle = settings.read<Setting::AdvancedPopart>();
    fields.txtGrid = settings.read<Setting::Grid>();
    fields.txtEmail = settings.read<Setting::Email>();
    fields.txtPrintTimer = settings.read<Setting::PrintLock>();
    fields.txtCountDown = settings.read<Setting::PrintLockMinutes>();
    fields.txtPrinter = settings.read<Setting::Printer>();
    fields.txtYourEmail = settings.read<Setting::SenderAddress>();
    fields.txtCropTip = settings.read<Setting::CropTip>();
}

void ApplySimpleSettings(AppContext &context) {
    context.settings.switchOff(Writer::SimpleStart);
}

QString workingDirectory(AppContext &context) {
    const QString path = context.settings.read<Setting::WorkingDirectory>();
    if (path.isEmpty()) {
        return GetSpecialFolderPath(5) + "/My Photos";
    }
    // A file copied from another system may contain "\"; a folder that really has one in its name is kept.
    return QDir(path).exists() ? path : QString(path).replace('\\', '/');
}

QString photoFolder(AppContext &context) {
    context.fields.txtMyDox = context.settings.read<Setting::MyDocs>();
    return context.fields.txtMyDox ? GetSpecialFolderPath(5) : workingDirectory(context);
}

} // namespace lumora
