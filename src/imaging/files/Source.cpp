#include "imaging/files/Source.h"

namespace lumora {

qint64 Source::read(qint64 offset, void *to, qint64 count) {
    if (offset < 0 || count <= 0 || offset >= m_size || !m_device.seek(offset)) {
        return 0;
    }
    return std::max<qint64>(0, m_device.read(static_cast<char *>(to), count));
}

QByteArray Source::bytes(qint64 offset, qint64 count) {
    const qint64 wanted = std::min(count, m_size - offset);
    if (offset < 0 || wanted <= 0) {
        return {};
    }
    QByteArray result(wanted, Qt::Uninitialized);
    result.resize(read(offset, result.data(), wanted));
    return result;
}

} // namespace lumora
