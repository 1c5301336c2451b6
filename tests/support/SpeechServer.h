// A real speech service for tests: speech-dispatcher in a temporary folder, with voices that write what they say.
#pragma once

#include <QByteArray>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

namespace lumora::test {

/// While it lives, programs that are started look for a speech service at that socket. Without one they find none.
class SpeechAddress {
  public:
    explicit SpeechAddress(const QString &socket);
    ~SpeechAddress();
    SpeechAddress(const SpeechAddress &) = delete;
    SpeechAddress &operator=(const SpeechAddress &) = delete;

  private:
    QByteArray m_before;
};

/// Runs while the object lives; programs that are started meanwhile find it. One at a time.
class SpeechServer {
  public:
    SpeechServer();
    ~SpeechServer();
    SpeechServer(const SpeechServer &) = delete;
    SpeechServer &operator=(const SpeechServer &) = delete;

    /// Starts it where it does not run, at the same address as before.
    bool start();
    /// Ends it as a crash does.
    void kill();
    /// What went wrong, for the message of a failed test.
    QString log() const;

    /// What was said so far: "Boston: Crop" where the voice named Boston has begun, "Boston. Crop" where it has also
    /// come to the end, two seconds later. speech-server.sh has the voices.
    QStringList said() const;
    /// Waits until the last line is that one.
    bool waitFor(const QString &line) const;

  private:
    QTemporaryDir m_folder;
    SpeechAddress m_address{m_folder.filePath("socket")};
    QProcess m_server;
};

} // namespace lumora::test
