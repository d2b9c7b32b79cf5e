#include "frame_pipeline_pictures.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <numbers>
#include <optional>
#include <random>

#include <jpeglib.h>

namespace orbelcast::bench {

namespace {

constexpr int kQuality = 80;
constexpr int kSensorNoise = 5;  // levels either way

/// The number in a picture: squares of so many pixels a side, in a row.
constexpr int kSquare = 16;
constexpr int kSquares = 11;

/// A plane of soft random blobs `cell` pixels apart.
class Blobs {
 public:
  Blobs(int width, int height, double cell, std::mt19937& random)
      : cell_(cell), columns_(static_cast<int>(width / cell) + 2) {
    const int rows = static_cast<int>(height / cell) + 2;
    std::uniform_real_distribution<float> level(-1, 1);
    for (int i = 0; i < columns_ * rows; ++i) nodes_.push_back(level(random));
  }
  double At(double x, double y) const {
    const double column = x / cell_;
    const double row = y / cell_;
    const int left = static_cast<int>(column);
    const int top = static_cast<int>(row);
    const double u = Ease(column - left);
    const double v = Ease(row - top);
    return std::lerp(std::lerp(Node(left, top), Node(left + 1, top), u),
                     std::lerp(Node(left, top + 1), Node(left + 1, top + 1), u), v);
  }

 private:
  static double Ease(double t) { return t * t * (3 - 2 * t); }
  double Node(int column, int row) const { return nodes_[static_cast<std::size_t>(row * columns_ + column)]; }

  double cell_;
  int columns_;
  std::vector<float> nodes_;
};

/// The still background, as levels of red, green and blue.
std::vector<std::array<float, 3>> Backdrop(int width, int height, std::mt19937& random) {
  std::vector<Blobs> octaves;
  for (double cell = width / 4.0; cell >= 3; cell /= 2) octaves.emplace_back(width, height, cell, random);
  const Blobs tint(width, height, width / 5.0, random);
  std::vector<std::array<float, 3>> scene;
  scene.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      double light = 150 - 60.0 * y / height;
      double strength = 28;
      for (const Blobs& octave : octaves) {
        light += strength * octave.At(x, y);
        strength *= 0.68;
      }
      // A house front: edges that are hard on both axes.
      const double u = static_cast<double>(x) / width;
      const double v = static_cast<double>(y) / height;
      if (u > 0.55 && u < 0.9 && v > 0.3) {
        light += 25;
        if (std::fmod(u * 14, 1.0) > 0.6 && std::fmod(v * 9, 1.0) > 0.5) light -= 60;
      }
      const double warm = 22 * tint.At(x, y);
      scene.push_back({static_cast<float>(light + warm), static_cast<float>(light), static_cast<float>(light - warm)});
    }
  }
  return scene;
}

FrameBytes Encode(const std::vector<std::uint8_t>& rgb, int width, int height) {
  jpeg_compress_struct compress{};
  jpeg_error_mgr errors{};
  compress.err = jpeg_std_error(&errors);
  jpeg_create_compress(&compress);
  unsigned char* bytes = nullptr;
  unsigned long size = 0;
  jpeg_mem_dest(&compress, &bytes, &size);
  compress.image_width = static_cast<JDIMENSION>(width);
  compress.image_height = static_cast<JDIMENSION>(height);
  compress.input_components = 3;
  compress.in_color_space = JCS_RGB;
  jpeg_set_defaults(&compress);
  jpeg_set_quality(&compress, kQuality, TRUE);
  jpeg_start_compress(&compress, TRUE);
  while (compress.next_scanline < compress.image_height) {
    auto* row = const_cast<JSAMPROW>(rgb.data() + std::size_t{compress.next_scanline} * compress.image_width * 3);
    jpeg_write_scanlines(&compress, &row, 1);
  }
  jpeg_finish_compress(&compress);
  jpeg_destroy_compress(&compress);
  FrameBytes frame(FrameBytes::Storage(bytes, bytes + size));
  std::free(bytes);
  return frame;
}

double Lanczos(double x) {
  constexpr double kLobes = 3;
  if (std::abs(x) < 1e-9) return 1;
  if (std::abs(x) >= kLobes) return 0;
  const double a = std::numbers::pi * x;
  return kLobes * std::sin(a) * std::sin(a / kLobes) / (a * a);
}

