#include "OstrelAgent/Text/JsonDecoder.hpp"

#include <algorithm>
#include <limits>
#include <nlohmann/json.hpp>

#include "OstrelAgent/Text/JsonNumbers.hpp"

namespace ostrel {

namespace {

std::string_view wrongType(JsonField::Kind expected) {
  switch (expected) {
    case JsonField::Kind::text:
      return "is not a text";
    case JsonField::Kind::boolean:
      return "is not true or false";
    case JsonField::Kind::integer:
      return "is not a whole number of 64 bits";
    case JsonField::Kind::object:
      return "is not an object";
    case JsonField::Kind::texts:
    case JsonField::Kind::objects:
      return "is not a list";
  }
  return {};
}

/// Takes the parser's events and fills the structs in one pass. Faults are held back until the object around
/// them ends, because a later value of the same key makes up for them.
class Decoder {
 public:
  Decoder(std::string_view bytes, const JsonObject& layout, void* target)
      : bytes_(bytes), layout_(layout), target_(target) {}

  /// Reads the document; false when it is not JSON.
  bool parse() {
    const bool parsed = nlohmann::json::sax_parse(bytes_.data(), bytes_.data() + bytes_.size(), this);
    // The parser takes a NUL byte for the end of the document.
    if (const auto end = bytes_.find('\0'); parsed && end != std::string_view::npos) errorPosition_ = end + 1;
    isJson_ = parsed && errorPosition_ == 0;
    return isJson_;
  }

  /// What came of `parse`.
  std::expected<void, JsonError> outcome() {
    if (!isJson_) return std::unexpected(syntaxError());
    if (fault_) return std::unexpected(std::move(*fault_));
    return {};
  }

  /// True when the parser gave up at a number that no double can hold, which is JSON all the same.
  bool metHugeNumber() const { return metHugeNumber_; }

  bool null() {
    const auto slot = nextSlot();
    if (slot.state == Slot::State::root) return fault("is not an object");
    if (slot.state != Slot::State::wanted) return true;
    if (slot.inList || slot.field->required) return fault(wrongType(slot.kind));
    slot.field->clear(slot.owner);
    return true;
  }
  bool boolean(bool value) { return store(JsonField::Kind::boolean, value); }
  bool number_integer(std::int64_t value) { return store(JsonField::Kind::integer, value); }
  bool number_unsigned(std::uint64_t value) {
    const bool fits = value <= static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    return fits ? store(JsonField::Kind::integer, static_cast<std::int64_t>(value)) : mismatch();
  }
  bool number_float(double, const std::string&) { return mismatch(); }
  bool string(std::string& value) { return store(JsonField::Kind::text, value); }
  bool binary(nlohmann::json::binary_t&) { return mismatch(); }

  bool start_object(std::size_t) {
    const auto slot = nextSlot();
    if (slot.state == Slot::State::root) return push({.layout = &layout_, .value = target_});
    if (slot.state != Slot::State::wanted || slot.kind != JsonField::Kind::object) return skip(slot);
    return push({.layout = slot.field->layout, .value = place(slot)});
  }

  bool key(const std::string& name) {
    if (skipped_ > 0) return true;
    auto& frame = frames_.back();
    frame.current = find(frame, name);
    if (frame.current == nothing) return true;
    const auto bit = std::uint32_t{1} << frame.current;
    if ((frame.seen & bit) != 0) forgetFaults(frame.current);
    frame.seen |= bit;
    return true;
  }

  bool end_object() {
    if (skipped_ > 0) return --skipped_, true;
    auto& frame = frames_.back();
    for (std::size_t i = 0; i < frame.layout->fields.size(); ++i) {
      if (!frame.layout->fields[i].required || ((frame.seen >> i) & 1U) != 0) continue;
      frame.current = i;
      fault("is missing");
    }
    return pop();
  }

  bool start_array(std::size_t) {
    const auto slot = nextSlot();
    const bool isList = slot.kind == JsonField::Kind::texts || slot.kind == JsonField::Kind::objects;
    if (slot.state != Slot::State::wanted || slot.inList || !isList) return skip(slot);
    return push({.list = slot.field, .value = place(slot)});
  }

  bool end_array() {
    if (skipped_ > 0) return --skipped_, true;
    return pop();
  }

  bool parse_error(std::size_t position, const std::string&, const nlohmann::json::exception& error) {
    errorPosition_ = position;
    metHugeNumber_ = error.id == 406;  // the library's number for a number out of range
    return false;
  }

 private:
  static constexpr std::size_t nothing = std::numeric_limits<std::size_t>::max();

  /// What is wrong with one field of an object, or with a list.
  struct Fault {
    std::size_t field;
    JsonError error;
  };

  /// An object or a list that is being filled.
  struct Frame {
    const JsonObject* layout = nullptr;  ///< of an object
    const JsonField* list = nullptr;     ///< the field of a list
    void* value = nullptr;
    std::uint32_t seen = 0;          ///< keys of the object met so far, a bit each
    std::size_t current = nothing;   ///< field of the object, or index in the list, of the value at hand
    std::vector<Fault> faults = {};  ///< at most one a field; one for a whole list
  };

  /// Where the next value goes.
  struct Slot {
    enum class State { root, wanted, unwanted } state = State::unwanted;
    JsonField::Kind kind = JsonField::Kind::text;
    const JsonField* field = nullptr;
    void* owner = nullptr;  ///< the struct, or the list
    bool inList = false;
  };

