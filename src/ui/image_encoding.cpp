#include <cairo-pdf.h>
#include <cairo-svg.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <memory>
#include <stdexcept>
#include <system_error>

#include "platform/files.hpp"
#include "ui/painter.hpp"
#include "ui/png_writer.hpp"

namespace lunoval::ui {

namespace {

struct SurfaceDestroy {
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};
using SurfaceHandle = std::unique_ptr<cairo_surface_t, SurfaceDestroy>;
struct ContextDestroy {
    void operator()(cairo_t* cairo) const { cairo_destroy(cairo); }
};
using ContextHandle = std::unique_ptr<cairo_t, ContextDestroy>;

void check(cairo_status_t status, const std::string& what) {
    if (status != CAIRO_STATUS_SUCCESS) {
        throw std::runtime_error("cannot " + what + ": " + cairo_status_to_string(status));
    }
}

cairo_status_t appendBytes(void* closure, const unsigned char* data, unsigned int length) {
    static_cast<std::string*>(closure)->append(reinterpret_cast<const char*>(data), length);
    return CAIRO_STATUS_SUCCESS;
}

int pixelCount(double points, double scale) {
    // Rounding noise in a product that is whole must not add a pixel.
    const double pixels = std::ceil(points * scale - 1e-9);
    if (!(pixels >= 1 && pixels <= 32767)) {
        throw std::runtime_error("cannot draw an image " + std::to_string(points) +
                                 " points long at scale " + std::to_string(scale));
    }
    return static_cast<int>(pixels);
}

void draw(cairo_surface_t* surface, const DisplayList& list, const Environment& environment,
          double scale) {
    const ContextHandle cairo(cairo_create(surface));
    cairo_scale(cairo.get(), scale, scale);
    paint(list, cairo.get(), environment);
    check(cairo_status(cairo.get()), "draw the image");
}

std::string encodePng(const DisplayList& list, const Environment& environment) {
    const double scale = environment.displayScale;
    const SurfaceHandle surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32,
                                                           pixelCount(list.size.width, scale),
                                                           pixelCount(list.size.height, scale)));
    check(cairo_surface_status(surface.get()), "create the image");
    draw(surface.get(), list, environment, scale);
    return pngBytes(surface.get());
}

// Vector images are in points, as the list is.
std::string encodeVector(const DisplayList& list, const Environment& environment,
                         ImageFormat format) {
    std::string bytes;
    const auto [width, height] = list.size;
    const SurfaceHandle surface(
        format == ImageFormat::svg
            ? cairo_svg_surface_create_for_stream(appendBytes, &bytes, width, height)
            : cairo_pdf_surface_create_for_stream(appendBytes, &bytes, width, height));
    check(cairo_surface_status(surface.get()), "create the image");
    if (format == ImageFormat::svg) {
        cairo_svg_surface_set_document_unit(surface.get(), CAIRO_SVG_UNIT_PT);
    }
    draw(surface.get(), list, environment, 1);
    cairo_surface_finish(surface.get());
    check(cairo_surface_status(surface.get()), "encode the image");
    return bytes;
}

}  // namespace

std::optional<ImageFormat> imageFormatFor(const std::filesystem::path& path) {
    std::string extension = path.extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return std::tolower(c); });
    if (extension == ".png") return ImageFormat::png;
    if (extension == ".svg") return ImageFormat::svg;
    if (extension == ".pdf") return ImageFormat::pdf;
    return std::nullopt;
}

std::string encodeImage(const DisplayList& list, const Environment& environment,
                        ImageFormat format) {
    return format == ImageFormat::png ? encodePng(list, environment)
                                      : encodeVector(list, environment, format);
}

void writeImage(const DisplayList& list, const Environment& environment,
                const std::filesystem::path& path) {
    const auto format = imageFormatFor(path);
    if (!format) {
        throw std::system_error(
            std::make_error_code(std::errc::invalid_argument),
            "cannot write " + path.string() + ": not a .png, .svg or .pdf name");
    }
    writeFileAtomically(path, encodeImage(list, environment, *format));
}

}  // namespace lunoval::ui
