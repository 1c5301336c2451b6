// The bytes of a picture file, read where they are needed: a header is read without loading the whole file.
// Used by the formats in this folder.
#pragma once

#include <QByteArray>
#include <QIODevice>
#include <QString>
#include <utility>

namespace lumora {

class Source {
  public:
    /// The device must be open for reading and seekable, and outlive the source.
    /// `name`: of the file, empty when the bytes come from none.
    explicit Source(QIODevice &device, QString name = {})
        : m_device(device), m_name(std::move(name)), m_size(device.size()) {}

    const QString &name() const { return m_name; }

    qint64 size() const { return m_size; }
    QIODevice &device() const { return m_device; }

    /// Reads up to `count` bytes from `offset`; the number read, 0 at the end and on every failure.
    qint64 read(qint64 offset, void *to, qint64 count);

    /// Up to `count` bytes from `offset`; shorter at the end of the file, empty beyond it.
    QByteArray bytes(qint64 offset, qint64 count);

  private:
    QIODevice &m_device;
    QString m_name;
    qint64 m_size;
};

} // namespace lumora