/// Resizes along rows and turns the picture by a right angle, so that doing it twice resizes both axes.
std::vector<float> ResizeAndTurn(const std::vector<float>& plane, int width, int height, int wanted) {
  std::vector<float> out(static_cast<std::size_t>(wanted) * static_cast<std::size_t>(height));
  const double scale = static_cast<double>(width) / wanted;
  const double stretch = std::max(scale, 1.0);
  for (int x = 0; x < wanted; ++x) {
    const double center = (x + 0.5) * scale - 0.5;
    const int first = static_cast<int>(std::ceil(center - 3 * stretch));
    const int last = static_cast<int>(std::floor(center + 3 * stretch));
    std::vector<double> weights;
    double sum = 0;
    for (int i = first; i <= last; ++i) sum += weights.emplace_back(Lanczos((i - center) / stretch));
    for (int y = 0; y < height; ++y) {
      double value = 0;
      for (int i = first; i <= last; ++i) {
        value += weights[static_cast<std::size_t>(i - first)] *
                 plane[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                       static_cast<std::size_t>(std::clamp(i, 0, width - 1))];
      }
      out[static_cast<std::size_t>(x) * static_cast<std::size_t>(height) + static_cast<std::size_t>(y)] =
          static_cast<float>(value / sum);
    }
  }
  return out;
}

/// `mark` gives the level of a frame's pixel that is not the camera's.
template <typename Mark>
std::vector<FrameBytes> Frames(int width, int height, int count, const Mark& mark) {
  std::mt19937 random(1);
  const auto scene = Backdrop(width, height, random);
  std::vector<FrameBytes> frames;
  for (int i = 0; i < count; ++i) {
    std::vector<std::uint8_t> rgb;
    rgb.reserve(scene.size() * 3);
    const int walker = (width / 10 + i * width / 40) % width;
    for (int y = 0; y < height; ++y) {
      for (int x = 0; x < width; ++x) {
        const bool in_walker = std::abs(x - walker) < width / 30 && std::abs(y - height * 2 / 3) < height / 6;
        const int noise = static_cast<int>(random() % (2 * kSensorNoise + 1)) - kSensorNoise;
        const std::optional<int> marked = mark(i, x, y);
        for (const float level :
             scene[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x)]) {
          const int value = static_cast<int>(in_walker ? level / 3 : level) + noise;
          rgb.push_back(static_cast<std::uint8_t>(std::clamp(marked.value_or(value), 0, 255)));
        }
      }
    }
    frames.push_back(Encode(rgb, width, height));
  }
  return frames;
}

}  // namespace

std::vector<FrameBytes> CameraFrames(int width, int height, int count) {
  return Frames(width, height, count, [](int, int, int) { return std::optional<int>(); });
}

std::vector<FrameBytes> NumberedFrames(int width, int height, int count) {
  return Frames(width, height, count, [](int number, int x, int y) -> std::optional<int> {
    const auto byte = static_cast<std::uint8_t>(number);
    const auto parity = static_cast<unsigned>(std::popcount(byte) % 2);
    const unsigned squares = 0b10u << 9 | unsigned{byte} << 1 | parity;
    const int square = x / kSquare;
    if (y >= kSquare || square >= kSquares) return std::nullopt;
    return (squares >> (kSquares - 1 - square)) % 2 == 1 ? 255 : 0;
  });
}

Surface ResizeCarefully(const Surface& source, int width, int height) {
  Surface result(width, height);
  auto pixels = result.MutablePixels();
  for (int shift = 0; shift < 24; shift += 8) {
    std::vector<float> plane;
    for (const std::uint32_t pixel : source.Pixels()) plane.push_back(static_cast<float>((pixel >> shift) & 0xff));
    plane = ResizeAndTurn(plane, source.Width(), source.Height(), width);
    plane = ResizeAndTurn(plane, source.Height(), width, height);
    for (std::size_t i = 0; i < pixels.size(); ++i) {
      pixels[i] |= static_cast<std::uint32_t>(std::clamp(std::lround(plane[i]), 0L, 255L)) << shift;
    }
  }
  return result;
}

double Psnr(const Surface& a, const Surface& b) {
  double error = 0;
  for (std::size_t i = 0; i < a.Pixels().size(); ++i) {
    for (int shift = 0; shift < 24; shift += 8) {
      const double difference =
          static_cast<double>((a.Pixels()[i] >> shift) & 0xff) - static_cast<double>((b.Pixels()[i] >> shift) & 0xff);
      error += difference * difference;
    }
  }
  return error == 0 ? 99 : 10 * std::log10(255.0 * 255.0 * 3 * static_cast<double>(a.Pixels().size()) / error);
}

}  // namespace orbelcast::bench
