#pragma once

#include <cairo.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "ui/display_list.hpp"
#include "ui/painter.hpp"

namespace lunoval::ui::testing {

// A drawn list read back from its PNG encoding, pixel by pixel.
class Raster {
  public:
    explicit Raster(const std::string& png) {
        Reader reader{png};
        cairo_surface_t* surface = cairo_image_surface_create_from_png_stream(read, &reader);
        surface_.reset(surface);
        EXPECT_EQ(cairo_surface_status(surface), CAIRO_STATUS_SUCCESS);
        cairo_surface_flush(surface);
    }

    [[nodiscard]] int width() const { return cairo_image_surface_get_width(surface_.get()); }
    [[nodiscard]] int height() const { return cairo_image_surface_get_height(surface_.get()); }
    // Premultiplied 0xAARRGGBB.
    [[nodiscard]] std::uint32_t pixel(int x, int y) const {
        const unsigned char* row = cairo_image_surface_get_data(surface_.get()) +
                                   y * cairo_image_surface_get_stride(surface_.get());
        return reinterpret_cast<const std::uint32_t*>(row)[x];
    }
    [[nodiscard]] int alpha(int x, int y) const { return static_cast<int>(pixel(x, y) >> 24); }
    [[nodiscard]] int channel(int x, int y, int shift) const {
        return static_cast<int>((pixel(x, y) >> shift) & 0xff);
    }
    [[nodiscard]] int red(int x, int y) const { return channel(x, y, 16); }
    [[nodiscard]] int blue(int x, int y) const { return channel(x, y, 0); }

  private:
    struct Reader {
        const std::string& bytes;
        std::size_t offset = 0;
    };
    static cairo_status_t read(void* closure, unsigned char* data, unsigned int length) {
        auto& reader = *static_cast<Reader*>(closure);
        if (reader.bytes.size() - reader.offset < length) return CAIRO_STATUS_READ_ERROR;
        reader.bytes.copy(reinterpret_cast<char*>(data), length, reader.offset);
        reader.offset += length;
        return CAIRO_STATUS_SUCCESS;
    }
    struct Destroy {
        void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
    };
    std::unique_ptr<cairo_surface_t, Destroy> surface_;
};

inline Raster rasterize(Size size, std::vector<Command> commands, double scale = 1) {
    const DisplayList list{size, std::move(commands)};
    return Raster(encodeImage(list, {.displayScale = scale}, ImageFormat::png));
}

// The smallest pixel box holding every pixel with any ink; empty when there is none.
struct InkBox {
    int minX = 0, minY = 0, maxX = -1, maxY = -1;  // inclusive
    [[nodiscard]] bool empty() const { return maxX < minX; }
};

inline InkBox inkBox(const Raster& raster) {
    InkBox box{raster.width(), raster.height(), -1, -1};
    for (int y = 0; y < raster.height(); ++y) {
        for (int x = 0; x < raster.width(); ++x) {
            if (raster.alpha(x, y) == 0) continue;
            box = {std::min(box.minX, x), std::min(box.minY, y), std::max(box.maxX, x),
                   std::max(box.maxY, y)};
        }
    }
    return box;
}

}  // namespace lunoval::ui::testing
