#include "devices/mail/MailWords.h"

#include "base/Texts.h"

namespace lumora {

QString plainWords(const Texts &texts, MailFault fault) {
    static constexpr const char *words[] = {"",
                                            "StatusMailNoServer",
                                            "StatusMailNotFound",
                                            "StatusMailNoAnswer",
                                            "StatusMailNotEncrypted",
                                            "StatusMailBadCertificate",
                                            "StatusMailWrongPassword",
                                            "StatusMailSenderRefused",
                                            "StatusMailAddressRefused",
                                            "StatusMailTooLarge",
                                            "StatusMailLost",
                                            "StatusMailNoPhoto",
                                            "StatusMailStopped"};
    static_assert(std::size(words) == static_cast<size_t>(MailFault::Cancelled) + 1);
    return fault == MailFault::None ? QString() : texts.text(words[static_cast<size_t>(fault)]);
}

} // namespace lumora
