// How a control looks that the administrator has locked.
#pragma once

class QString;
class QWidget;

namespace lumora {

/// Disables the control, puts a small padlock into its upper corner and has its tool tip say `why`. It stays so.
void showLocked(QWidget &control, const QString &why);

} // namespace lumora
