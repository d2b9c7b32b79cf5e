#include "camera_server/content.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <thread>
#include <utility>
#include <vector>

namespace orbelcast::camera_server {

namespace {

constexpr const char* kPageHead = R"(<!DOCTYPE html>
<html lang="en">
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<style>
body { margin: 2rem; font: 16px/1.5 system-ui, sans-serif; color: #e8ebf0; background: #14181f; }
h1 { font-size: 1.4rem; margin: 0 0 1.2rem; }
h2 { font-size: 1rem; margin: 0 0 .5rem; color: #aab4c4; }
main, #state { display: grid; grid-template-columns: repeat(auto-fill, minmax(16rem, 1fr)); gap: 1.2rem; }
main { margin-bottom: 1.2rem; }
figure, section { margin: 0; border-radius: 10px; overflow: hidden; background: #1f2530; }
img { display: block; width: 100%; height: auto; }
figcaption, li { display: flex; justify-content: space-between; gap: 1rem; }
figcaption, section { padding: .6rem .9rem; }
ul { list-style: none; margin: 0; padding: 0; }
a { color: #8fb8ff; }
b { color: #7d8796; }
b.on { color: #7fd18b; }
b.alarm { color: #ff7a6b; }
</style>
)";

// Each picture asks for its successor when it is there, so a slow line is never asked for more than it carries. What is
// on and off is taken from the page asked for again.
constexpr const char* kPageFoot = R"(</div>
<script>
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
</html>
)";

std::string Escaped(const std::string& text) {
  std::string escaped;
  for (const char letter : text) {
    const bool is_mark = letter == '&' || letter == '<' || letter == '>' || letter == '"';
    escaped += is_mark ? "&#" + std::to_string(static_cast<int>(letter)) + ";" : std::string(1, letter);
  }
  return escaped;
}

struct Words {
  const char* on;
  const char* off;
  const char* style_of_on;
};

void WriteContacts(std::ostream& page, const char* title, const std::vector<Contact>& contacts, const Words& words) {
  if (contacts.empty()) return;
  page << "<section><h2>" << title << "</h2><ul>\n";
  for (const Contact& contact : contacts) {
    page << "<li><span>" << Escaped(contact.name) << "</span><b class=\"" << (contact.is_on ? words.style_of_on : "off")
         << "\">" << (contact.is_on ? words.on : words.off) << "</b></li>\n";
  }
  page << "</ul></section>\n";
}

/// A number, a name and a state, as alerts, inputs and outputs have them.
void WriteContacts(std::ostream& text, const char* key, const std::vector<Contact>& contacts) {
  int number = 0;
  for (const Contact& contact : contacts) {
    text << key << ++number << '\t' << contact.name << '\t' << (contact.is_on ? 1 : 0) << "\r\n";
  }
}

/// The number behind the first line of `file` that begins with `name`, such as "MemTotal:  8000000 kB"; 0 without one.
double NumberAt(const char* file, const std::string& name) {
  std::ifstream lines(file);
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with(name)) return std::strtod(line.c_str() + std::min(line.size(), line.find(':') + 1), nullptr);
  }
  return 0;
}

/// How the machine is doing: its load of the last minute and its memory in use in per cent, its free memory in
/// megabytes, its processors and their megahertz. What cannot be read is 0.
std::vector<std::pair<std::string, double>> MachineFigures() {
  const int processors = std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
  double load = 0;
  getloadavg(&load, 1);
  const double total = NumberAt("/proc/meminfo", "MemTotal");
  const double available = NumberAt("/proc/meminfo", "MemAvailable");
  return {{"CPU", std::min(100.0, 100 * load / processors)},
          {"RAM", total > 0 ? 100 * (total - available) / total : 0},
          {"AME", available / 1024},
          {"CPN", processors},
          {"CPS", NumberAt("/proc/cpuinfo", "cpu MHz")}};
}

}  // namespace

Response PictureResponse(const Settings& settings, int camera, const Picture& picture, const std::string& status) {
  Response response = FreshResponse("image/jpeg", picture.jpeg);
  response.headers.emplace_back("RC_TCR", TimeCode(picture.time));
  response.headers.emplace_back("Recording", settings.IsRecording(camera, WallClock::now()) ? "Yes" : "No");
  response.headers.emplace_back("HolmvaneStatus", settings.NameOf(camera) + ": " + status);
  if (!settings.vigilbox_info.empty()) response.headers.emplace_back("VigilboxInfo", settings.vigilbox_info);
  if (!settings.plug_ins.empty()) response.headers.emplace_back("PlugIns", settings.plug_ins);
  return response;
}

std::string InfoText(const Services& services, const std::string& authority, std::chrono::seconds running) {
  const Settings& settings = services.settings;
  std::ostringstream text;
  text << "RDXVIEWER\r\n";
  for (int camera = 1; settings.HasCamera(camera); ++camera) {
    text << "CAM:" << camera << '\t' << settings.NameOf(camera) << "\thttp://" << authority << kLivePath << camera
         << "\r\n";
  }
  WriteContacts(text, "ALT:", services.site.All(Site::Kind::kAlert));
  WriteContacts(text, "HWO:", services.site.All(Site::Kind::kOutput));
  WriteContacts(text, "HWI:", services.site.All(Site::Kind::kInput));

  const auto write = [&](const std::string& key, const std::string& value) {
    const auto given = settings.info_values.find(key);
    text << key << ':' << (given == settings.info_values.end() ? value : given->second) << "\r\n";
  };
  write("SNM", settings.system_name);
  write("SVR", kServerName);
  write("SYN", TimeCode(WallClock::now()));
  for (const auto& [key, figure] : MachineFigures()) write(key, std::to_string(static_cast<long>(figure)));
  const auto tenths_of_hours = running.count() / 360;
  write("UPS", std::to_string(tenths_of_hours / 10) + "." + std::to_string(tenths_of_hours % 10));
  for (const std::string& flag : settings.info_flags) text << flag << ":1\r\n";
  return text.str();
}

std::string HomePage(const Services& services) {
  constexpr int kWidth = 400;
  const Settings& settings = services.settings;
  const int height = kWidth * settings.form.height / settings.form.width;
  const std::string title = Escaped(settings.system_name);
  std::ostringstream page;
  page << kPageHead << "<title>" << title << "</title>\n<h1>" << title << "</h1>\n<main>\n";
  for (int camera = 1; settings.HasCamera(camera); ++camera) {
    const std::string name = Escaped(settings.NameOf(camera));
    const std::string path = std::string(kLivePath) + std::to_string(camera);
    page << "<figure><img src=\"" << path << "?width=" << kWidth << "&amp;height=" << height << "\" width=\"" << kWidth
         << "\" height=\"" << height << "\" alt=\"" << name << "\"><figcaption><span>" << name << "</span><a href=\""
         << path << "\">" << path << "</a></figcaption></figure>\n";
  }
  page << "</main>\n<div id=\"state\">\n";
  WriteContacts(page, "Outputs", services.site.All(Site::Kind::kOutput), {"on", "off", "on"});
  WriteContacts(page, "Inputs", services.site.All(Site::Kind::kInput), {"on", "off", "on"});
  WriteContacts(page, "Alerts", services.site.All(Site::Kind::kAlert), {"active", "quiet", "alarm"});
  page << kPageFoot;
  return page.str();
}

}  // namespace orbelcast::camera_server
