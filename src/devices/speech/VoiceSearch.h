// Whether somebody would hear anything: the helper program lumora-devices asks the speech service for a voice.
#pragma once

#include "devices/HelperRun.h"

#include <QObject>
#include <QString>

namespace lumora {

class VoiceSearch : public QObject {
    Q_OBJECT

  public:
    /// `helper` is the program to ask; by default lumora-devices beside the program file.
    explicit VoiceSearch(const QString &helper = {}, QObject *parent = nullptr);

    /// How long a search may take, milliseconds (10,000 unless set; 1 or more).
    void setTimeLimit(int milliseconds) { m_timeLimit = milliseconds; }
    /// Looks for a voice of that locale ("de_DE") and returns at once; while a search runs, nothing new begins.
    void start(const QString &locale) { m_run.start({"voice", locale}, m_timeLimit); }
    bool isRunning() const { return m_run.isRunning(); }

  Q_SIGNALS:
    /// Once for each search, never before start() returns; false also where no speech service answers in time.
    void answered(bool hasVoice);

  private:
    HelperRun m_run;
    int m_timeLimit = 10'000;
};

} // namespace lumora
