#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <cstdlib>
#include <map>
#include <sstream>
#include <string>

#include "tests/support/cases.h"
#include "zolt/algexpr/float_node.h"
#include "zolt/algexpr/make_node.h"
#include "zolt/common/float64_util.h"

namespace zolt::math {
namespace {

using algexpr::FloatNodeC;
using common::Float64UtilC;
using oss::wstring;
using tests::toText;
using tests::toUtf8;

TEST(Float64, ReadsTheNearestValue) {
  for (tests::CaseS const& one : tests::readCases(ZOLT_TEST_DATA "/float64.cases")) {
    double const value = Float64UtilC::fromString(toText(one.input));
    bool const finite = one.expected != "none" && one.expected != "inf";
    EXPECT_EQ(Float64UtilC::isFinite(value), finite) << one.where;
    EXPECT_EQ(std::isinf(value), one.expected == "inf") << one.where;
    if (!finite) continue;
    EXPECT_EQ(value, std::strtod(one.expected.c_str(), nullptr)) << one.where << ": " << one.input;
  }
}

TEST(Float64, DoesNotKnowTheLocale) {
  // Locales of countries that write 1.234,5, if the machine has one.
  for (char const* const name : {"de_DE.UTF-8", "fr_FR.UTF-8", "ru_RU.UTF-8"}) std::setlocale(LC_ALL, name);
  EXPECT_EQ(Float64UtilC::fromString(u"1234.5"), 0x9A5p-1);
  EXPECT_FALSE(Float64UtilC::isFinite(Float64UtilC::fromString(u"1234,5")));
  std::setlocale(LC_ALL, "C");
}

TEST(NumberFormats, WorkOnTheDigits) {
  std::map<std::string, algexpr::NumberDisplayFormatE> const formats = {
      {"automatic", algexpr::NUMBER_FORMAT_AUTOMATIC},
      {"fixed", algexpr::NUMBER_FORMAT_FIXED},
      {"scientific", algexpr::NUMBER_FORMAT_SCIENTIFIC},
      {"engineering", algexpr::NUMBER_FORMAT_ENGINEERING}};
  for (tests::CaseS const& one : tests::readCases(ZOLT_TEST_DATA "/number_formats.cases")) {
    std::istringstream input(one.input);
    std::string format;
    unsigned long precision = 0;
    std::string number;
    input >> format >> precision >> number;
    auto const node = algexpr::makeNumber(toText(number));
    FloatNodeC const* const decimal = node ? algexpr::castNode<FloatNodeC>(*node) : nullptr;
    ASSERT_TRUE(decimal) << one.where;
    wstring const shown = decimal->toString(precision, formats.at(format));
    EXPECT_EQ(toUtf8(shown), one.expected) << one.where;
    auto const again = algexpr::makeNumber(shown);
    EXPECT_TRUE(again && algexpr::castNode<FloatNodeC>(*again)) << one.where << ": no decimal any more";
  }
}

}  // namespace
}  // namespace zolt::math
