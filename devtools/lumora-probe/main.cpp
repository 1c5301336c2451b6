// lumora-probe: opens pictures as Lumora does and prints a line for each. See docs/lumora-probe.md.
#include "Isolated.h"
#include "imaging/Picture.h"
#include "imaging/PictureFile.h"

#include <QCryptographicHash>
#include <QElapsedTimer>
#include <QFile>
#include <QStringList>
#include <cstdio>
#include <optional>

using namespace lumora;

namespace {

struct Options {
    QStringList files;
    int timeoutMs = 20'000;
};

const char usage[] = "usage: lumora-probe [--list LISTFILE] [--timeout SECONDS] FILE...\n";

bool addList(const QString &name, QStringList &files) {
    QFile list(name);
    if (!list.open(QIODevice::ReadOnly)) {
        return false;
    }
    while (!list.atEnd()) {
        QByteArray line = list.readLine();
        while (line.endsWith('\n') || line.endsWith('\r')) {
            line.chop(1);
        }
        if (!line.isEmpty()) {
            files += QFile::decodeName(line);
        }
    }
    return true;
}

// Nothing when the command line is not understood; then says why.
std::optional<Options> parse(int count, char **arguments) {
    Options options;
    bool onlyFiles = false;
    for (int i = 1; i < count; ++i) {
        const QByteArray argument = arguments[i];
        const bool isOption = !onlyFiles && (argument == "--list" || argument == "--timeout");
        if (isOption && i + 1 == count) {
            std::fputs(usage, stderr);
            return std::nullopt;
        }
        if (!onlyFiles && argument == "--") {
            onlyFiles = true;
        } else if (isOption && argument == "--list") {
            if (!addList(QFile::decodeName(arguments[++i]), options.files)) {
                std::fprintf(stderr, "lumora-probe: cannot read the list %s\n", arguments[i]);
                return std::nullopt;
            }
        } else if (isOption) {
            const double seconds = QByteArray(arguments[++i]).toDouble();
            if (!(seconds > 0 && seconds <= 86'400)) {
                std::fputs("lumora-probe: the timeout must be between 0 and 86400 seconds\n", stderr);
                return std::nullopt;
            }
            options.timeoutMs = std::max(1, static_cast<int>(seconds * 1000));
        } else {
            options.files += QFile::decodeName(argument);
        }
    }
    if (options.files.isEmpty()) {
        std::fputs(usage, stderr);
        return std::nullopt;
    }
    return options;
}

const char *name(PictureError error) {
    switch (error) {
    case PictureError::None:
        return "none";
    case PictureError::NotFound:
        return "not found";
    case PictureError::NotAPicture:
        return "not a picture";
    case PictureError::TooRare:
        return "too rare";
    case PictureError::TooLarge:
        return "too large";
    case PictureError::Damaged:
        return "damaged";
    case PictureError::NoMemory:
        return "no memory";
    case PictureError::UnknownType:
        return "unknown type";
    case PictureError::NotWritable:
    case PictureError::DiskFull:
    case PictureError::ReadOnlyFolder:
    case PictureError::ReadOnlyFile:
    case PictureError::NameRefused:
    case PictureError::NameTooLong:
    case PictureError::SideTooLong:
        return "not writable";
    case PictureError::Cancelled:
        return "cancelled";
    }
    return "";
}

QByteArray hashOf(const QImage &picture) {
    QCryptographicHash hash(QCryptographicHash::Sha256);
    for (int y = 0; y < picture.height(); ++y) {
        const QImage row(picture.constScanLine(y), picture.width(), 1, picture.bytesPerLine(), picture.format());
        const QImage rgba = row.convertToFormat(QImage::Format_RGBA8888);
        hash.addData(QByteArrayView(rgba.constBits(), qsizetype{4} * picture.width()));
    }
    return hash.result().toHex();
}

// A field of a line: a tab or a line break in it would make two of it.
QByteArray field(QByteArray text) {
    return text.replace('\\', "\\\\").replace('\t', "\\t").replace('\n', "\\n").replace('\r', "\\r");
}

// The columns from "ok" or "refused" on.
QByteArray columns(bool good, const QString &reason, int width, int height, const QByteArray &hash, qint64 ms) {
    return QByteArrayList{good ? "ok" : "refused", field(reason.toUtf8()),
                          QByteArray::number(width) + "x" + QByteArray::number(height),
                          hash.isEmpty() ? QByteArray("-") : hash, QByteArray::number(ms)}
        .join('\t');
}

QByteArray probe(const QString &file) {
    QElapsedTimer timer;
    timer.start();
    const PictureRead read = readPicture(file);
    const qint64 ms = timer.elapsed();
    if (read.error == PictureError::None) {
        return columns(true, read.reason, read.picture.width(), read.picture.height(), hashOf(read.picture), ms);
    }
    const QString detail = read.reason.isEmpty() ? QString() : QStringLiteral(": ") + read.reason;
    return columns(false, QLatin1String(name(read.error)) + detail, 0, 0, {}, ms);
}

} // namespace

int main(int argc, char **argv) {
    const auto options = parse(argc, argv);
    if (!options) {
        return 2;
    }
    bool printed = true;
    for (const QString &file : options->files) {
        QElapsedTimer timer;
        timer.start();
        const IsolatedAnswer result = runIsolated([&] { return probe(file); }, options->timeoutMs);
        const QByteArray line =
            field(QFile::encodeName(file)) + '\t' +
            (result.failure.isEmpty() ? result.answer : columns(false, result.failure, 0, 0, {}, timer.elapsed())) +
            '\n';
        printed = std::fwrite(line.constData(), 1, line.size(), stdout) == static_cast<std::size_t>(line.size()) &&
                  std::fflush(stdout) == 0 && printed;
    }
    return printed ? 0 : 1;
}
