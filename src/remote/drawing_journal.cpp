#include "remote/drawing_journal.h"

#include <algorithm>
#include <utility>

namespace orbelcast {

void DrawingJournal::Filled(const PixelBox& box, Color color) {
  Add({.box = box, .what = color});
}

void DrawingJournal::PictureDrawn(const FrameBytes& jpeg, const PixelBox& box) {
  Add({.box = box, .what = jpeg});
}

void DrawingJournal::SurfaceDrawn(const Surface& source, int x, int y) {
  Add({.box = {x, y, x + source.Width() - 1, y + source.Height() - 1}, .what = codec_.Encode(source)});
}

void DrawingJournal::TakeAnew() {
  entries_.clear();
  const Surface& surface = look_();
  if (!surface.Empty()) Add({.box = {0, 0, surface.Width() - 1, surface.Height() - 1}, .what = Pixels{}});
}

void DrawingJournal::SetSeen(bool seen) {
  if (seen == seen_) return;
  seen_ = seen;
  on_the_way_ = 0;
  for (Entry& entry : entries_) entry.taken = false;
  TellNews();
}

void DrawingJournal::Painted() {
  if (on_the_way_ > 0) --on_the_way_;
  TellNews();
}

std::vector<Drawing> DrawingJournal::Take() {
  std::vector<Drawing> drawings;
  for (Entry& entry : entries_) {
    if (!MayTake()) break;
    if (std::exchange(entry.taken, true)) continue;
    drawings.push_back(ToDrawing(entry));
    if (!std::holds_alternative<Color>(drawings.back().what)) ++on_the_way_;
  }
  return drawings;
}

// A drawing that may let something shine through covers only one of its own place and kind.
void DrawingJournal::Add(Entry entry) {
  const bool blends = std::holds_alternative<Drawing::Png>(entry.what);
  if (!entries_.empty() && std::holds_alternative<Pixels>(entries_.back().what) && !entries_.back().taken) {
    // The pixels, when they are taken, will have it.
    if (blends || !entry.box.Covers(entries_.back().box)) return;
  }
  std::erase_if(entries_, [&](const Entry& earlier) {
    return blends ? earlier.box == entry.box && earlier.what.index() == entry.what.index()
                  : entry.box.Covers(earlier.box);
  });
  if (entries_.size() >= kMaxKept) return TakeAnew();
  entries_.push_back(std::move(entry));
  TellNews();
}

void DrawingJournal::TellNews() const {
  if (MayTake() && std::ranges::any_of(entries_, [](const Entry& entry) { return !entry.taken; })) news_();
}

Drawing DrawingJournal::ToDrawing(const Entry& entry) const {
  if (const auto* color = std::get_if<Color>(&entry.what)) return {entry.box, *color};
  if (const auto* jpeg = std::get_if<FrameBytes>(&entry.what)) return {entry.box, *jpeg};
  if (const auto* png = std::get_if<Drawing::Png>(&entry.what)) return {entry.box, *png};
  const Surface& surface = look_();
  if (const auto png = surface.UnseenPng(); !png.empty()) return {entry.box, Drawing::Png(png.begin(), png.end())};
  return {entry.box, codec_.Encode(surface)};
}

}  // namespace orbelcast
