// Reading aloud: joins what there is to say with what speaks, while the user's setting wants it.
#pragma once

#include "session/Settings.h"

#include <memory>

namespace lumora {

class ReadingAloud {
  public:
    explicit ReadingAloud(const Settings &settings);
    ~ReadingAloud();

    /// Call at the start and when the setting or the language may have changed. Off there is no process and no part.
    void follow();

  private:
    struct Parts;

    const Settings &m_settings;
    std::unique_ptr<Parts> m_parts;
};

} // namespace lumora
