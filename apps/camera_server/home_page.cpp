#include "camera_server/home_page.h"

#include <cstdint>
#include <span>
#include <sstream>
#include <tuple>
#include <vector>

#include "camera_server/addresses.h"

namespace orbelcast::resources {
// Embedded by the build, under its file's name.
extern const std::span<const std::uint8_t> home_html;  // NOLINT(readability-identifier-naming): the file's name
}  // namespace orbelcast::resources

namespace orbelcast::camera_server {

namespace {

constexpr int kWidth = 400;  ///< Of a picture on the page, in pixels, before the page's width is known.

std::string Escaped(const std::string& text) {
  std::string escaped;
  for (const char letter : text) {
    const bool is_mark = letter == '&' || letter == '<' || letter == '>' || letter == '"';
    escaped += is_mark ? "&#" + std::to_string(static_cast<int>(letter)) + ";" : std::string(1, letter);
  }
  return escaped;
}

std::string Cameras(const Settings& settings, const std::string& authority) {
  const std::string height = std::to_string(kWidth * settings.form.height / settings.form.width);
  std::ostringstream cameras;
  for (int camera = 1; settings.HasCamera(camera); ++camera) {
    const std::string name = Escaped(settings.NameOf(camera));
    const std::string path = std::string(kLivePath) + std::to_string(camera);
    cameras << "<figure>";
    if (settings.gateway.empty()) {
      cameras << "<img src=\"" << path << "?width=" << kWidth << "&amp;height=" << height << "\" width=\"" << kWidth
              << "\" height=\"" << height << "\" alt=\"" << name << "\">";
    } else {
      cameras << "<video-server-push url=\"http://" << authority << path
              << "\" framerate=\"10\" style=\"aspect-ratio: " << kWidth << "/" << height << "\" aria-label=\"" << name
              << "\"></video-server-push>";
    }
    cameras << "<figcaption><span>" << name << "</span><a href=\"" << path << "\">" << path
            << "</a></figcaption></figure>\n";
  }
  return cameras.str();
}

std::string States(const Site& site) {
  std::ostringstream state;
  for (const auto& [title, kind, on, off, style] :
       {std::tuple("Outputs", Site::Kind::kOutput, "on", "off", "on"),
        std::tuple("Inputs", Site::Kind::kInput, "on", "off", "on"),
        std::tuple("Alerts", Site::Kind::kAlert, "active", "quiet", "alarm")}) {
    const std::vector<Contact> contacts = site.All(kind);
    if (contacts.empty()) continue;
    state << "<section><h2>" << title << "</h2><ul>\n";
    for (const auto& [name, is_on] : contacts) {
      state << "<li><span>" << Escaped(name) << "</span><b class=\"" << (is_on ? style : "off") << "\">"
            << (is_on ? on : off) << "</b></li>\n";
    }
    state << "</ul></section>\n";
  }
  return state.str();
}

}  // namespace

// home.html with a text for each "@@".
std::string HomePage(const Services& services, const std::string& authority) {
  const Settings& settings = services.settings;
  const std::string elements = settings.gateway.empty() ? std::string()
                                                        : "<script type=\"module\" src=\"" + Escaped(settings.gateway) +
                                                              "/orbelcast.js\"></script>\n";
  std::string page(resources::home_html.begin(), resources::home_html.end());
  std::size_t at = 0;
  const std::string title = Escaped(settings.system_name);
  for (const std::string& text : {title, elements, title, Cameras(settings, authority), States(services.site)}) {
    at = page.find("@@", at);
    page.replace(at, 2, text);
    at += text.size();
  }
  return page;
}

}  // namespace orbelcast::camera_server
