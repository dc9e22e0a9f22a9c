#include "tests/support/cases.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>

namespace zolt::tests {

std::vector<CaseS> readCases(std::string const& path) {
  std::ifstream in(path);
  std::string const file = path.substr(path.rfind('/') + 1);
  std::vector<CaseS> cases;
  std::string const arrow = " ⇒ ";
  std::string line;
  for (int number = 1; std::getline(in, line); ++number) {
    if (line.empty() || line.compare(0, 2, "# ") == 0) continue;
    std::string const where = file + ":" + std::to_string(number);
    std::size_t const both = line.find(" ⇔ ");
    std::size_t const at = std::min(both, line.find(arrow));
    if (at == std::string::npos) {
      ADD_FAILURE() << where << " has no" << arrow;
    } else {
      cases.push_back({where, line.substr(0, at), line.substr(at + arrow.size()), at == both});
    }
  }
  EXPECT_FALSE(cases.empty()) << file;
  return cases;
}

oss::wstring toText(std::string const& utf8) {
  oss::wstring text;
  for (std::size_t start = 0; start < utf8.size();) {
    std::size_t const escape = std::min(utf8.find('\\', start), utf8.size());
    text += fromUtf8(utf8.substr(start, escape - start));
    if (escape == utf8.size()) break;
    char const kind = utf8[escape + 1];
    start = escape + 2;
    if (kind == 'u') {
      text += static_cast<char16_t>(std::stoul(utf8.substr(start, 4), nullptr, 16));
      start += 4;
    } else {
      text += kind == '0' ? u'\0' : u'\t';
    }
  }
  return text;
}

std::vector<std::string> split(std::string const& text, std::string const& separator) {
  std::vector<std::string> parts;
  for (std::size_t begin = 0;;) {
    std::size_t const end = text.find(separator, begin);
    parts.push_back(text.substr(begin, end - begin));
    if (end == std::string::npos) return parts;
    begin = end + separator.size();
  }
}

oss::wstring repeat(unsigned long count, oss::wstring const& text) {
  oss::wstring result;
  while (count-- > 0) result += text;
  return result;
}

oss::wstring nest(unsigned long count, oss::wstring const& before, oss::wstring const& inside,
                  oss::wstring const& after) {
  return repeat(count, before) + inside + repeat(count, after);
}

}  // namespace zolt::tests
