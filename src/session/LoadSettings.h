// From the settings file into the main window's hidden fields, the writes that start Simple mode, and the folders that
// the settings name. Called at start, after a Simple save and by the file dialogs.
#pragma once

#include <QString>

namespace lumora {

struct AppContext;

/// Fills the hidden fields from the settings file. The scanner's
/// index is set only when the list of scanners has entries: -1 where the setting is no number or lies outside the list.
/// The fields stay text, whatever the file holds; what is no number is dealt with where a number is needed.
void LoadSettingsFromINIFile(AppContext &context);

/// Writes "0" to the seven settings of Simple mode. They stay so when Advanced mode is started later.
void ApplySimpleSettings(AppContext &context);

/// A whole number from a setting; `otherwise` when it is none.
int settingNumber(const QString &text, int otherwise);

/// "Working Directory"/"Path", "/" between folders: the documents folder's "My Photos" unless set otherwise.
QString workingDirectory(AppContext &context);

/// Where the photo dialogs start: the working directory when "MyDocs"/"Value" is "0", else the user's documents. Fills
/// txtMyDox on the way.
QString photoFolder(AppContext &context);

} // namespace lumora
