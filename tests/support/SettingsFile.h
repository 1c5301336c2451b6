// Single values of the settings file, verbatim, for tests of what is read and written.
#pragma once

#include "session/AppContext.h"

namespace lumora::test {

inline QString setting(AppContext &context, const QString &section, const QString &key,
                       const QString &standard = "missing") {
    return context.ini.ReadIniValue(context.installation.settingsFile(), section, key, standard);
}

inline void writeSetting(AppContext &context, const QString &section, const QString &key, const QString &value) {
    context.ini.WriteIniValue(context.installation.settingsFile(), section, key, value);
}

} // namespace lumora::test
