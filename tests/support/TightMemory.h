// Little memory for a moment: the address space of this process may grow by so many bytes, until the object is gone.
#pragma once

#include <chrono>
#include <fstream>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>

namespace lumora::test {

class TightMemory {
  public:
    explicit TightMemory(long more) {
        ::getrlimit(RLIMIT_AS, &m_before);
        long pages = 0;
        for (long before = -1; before != pages;) { // a thread that begins reserves much and gives it back at once
            before = pages;
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
            std::ifstream("/proc/self/statm") >> pages;
        }
        const rlimit tight{static_cast<rlim_t>(pages * ::sysconf(_SC_PAGESIZE) + more), m_before.rlim_max};
        ::setrlimit(RLIMIT_AS, &tight);
    }
    ~TightMemory() { ::setrlimit(RLIMIT_AS, &m_before); }
    TightMemory(const TightMemory &) = delete;
    TightMemory &operator=(const TightMemory &) = delete;

  private:
    rlimit m_before{};
};

} // namespace lumora::test
