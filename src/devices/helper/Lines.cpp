#include "devices/helper/Lines.h"

#include <QString>
#include <cstdio>

namespace {

/// A text on one line and in one field.
QByteArray field(const QString &text) {
    return text.simplified().toUtf8();
}

} // namespace

void printLine(const char *what, const QString &name, const QString &shown) {
    std::printf("%s\t%s\t%s\n", what, field(name).constData(), field(shown).constData());
}
