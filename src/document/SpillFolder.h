// The private temporary folder that older undo steps go to. It is removed when the program ends; what a crash left
// behind is removed at the next start.
#pragma once

#include <QString>
#include <mutex>
#include <string>

namespace lumora {

/// One folder lumora-history-PID-XXXXXX (mode 0700) under `parent`, made with the first file. Any thread may call.
class SpillFolder {
  public:
    explicit SpillFolder(const QString &parent);
    ~SpillFolder();
    SpillFolder(const SpillFolder &) = delete;
    SpillFolder &operator=(const SpillFolder &) = delete;

    /// Descriptor of a new file of that name, for writing; -1 when neither the folder nor the file can be made. The
    /// caller closes it. A folder that somebody deleted is made again.
    int create(const std::string &name);
    /// Descriptor of a file for reading; -1 when it is not there any more.
    int open(const std::string &name) const;
    void remove(const std::string &name) const;
    /// Bytes that may still be written under the parent folder; very many when that cannot be found out.
    qint64 freeBytes() const;

    /// Removes the folders of this user's programs that have ended: those that nobody has locked. Links are never
    /// followed; what is not Lumora's or holds more than plain files stays.
    static void sweep(const QString &parent);

  private:
    bool make();

    const std::string m_parent;
    mutable std::mutex m_mutex;
    std::string m_path;
    int m_folder = -1; ///< kept open and locked: what marks it as in use
};

} // namespace lumora
