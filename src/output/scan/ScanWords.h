// What went wrong with a scan, in words that can be read to a child and say what to do.
#pragma once

#include "devices/ScanProtocol.h"

namespace lumora {

class Texts;

/// The status line's words; empty for Good.
QString plainWords(const Texts &texts, ScanStatus status);

} // namespace lumora
