// Where a run plays: a private program folder and a private home, so that nothing of the user's or of the build is
// touched. Made before the application, because Qt reads the environment when it starts.
#pragma once

#include <QSize>
#include <QString>
#include <QTemporaryDir>

namespace lumora::play {

class Stage {
  public:
    /// `folder`: the program folder to play with, used as it is; empty: a copy of the one this program is in (settings
    /// and texts copied, photos and programs linked). `screen`: the size of the made-up screen on the offscreen
    /// platform, in pixels.
    Stage(const QString &folder, QSize screen);

    bool isReady() const { return m_folder.isValid(); }
    QString programFolder() const { return m_programFolder; }
    QString home() const { return m_folder.filePath("home"); }
    QString temporaryFolder() const { return m_folder.filePath("tmp"); }
    QString path() const { return m_folder.path(); }

  private:
    void copyProgramFolder() const;
    void redirectEnvironment() const;
    void makeScreen(QSize screen) const;

    QTemporaryDir m_folder;
    QString m_programFolder;
};

} // namespace lumora::play
