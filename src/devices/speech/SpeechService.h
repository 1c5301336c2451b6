// Says texts aloud: the helper program lumora-devices speaks them, this class starts it and hands them over. Where
// there is no speech service, or no voice of the language, nothing is heard and nothing else happens.
#pragma once

#include <QObject>
#include <QProcess>
#include <QString>

namespace lumora {

/// Needs the event loop of its thread; no call waits for the service. A helper that has crashed is started once more.
class SpeechService : public QObject {
    Q_OBJECT

  public:
    /// `helper` is the program to run; by default lumora-devices beside the program file. Nothing is started yet.
    explicit SpeechService(const QString &helper = {}, QObject *parent = nullptr);
    /// Silences and ends the helper; one that hangs is killed after `timeToEnd` milliseconds.
    ~SpeechService() override;
    static constexpr int timeToEnd = 300;

    /// Says the text with a voice of that locale ("de_DE") instead of what is being said. Line breaks count as blanks.
    void say(const QString &locale, const QString &text);
    /// Stops what is being said.
    void stop();
    /// Starts the helper and has it look for a voice of that locale, so that the first text need not wait for it.
    void prepare(const QString &locale) { send(locale + '\n'); }

  private:
    void send(const QString &line);

    QString m_helper;
    QProcess m_process;
    int m_starts = 0;
};

} // namespace lumora
