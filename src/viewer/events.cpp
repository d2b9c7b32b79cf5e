#include "viewer/events.h"

namespace orbelcast {

void VideoServerPushEvents::Clear() {
  // One name for each event: with another number of them this does not compile.
  auto& [a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r] = *this;
  const auto clear_all = [](auto&... each) { (each.Clear(), ...); };
  clear_all(a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r);
}

}  // namespace orbelcast
