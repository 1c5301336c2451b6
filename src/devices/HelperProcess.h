// The helper program lumora-devices as a process: which file it is, that it is silent but for its output, and that its
// end is told once, however it ends.
#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>

namespace lumora {

class HelperProcess : public QProcess {
    Q_OBJECT

  public:
    /// `helper` is the program to run; empty for lumora-devices beside the program file.
    explicit HelperProcess(const QString &helper);
    /// Kills what still runs, without ended().
    ~HelperProcess() override;

    void run(const QStringList &arguments) { start(m_helper, arguments); }

  Q_SIGNALS:
    /// Once for each run(), never before it returns; also when the program is missing.
    void ended();

  private:
    QString m_helper;
};

} // namespace lumora
