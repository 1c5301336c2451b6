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
    fields.mailServer = readMailServer(settings);
    fields.mailSize = settings.read<Setting::MailPhotoSize>();
    fields.txtCropTip = settings.read<Setting::CropTip>();
}

MailServer readMailServer(const Settings &settings) {
    const MailServer standard;
    const int port = settings.read<Setting::MailPort>();
    return {settings.read<Setting::MailHost>().trimmed(), port >= 1 && port <= 65535 ? port : standard.port,
            settings.read<Setting::MailSecurityKind>(), settings.read<Setting::MailUser>().trimmed()};
}

void ApplySimpleSettings(AppContext &context) {
    context.settings.switchSimpleOn();
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
