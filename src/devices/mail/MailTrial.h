// Tries and finds mail servers for a window that stays usable meanwhile.
#pragma once

#include "base/TaskControl.h"
#include "devices/mail/Smtp.h"

#include <QObject>
#include <future>

namespace lumora {

class MailTrial : public QObject {
    Q_OBJECT

  public:
    explicit MailTrial(QObject *parent = nullptr);
    /// Stops what is under way, which takes a second at most.
    ~MailTrial() override;

    /// Logs in to the server; tried() follows. Does nothing while something is under way.
    void tryServer(const MailServer &server, const QString &password);
    /// Looks for the usual servers of an address; found() follows. Does nothing while something is under way.
    void find(const QString &address);
    bool isRunning() const { return m_work.valid(); }

  Q_SIGNALS:
    void tried(const lumora::MailResult &result);
    /// In the order of preference; empty when none has answered.
    void found(const QList<lumora::MailServer> &servers);

  private:
    void run(const std::function<std::function<void()>()> &work);

    TaskControl m_control;
    std::future<void> m_work; ///< waited for at the end
};

} // namespace lumora
