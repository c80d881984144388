#pragma once

#include <cairo.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "ui/display_list.hpp"
#include "ui/painter.hpp"

namespace lunoval::ui::testing {

// A PNG read back pixel by pixel, each premultiplied 0xAARRGGBB.
struct Raster {
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> pixels;
    [[nodiscard]] std::uint32_t pixel(int x, int y) const { return pixels.at(y * width + x); }
    [[nodiscard]] int alpha(int x, int y) const { return static_cast<int>(pixel(x, y) >> 24); }
};

inline Raster decodePng(std::string_view png) {
    const auto read = [](void* closure, unsigned char* data, unsigned int length) {
        auto& rest = *static_cast<std::string_view*>(closure);
        if (rest.size() < length) return CAIRO_STATUS_READ_ERROR;
        std::copy_n(rest.data(), length, data);
        rest.remove_prefix(length);
        return CAIRO_STATUS_SUCCESS;
    };
    cairo_surface_t* surface = cairo_image_surface_create_from_png_stream(read, &png);
    EXPECT_EQ(cairo_surface_status(surface), CAIRO_STATUS_SUCCESS);
    Raster raster{cairo_image_surface_get_width(surface), cairo_image_surface_get_height(surface)};
    const unsigned char* data = cairo_image_surface_get_data(surface);
    for (int y = 0; y < raster.height; ++y) {
        const auto* row = reinterpret_cast<const std::uint32_t*>(
            data + y * cairo_image_surface_get_stride(surface));
        raster.pixels.insert(raster.pixels.end(), row, row + raster.width);
    }
    cairo_surface_destroy(surface);
    return raster;
}

inline Raster rasterize(Size size, std::vector<Command> commands, double scale = 1) {
    return decodePng(
        encodeImage({size, std::move(commands)}, {.displayScale = scale}, ImageFormat::png));
}

}  // namespace lunoval::ui::testing
