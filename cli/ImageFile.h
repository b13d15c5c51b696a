// Reading and writing image files through OpenImageIO.
//
// Values are taken exactly as stored and written exactly as computed: alpha is
// never associated or dissociated on the way (`oiio:UnassociatedAlpha` = 1 both
// ways).
#pragma once

#include <filesystem>

#include "cli/Pixels.h"

namespace morvane::cli {

// Reads the first subimage. Channels: 1 = grey (alpha white), 2 = grey + alpha,
// 3 = RGB (alpha white), 4 or more = RGB plus the file's alpha channel, or
// channel 3 if the file names none. 8-bit and 16-bit files keep their type;
// every other type is read as float. Throws Failure naming the file.
FileImage ReadImageFile(const std::filesystem::path& path);

// The processing depth a file's values imply: 8-bit -> 8, 16-bit -> 16, else 32f.
Depth NaturalDepth(const FileImage& file);

// Throws Failure when no writer handles the file name's format.
void CheckWritableFormat(const std::filesystem::path& path);

// Writes `image` at `fileDepth`, or at what the file format can hold nearest to
// it (PNG holds 32f as 16-bit; JPEG, BMP, TGA hold 8-bit; OpenEXR holds 8 and
// 16 as half float). Alpha is dropped only by formats without alpha. The data
// goes to a temporary file in the same folder that is renamed into place, so a
// failure leaves no partial file. Returns the depth actually stored (32f for
// any floating-point type). Throws Failure naming the file.
Depth WriteImageFile(const std::filesystem::path& path, const ArgbImage& image, Depth fileDepth);

}  // namespace morvane::cli
