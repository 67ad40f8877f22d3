// The tour without a display: pictures, an animation and a page that shows them.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "image.h"

namespace demo {

/// Writes the gallery into a folder, which is made, and prints a line for each scene and the page's place. The stills
/// are those after `frames` frames, or of the usual number for 0.
void writeGallery(const std::string& folder, const Image& picture, std::string_view pictureName, int frames);

/// Writes one picture in all formats as a sheet into a folder and prints its place.
void writeSheet(const std::string& folder, const Image& picture, std::string_view pictureName);

/// Writes the pictures of the documents into a folder as they lie in docs/images.
void writePictures(const std::string& folder, const Image& picture, std::string_view pictureName);

}  // namespace demo
