// Plays scripts as the module does: a line of the input is a tree and a script with a tab between them, a
// line of the output is what `zolt_play` answers.

#include <algorithm>
#include <iostream>
#include <string>

#include "hosts/web/bridge/bridge.h"
#include "tests/web/player.h"
#include "zolt/oss/utf8.h"

namespace {

int put(std::string const& utf8) {
  zolt::oss::wstring const text = zolt::oss::fromUtf8(utf8);
  std::copy(text.begin(), text.end(), zolt_text(static_cast<int>(text.size())));
  return static_cast<int>(text.size());
}

}  // namespace

int main() {
  zolt_start(1);
  for (std::string line; std::getline(std::cin, line);) {
    std::size_t const tab = line.find('\t');
    int const field = zolt_open();
    zolt_set(field, ZOLT_TREE, put(line.substr(0, tab)));
    int const steps = zolt_play(field, put(line.substr(tab + 1)));
    int const* const sum = zolt_numbers(0);
    std::cout << steps << ' ' << (steps < 0 ? 0 : sum[0]) << ' ' << (steps < 0 ? 0 : sum[1]) << '\n';
    zolt_close(field);
  }
}