  Slot nextSlot() {
    if (skipped_ > 0) return {};
    if (frames_.empty()) return {.state = Slot::State::root};
    auto& frame = frames_.back();
    if (frame.list != nullptr) {
      if (!frame.faults.empty()) return {};
      frame.current = frame.current == nothing ? 0 : frame.current + 1;
      const bool texts = frame.list->kind == JsonField::Kind::texts;
      const auto kind = texts ? JsonField::Kind::text : JsonField::Kind::object;
      return {Slot::State::wanted, kind, frame.list, frame.value, true};
    }
    if (frame.current == nothing) return {};
    const auto& field = frame.layout->fields[frame.current];
    return {Slot::State::wanted, field.kind, &field, frame.value, false};
  }

  static void* place(const Slot& slot) {
    return slot.inList ? slot.field->append(slot.owner) : slot.field->make(slot.owner);
  }

  template <class Value>
  bool store(JsonField::Kind kind, const Value& value) {
    const auto slot = nextSlot();
    if (slot.state == Slot::State::root) return fault("is not an object");
    if (slot.state == Slot::State::unwanted) return true;
    if (slot.kind != kind) return fault(wrongType(slot.kind));
    *static_cast<Value*>(place(slot)) = value;
    return true;
  }

  /// A value of a type that no field has.
  bool mismatch() {
    const auto slot = nextSlot();
    if (slot.state == Slot::State::root) return fault("is not an object");
    return slot.state == Slot::State::unwanted || fault(wrongType(slot.kind));
  }

  /// Passes over an object or list that does not belong here.
  bool skip(const Slot& slot) {
    if (slot.state == Slot::State::root) fault("is not an object");
    if (slot.state == Slot::State::wanted) fault(wrongType(slot.kind));
    ++skipped_;
    return true;
  }

  bool push(Frame frame) {
    frames_.push_back(std::move(frame));
    return true;
  }

  /// Leaves a frame; the first of its faults becomes a fault of the value that the frame was.
  bool pop() {
    const auto faults = std::move(frames_.back().faults);
    frames_.pop_back();
    if (!faults.empty()) hold(faults.front().error);
    return true;
  }

  bool fault(std::string_view reason) {
    hold({.path = path(), .reason = std::string(reason)});
    return true;
  }

  /// Keeps the first fault of the value at hand.
  void hold(JsonError error) {
    if (frames_.empty()) {
      fault_ = std::move(error);
      return;
    }
    auto& frame = frames_.back();
    const auto field = frame.list == nullptr ? frame.current : 0;
    if (std::ranges::find(frame.faults, field, &Fault::field) == frame.faults.end()) {
      frame.faults.push_back({field, std::move(error)});
    }
  }

  void forgetFaults(std::size_t field) {
    std::erase_if(frames_.back().faults, [&](const Fault& fault) { return fault.field == field; });
  }

  std::string path() const {
    std::string path;
    for (const auto& frame : frames_) {
      if (frame.list != nullptr) {
        path += "[" + std::to_string(frame.current) + "]";
      } else {
        if (!path.empty()) path += '.';
        path += frame.layout->fields[frame.current].key;
      }
    }
    return path;
  }

  /// The field of a key; keys mostly come in the order of the layout, so the search starts behind the last.
  static std::size_t find(const Frame& frame, std::string_view name) {
    const auto& fields = frame.layout->fields;
    const auto start = frame.current == nothing ? 0 : frame.current + 1;
    for (std::size_t step = 0; step < fields.size(); ++step) {
      const auto i = start + step < fields.size() ? start + step : start + step - fields.size();
      if (fields[i].key == name) return i;
    }
    return nothing;
  }

  JsonError syntaxError() const {
    if (errorPosition_ > bytes_.size()) return {.path = "", .reason = "ends before its JSON does"};
    const auto read = bytes_.substr(0, errorPosition_ == 0 ? 0 : errorPosition_ - 1);
    return {.path = "",
            .reason = "is not JSON",
            .line = 1 + static_cast<std::size_t>(std::ranges::count(read, '\n')),
            .column = read.size() - (read.rfind('\n') + 1) + 1};
  }

  std::string_view bytes_;
  const JsonObject& layout_;
  void* target_;
  std::vector<Frame> frames_;
  std::optional<JsonError> fault_;  ///< of the whole document
  std::size_t skipped_ = 0;         ///< objects and lists around the current place that are passed over
  std::size_t errorPosition_ = 0;
  bool isJson_ = false;
  bool metHugeNumber_ = false;
};

}  // namespace

std::string JsonError::description(std::size_t linesBefore) const {
  auto text = (path.empty() ? std::string("the document") : path) + " " + reason;
  if (line == 0) return text;
  return text + " (line " + std::to_string(linesBefore + line) + ", column " + std::to_string(column) + ")";
}

std::expected<void, JsonError> decodeJson(std::string_view bytes, const JsonObject& layout, void* target) {
  Decoder decoder(bytes, layout, target);
  if (decoder.parse() || !decoder.metHugeNumber()) return decoder.outcome();
  const auto shortened = withoutHugeNumbers(bytes);
  Decoder second(shortened, layout, target);
  second.parse();
  return second.outcome();
}

bool isJson(std::string_view bytes) {
  const JsonObject nothingKnown;
  Decoder decoder(bytes, nothingKnown, nullptr);
  if (decoder.parse()) return true;
  if (!decoder.metHugeNumber()) return false;
  const auto shortened = withoutHugeNumbers(bytes);
  return Decoder(shortened, nothingKnown, nullptr).parse();
}

}  // namespace ostrel
