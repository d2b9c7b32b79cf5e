#include "json/json.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <nlohmann/json.hpp>
#include <set>
#include <utility>

#include "toolkit/visible_text.h"

namespace orbelcast {

namespace {

/// Up to here every whole number is a float.
constexpr float kExactWhole = 16777216;

/// The value as the library that prints it has it.
using Printed = nlohmann::ordered_json;

struct ToPrinted {
  template <typename Simple>
  Printed operator()(const Simple& value) const {
    return value;
  }
  Printed operator()(const Json::Elements& elements) const {
    Printed array = Printed::array();
    for (const Json& element : elements) array.push_back(std::visit(*this, element.Variant()));
    return array;
  }
  Printed operator()(const Json::Members& members) const {
    Printed object = Printed::object();
    // Without a search for each name, with which its operator[] begins.
    auto& printed = object.get_ref<Printed::object_t&>();
    for (const auto& [name, value] : members) printed.push_back({name, std::visit(*this, value.Variant())});
    return object;
  }
};

std::string ToText(const Json& value, int indent, Printed::error_handler_t not_utf8) {
  return std::visit(ToPrinted(), value.Variant()).dump(indent, ' ', false, not_utf8);
}

/// Once for the whole object: a search at each new member would take minutes for a long text.
void KeepLastOfEachName(Json::Members& members) {
  std::set<std::string> later;
  std::ranges::reverse(members);
  std::erase_if(members, [&](const JsonMember& each) { return !later.insert(each.name).second; });
  std::ranges::reverse(members);
}

/// Makes the value of what the library's parser finds; each function says whether to go on.
class Builder {
 public:
  Json Take() { return std::move(whole_); }

  bool null() { return Put(nullptr); }
  bool boolean(bool value) { return Put(value); }
  bool number_integer(std::int64_t value) { return Put(value); }
  bool number_unsigned(std::uint64_t value) { return Put(value); }
  bool number_float(double value, const std::string& /*text*/) { return Put(value); }
  bool string(std::string& text) { return Put(std::move(text)); }
  bool binary(Printed::binary_t& /*bytes*/) { return false; }
  bool start_object(std::size_t /*members*/) { return Open(Json::Object()); }
  bool start_array(std::size_t /*elements*/) { return Open(Json::Array()); }
  bool key(std::string& name) {
    name_ = std::move(name);
    return true;
  }
  bool end_object() {
    KeepLastOfEachName(*open_.back()->Get<Json::Members>());
    return Close();
  }
  bool end_array() { return Close(); }
  bool parse_error(std::size_t /*position*/, const std::string& /*token*/, const std::exception& /*error*/) {
    return false;
  }

 private:
  Json& Place(Json value) {
    if (open_.empty()) return whole_ = std::move(value);
    Json& container = *open_.back();
    if (auto* const members = container.Get<Json::Members>()) {
      return members->emplace_back(JsonMember{std::move(name_), std::move(value)}).value;
    }
    container.Append(std::move(value));
    return container.Get<Json::Elements>()->back();
  }
  bool Put(Json value) {
    Place(std::move(value));
    return true;
  }
  bool Open(Json container) {
    if (open_.size() >= kMaxJsonDepth) return false;
    open_.push_back(&Place(std::move(container)));
    return true;
  }
  bool Close() {
    open_.pop_back();
    return true;
  }

  Json whole_;
  std::vector<Json*> open_;  ///< Each inside the one before it, which does not grow meanwhile.
  std::string name_;
};

}  // namespace

Json::Json() noexcept = default;
Json::Json(const Json&) = default;
Json::Json(Json&&) noexcept = default;
Json& Json::operator=(const Json&) = default;
Json& Json::operator=(Json&&) noexcept = default;
Json::~Json() = default;

Json::Json(double value) : value_(value) {}
Json::Json(std::string text) : value_(std::move(text)) {}
Json::Json(const std::vector<std::string>& texts) : value_(Elements(texts.begin(), texts.end())) {}
Json::Json(std::initializer_list<JsonMember> members) : value_(Members(members)) {}

Json Json::Object() {
  return std::initializer_list<JsonMember>();
}

Json Json::Array(std::initializer_list<Json> elements) {
  Json array;
  array.value_ = Elements(elements);
  return array;
}

Json& Json::operator[](std::string_view name) {
  if (Get<Members>() == nullptr) *this = Object();
  Members& members = *Get<Members>();
  const auto found = std::ranges::find(members, name, &JsonMember::name);
  return found != members.end() ? found->value : members.emplace_back(JsonMember{std::string(name), {}}).value;
}

void Json::Update(const Json& other) {
  const Members* const members = other.Get<Members>();
  if (members == nullptr) return;
  for (const auto& [name, value] : *members) (*this)[name] = value;
}

void Json::Append(Json element) {
  if (Get<Elements>() == nullptr) *this = Array();
  Get<Elements>()->push_back(std::move(element));
}

void Json::ForEachText(const std::function<void(std::string& text)>& change) {
  if (auto* const text = Get<std::string>()) change(*text);
  if (auto* const elements = Get<Elements>()) {
    for (Json& element : *elements) element.ForEachText(change);
  }
  if (auto* const members = Get<Members>()) {
    for (JsonMember& member : *members) member.value.ForEachText(change);
  }
}

const Json* Json::Find(std::string_view name) const {
  const Members* const members = Get<Members>();
  if (members == nullptr) return nullptr;
  const auto found = std::ranges::find(*members, name, &JsonMember::name);
  return found != members->end() ? &found->value : nullptr;
}

bool Json::operator==(const Json& other) const {
  return value_ == other.value_;
}

Json NumberToJson(float number) {
  if (!std::isfinite(number)) return nullptr;
  if (std::trunc(number) == number && std::abs(number) <= kExactWhole) return static_cast<std::int32_t>(number);
  // The shortest digits that give this float; read as a double they are printed unchanged.
  std::array<char, 32> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
  double value = number;
  std::from_chars(digits.data(), end, value);
  return value;
}

std::string ToLine(const Json& value) {
  return JsonWithoutControls(ToText(value, -1, Printed::error_handler_t::replace));
}

std::string ToLines(const Json& value) {
  return JsonWithoutControls(ToText(value, 2, Printed::error_handler_t::replace));
}

std::optional<std::string> ToExactText(const Json& value) try {
  return ToText(value, 2, Printed::error_handler_t::strict);
} catch (const Printed::exception&) {
  return std::nullopt;
}

std::optional<Json> ParseJson(std::string_view text) {
  Builder builder;
  if (!Printed::sax_parse(text, &builder)) return std::nullopt;
  return builder.Take();
}

}  // namespace orbelcast
