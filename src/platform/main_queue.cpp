#include "platform/main_queue.hpp"

#include <glib.h>

#include <algorithm>
#include <chrono>
#include <cmath>

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

void runGLibEvents(double maxSeconds) {
    // A timer bounds the wait; anything GLib delivers first ends it sooner.
    const auto milliseconds = static_cast<guint>(std::ceil(std::max(maxSeconds, 0.0) * 1000));
    GSource* timer = g_timeout_source_new(milliseconds);
    g_source_set_callback(
        timer, [](gpointer) -> gboolean { return G_SOURCE_REMOVE; }, nullptr, nullptr);
    g_source_attach(timer, nullptr);
    g_main_context_iteration(nullptr, TRUE);
    g_source_destroy(timer);
    g_source_unref(timer);
}

// GLib's default context is made here, on the thread that drains the queue, before any other
// thread can wake it.
EventLoopQueue::EventLoopQueue() {
    g_main_context_default();
}

void EventLoopQueue::async(Block block) {
    asyncAfter(0, std::move(block));
}

void EventLoopQueue::asyncAfter(double seconds, Block block) {
    {
        const std::scoped_lock lock(mutex_);
        blocks_.add(monotonicSeconds() + seconds, std::move(block));
    }
    // Ends a wait in GLib's loop on the main thread, so a block added elsewhere runs now.
    g_main_context_wakeup(nullptr);
}

std::pair<MainQueue::Block, std::optional<double>> EventLoopQueue::next() {
    const std::scoped_lock lock(mutex_);
    const double now = monotonicSeconds();
    if (auto block = blocks_.takeDue(now)) return {std::move(block), 0.0};
    if (blocks_.empty()) return {nullptr, std::nullopt};
    return {nullptr, blocks_.nextDue() - now};
}

void EventLoopQueue::runUntil(const std::function<bool()>& done) {
    while (!done()) {
        auto [block, wait] = next();
        if (block) {
            block();
        } else if (wait) {
            runGLibEvents(std::min(0.05, *wait));
        } else {
            return;
        }
    }
}

EventLoopQueue& mainQueue() {
    static EventLoopQueue queue;
    return queue;
}

void EventLoopQueue::runDue() {
    while (auto block = next().first) block();
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
        runDue();
    }
    now_ = Date::fromTimeIntervalSince1970(end);
}

}  // namespace lunoval
