#include <gtest/gtest.h>
#include <utf8.h>

#include <fstream>
#include <set>
#include <sstream>
#include <string>

#include "zolt/catalogue/standard_operators.h"
#include "zolt/exchange/plain_text.h"
#include "zolt/ved/operators/operator_list.h"

namespace zolt {

namespace {

/// The names of functions and constants in prefix text.
void collectNames(std::string const& prefix, std::set<std::string>& names) {
  std::string name;
  for (char const c : prefix + ',') {
    if (c != '(' && c != ')' && c != ',') {
      name += c;
    } else {
      names.insert(name);
      name.clear();
    }
  }
}

TEST(Gallery, ShowsEveryStandardOperatorUnderAnotherName) {
  std::ifstream file(ZOLT_GALLERY);
  std::set<std::string> shown;
  std::set<std::string> pictures;
  std::string line;
  while (std::getline(file, line)) {
    if (line.empty() || line[0] == '#' || line[0] == '[') continue;
    std::size_t const colon = line.find(": ");
    ASSERT_NE(colon, std::string::npos) << line;
    EXPECT_TRUE(pictures.insert(line.substr(0, colon)).second) << "two pictures with one name: " << line;
    exchange::PlainTextErrorS error;
    auto const expression = exchange::fromPlainText(utf8::utf8to16(line.substr(colon + 2)),
                                                    math::algexpr::CASSessionBC::getSession(), &error);
    ASSERT_TRUE(expression) << line << ": " << utf8::utf16to8(exchange::describe(error.cause));
    collectNames(utf8::utf16to8(expression->toPrefixString()), shown);
  }
  math::ved::OperatorListC operators;
  catalogue::registerStandardOperators(operators);
  for (auto const& [name, op] : operators.crefByName())
    EXPECT_EQ(shown.count(utf8::utf16to8(name)), 1u)
        << utf8::utf16to8(name) << " is in no formula of the gallery";
}

}  // namespace

}  // namespace zolt
