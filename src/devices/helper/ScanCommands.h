// The commands of the helper program that open a scanner. Their answers are messages, see devices/ScanProtocol.h.
#pragma once

#include <QStringList>

namespace lumora {

/// lumora-devices options DEVICE [NAME=VALUE...]: sets the options in this order and answers with all that can be set.
/// lumora-devices scan DEVICE [auto] [NAME=VALUE...]: scans one picture; "auto" stands for automaticScan(). What the
/// device does not have or cannot be set to is passed over. SIGTERM cancels.
/// Returns the exit code: 0 when the last message, the status, has been written.
int runOptions(const QString &device, const QStringList &values);
int runScan(const QString &device, const QStringList &values);

} // namespace lumora
