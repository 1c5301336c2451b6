// The entries of the lists of file types, in the open and save dialogs.
#pragma once

#include "base/Texts.h"

#include <QStringList>

namespace lumora {

/// "BMP Files (*.bmp)": the text of that identifier and the patterns, as file dialogs understand them in brackets.
inline QString fileTypeText(const Texts &texts, const QString &identifier, const QStringList &patterns) {
    return texts.text(identifier) + QLatin1StringView(" (") + patterns.join(' ') + ')';
}

} // namespace lumora
