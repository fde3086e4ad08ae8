#include "OstrelAgent/Status/RFC3339.hpp"

#include <algorithm>

namespace ostrel {

namespace {

/// Reads a text from its front; after the first mismatch `failed` stays set.
class Reader {
 public:
  explicit Reader(std::string_view text) : rest_(text) {}

  /// A number of exactly that many digits, within the bounds.
  int number(std::size_t digits, int least, int most) {
    int value = 0;
    for (std::size_t i = 0; i < digits; ++i) value = value * 10 + digit();
    if (value < least || value > most) failed_ = true;
    return value;
  }

  void expect(char mark) {
    if (!take(mark)) failed_ = true;
  }

  bool take(char mark) {
    if (failed_ || rest_.empty() || rest_.front() != mark) return false;
    rest_.remove_prefix(1);
    return true;
  }

  /// The digits after the point as milliseconds, at least one; further digits are cut off.
  int milliseconds() {
    int value = 0;
    int weight = 100;
    bool any = false;
    for (; !rest_.empty() && isDigit(rest_.front()); rest_.remove_prefix(1), weight /= 10, any = true) {
      value += weight * (rest_.front() - '0');
    }
    if (!any) failed_ = true;
    return value;
  }

  bool isDone() const { return !failed_ && rest_.empty(); }

 private:
  static bool isDigit(char c) { return c >= '0' && c <= '9'; }

  int digit() {
    if (failed_ || rest_.empty() || !isDigit(rest_.front())) return failed_ = true, 0;
    const int value = rest_.front() - '0';
    rest_.remove_prefix(1);
    return value;
  }

  std::string_view rest_;
  bool failed_ = false;
};

/// The zone's offset from UTC: "Z" or "±hh:mm".
std::chrono::minutes readZone(Reader& reader) {
  if (reader.take('Z')) return std::chrono::minutes(0);
  const int sign = reader.take('-') ? -1 : 1;
  if (sign == 1) reader.expect('+');
  const int hours = reader.number(2, 0, 23);
  reader.expect(':');
  return std::chrono::minutes(sign * (hours * 60 + reader.number(2, 0, 59)));
}

/// The number with leading zeros, in at least that many digits.
template <class Number>
std::string padded(Number number, std::size_t digits) {
  const auto text = std::to_string(number);
  return std::string(digits - std::min(digits, text.size()), '0') + text;
}

}  // namespace

std::optional<Date> parseRFC3339(std::string_view text) {
  using namespace std::chrono;
  Reader reader(text);
  const int y = reader.number(4, 0, 9999);
  reader.expect('-');
  const int m = reader.number(2, 1, 12);
  reader.expect('-');
  const int d = reader.number(2, 1, 31);
  reader.expect('T');
  const hours hour(reader.number(2, 0, 23));
  reader.expect(':');
  const minutes minute(reader.number(2, 0, 59));
  reader.expect(':');
  const seconds second(reader.number(2, 0, 59));
  const milliseconds fraction(reader.take('.') ? reader.milliseconds() : 0);
  const minutes offset = readZone(reader);
  const year_month_day date(year(y), month(static_cast<unsigned>(m)), day(static_cast<unsigned>(d)));
  if (!reader.isDone() || !date.ok()) return std::nullopt;
  return Date(sys_days(date)) + hour + minute + second + fraction - offset;
}

std::string formatRFC3339(Date date) {
  using namespace std::chrono;
  const auto whole = floor<seconds>(date);
  const auto midnight = floor<days>(whole);
  const year_month_day day(midnight);
  const hh_mm_ss time(whole - midnight);
  return padded(static_cast<int>(day.year()), 4) + "-" + padded(static_cast<unsigned>(day.month()), 2) + "-" +
         padded(static_cast<unsigned>(day.day()), 2) + "T" + padded(time.hours().count(), 2) + ":" +
         padded(time.minutes().count(), 2) + ":" + padded(time.seconds().count(), 2) + "Z";
}

}  // namespace ostrel
