// The loops are written so that a compiler that vectorizes makes each of them a few instructions for sixteen bytes; the
// build asks for that in every configuration.

#include "adapters/jpeg/double_size.h"

#include <algorithm>
#include <cstddef>

namespace orbelcast {

namespace {

std::uint8_t Average(std::uint8_t a, std::uint8_t b) {
  return static_cast<std::uint8_t>((a + b + 1) >> 1);
}

/// Three parts of `a`, one of `b`.
std::uint8_t Mix(std::uint8_t a, std::uint8_t b) {
  return Average(a, Average(a, b));
}

void MixRows(const std::uint8_t* __restrict near, const std::uint8_t* __restrict far, std::uint8_t* __restrict to,
             std::ptrdiff_t bytes) {
  for (std::ptrdiff_t i = 0; i < bytes; ++i) to[i] = Mix(near[i], far[i]);
}

/// Every pixel mixed with its left and its right neighbour; `row` has a pixel more at either end.
void MixNeighbours(const std::uint8_t* __restrict row, std::uint8_t* __restrict with_left,
                   std::uint8_t* __restrict with_right, std::ptrdiff_t bytes) {
  for (std::ptrdiff_t i = 0; i < bytes; ++i) {
    with_left[i] = Mix(row[i], row[i - 4]);
    with_right[i] = Mix(row[i], row[i + 4]);
  }
}

void Interleave(const std::uint32_t* __restrict left, const std::uint32_t* __restrict right,
                std::uint32_t* __restrict to, std::ptrdiff_t pixels) {
  for (std::ptrdiff_t i = 0; i < pixels; ++i) {
    to[2 * i] = left[i];
    to[2 * i + 1] = right[i];
  }
}

std::uint8_t* Bytes(std::uint32_t* pixels) {
  return reinterpret_cast<std::uint8_t*>(pixels);
}
const std::uint8_t* Bytes(const std::uint32_t* pixels) {
  return reinterpret_cast<const std::uint8_t*>(pixels);
}

}  // namespace

void DoubleSize::Draw(const std::uint32_t* from, int width, int height, std::uint32_t* to, std::ptrdiff_t to_stride,
                      int rows) {
  const std::ptrdiff_t count = width;
  rows_.resize(static_cast<std::size_t>(3 * count + 2));
  std::uint32_t* const row = rows_.data() + 1;
  std::uint32_t* const left = row + count + 1;
  std::uint32_t* const right = left + count;
  for (int y = 0; y < std::min(2 * height, rows); ++y, to += to_stride) {
    const int near = y / 2;
    const int far = std::clamp(y % 2 == 0 ? near - 1 : near + 1, 0, height - 1);
    MixRows(Bytes(from + near * count), Bytes(from + far * count), Bytes(row), count * 4);
    row[-1] = row[0];
    row[count] = row[count - 1];
    MixNeighbours(Bytes(row), Bytes(left), Bytes(right), count * 4);
    Interleave(left, right, to, count);
  }
}

}  // namespace orbelcast
