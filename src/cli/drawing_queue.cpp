#include "cli/drawing_queue.hpp"

#include <algorithm>
#include <numeric>

namespace lunoval::cli {

namespace {

constexpr double kBesideLargest = 0.1;

}  // namespace

DrawingQueue::DrawingQueue(const std::vector<double>& areas)
    : areas_(areas), waiting_(areas.size()) {
    std::iota(waiting_.begin(), waiting_.end(), 0);
    std::stable_sort(waiting_.begin(), waiting_.end(),
                     [&](std::size_t a, std::size_t b) { return areas_[a] > areas_[b]; });
    if (!areas_.empty()) budget_ = areas_[waiting_.front()] * (1 + kBesideLargest);
}

std::optional<std::size_t> DrawingQueue::fitting() const {
    const auto fits = std::find_if(waiting_.begin(), waiting_.end(), [&](std::size_t image) {
        return drawing_ == 0 || drawing_ + areas_[image] <= budget_;
    });
    if (fits == waiting_.end()) return std::nullopt;
    return *fits;
}

std::optional<std::size_t> DrawingQueue::take() {
    std::unique_lock lock(mutex_);
    std::optional<std::size_t> image;
    finished_.wait(lock, [&] { return waiting_.empty() || (image = fitting()).has_value(); });
    if (!image) return std::nullopt;
    waiting_.erase(std::find(waiting_.begin(), waiting_.end(), *image));
    drawing_ += areas_[*image];
    return image;
}

void DrawingQueue::finish(std::size_t image) {
    {
        const std::scoped_lock lock(mutex_);
        drawing_ -= areas_[image];
    }
    finished_.notify_all();
}

}  // namespace lunoval::cli
