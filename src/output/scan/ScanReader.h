// Scans one picture from beginning to end in the thread of a background task.
#pragma once

#include "devices/ScanProcess.h"

#include <QImage>
#include <functional>

namespace lumora {

struct ScanRequest {
    QString device;
    ScanProcess::Settings settings = ScanProcess::Settings::Automatic;
    QList<ScanValue> values = {};
    QString helper = {}; ///< as ScanProcess takes it
};

struct ScanResult {
    QImage picture; ///< null unless the status is Good
    ScanStatus status = ScanStatus::Crashed;
};

/// Some lines of a scan that is coming in, reduced for the screen.
struct ScanStrip {
    QImage picture;
    int top = 0;    ///< of the strip in the reduced picture
    int height = 0; ///< of the whole reduced picture; -1 while nobody knows
    int factor = 1; ///< how many times larger the scan is
};

/// The longer side of the reduced picture is as long as this, or a little longer; pixels.
inline constexpr int scanOnScreen = 1000;

/// Returns when the picture is there, when the scan has failed, or when the current TaskControl is cancelled and the
/// scanner has stopped. Reports its progress to it where the number of lines is known. `grown` is called in this
/// thread, about twenty times a second while lines come.
ScanResult readScan(const ScanRequest &request, const std::function<void(const ScanStrip &strip)> &grown);

} // namespace lumora
