#include "home_page.h"

#include <sstream>

namespace orbelcast::camera_server {

namespace {

constexpr const char* kHead = R"(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>Cameras</title>
<style>
body { margin: 2rem; font: 16px/1.5 system-ui, sans-serif; color: #e8ebf0; background: #14181f; }
h1 { font-size: 1.4rem; font-weight: 600; margin: 0 0 1.2rem; }
main { display: grid; grid-template-columns: repeat(auto-fill, minmax(18rem, 1fr)); gap: 1.2rem; }
figure { margin: 0; border-radius: 10px; overflow: hidden; background: #1f2530; }
img { display: block; width: 100%; height: auto; }
figcaption { display: flex; justify-content: space-between; gap: 1rem; padding: .6rem .9rem; }
a { color: #8fb8ff; }
</style>
</head>
<body>
<h1>Cameras</h1>
<main>
)";

// Each picture asks for its successor when it is there, so a slow line is never asked for more than it carries.
constexpr const char* kFoot = R"(</main>
<script>
for (const image of document.images) {
  const source = image.src;
  let count = 0;
  const next = pause => setTimeout(() => { image.src = source + '&n=' + ++count; }, pause);
  image.onload = () => next(200);
  image.onerror = () => next(2000);
  if (image.complete) next(200);
}
</script>
</body>
</html>
)";

std::string Escape(const std::string& text) {
  std::string escaped;
  for (const char letter : text) {
    switch (letter) {
      case '&':
        escaped += "&amp;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '>':
        escaped += "&gt;";
        break;
      case '"':
        escaped += "&quot;";
        break;
      default:
        escaped += letter;
    }
  }
  return escaped;
}

}  // namespace

std::string HomePage(const Settings& settings) {
  constexpr int kWidth = 400;
  const int height = kWidth * settings.form.height / settings.form.width;
  std::ostringstream page;
  page << kHead;
  for (int camera = 1; settings.HasCamera(camera); ++camera) {
    const std::string name = Escape(settings.NameOf(camera));
    const std::string path = "/live/" + std::to_string(camera);
    page << "<figure><img src=\"" << path << "?width=" << kWidth << "&amp;height=" << height << "\" width=\"" << kWidth
         << "\" height=\"" << height << "\" alt=\"" << name << "\"><figcaption><span>" << name << "</span><a href=\""
         << path << "\">" << path << "</a></figcaption></figure>\n";
  }
  page << kFoot;
  return page.str();
}

}  // namespace orbelcast::camera_server
