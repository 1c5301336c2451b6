// What libFuzzer calls. LUMORA_FUZZ names the target.
#include "fuzz/Targets.h"

#include <QDir>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace lumora::fuzz {

namespace {

const Target *chosen = nullptr;

} // namespace

void require(bool holds, const char *promise) {
    if (!holds) {
        std::fprintf(stderr, "Broken promise: %s\n", promise);
        std::abort();
    }
}

QString fileWith(const QByteArray &bytes, const char *extension) {
    static const QString path =
        QStringLiteral("%1/lumora-fuzz-%2%3").arg(QDir::tempPath()).arg(::getpid()).arg(QLatin1String(extension));
    static const QByteArray name = path.toLocal8Bit();
    const int file = ::open(name.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    const bool written = file >= 0 && ::write(file, bytes.constData(), bytes.size()) == bytes.size();
    if (!written || ::close(file) != 0) {
        std::perror(name.constData());
        std::_Exit(2);
    }
    return path;
}

} // namespace lumora::fuzz

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
    using namespace lumora::fuzz;
    const char *const name = std::getenv("LUMORA_FUZZ");
    for (const Target &target : targets) {
        chosen = name != nullptr && std::strcmp(target.name, name) == 0 ? &target : chosen;
    }
    if (chosen == nullptr) {
        std::fputs("LUMORA_FUZZ must be one of:", stderr);
        for (const Target &target : targets) {
            std::fprintf(stderr, " %s", target.name);
        }
        std::fputs("\n", stderr);
        std::exit(2);
    }
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    using namespace lumora::fuzz;
    // A copy, so that the sanitizer sees what is read beyond it.
    chosen->read(QByteArray(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size)), chosen->extension);
    return 0;
}
