#include "views/marker_spacing.hpp"

#include <algorithm>
#include <limits>

namespace lunoval {

namespace {

using ui::Rect;

// Clear space between two symbols set side by side.
constexpr double kGap = 2;
// A marker that stays outweighs any sliding one, so the packing moves it last.
constexpr double kStayWeight = 1e4;

double weight(const MarkerBox& box) {
    return box.freedom == MarkerFreedom::stays ? kStayWeight : 1;
}

Rect insidePlot(Rect frame, Rect plot) {
    frame.x = std::clamp(frame.x, plot.x, std::max(plot.x, plot.maxX() - frame.width));
    frame.y = std::clamp(frame.y, plot.y, std::max(plot.y, plot.maxY() - frame.height));
    return frame;
}

bool overlapVertically(const Rect& a, const Rect& b) {
    return a.y < b.maxY() && b.y < a.maxY();
}

// Boxes packed left to right in `order`, each block of touching boxes where its weighted mean
// wants it (pool-adjacent-violators), kept within the plot. Returns the boxes' new x.
std::vector<double> pack(const std::vector<Rect>& frames, const std::vector<double>& weights,
                         const std::vector<std::size_t>& order, Rect plot) {
    const std::size_t n = order.size();
    std::vector<double> offset(n, 0);
    for (std::size_t i = 1; i < n; ++i) {
        offset[i] = offset[i - 1] + frames[order[i - 1]].width + kGap;
    }
    struct Block {
        std::size_t first, last;
        double weight, weightedSum;
    };
    const auto anchor = [&](const Block& b) {
        const double low = plot.x - offset[b.first];
        const double high = plot.maxX() - frames[order[b.last]].width - offset[b.last];
        return std::clamp(b.weightedSum / b.weight, low, std::max(low, high));
    };
    std::vector<Block> blocks;
    for (std::size_t i = 0; i < n; ++i) {
        const double w = weights[order[i]];
        blocks.push_back({i, i, w, w * (frames[order[i]].x - offset[i])});
        while (blocks.size() > 1 && anchor(blocks.back()) < anchor(blocks[blocks.size() - 2])) {
            const Block last = blocks.back();
            blocks.pop_back();
            auto& merged = blocks.back();
            merged = {merged.first, last.last, merged.weight + last.weight,
                      merged.weightedSum + last.weightedSum};
        }
    }
    std::vector<double> x(frames.size());
    for (const auto& block : blocks) {
        for (std::size_t i = block.first; i <= block.last; ++i) {
            x[order[i]] = anchor(block) + offset[i];
        }
    }
    return x;
}

// The best packing of the boxes in `members`: sliding ones in their own order, staying ones
// anywhere between them.
void spreadRow(const std::vector<MarkerBox>& boxes, std::vector<Rect>& frames,
               std::vector<std::size_t> members, Rect plot) {
    std::vector<double> weights;
    weights.reserve(boxes.size());
    for (const auto& box : boxes) weights.push_back(weight(box));
    std::sort(members.begin(), members.end());
    const auto keepsSlidingOrder = [&](const std::vector<std::size_t>& order) {
        double lastX = -std::numeric_limits<double>::infinity();
        for (const auto i : order) {
            if (boxes[i].freedom == MarkerFreedom::stays) continue;
            if (frames[i].x < lastX) return false;
            lastX = frames[i].x;
        }
        return true;
    };
    std::vector<double> best;
    double bestCost = std::numeric_limits<double>::infinity();
    do {
        if (!keepsSlidingOrder(members)) continue;
        const auto x = pack(frames, weights, members, plot);
        double cost = 0;
        for (const auto i : members)
            cost += weights[i] * (x[i] - frames[i].x) * (x[i] - frames[i].x);
        if (cost < bestCost) {
            best = x;
            bestCost = cost;
        }
    } while (std::next_permutation(members.begin(), members.end()));
    for (const auto i : members) frames[i].x = best[i];
}

}  // namespace

std::vector<Rect> spreadMarkers(const std::vector<MarkerBox>& boxes, Rect plot) {
    std::vector<Rect> frames;
    frames.reserve(boxes.size());
    for (const auto& box : boxes) frames.push_back(insidePlot(box.frame, plot));
    // Markers at different heights pass each other freely; those sharing a height share a row.
    std::vector<std::size_t> row;
    for (std::size_t i = 0; i < frames.size(); ++i) {
        for (std::size_t j = 0; j < frames.size(); ++j) {
            if (i != j && overlapVertically(frames[i], frames[j])) {
                row.push_back(i);
                break;
            }
        }
    }
    if (row.size() > 1) spreadRow(boxes, frames, row, plot);
    return frames;
}

}  // namespace lunoval
