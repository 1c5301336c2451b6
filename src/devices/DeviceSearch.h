// Looks for scanners and printers in the background: the helper program lumora-devices looks, this class starts it and
// emits what it found. Used by the lists of the output module.
#pragma once

#include "devices/HelperRun.h"

#include <QList>
#include <QObject>
#include <QString>

namespace lumora {

enum class DeviceKind { Scanners, Printers };

struct FoundDevice {
    QString name;  ///< by which the system opens it
    QString shown; ///< for people
};

struct DeviceAnswer {
    QList<FoundDevice> devices; ///< in the system's order
    QString defaultName;        ///< the default printer's name; may be empty
    bool complete =
        false; ///< false when the helper is missing, crashed, hung or talked nonsense; then nothing is found
};

class DeviceSearch : public QObject {
    Q_OBJECT

  public:
    /// `helper` is the program to ask; by default lumora-devices beside the program file.
    /// Deleting the search ends what still looks.
    explicit DeviceSearch(const QString &helper = {}, QObject *parent = nullptr);

    /// How long a search may take, milliseconds (30,000 unless set; 1 or more). After that the helper is killed.
    void setTimeLimit(int milliseconds) { m_timeLimit = milliseconds; }

    /// Starts looking and returns at once. While a search of that kind runs, nothing new begins. The answer comes with
    /// answered(), never before this returns.
    void start(DeviceKind kind);
    bool isRunning(DeviceKind kind) const { return runFor(kind).isRunning(); }

  Q_SIGNALS:
    /// Once for each search.
    void answered(lumora::DeviceKind kind, const lumora::DeviceAnswer &answer);

  private:
    const HelperRun &runFor(DeviceKind kind) const { return kind == DeviceKind::Scanners ? m_scanners : m_printers; }

    int m_timeLimit = 30'000;
    HelperRun m_scanners;
    HelperRun m_printers;
};

} // namespace lumora
