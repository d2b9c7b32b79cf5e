#include "dispatch/dispatch.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <vector>

#include "dispatch/returned.h"
#include "toolkit/ascii.h"

namespace orbelcast::server {

namespace {

template <typename Entry>
const Entry* Find(std::span<const Entry> entries, std::string_view name) {
  const auto found =
      std::find_if(entries.begin(), entries.end(), [&](const Entry& e) { return EqualIgnoringCase(e.name, name); });
  return found == entries.end() ? nullptr : &*found;
}

template <typename Entry>
const Entry* Find(std::span<const Entry> entries, std::int32_t id) {
  const auto found = std::find_if(entries.begin(), entries.end(),
                                  [&](const Entry& e) { return static_cast<std::int32_t>(e.id) == id; });
  return found == entries.end() ? nullptr : &*found;
}

std::int32_t ArgumentId(std::span<const ArgumentEntry> arguments, std::string_view name) {
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (EqualIgnoringCase(arguments[i].name, name)) return static_cast<std::int32_t>(i);
  }
  return kUnknownId;
}

/// Whether an argument counts as left out: marked so itself, or a reference to a variable that is.
bool IsMissing(const Variant& argument) {
  const bool refers = argument.type == kReference && argument.reference != nullptr;
  return (refers ? *argument.reference : argument).type == kMissing;
}

/// A call's arguments put where the member has them, each in the member's type.
class BoundArguments {
 public:
  explicit BoundArguments(std::span<const ArgumentEntry> entries)
      : entries_(entries), given_(entries.size()), places_(entries.size()), values_(entries.size()) {}

  Result Bind(const Arguments& arguments, std::uint32_t& wrong) {
    const std::uint32_t by_position = arguments.count - arguments.named_count;
    if (by_position > entries_.size()) return DISP_E_BADPARAMCOUNT;
    for (std::uint32_t i = 0; i < arguments.count; ++i) {
      const auto place = i < by_position ? i : static_cast<std::uint32_t>(arguments.names[i - by_position]);
      if (place >= entries_.size() || given_[place] != nullptr) {
        wrong = i;
        return DISP_E_PARAMNOTFOUND;
      }
      given_[place] = &arguments.values[i];
      places_[place] = i;
    }
    return Read(wrong);
  }

  std::span<ArgumentValue> Values() { return values_; }

  /// Writes the member's changes into the variables that were given by reference.
  void WriteBack(ObjectCount& count) {
    for (std::size_t i = 0; i < values_.size(); ++i) {
      if (entries_[i].by_value || given_[i] == nullptr || given_[i]->type != kReference) continue;
      if (values_[i] == before_[i]) continue;
      server::WriteBack(values_[i], *given_[i]->reference,
                        [&](std::string text) { return OwnedText(std::move(text), count); });
    }
  }

 private:
  Result Read(std::uint32_t& wrong) {
    for (std::size_t i = 0; i < entries_.size(); ++i) {
      const ArgumentEntry& entry = entries_[i];
      if (given_[i] == nullptr || IsMissing(*given_[i])) {
        if (!entry.optional) {
          wrong = given_[i] == nullptr ? 0 : places_[i];
          return DISP_E_PARAMNOTOPTIONAL;
        }
        given_[i] = nullptr;
        values_[i] = DefaultOf(entry.type);
      } else if (const Result result = FromVariant(*given_[i], entry.type, values_[i]); !Succeeded(result)) {
        wrong = places_[i];
        return result;
      }
    }
    before_ = values_;
    return S_OK;
  }

  std::span<const ArgumentEntry> entries_;
  std::vector<const Variant*> given_;  // null where left out
  std::vector<std::uint32_t> places_;  // in the caller's array
  std::vector<ArgumentValue> values_;
  std::vector<ArgumentValue> before_;
};

Result GetProperty(void* control, const PropertyEntry& property, const Arguments& arguments, ObjectCount& count,
                   Variant& result) {
  if (arguments.count > 0) return DISP_E_BADPARAMCOUNT;
  result = OwnedResult(property.get(control), property.type, count);
  return S_OK;
}

Result PutProperty(void* control, const PropertyEntry& property, Arguments arguments, ObjectCount& count,
                   std::uint32_t& wrong) {
  if (!property.writable) return DISP_E_MEMBERNOTFOUND;
  if (arguments.count > 1) return DISP_E_BADPARAMCOUNT;
  // The new value may also be named, as the platform's scripts do.
  if (arguments.named_count == 1 && arguments.names[0] == kPropertyPutId) arguments.named_count = 0;
  const ArgumentEntry new_value{property.name, property.type};
  BoundArguments bound({&new_value, 1});
  if (const Result bind = bound.Bind(arguments, wrong); !Succeeded(bind)) return bind;
  property.put(control, bound.Values()[0]);
  bound.WriteBack(count);
  return S_OK;
}

Result CallMethod(void* control, const MethodEntry& method, const Arguments& arguments, ObjectCount& count,
                  Variant& result, std::uint32_t& wrong) {
  BoundArguments bound(method.arguments);
  if (const Result bind = bound.Bind(arguments, wrong); !Succeeded(bind)) return bind;
  result = OwnedResult(method.call(control, bound.Values()), method.result, count);
  bound.WriteBack(count);
  return S_OK;
}

/// An event's argument as a sink gets it, and the way back of the sink's changes to the control.
class RaisedArgument {
 public:
  RaisedArgument(const EventArgument& value, const ArgumentEntry& entry, ObjectCount& count)
      : value_(value), entry_(entry) {
    std::visit([&](auto* each) { Show(*each, count); }, value_);
  }
  RaisedArgument(const RaisedArgument&) = delete;
  RaisedArgument& operator=(const RaisedArgument&) = delete;
  ~RaisedArgument() { Clear(variable_); }

