// Where a run plays: a private program folder and a private home, so that nothing of the user's or of the build is
// touched. Made before the application, because Qt reads the environment when it starts.
#pragma once

#include <QDir>
#include <QSize>
#include <QString>
#include <QTemporaryDir>
#include <optional>

namespace lumora::play {

class Stage {
  public:
    /// `folder`: the program folder to play with, used as it is; empty: a copy of the one this program is in (settings
    /// and texts copied, photos and programs linked). `screen`: the size of the made-up screen on the offscreen
    /// platform, in pixels. `place`: the folder to play in, which stays; empty: one that goes with this object.
    Stage(const QString &folder, QSize screen, const QString &place = {});

    bool isReady() const { return QDir(m_path).exists(); }
    QString programFolder() const { return m_programFolder; }
    QString home() const { return m_path + "/home"; }
    QString temporaryFolder() const { return m_path + "/tmp"; }
    QString path() const { return m_path; }

  private:
    void copyProgramFolder() const;
    void redirectEnvironment() const;
    void makeScreen(QSize screen) const;

    std::optional<QTemporaryDir> m_folder;
    QString m_path;
    QString m_programFolder;
};

} // namespace lumora::play
