#include "session/LoadSettings.h"

#include "session/AppContext.h"

#include <QDir>

namespace lumora {

void LoadSettingsFromINIFile(AppContext &context) {
    MainFields &fields = context.fields;
    fields.txtSFX = context.setting("SFX", "Advanced", "0");
    fields.txtResizeMode = context.setting("Resize", "Advanced", "0");
    fields.txtSSSFX = context.setting("Slideshow", "Delay", "2000");
    fields.txtAutoScan = context.setting("Scan", "Autoscan", "0");
    if (!fields.cboSelect.isEmpty()) {
        const int index = settingNumber(context.setting("Scanner", "Device", "-1"), -1);
        fields.cboSelectIndex = index >= 0 && index < fields.cboSelect.size() ? index : -1;
    }
    fields.txtScannerButton = context.setting("Scanner Button", "Value", "0");
    fields.txtDlgs = context.setting("Dialogs", "Style", "0");
    fields.txtAndyStyle = context.setting("Popart", "Level", "0");
    fields.txtGrid = context.setting("Grid", "Value", "1");
    fields.txtEmail = context.setting("E-mail", "Value", "0");
    fields.txtPrintTimer = context.setting("Printer", "Timed", "0");
    fields.txtCountDown = context.setting("Printer", "Timer", "1");
    fields.txtPrinter = context.setting("Printer", "Device", "");
    fields.txtYourEmail = context.setting("Sender", "Address", placeholderAddress);
    fields.txtCropTip = context.setting("Tips", "Crop", "0");
}

void ApplySimpleSettings(AppContext &context) {
    static const std::pair<const char *, const char *> simpleSettings[] = {
        {"Dialogs", "Style"}, {"SFX", "Advanced"},  {"Resize", "Advanced"}, {"Grid", "Value"},
        {"E-mail", "Value"},  {"Printer", "Timed"}, {"Tips", "Crop"}};
    for (const auto &[section, key] : simpleSettings) {
        context.writeSetting(section, key, "0");
    }
}

int settingNumber(const QString &text, int otherwise) {
    bool isNumber = false;
    const int number = text.trimmed().toInt(&isNumber);
    return isNumber ? number : otherwise;
}

QString workingDirectory(AppContext &context) {
    QString standard = GetSpecialFolderPath(5) + "/My Photos";
    const QString path = context.setting("Working Directory", "Path", standard);
    if (path.isEmpty()) {
        return standard;
    }
    // A file brought over from another system may hold "\"; a folder that really has one in its name is kept.
    return QDir(path).exists() ? path : QString(path).replace('\\', '/');
}

QString photoFolder(AppContext &context) {
    context.fields.txtMyDox = context.setting("MyDocs", "Value", "1");
    return context.fields.txtMyDox == "0" ? workingDirectory(context) : GetSpecialFolderPath(5);
}

} // namespace lumora
