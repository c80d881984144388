#include "platform/main_queue.hpp"

#include <chrono>
#include <thread>

#include "platform/device.hpp"

namespace lunoval {

namespace {

double monotonicSeconds() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

}  // namespace

void ScheduledBlocks::add(double dueSeconds, MainQueue::Block block) {
    blocks_.emplace(std::pair{dueSeconds, added_++}, std::move(block));
}

MainQueue::Block ScheduledBlocks::takeDue(double nowSeconds) {
    if (blocks_.empty() || blocks_.begin()->first.first > nowSeconds) return nullptr;
    auto block = std::move(blocks_.begin()->second);
    blocks_.erase(blocks_.begin());
    return block;
}

void EventLoopQueue::async(Block block) {
    blocks_.add(monotonicSeconds(), std::move(block));
}

void EventLoopQueue::asyncAfter(double seconds, Block block) {
    blocks_.add(monotonicSeconds() + seconds, std::move(block));
}

void EventLoopQueue::runUntil(const std::function<bool()>& done) {
    while (!done() && !blocks_.empty()) {
        if (auto block = blocks_.takeDue(monotonicSeconds())) {
            block();
            continue;
        }
        std::this_thread::sleep_for(
            std::chrono::duration<double>(std::min(0.05, blocks_.nextDue() - monotonicSeconds())));
    }
}

EventLoopQueue& mainQueue() {
    static EventLoopQueue queue;
    return queue;
}

void EventLoopQueue::runDue() {
    while (auto block = blocks_.takeDue(monotonicSeconds())) block();
}

ManualQueue::ManualQueue(Date start) : now_(start) {
    device::fixNow(now_);
}

ManualQueue::~ManualQueue() {
    device::fixNow(std::nullopt);
}

void ManualQueue::async(Block block) {
    blocks_.add(now_.timeIntervalSince1970(), std::move(block));
}

void ManualQueue::asyncAfter(double seconds, Block block) {
    blocks_.add(now_.timeIntervalSince1970() + seconds, std::move(block));
}

void ManualQueue::runDue() {
    while (auto block = blocks_.takeDue(now_.timeIntervalSince1970())) block();
}

void ManualQueue::advance(double seconds) {
    const double end = now_.timeIntervalSince1970() + seconds;
    runDue();
    while (!blocks_.empty() && blocks_.nextDue() <= end) {
        now_ = Date::fromTimeIntervalSince1970(blocks_.nextDue());
        device::fixNow(now_);
        runDue();
    }
    now_ = Date::fromTimeIntervalSince1970(end);
    device::fixNow(now_);
}

}  // namespace lunoval
