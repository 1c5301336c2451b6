// A shared library that most starts of the program do without. Loading it with the program would cost each of them time
// and memory, so it is loaded when one of its functions is called for the first time.
#pragma once

#include <QLibrary>
#include <atomic>

namespace lumora {

class LateLibrary {
  public:
    /// Its name without "lib" and its version: "curl", 4.
    LateLibrary(const char *name, int version) : m_name(name), m_version(version) {}

    /// Loads it if it is not loaded yet; false where it is missing. Thread-safe.
    bool isThere() const;
    /// Null where there is no such function. Thread-safe.
    QFunctionPointer function(const char *name) const;

  private:
    const char *m_name;
    int m_version;
};

/// A function of such a library. It is called like the function itself, but only where the library is there.
template <typename Function> class LateFunction {
  public:
    LateFunction(const LateLibrary &library, const char *name) : m_library(library), m_name(name) {}

    operator Function *() const { // NOLINT(google-explicit-constructor) so that it is called and passed on like one
        auto found = m_found.load(std::memory_order_acquire);
        if (found == nullptr) {
            found = reinterpret_cast<Function *>(m_library.function(m_name));
            m_found.store(found, std::memory_order_release);
        }
        return found;
    }

  private:
    const LateLibrary &m_library;
    const char *m_name;
    mutable std::atomic<Function *> m_found = nullptr;
};

/// Takes the place of a function that the library's header declares, for the code of a namespace.
// NOLINTBEGIN(bugprone-macro-parentheses): a name that is declared
#define LUMORA_LATE(library, name)                                                                                     \
    const LateFunction<decltype(::name)> name {                                                                        \
        library, #name                                                                                                 \
    }
// NOLINTEND(bugprone-macro-parentheses)

} // namespace lumora
