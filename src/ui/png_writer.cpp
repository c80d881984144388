#include "ui/png_writer.hpp"

#include <png.h>

#include <csetjmp>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <vector>

namespace lunoval::ui {

namespace {

void appendBytes(png_structp png, png_bytep data, png_size_t length) {
    static_cast<std::string*>(png_get_io_ptr(png))
        ->append(reinterpret_cast<const char*>(data), length);
}

void flushNothing(png_structp /*png*/) {}

std::uint8_t straight(std::uint32_t channel, std::uint32_t alpha) {
    return static_cast<std::uint8_t>((channel * 255 + alpha / 2) / alpha);
}

// Cairo holds native-endian words of premultiplied ARGB; PNG wants straight RGBA bytes. The
// rounding is cairo's.
void unpremultiplyRow(png_structp /*png*/, png_row_infop row, png_bytep data) {
    for (png_size_t at = 0; at < row->rowbytes; at += 4) {
        std::uint32_t pixel = 0;
        std::memcpy(&pixel, data + at, 4);
        const std::uint32_t alpha = pixel >> 24U;
        if (alpha == 0) {
            std::memset(data + at, 0, 4);
            continue;
        }
        data[at] = straight((pixel >> 16U) & 0xffU, alpha);
        data[at + 1] = straight((pixel >> 8U) & 0xffU, alpha);
        data[at + 2] = straight(pixel & 0xffU, alpha);
        data[at + 3] = static_cast<std::uint8_t>(alpha);
    }
}

// Opaque pixels as RGB followed by a filler byte that libpng then drops.
void opaqueRow(png_structp /*png*/, png_row_infop row, png_bytep data) {
    for (png_size_t at = 0; at < row->rowbytes; at += 4) {
        std::uint32_t pixel = 0;
        std::memcpy(&pixel, data + at, 4);
        data[at] = static_cast<std::uint8_t>(pixel >> 16U);
        data[at + 1] = static_cast<std::uint8_t>(pixel >> 8U);
        data[at + 2] = static_cast<std::uint8_t>(pixel);
        data[at + 3] = 0;
    }
}

bool isOpaque(const std::vector<png_bytep>& rows, int width) {
    for (const auto* row : rows) {
        for (int x = 0; x < width; ++x) {
            std::uint32_t pixel = 0;
            std::memcpy(&pixel, row + static_cast<std::ptrdiff_t>(x) * 4, 4);
            if (pixel >> 24U != 0xffU) return false;
        }
    }
    return true;
}

// libpng reports errors by jumping back here, so nothing in this frame has a destructor.
bool writeRows(png_structp png, png_infop info, png_bytepp rows, png_uint_32 width,
               png_uint_32 height, bool opaque) {
    if (setjmp(png_jmpbuf(png)) != 0) return false;  // NOLINT(cert-err52-cpp): libpng's way
    png_set_IHDR(png, info, width, height, 8,
                 opaque ? PNG_COLOR_TYPE_RGB : PNG_COLOR_TYPE_RGB_ALPHA, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_set_filter(png, PNG_FILTER_TYPE_BASE, PNG_FILTER_UP);
    png_write_info(png, info);
    if (opaque) {
        png_set_write_user_transform_fn(png, opaqueRow);
        png_set_filler(png, 0, PNG_FILLER_AFTER);
    } else {
        png_set_write_user_transform_fn(png, unpremultiplyRow);
    }
    png_write_image(png, rows);
    png_write_end(png, info);
    return true;
}

}  // namespace

std::string pngBytes(cairo_surface_t* surface) {
    cairo_surface_flush(surface);
    const int width = cairo_image_surface_get_width(surface);
    const int height = cairo_image_surface_get_height(surface);
    const int stride = cairo_image_surface_get_stride(surface);
    unsigned char* data = cairo_image_surface_get_data(surface);
    std::vector<png_bytep> rows(static_cast<std::size_t>(height));
    for (int y = 0; y < height; ++y) {
        rows[static_cast<std::size_t>(y)] = data + static_cast<std::ptrdiff_t>(y) * stride;
    }

    std::string bytes;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png != nullptr ? png_create_info_struct(png) : nullptr;
    bool written = false;
    if (info != nullptr) {
        png_set_write_fn(png, &bytes, appendBytes, flushNothing);
        written = writeRows(png, info, rows.data(), static_cast<png_uint_32>(width),
                            static_cast<png_uint_32>(height), isOpaque(rows, width));
    }
    png_destroy_write_struct(&png, &info);
    if (!written) throw std::runtime_error("cannot encode PNG");
    return bytes;
}

}  // namespace lunoval::ui
