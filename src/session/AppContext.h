// The state that every window and tool gets: one object, passed by reference, instead of globals.
#pragma once

#include "base/IniFiles.h"
#include "base/Texts.h"
#include "base/basMisc.h"
#include "document/PhotoDocument.h"
#include "session/BackgroundTasks.h"
#include "session/Languages.h"
#include "session/MainFields.h"
#include "session/Settings.h"
#include "session/ToolFlags.h"

namespace lumora {

struct AppContext {
    explicit AppContext(Installation where)
        : installation(std::move(where)), settings(ini, installation),
          texts(
              ini, [this] { return languageFiles(installation, settings, ini); },
              [this] { return settings.read<Setting::Capitals>(); }),
          photo(PhotoHistory::Limits{.folder = installation.cacheFolder}) {
        photo.setTaskRunner(
            [this](const std::function<void()> &work, Stopping stopping) { return tasks.run(work, stopping); });
    }

    Installation installation;
    IniFiles ini;
    Settings settings;
    Texts texts;
    MainFields fields;
    ToolFlags flags;
    PhotoDocument photo;
    BackgroundTasks tasks; ///< the main window shows their progress
};

} // namespace lumora
