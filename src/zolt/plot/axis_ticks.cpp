#include "zolt/plot/axis_ticks.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

namespace zolt::plot {

using oss::wstring;

namespace {

constexpr double pi = 3.14159265358979323846;
constexpr char16_t minus = u'\u2212';
constexpr char16_t pi_letter = u'\u03C0';

wstring writeWhole(long long number) {
  std::string const digits = std::to_string(number < 0 ? -number : number);
  return wstring(number < 0 ? 1 : 0, minus) + wstring(digits.begin(), digits.end());
}

wstring writeExponent(int exponent) {
  static char16_t const raised[] = u"\u2070\u00B9\u00B2\u00B3\u2074\u2075\u2076\u2077\u2078\u2079";
  std::string const digits = std::to_string(std::abs(exponent));
  wstring text = exponent < 0 ? u"\u207B" : u"";
  for (char const digit : digits) text += raised[digit - '0'];
  return text;
}

/// With so many digits after the point.
wstring writeFixed(double value, int places) {
  double const scale = std::pow(10.0, places);
  auto const units = std::llround(std::fabs(value) * scale);
  std::string digits = std::to_string(units);
  auto const wanted = static_cast<std::size_t>(places) + 1;
  if (digits.size() < wanted) digits.insert(0, wanted - digits.size(), '0');
  wstring text(digits.begin(), digits.end());
  if (places > 0) text.insert(text.size() - static_cast<std::size_t>(places), 1, u'.');
  return (value < 0 && units != 0 ? wstring(1, minus) : wstring()) + text;
}

/// A multiple of `step`, a power of ten times a small number; `exponent` is that power's.
wstring writeDecimal(double value, int exponent, double largest) {
  int const leading = largest > 0 ? static_cast<int>(std::floor(std::log10(largest) + 1e-9)) : 0;
  bool const isPlain = leading < 6 && exponent > -6;
  if (isPlain) return writeFixed(value, std::max(0, -exponent));
  if (value == 0) return u"0";
  wstring const mantissa = writeFixed(value / std::pow(10.0, leading), std::clamp(leading - exponent, 0, 15));
  return mantissa + u"\u00B7" + u"10" + writeExponent(leading);
}

wstring writePart(long long multiple, long long denominator) {
  if (multiple == 0) return u"0";
  long long a = std::llabs(multiple), b = denominator;
  while (b != 0) a = std::exchange(b, a % b);
  long long const top = multiple / a, bottom = denominator / a;
  wstring text = top == 1 ? wstring() : top == -1 ? wstring(1, minus) : writeWhole(top);
  text += pi_letter;
  return bottom == 1 ? text : text + u"/" + writeWhole(bottom);
}

/// The least of 1, 2, 5, 10 times a power of ten that is not less than `least`.
double roundUp(double least, int* exponent) {
  *exponent = static_cast<int>(std::floor(std::log10(least)));
  double const unit = std::pow(10.0, *exponent);
  for (double const factor : {1.0, 2.0, 5.0}) {
    if (factor * unit >= least * (1 - 1e-9)) return factor * unit;
  }
  ++*exponent;
  return std::pow(10.0, *exponent);
}

}  // namespace

std::vector<TickS> makeTicks(double from, double to, unsigned most, TickUnitE unit) {
  std::vector<TickS> ticks;
  double const span = to - from;
  bool const isUsable =
      std::isfinite(span) && span > 0 && most > 0 && span > 1e-13 * std::max(std::fabs(from), std::fabs(to));
  if (!isUsable) return ticks;
  double const least = span / most;
  int exponent = 0;
  double step = 0;
  long long part = 1;  // of π that the step is; 0: it is no such part
  if (unit == TICKS_OF_PI) {
    part = 0;
    for (long long const denominator : {12, 6, 4, 2, 1}) {
      if (part == 0 && pi / static_cast<double>(denominator) >= least && least > pi / 40) part = denominator;
    }
    if (part != 0) step = pi / static_cast<double>(part);
    if (part == 0 && least > pi) {
      part = 1;
      step = pi * std::max(1.0, roundUp(least / pi, &exponent));
    }
  }
  bool const isOfPi = unit == TICKS_OF_PI && part != 0;
  if (!isOfPi) step = roundUp(least, &exponent);
  double const first = std::ceil(from / step - 1e-9), last = std::floor(to / step + 1e-9);
  double const largest = std::max(std::fabs(from), std::fabs(to));
  for (double i = first; i <= last && ticks.size() <= most + 1; ++i) {
    TickS tick;
    tick.value = i * step;
    auto const multiple = std::llround(i * step / pi * static_cast<double>(part));
    tick.label = isOfPi ? writePart(multiple, part) : writeDecimal(tick.value, exponent, largest);
    ticks.push_back(std::move(tick));
  }
  return ticks;
}

wstring writeValue(double value, double step) {
  if (!std::isfinite(value)) return {};
  double const least = std::max(std::fabs(step), 1e-14 * std::fabs(value));
  int const exponent = least > 0 ? static_cast<int>(std::floor(std::log10(least))) : 0;
  return writeDecimal(value, exponent, std::fabs(value));
}

}  // namespace zolt::plot
