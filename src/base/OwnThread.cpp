#include "base/OwnThread.h"

#include <QCoreApplication>
#include <algorithm>
#include <chrono>
#include <utility>
#include <vector>

namespace lumora {

namespace {

std::vector<std::future<void>> &underWay() {
    static std::vector<std::future<void>> works;
    return works;
}

} // namespace

void besides(std::function<void()> work) {
    std::vector<std::future<void>> &works = underWay();
    if (works.empty()) {
        qAddPostRoutine(finishBesides);
    }
    std::erase_if(works, [](const std::future<void> &one) {
        return one.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
    });
    works.push_back(inOwnThread(std::move(work)));
}

void finishBesides() {
    underWay().clear();
}

} // namespace lumora
