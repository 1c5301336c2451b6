// A home folder for one test, so that the real one is neither read nor written.
#pragma once

#include <QTemporaryDir>

namespace lumora::test {

class TemporaryHome {
  public:
    TemporaryHome() { qputenv("HOME", QFile::encodeName(m_folder.path())); }
    ~TemporaryHome() { qputenv("HOME", m_before); }
    TemporaryHome(const TemporaryHome &) = delete;
    TemporaryHome &operator=(const TemporaryHome &) = delete;

    QString path() const { return m_folder.path(); }

  private:
    QByteArray m_before = qgetenv("HOME");
    QTemporaryDir m_folder;
};

} // namespace lumora::test