  Variant ForSink() { return entry_.by_value ? variable_ : MakeReference(variable_); }

  void TakeBack() {
    if (entry_.by_value) return;
    const bool same_text = variable_.type == kText && variable_.text == shown_.text && variable_.size == shown_.size;
    if (same_text) return;
    ArgumentValue changed;
    if (!Succeeded(FromVariant(variable_, entry_.type, changed))) return;
    std::visit([&](auto* each) { Take(*each, changed); }, value_);
  }

 private:
  template <typename T>
  void Show(T& value, ObjectCount& count) {
    if constexpr (std::is_same_v<T, DropData>) {
      variable_.type = kObject;
      variable_.object = variable_.owner = new DataObject(count, value);
    } else if constexpr (std::is_same_v<T, std::string>) {
      variable_ = MakeText(value);
    } else {
      variable_ = BorrowingVariant(value);
    }
    shown_ = variable_;
  }
  template <typename T>
  static void Take(T& value, ArgumentValue& changed) {
    if constexpr (!std::is_same_v<T, DropData>) {
      if (auto* const mine = std::get_if<T>(&changed)) value = std::move(*mine);
    }
  }

  const EventArgument& value_;
  const ArgumentEntry& entry_;
  Variant variable_{};
  Variant shown_{};
};

}  // namespace

bool WellFormed(const Arguments& arguments) {
  return arguments.named_count <= arguments.count && (arguments.count == 0 || arguments.values != nullptr) &&
         (arguments.named_count == 0 || arguments.names != nullptr);
}

Result GetIDsOfNames(const ControlInterface& described, const char* const* names, std::uint32_t count,
                     std::int32_t* ids) {
  if (names == nullptr || ids == nullptr) return E_POINTER;
  if (std::find(names, names + count, nullptr) != names + count) return E_POINTER;
  std::fill_n(ids, count, kUnknownId);
  if (count == 0) return E_INVALIDARG;

  std::span<const ArgumentEntry> arguments;
  if (const auto* property = Find(described.properties, std::string_view(names[0]))) {
    ids[0] = static_cast<std::int32_t>(property->id);
  } else if (const auto* method = Find(described.methods, std::string_view(names[0]))) {
    ids[0] = static_cast<std::int32_t>(method->id);
    arguments = method->arguments;
  }
  for (std::uint32_t i = 1; i < count; ++i) ids[i] = ArgumentId(arguments, names[i]);
  return std::find(ids, ids + count, kUnknownId) == ids + count ? S_OK : DISP_E_UNKNOWNNAME;
}

Result Invoke(void* control, const ControlInterface& described, ObjectCount& count, std::int32_t id, std::uint16_t kind,
              const Arguments* arguments, Variant* result, std::uint32_t* wrong_argument) {
  if (result != nullptr) *result = Variant{};
  const Arguments given = arguments != nullptr ? *arguments : Arguments{};
  if (!WellFormed(given)) return E_INVALIDARG;

  Variant returned{};
  std::uint32_t wrong = 0;
  Result outcome = DISP_E_MEMBERNOTFOUND;
  if (const auto* property = Find(described.properties, id)) {
    if ((kind & kPropertyGet) != 0) {
      outcome = GetProperty(control, *property, given, count, returned);
    } else if ((kind & kPropertyPut) != 0) {
      outcome = PutProperty(control, *property, given, count, wrong);
    }
  } else if (const auto* method = Find(described.methods, id); method != nullptr && (kind & kMethod) != 0) {
    outcome = CallMethod(control, *method, given, count, returned, wrong);
  }
  if (!Succeeded(outcome) && wrong_argument != nullptr) *wrong_argument = wrong;
  if (result != nullptr) {
    *result = returned;
  } else {
    Clear(returned);
  }
  return outcome;
}

void RaiseAt(IEventSink& sink, const EventEntry& event, std::span<const EventArgument> values, ObjectCount& count) {
  std::vector<std::unique_ptr<RaisedArgument>> raised;
  std::vector<Variant> variants;
  for (std::size_t i = 0; i < values.size(); ++i) {
    raised.push_back(std::make_unique<RaisedArgument>(values[i], event.arguments[i], count));
    variants.push_back(raised.back()->ForSink());
  }
  Arguments arguments{};
  arguments.values = variants.data();
  arguments.count = static_cast<std::uint32_t>(variants.size());
  sink.Invoke(static_cast<std::int32_t>(event.id), &arguments);
  for (auto& argument : raised) argument->TakeBack();
}

}  // namespace orbelcast::server
