// Lumora as the player sees it: the same start-up that the program itself runs, and a look at its photo and flags.
#pragma once

#include "Program.h"
#include "app/basMain.h"
#include "base/basMisc.h"

namespace lumora::play {

class LumoraProgram : public Program {
  public:
    /// Without a recovery folder nothing is kept for after a crash.
    LumoraProgram(const QString &programFolder, const QString &recoveryFolder)
        : m_main(Installation{.programFolder = programFolder,
                              .recoveryFolder = recoveryFolder,
                              .usersFolder = usersConfigurationFolder(),
                              .cacheFolder = cacheFolder(),
                              .siteFile = programFolder + "/site.ini"}) {}

    basMain &main() { return m_main; }

    void setting(const QString &section, const QString &key, const QString &value, Whose whose) override;
    QString start(const QStringList &words) override;
    bool takesInput() const override;
    QWidget *canvas() const override;
    QPoint onCanvas(QPoint picturePixel) const override;
    QImage picture() const override;
    QImage marked() const override;
    State state() const override;
    bool isLeftAlone(const QWidget &widget, Walk walk) const override;
    bool isMoving() const override;
    bool isAtRest() const override;
    std::function<QString()> orderCheck(Walk walk) const override;

  private:
    mutable basMain m_main;
};

} // namespace lumora::play
