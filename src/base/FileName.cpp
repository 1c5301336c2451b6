#include "base/FileName.h"

#include <QStringDecoder>
#include <algorithm>
#include <sys/stat.h>

namespace lumora {

namespace {

constexpr char16_t firstEscape = 0xDC80; // for the byte 0x80
constexpr char16_t lastEscape = 0xDCFF;

bool isUtf8(QByteArrayView bytes) {
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder.decode(bytes);
    return !decoder.hasError() && text.toUtf8() == bytes;
}

/// The length of the UTF-8 character at the beginning; 0 when there is none.
qsizetype characterAt(QByteArrayView bytes) {
    constexpr qsizetype longest = 4;
    for (qsizetype length = 1; length <= std::min(longest, bytes.size()); ++length) {
        if (isUtf8(bytes.first(length))) {
            return length;
        }
    }
    return 0;
}

} // namespace

QString fileNameOf(const QByteArray &bytes) {
    if (isUtf8(bytes)) {
        return QString::fromUtf8(bytes);
    }
    QString name;
    for (qsizetype at = 0; at < bytes.size();) {
        const QByteArrayView rest = QByteArrayView(bytes).sliced(at);
        const qsizetype length = characterAt(rest);
        name += length > 0 ? QString::fromUtf8(rest.first(length))
                           : QString(QChar(firstEscape + (static_cast<uchar>(rest[0]) - 0x80)));
        at += std::max<qsizetype>(1, length);
    }
    return name;
}

QByteArray fileNameBytes(const QString &name) {
    QByteArray bytes;
    qsizetype begin = 0; // of what is not escaped
    for (qsizetype at = 0; at < name.size(); ++at) {
        const char16_t unit = name[at].unicode();
        const bool lone = at == 0 || !name[at - 1].isHighSurrogate();
        if (lone && unit >= firstEscape && unit <= lastEscape) {
            bytes += name.mid(begin, at - begin).toUtf8() + static_cast<char>(unit - firstEscape + 0x80);
            begin = at + 1;
        }
    }
    return bytes + name.mid(begin).toUtf8();
}

bool isThere(const QString &path) {
    struct stat status {};
    return ::lstat(fileNameBytes(path).constData(), &status) == 0;
}

bool isFile(const QString &path) {
    struct stat status {};
    return ::stat(fileNameBytes(path).constData(), &status) == 0 && S_ISREG(status.st_mode);
}

QString localFileOf(const QUrl &address) {
    return address.isLocalFile()
               ? fileNameOf(QByteArray::fromPercentEncoding(address.path(QUrl::FullyEncoded).toUtf8()))
               : QString();
}

} // namespace lumora
