// What went wrong with a mail, in words that say what to do.
#pragma once

#include "devices/mail/Smtp.h"

namespace lumora {

class Texts;

/// An empty text for None.
QString plainWords(const Texts &texts, MailFault fault);

} // namespace lumora
