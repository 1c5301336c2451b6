// Loads the settings file into the main window's hidden fields, writes the settings of Simple mode, and finds the
// folders named in the settings. Called at start, after a Simple save and by the file dialogs.
#pragma once

#include "base/MailServer.h"

#include <QString>

namespace lumora {

struct AppContext;
class Settings;

/// Fills the hidden fields from the settings file. The scanner's index is set only when the list of scanners has
/// entries: -1 when the setting is not a number or outside the list.
void LoadSettingsFromINIFile(AppContext &context);

/// The mail server of the settings; the usual port where the file has none that can be one.
MailServer readMailServer(const Settings &settings);

/// Writes "0" to the seven settings of Simple mode. They keep this value when Advanced mode is started later, which
/// then offers to bring the former ones back.
void ApplySimpleSettings(AppContext &context);

/// "Working Directory"/"Path", "/" between folders: the documents folder's "My Photos" unless set otherwise.
QString workingDirectory(AppContext &context);

/// The start folder of the photo dialogs: the working directory when txtMyDox is false, else the user's documents.
/// Also sets txtMyDox.
QString photoFolder(AppContext &context);

} // namespace lumora
