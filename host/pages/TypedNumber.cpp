#include "host/pages/TypedNumber.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>
#include <string>
#include <system_error>

#include "host/base/Failure.h"
#include "host/base/NameMatch.h"

namespace vblur::host {

namespace {

constexpr std::string_view kSpace = " \t\r\n";

// Reads an expression. What it cannot read is nothing.
class Reader {
 public:
  explicit Reader(std::string_view text) : rest_(text) { SkipSpace(); }

  bool AtEnd() const { return rest_.empty(); }
  bool Take(std::string_view symbol) {
    if (!rest_.starts_with(symbol)) return false;
    rest_.remove_prefix(symbol.size());
    SkipSpace();
    return true;
  }

  std::optional<double> Sum() {
    std::optional<double> left = Product();
    while (left) {
      const bool adds = Take("+");
      if (!adds && !Take("-")) break;
      const auto right = Product();
      if (!right) return std::nullopt;
      left = adds ? *left + *right : *left - *right;
    }
    return left;
  }

  // A sign and digits; unsigned unless `mayBeSigned`.
  std::optional<double> Number(bool mayBeSigned) {
    const bool negative = mayBeSigned && Take("-");
    if (mayBeSigned && !negative) Take("+");
    // Words such as "inf" are numbers to the library.
    if (AtEnd() || rest_.find_first_of(".0123456789") != 0) return std::nullopt;
    double number = 0.0;
    const auto [stop, error] = std::from_chars(rest_.data(), rest_.data() + rest_.size(), number);
    if (error != std::errc{}) return std::nullopt;
    rest_.remove_prefix(static_cast<std::size_t>(stop - rest_.data()));
    SkipSpace();
    return negative ? -number : number;
  }

 private:
  std::optional<double> Product() {
    std::optional<double> left = Factor();
    while (left) {
      const bool multiplies = Take("*");
      if (!multiplies && !Take("/")) break;
      const auto right = Factor();
      if (!right) return std::nullopt;
      left = multiplies ? *left * *right : *left / *right;
    }
    return left;
  }

  std::optional<double> Factor() {
    const bool negative = Take("-");
    if (!negative) Take("+");
    const auto value = Take("(") ? Inner() : Number(false);
    return negative && value ? -*value : value;
  }

  // The rest of a parenthesis.
  std::optional<double> Inner() {
    if (depth_ == kDeepestParentheses) return std::nullopt;
    ++depth_;
    const auto value = Sum();
    --depth_;
    return Take(")") ? value : std::nullopt;
  }

  void SkipSpace() { rest_.remove_prefix(std::min(rest_.find_first_not_of(kSpace), rest_.size())); }

  std::string_view rest_;
  int depth_ = 0;
};

// The operator by which a text is relative to the current value; 0 for none.
char TakeRelation(Reader& reader) {
  for (const char* symbol : {"+=", "-=", "*=", "/=", "*", "/"}) {
    if (reader.Take(symbol)) return *symbol;
  }
  return 0;
}

double RawlyRelated(char relation, double current, double amount) {
  switch (relation) {
    case '+': return current + amount;
    case '-': return current - amount;
    case '*': return current * amount;
    default: return current / amount;
  }
}

// What changes nothing keeps every bit.
double Related(char relation, double current, double amount) {
  const double result = RawlyRelated(relation, current, amount);
  return result == current ? current : WithoutDust(result);
}

// The value of the text; nothing if it cannot be read.
std::optional<double> Evaluate(std::string_view text, double current, const NumberRange& range) {
  Reader reader(text);
  const char relation = TakeRelation(reader);
  Reader number = reader;
  if (const auto read = number.Number(true); read) {
    const double part = *read / 100.0;
    if (number.AtEnd() && relation == 0) return *read + 0.0;
    if (number.Take("%") && number.AtEnd()) {
      // The range may be longer than a double can say.
      if (relation == 0) return WithoutDust(range.minimum * (1.0 - part) + range.maximum * part);
      const bool scales = relation == '*' || relation == '/';
      return Related(relation, current, scales ? part : range.maximum * part - range.minimum * part);
    }
  }
  const auto value = reader.Sum();
  if (!value || !reader.AtEnd()) return std::nullopt;
  return relation == 0 ? WithoutDust(*value) : Related(relation, current, *value);
}

[[noreturn]] void RefuseTyped(const std::string& expected, std::string_view text) {
  throw Failure(ExitCode::WrongUsage, "expected " + expected + ", found " + Quoted(text));
}

}  // namespace

double WithoutDust(double number) {
  constexpr double kDecimals = 1e9;
  constexpr double kLargest = 1e6;
  return (std::fabs(number) < kLargest ? std::round(number * kDecimals) / kDecimals : number) + 0.0;
}

double ReadTypedNumber(std::string_view text, double current, const NumberRange& range) {
  if (text.size() > kLongestTypedNumber) {
    RefuseTyped("at most " + std::to_string(kLongestTypedNumber) + " characters", text);
  }
  if (text.find(',') != std::string_view::npos) RefuseTyped("a decimal point and no commas", text);
  const auto value = Evaluate(text, current, range);
  if (!value) {
    RefuseTyped("a number such as 12.5, a percentage such as 50%, or an expression such as (3 + 4) * 2 or += 5", text);
  }
  if (!std::isfinite(*value)) RefuseTyped("a finite result", text);
  return *value;
}

}  // namespace vblur::host
