#pragma once

#include <cstdint>
#include <vector>

#include "platform/frame_bytes.h"
#include "toolkit/surface.h"

/// Test pictures, and a measure of the results' quality.
namespace orbelcast::bench {

/// A few consecutive frames of a made-up camera: soft light, texture that grows finer and fainter, hard edges,
/// something that moves, and a sensor's noise. JPEG of quality 80, colours at half resolution. About 0.15 bytes a
/// pixel, as cameras send it.
std::vector<FrameBytes> CameraFrames(int width, int height, int count);

/// The same, each with its number in a row of squares in the top-left corner, 16 pixels a side: a white one, a black
/// one, eight bits with the highest first, and the parity of these. A set bit is white.
std::vector<FrameBytes> NumberedFrames(int width, int height, int count);

/// Resizes as carefully as it gets: Lanczos' filter over three lobes, as wide as the scale asks for, on both axes.
Surface ResizeCarefully(const Surface& source, int width, int height);

/// Peak signal-to-noise ratio in decibels of two pictures of one size; 99 where they are the same.
double Psnr(const Surface& a, const Surface& b);

}  // namespace orbelcast::bench
