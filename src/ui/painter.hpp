#pragma once

#include <cairo.h>

#include <filesystem>
#include <optional>
#include <string>

#include "ui/display_list.hpp"
#include "ui/environment.hpp"

namespace lunoval::ui {

// Draws the list on `cairo`, whose user space is in points (the caller scales it to pixels).
void paint(const DisplayList& list, cairo_t* cairo, const Environment& environment);

enum class ImageFormat { png, svg, pdf };
// Chosen by the file's extension; absent for any other.
std::optional<ImageFormat> imageFormatFor(const std::filesystem::path& path);

// The list drawn on a transparent canvas of its size at the environment's display scale.
std::string encodeImage(const DisplayList& list, const Environment& environment,
                        ImageFormat format);
// Writes the image atomically; throws std::system_error naming the file on failure.
void writeImage(const DisplayList& list, const Environment& environment,
                const std::filesystem::path& path);

}  // namespace lunoval::ui
