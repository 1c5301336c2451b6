// One scanner, opened through SANE: its options by name and as texts, its status in the words of the protocol.
#pragma once

#include "devices/ScanOption.h"
#include "devices/ScanProtocol.h"

#include <sane/sane.h>

namespace lumora {

ScanStatus statusOf(SANE_Status status);

class SaneDevice {
  public:
    /// Opens the device of that name; check status(). There can be one in a process, which is closed by its end.
    explicit SaneDevice(const QString &name);

    ScanStatus status() const { return m_status; }
    SANE_Handle handle() const { return m_handle; }

    /// The options that a program can set now and that have one value: no buttons, no tables.
    QList<ScanOption> options() const;
    /// Sets an option, to the nearest value that it can have. Nothing happens where the device does not have it.
    void set(const ScanValue &value);

  private:
    const SANE_Option_Descriptor *find(const QString &name, SANE_Int &index) const;

    SANE_Handle m_handle = nullptr;
    ScanStatus m_status = ScanStatus::NotAnswering;
};

} // namespace lumora
