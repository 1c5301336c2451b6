#include "base/OwnThread.h"

#include <QCoreApplication>
#include <algorithm>
#include <chrono>
#include <exception>
#include <memory>
#include <utility>
#include <vector>

namespace lumora {

namespace {

std::vector<std::future<void>> &underWay() {
    static std::vector<std::future<void>> works;
    return works;
}

} // namespace

std::future<void> inOwnThread(std::function<void()> work) {
    const auto shared = std::make_shared<std::function<void()>>(std::move(work));
    const auto run = [shared] { (*shared)(); };
    try {
        return std::async(std::launch::async, run);
    } catch (const std::exception &) { // no thread is to be had, or no memory for one
        std::packaged_task<void()> here(run);
        here();
        return here.get_future();
    }
}

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
