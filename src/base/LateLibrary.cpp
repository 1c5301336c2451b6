#include "base/LateLibrary.h"

namespace lumora {

// QLibrary keeps one record of a library for all its objects, so that these cost little.
bool LateLibrary::isThere() const {
    return QLibrary(QLatin1String(m_name), m_version).load();
}

QFunctionPointer LateLibrary::function(const char *name) const {
    return QLibrary(QLatin1String(m_name), m_version).resolve(name);
}

} // namespace lumora
