#pragma once

#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <optional>
#include <vector>

namespace lunoval::cli {

// Hands images to the threads that draw them, largest first, so that no two large images are
// drawn at once: each one's surface lives until its PNG is written, and two at once would set
// the process's peak memory. Beside the largest, only images of at most a tenth its size (the
// lock-screen ones) are drawn; the others pair up freely once it is written.
class DrawingQueue {
  public:
    // Each image's area, in any unit.
    explicit DrawingQueue(const std::vector<double>& areas);

    // The next image that fits beside those being drawn, waiting for one to finish if none
    // does; absent once every image has been taken.
    std::optional<std::size_t> take();

    // Marks a taken image drawn when it ends, however its drawing ends.
    class Drawn {
      public:
        Drawn(DrawingQueue& queue, std::size_t image) : queue_(queue), image_(image) {}
        Drawn(const Drawn&) = delete;
        Drawn& operator=(const Drawn&) = delete;
        ~Drawn() { queue_.finish(image_); }

      private:
        DrawingQueue& queue_;
        std::size_t image_;
    };

  private:
    [[nodiscard]] std::optional<std::size_t> fitting() const;
    void finish(std::size_t image);

    std::vector<double> areas_;
    std::vector<std::size_t> waiting_;  // largest first
    double budget_ = 0;
    double drawing_ = 0;
    std::mutex mutex_;
    std::condition_variable finished_;
};

}  // namespace lunoval::cli
