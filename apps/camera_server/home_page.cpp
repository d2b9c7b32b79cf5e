#include "home_page.h"

#include <cstddef>
#include <sstream>
#include <string>
#include <vector>

namespace orbelcast::camera_server {

namespace {

constexpr const char* kHead = R"(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>@</title>
<style>
body { margin: 2rem; font: 16px/1.5 system-ui, sans-serif; color: #e8ebf0; background: #14181f; }
h1 { font-size: 1.4rem; font-weight: 600; margin: 0 0 1.2rem; }
main { display: grid; grid-template-columns: repeat(auto-fill, minmax(18rem, 1fr)); gap: 1.2rem; }
figure { margin: 0; border-radius: 10px; overflow: hidden; background: #1f2530; }
img { display: block; width: 100%; height: auto; }
figcaption { display: flex; justify-content: space-between; gap: 1rem; padding: .6rem .9rem; }
a { color: #8fb8ff; }
h2 { font-size: 1rem; font-weight: 600; margin: 0 0 .5rem; color: #aab4c4; }
#state { display: grid; grid-template-columns: repeat(auto-fill, minmax(14rem, 1fr)); gap: 1.2rem; margin-top: 1.2rem; }
section { border-radius: 10px; padding: .8rem .9rem; background: #1f2530; }
ul { list-style: none; margin: 0; padding: 0; }
li { display: flex; justify-content: space-between; gap: 1rem; }
b { font-weight: 600; color: #7d8796; }
b.on { color: #7fd18b; }
b.alarm { color: #ff7a6b; }
</style>
</head>
<body>
<h1>@</h1>
<main>
)";

// Each picture asks for its successor when it is there, so a slow line is never asked for more than it carries. What is
// on and off is taken from the page asked for again.
constexpr const char* kFoot = R"(<script>
for (const image of document.images) {
  const source = image.src;
  let count = 0;
  const next = pause => setTimeout(() => { image.src = source + '&n=' + ++count; }, pause);
  image.onload = () => next(200);
  image.onerror = () => next(2000);
  if (image.complete) next(200);
}
setInterval(async () => {
  const answer = await fetch('/');
  const page = new DOMParser().parseFromString(await answer.text(), 'text/html');
  if (answer.ok) document.getElementById('state').replaceWith(page.getElementById('state'));
}, 2000);
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

struct Words {
  const char* on;
  const char* off;
  const char* look_of_on;
};

void WriteItems(std::ostringstream& page, const char* title, const std::vector<Site::Item>& items, const Words& words) {
  if (items.empty()) return;
  page << "<section><h2>" << title << "</h2><ul>\n";
  for (const Site::Item& item : items) {
    page << "<li><span>" << Escape(item.name) << "</span>";
    page << (item.is_on ? std::string("<b class=\"") + words.look_of_on + "\">" + words.on
                        : std::string("<b>") + words.off);
    page << "</b></li>\n";
  }
  page << "</ul></section>\n";
}

/// kHead with the system's name in its places.
std::string Head(const std::string& name) {
  std::string head = kHead;
  for (std::size_t at = head.find('@'); at != std::string::npos; at = head.find('@', at + name.size())) {
    head.replace(at, 1, name);
  }
  return head;
}

}  // namespace

std::string HomePage(const Settings& settings, const Site& site) {
  constexpr int kWidth = 400;
  const int height = kWidth * settings.form.height / settings.form.width;
  std::ostringstream page;
  page << Head(Escape(settings.system_name));
  for (int camera = 1; settings.HasCamera(camera); ++camera) {
    const std::string name = Escape(settings.NameOf(camera));
    const std::string path = "/live/" + std::to_string(camera);
    page << "<figure><img src=\"" << path << "?width=" << kWidth << "&amp;height=" << height << "\" width=\"" << kWidth
         << "\" height=\"" << height << "\" alt=\"" << name << "\"><figcaption><span>" << name << "</span><a href=\""
         << path << "\">" << path << "</a></figcaption></figure>\n";
  }
  page << "</main>\n<div id=\"state\">\n";
  WriteItems(page, "Outputs", site.Outputs(), {"on", "off", "on"});
  WriteItems(page, "Inputs", site.Inputs(), {"on", "off", "on"});
  WriteItems(page, "Alerts", site.Alerts(), {"active", "quiet", "alarm"});
  page << "</div>\n" << kFoot;
  return page.str();
}

}  // namespace orbelcast::camera_server
