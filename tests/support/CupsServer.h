// A real print system for tests: the scheduler of CUPS as an ordinary user's own server in a temporary folder, with
// printers that write their pages into files there.
#pragma once

#include <QImage>
#include <QList>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

namespace lumora::test {

/// Runs while the object lives; programs that are started meanwhile find it (CUPS_SERVER). One at a time.
class CupsServer {
  public:
    CupsServer();
    ~CupsServer();
    CupsServer(const CupsServer &) = delete;
    CupsServer &operator=(const CupsServer &) = delete;

    bool isRunning() const { return m_isRunning; }
    /// What went wrong, for the message of a failed test.
    QString log() const;

    enum class Sheet { A4, Letter };
    /// A printer that takes PDF pages; its margins are 18 points at three sides and 36 at the bottom, and it prints 300
    /// dots an inch.
    bool addPrinter(const QString &name, Sheet sheet);
    /// cupsdisable, cupsreject and the like with their arguments.
    static bool command(const QString &program, const QStringList &arguments);

    /// The pages that the printer has put out since the last call, at 72 dots an inch, as the sheets left it; waits
    /// until no job is left in its queue.
    QList<QImage> takePages(const QString &printer);
    /// The same as the file.
    QString takeFile(const QString &printer);
    int waitingJobs() const;

  private:
    bool start();
    QString path(const QString &name) const { return m_folder.filePath(name); }
    void write(const QString &name, const QString &text) const;

    QTemporaryDir m_folder;
    QProcess m_scheduler;
    bool m_isRunning = false;
};

/// A print system that takes connections and never says a word.
class SilentServer {
  public:
    /// `path` of its socket, for CUPS_SERVER.
    explicit SilentServer(const QString &path);
    ~SilentServer();
    SilentServer(const SilentServer &) = delete;
    SilentServer &operator=(const SilentServer &) = delete;

    bool isListening() const { return m_isListening; }

  private:
    int m_socket;
    bool m_isListening;
};

/// The pages of a PDF file, so many dots an inch.
QList<QImage> pagesOf(const QString &file, int dotsPerInch);

} // namespace lumora::test
