#pragma once

#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <utility>

#include "platform/clock.hpp"
#include "platform/date.hpp"

namespace lunoval {

// The main thread's queue: blocks run one at a time, in order, on the thread that drains it.
class MainQueue {
  public:
    using Block = std::function<void()>;

    virtual ~MainQueue() = default;
    virtual void async(Block block) = 0;
    virtual void asyncAfter(double seconds, Block block) = 0;
};

// Blocks due at instants of a clock, run by whoever drains the queue.
class ScheduledBlocks {
  public:
    void add(double dueSeconds, MainQueue::Block block);
    // The earliest block due at or before `nowSeconds`, if any; ties keep their order.
    MainQueue::Block takeDue(double nowSeconds);
    [[nodiscard]] bool empty() const { return blocks_.empty(); }
    [[nodiscard]] double nextDue() const { return blocks_.begin()->first.first; }

  private:
    std::map<std::pair<double, unsigned long>, MainQueue::Block> blocks_;
    unsigned long added_ = 0;
};

// The production queue: drained on the main thread in real time, with GLib's default main
// context run while it waits, so D-Bus answers and the queue's timers share one thread. Any
// thread may add blocks, as the host's tasks do.
class EventLoopQueue : public MainQueue {
  public:
    EventLoopQueue();
    void async(Block block) override;
    void asyncAfter(double seconds, Block block) override;
    // Runs blocks as they fall due until `done` holds or nothing is left to run.
    void runUntil(const std::function<bool()>& done);
    // Runs everything due now, including blocks those blocks add for now.
    void runDue();

  private:
    // The block due now, else how long until the next one (absent when none is left).
    std::pair<Block, std::optional<double>> next();

    std::mutex mutex_;
    ScheduledBlocks blocks_;
};

// Delivers what GLib's default main context has for this thread (D-Bus replies, for one),
// waiting at most `maxSeconds` for something to arrive.
void runGLibEvents(double maxSeconds);

// The process's main queue.
EventLoopQueue& mainQueue();

// A queue for tests: time moves only when told, and its clock with it, so an 8-second time-out
// takes no time at all.
class ManualQueue : public MainQueue {
  public:
    explicit ManualQueue(Date start) : now_(start) {}
    ManualQueue(const ManualQueue&) = delete;
    ManualQueue& operator=(const ManualQueue&) = delete;

    void async(Block block) override;
    void asyncAfter(double seconds, Block block) override;
    // Runs everything due now, including blocks those blocks add for now.
    void runDue();
    // Moves the clock forward, running each block at its due instant.
    void advance(double seconds);
    [[nodiscard]] Date now() const { return now_; }
    // Reads this queue's time; valid while the queue lives.
    [[nodiscard]] Clock clock() const {
        return [this] { return now_; };
    }

  private:
    Date now_;
    ScheduledBlocks blocks_;
};

}  // namespace lunoval
