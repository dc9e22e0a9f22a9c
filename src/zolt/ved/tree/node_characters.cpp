#include "zolt/ved/tree/node_characters.h"

#include <string_view>

#include "zolt/common/signs.h"
#include "zolt/ved/operators/operator_list_repository.h"

namespace zolt::math::ved {

namespace {

/// Letters, digits and `others`.
constexpr NodeCharactersBC::CharacterTableT makeTable(std::string_view others) {
  NodeCharactersBC::CharacterTableT table{};
  for (std::size_t c = '0'; c <= '9'; ++c) table[c] = true;
  for (std::size_t c = 'A'; c <= 'Z'; ++c) table[c] = table[c - 'A' + 'a'] = true;
  for (char const c : others) table[static_cast<std::size_t>(c)] = true;
  return table;
}

}  // namespace

wstring const NodeCharactersBC::PLACEHOLDER_STR = u"\u25CF";
NodeCharactersBC::CharacterTableT const NodeCharactersBC::acceptable_characters = makeTable("._@{} :");
NodeCharactersBC::CharacterTableT const NodeCharactersBC::identifier_characters = makeTable("._@{}");

bool NodeCharactersBC::isAcceptable(unsigned short c, bool identifier) {
  if (c < nb_acceptable_characters) return identifier ? identifier_characters[c] : acceptable_characters[c];
  bool const isSign =
      common::isMinus(c) || common::isRelation(c) || c == common::times_sign || c == common::store_sign;
  if (isSign || OperatorListRepositoryC::isSign(static_cast<char16_t>(c))) return false;
  return c != common::pi_sign || !identifier;
}

bool NodeCharactersBC::isTypable(char16_t c) {
  return c >= nb_acceptable_characters || acceptable_characters[c] || c == COMMA_C || c == OPEN_C ||
         c == CLOSE_C;
}

}  // namespace zolt::math::ved
