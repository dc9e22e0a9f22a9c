#include "zolt/field/detail/implied_signs.h"

#include <algorithm>
#include <unordered_map>
#include <utility>
#include <vector>

#include "zolt/algexpr/algebraic_expression.h"
#include "zolt/algexpr/cas_session.h"
#include "zolt/common/decimal_text.h"
#include "zolt/common/signs.h"
#include "zolt/exchange/plain_text.h"
#include "zolt/field/detail/construct_names.h"
#include "zolt/field/detail/formula_copy.h"
#include "zolt/field/detail/word_bounds.h"
#include "zolt/ved/operators/operator.h"
#include "zolt/ved/operators/operator_list.h"
#include "zolt/ved/tree/node4.h"
#include "zolt/ved/tree/tree_walk.h"

namespace zolt::field::detail {

using namespace math::ved;
namespace common = math::common;

namespace {

using EditsT = std::vector<FormulaCopyC::EditS>;

enum TokenE {
  TOKEN_SIGN,    ///< also a word between two operands, such as "mod"
  TOKEN_PREFIX,  ///< a sign that is only before an operand
  TOKEN_NOT,     ///< a word before an operand
  TOKEN_NUMBER,
  TOKEN_NAME,
  TOKEN_FUNCTION,   ///< a name that needs arguments
  TOKEN_CONSTRUCT,  ///< the same, which a bracket would make a construct of one row: "sqrt", "log_2"
  TOKEN_OPERAND,    ///< pi, prefix text, a construct that has a sign
  TOKEN_CALL,       ///< a construct that can only be written as a name with brackets
  TOKEN_OPEN,
  TOKEN_CLOSE,
  TOKEN_POWER,
  TOKEN_FACTORIAL
};

struct TokenS {
  TokenE kind;
  PlaceS begin;
  PlaceS end;
  Node4C* item = nullptr;  // null in a text
};

/// Reads a row as a person does: its texts as words, numbers and signs.
class RowReaderC {
 public:
  explicit RowReaderC(OperatorListC const& operators) : operators_(operators) {}

  std::vector<TokenS> read(Node4C& row) {
    tokens_.clear();
    for (unsigned long i = 0; i < row.numChildren(); ++i) {
      Node4C& item = *row.child(i);
      if (item.getType() == NODE4_TEXT) {
        readText(item);
      } else {
        tokens_.push_back({kindOf(item), placeBefore(item), placeAfter(item), &item});
      }
    }
    return std::move(tokens_);
  }

 private:
  static TokenE kindOf(Node4C const& item) {
    if (isOpeningBracket(item.getType())) return TOKEN_OPEN;
    if (isClosingBracket(item.getType())) return TOKEN_CLOSE;
    if (item.getType() == NODE4_POWER) return TOKEN_POWER;
    OperatorBC const& op = *item.crefOperator();
    return isWrittenAsCall(op) && op.crefWords().signs.empty() ? TOKEN_CALL : TOKEN_OPERAND;
  }

  void readText(Node4C const& node) {
    wstring const& text = node.crefText();
    for (std::size_t pos = 0; pos < text.size();) {
      if (text[pos] == u' ') {
        ++pos;
        continue;
      }
      std::size_t end = pos + 1;
      TokenE const kind = readToken(text, pos, end);
      tokens_.push_back({kind, {&node, static_cast<unsigned>(pos)}, {&node, static_cast<unsigned>(end)}});
      pos = end;
    }
  }

  TokenE readToken(wstring const& text, std::size_t pos, std::size_t& end) {
    char16_t const c = text[pos];
    if (c == Node4C::PREFIX_C) {
      end = std::min(text.find(c, end), text.size() - 1) + 1;
      return TOKEN_OPERAND;
    }
    if (common::startsNumber(c)) {
      end = common::findNumberEnd(text, pos, common::LONE_EXPONENT_LEFT);
      return TOKEN_NUMBER;
    }
    if (c == common::pi_sign) return TOKEN_OPERAND;
    if (c == Node4C::OPEN_C) return TOKEN_OPEN;
    if (c == Node4C::CLOSE_C) return TOKEN_CLOSE;
    if (!isWordCharacter(c)) {
      wstring const sign(1, c);
      if (c == u'!' || operators_.lookupText(sign, OPERATOR_AFTER)) return TOKEN_FACTORIAL;
      bool const between = common::isMinus(c) || operators_.lookupText(sign, OPERATOR_BETWEEN);
      return !between && operators_.lookupText(sign, OPERATOR_BEFORE) ? TOKEN_PREFIX : TOKEN_SIGN;
    }
    while (end < text.size() && text[end] != common::pi_sign && isWordCharacter(text[end])) ++end;
    return kindOf(text.substr(pos, end - pos));
  }

  // Long formulas use few names, and the search for a construct looks at all operators.
  TokenE kindOf(wstring const& name) {
    auto const [known, isNew] = kinds_.emplace(name, TOKEN_NAME);
    if (isNew) known->second = findKind(name);
    return known->second;
  }

  TokenE findKind(wstring const& name) const {
    auto const op = operators_.lookupText(name);
    if (op && op->isLinear()) return op->getArity() == 1 ? TOKEN_NOT : TOKEN_SIGN;
    if (op && op->getArity() > 0) return TOKEN_FUNCTION;
    ConstructNameS const named = findConstruct(operators_, name);
    return named.op && (named.op->getInsertedRows() == 1 || !named.mark.empty()) ? TOKEN_CONSTRUCT
                                                                                 : TOKEN_NAME;
  }

  OperatorListC const& operators_;
  std::unordered_map<wstring, TokenE> kinds_;
  std::vector<TokenS> tokens_;
};

wstring textOf(TokenS const& token) {
  return token.begin.node->crefText().substr(token.begin.pos, token.end.pos - token.begin.pos);
}

/// Whether a sign that binds looser than the operator of that name is at a token, or a comma.
bool isLooser(TokenS const& token, wstring const& than, OperatorListC const& operators) {
  if (token.kind != TOKEN_SIGN) return false;
  auto const op = operators.lookupText(textOf(token), OPERATOR_BETWEEN);
  auto const other = operators.lookup(than);
  return !op || !other || op->getPrecedence() > other->getPrecedence();
}

/// Whether a relation or anything looser is at a token.
bool endsSums(TokenS const& token, OperatorListC const& operators) {
  return isLooser(token, u"+", operators);
}

/// The same, or a sign of a sum.
bool endsTerm(TokenS const& token, OperatorListC const& operators) {
  return isLooser(token, u"*", operators);
}

// ---- Arguments without brackets -------------------------------------------------------------------------

constexpr std::size_t none = static_cast<std::size_t>(-1);

/// Puts brackets around the arguments of functions, and exponents of functions after them.
class ArgumentsC {
 public:
  ArgumentsC(std::vector<TokenS> const& tokens, OperatorListC const& operators)
      : tokens_(tokens), operators_(operators), partners_(tokens.size(), none) {
    std::vector<std::size_t> open;
    for (std::size_t i = 0; i < tokens.size(); ++i) {
      if (tokens[i].kind == TOKEN_OPEN) open.push_back(i);
      if (tokens[i].kind != TOKEN_CLOSE || open.empty()) continue;
      partners_[open.back()] = i;
      open.pop_back();
    }
  }

  // From the last function to the first, so that the argument of an argument is known.
  EditsT findEdits() {
    for (std::size_t i = tokens_.size(); i-- > 0;) {
      if (tokens_[i].kind == TOKEN_FUNCTION || tokens_[i].kind == TOKEN_CONSTRUCT) complete(i);
      if (tokens_[i].kind == TOKEN_NOT && i > 0 && isRelation(tokens_[i - 1]) && !isOpen(i + 1))
        bracketNot(i);
    }
    std::stable_sort(edits_.begin(), edits_.end(),
                     [](PlacedS const& a, PlacedS const& b) { return a.at < b.at; });
    EditsT edits;
    for (PlacedS const& one : edits_) edits.push_back(one.edit);
    return edits;
  }

 private:
  struct PlacedS {
    std::size_t at;  // four times the number of the token, and one more for its name, two more after it
    FormulaCopyC::EditS edit;
  };

  void complete(std::size_t function) {
    std::size_t begin = function + 1;
    bool const raised = begin < tokens_.size() && tokens_[begin].kind == TOKEN_POWER;
    if (raised) ++begin;
    if (begin >= tokens_.size()) return;
    bool const called = tokens_[begin].kind == TOKEN_OPEN;
    std::size_t const end = called ? partners_[begin] : findEnd(begin);
    if (end == none) return;
    if (tokens_[function].kind == TOKEN_CONSTRUCT) {
      call(function);
      if (called) {
        leaveOut(begin);
        leaveOut(end);
      }
      edits_.push_back({4 * end + 2, {tokens_[end].end, u'\0', nullptr, 0, {}, true}});
    } else if (!called) {
      edits_.push_back({4 * begin, {tokens_[begin].begin, Node4C::OPEN_C}});
      edits_.push_back({4 * end + 2, {tokens_[end].end, Node4C::CLOSE_C}});
    }
    if (!called) ends_ = {function, end};
    if (raised) raise(function, end);
  }

  /// Begins a construct in place of its name.
  void call(std::size_t name) {
    PlaceS const begin = tokens_[name].begin;
    auto const length = static_cast<unsigned int>(tokens_[name].end.pos - begin.pos);
    edits_.push_back(
        {4 * name + 1,
         {begin, u'\0', nullptr, length, findConstruct(operators_, textOf(tokens_[name])), false}});
  }

  /// Leaves out a bracket.
  void leaveOut(std::size_t bracket) {
    TokenS const& token = tokens_[bracket];
    if (token.item) {
      edits_.push_back({0, {{}, u'\0', token.item}});
    } else {
      edits_.push_back({4 * bracket, {token.begin, u'\0', nullptr, 1}});
    }
  }

  bool isOpen(std::size_t i) const { return i < tokens_.size() && tokens_[i].kind == TOKEN_OPEN; }

  static bool isRelation(TokenS const& token) {
    return token.kind == TOKEN_SIGN && common::isRelation(token.begin.node->crefText()[token.begin.pos]);
  }

  /// A "not" after a relation applies to the sum that follows.
  void bracketNot(std::size_t word) {
    std::size_t end = word;
    for (std::size_t i = word + 1; i < tokens_.size(); ++i) {
      if (tokens_[i].kind == TOKEN_CLOSE || endsSums(tokens_[i], operators_)) break;
      if (tokens_[i].kind == TOKEN_OPEN && partners_[i] != none) i = partners_[i];
      end = i;
    }
    if (end == word) return;
    edits_.push_back({4 * word, {tokens_[word].begin, Node4C::OPEN_C}});
    edits_.push_back({4 * end + 2, {tokens_[end].end, Node4C::CLOSE_C}});
  }

  /// The last token of an argument that begins without a bracket: its factors up to the next function.
  std::size_t findEnd(std::size_t begin) const {
    std::size_t end = none;
    for (std::size_t i = begin; i < tokens_.size(); ++i) {
      TokenE const kind = tokens_[i].kind;
      if (i == begin && (kind == TOKEN_FUNCTION || kind == TOKEN_CONSTRUCT)) {
        if (ends_.first != begin) return none;
        i = ends_.second;
      } else if (kind == TOKEN_OPEN && i > begin && partners_[i] != none) {
        i = partners_[i];
      } else if (kind == TOKEN_POWER || kind == TOKEN_FACTORIAL) {
        if (i == begin) return none;
      } else if (kind != TOKEN_NUMBER && kind != TOKEN_NAME && kind != TOKEN_OPERAND &&
                 (kind != TOKEN_CALL || i > begin)) {
        break;
      }
      end = i;
    }
    return end;
  }

  /// Lets the exponent after a function's name apply to its value; −1 makes it the inverse function.
  void raise(std::size_t function, std::size_t end) {
    Node4C* const power = tokens_[function + 1].item;
    wstring const inverse = findInverse(function);
    if (inverse.empty()) {
      edits_.push_back({4 * end + 2, {tokens_[end].end, u'\0', power}});
      return;
    }
    edits_.push_back({0, {{}, u'\0', power}});
    for (char16_t const c : inverse) edits_.push_back({4 * function + 1, {tokens_[function].begin, c}});
  }

  /// What the name of the inverse function has before that of the function, when the exponent asks for it.
  wstring findInverse(std::size_t function) const {
    Node4C const& exponent = *tokens_[function + 1].item->child(0);
    if (exponent.numChildren() != 1) return {};
    wstring const& digits = exponent.child(0)->crefText();
    if (digits.size() != 2 || !common::isMinus(digits[0]) || digits[1] != u'1') return {};
    wstring const name = textOf(tokens_[function]);
    // The reader of plain text knows which functions have an inverse.
    auto const read = exchange::fromPlainText(name + u"^-1(x)", math::algexpr::CASSessionBC::getSession());
    auto const op = read ? operators_.lookup(read->getNode()->getName()) : nullptr;
    wstring const text = op ? op->getText() : wstring();
    bool const isLonger =
        text.size() > name.size() && text.compare(text.size() - name.size(), name.size(), name) == 0;
    return isLonger ? text.substr(0, text.size() - name.size()) : wstring();
  }

  std::vector<TokenS> const& tokens_;
  OperatorListC const& operators_;
  std::vector<std::size_t> partners_;  // of each opening bracket
  // The function that was completed last, and the last token of its argument.
  std::pair<std::size_t, std::size_t> ends_{none, none};
  std::vector<PlacedS> edits_;
};

// ---- Products without a sign ----------------------------------------------------------------------------

/// Whether a row is digits only.
bool isWhole(Node4C const& row) {
  wstring const& text = row.child(0)->crefText();
  return row.numChildren() == 1 && !text.empty() && std::all_of(text.begin(), text.end(), common::isDigit);
}

bool isFraction(Node4C const& item) {
  return item.getType() == NODE4_OPERATOR && item.crefOperator()->getName() == u"/";
}

/// Whether the construct is one number over another, which after a number is no factor.
bool isNumberFraction(TokenS const& token) {
  return token.item && isFraction(*token.item) && isWhole(*token.item->child(0)) &&
         isWhole(*token.item->child(1));
}

/// Whether a fraction comes after a blank and begins with a number, which in text would be one more number
/// after a number.
bool isTypedNumber(TokenS const& token) {
  PlaceS const at = token.begin;
  if (at.pos == 0 || at.node->crefText()[at.pos - 1] != u' ') return false;
  for (Node4C const* item = token.item; item && isFraction(*item); item = item->goRight()) {
    item = item->child(0)->child(0);
    wstring const& text = item->crefText();
    std::size_t const start = text.find_first_not_of(u' ');
    if (start != wstring::npos) return common::startsNumber(text[start]);
  }
  return false;
}

/// Whether a sign before that token applies to it. Otherwise the sign is a name, as in "∇²".
bool beginsOperand(std::vector<TokenS> const& tokens, std::size_t i) {
  if (i == tokens.size()) return false;
  TokenE const kind = tokens[i].kind;
  return kind != TOKEN_POWER && kind != TOKEN_FACTORIAL && kind != TOKEN_CLOSE && kind != TOKEN_SIGN;
}

/// Whether a whole number with a fraction after it, "3 ½", is one number.
bool isMixedNumber(std::vector<TokenS> const& tokens, std::size_t i) {
  if (tokens[i].kind != TOKEN_NUMBER || i + 1 == tokens.size() || !isNumberFraction(tokens[i + 1]))
    return false;
  bool const isAfterNumber = i > 0 && tokens[i - 1].kind == TOKEN_NUMBER;
  TokenE const next = i + 2 < tokens.size() ? tokens[i + 2].kind : TOKEN_SIGN;
  if (isAfterNumber || next == TOKEN_POWER || next == TOKEN_FACTORIAL) return false;
  Node4C const& fraction = *tokens[i + 1].item;
  return common::isMixedNumber(textOf(tokens[i]), fraction.child(0)->child(0)->crefText(),
                               fraction.child(1)->child(0)->crefText());
}

/// Makes a sum of a mixed number, in brackets where something binds tighter to it.
EditsT findMixedNumbers(std::vector<TokenS> const& tokens, OperatorListC const& operators) {
  EditsT edits;
  for (std::size_t i = 0; i + 1 < tokens.size(); ++i) {
    if (!isMixedNumber(tokens, i)) continue;
    bool const begins = i == 0 || tokens[i - 1].kind == TOKEN_OPEN || endsSums(tokens[i - 1], operators);
    bool const ends =
        i + 2 == tokens.size() || tokens[i + 2].kind == TOKEN_CLOSE || endsTerm(tokens[i + 2], operators);
    bool const isBracketed = !begins || !ends;
    if (isBracketed) edits.push_back({tokens[i].begin, Node4C::OPEN_C});
    edits.push_back({tokens[i].end, u'+'});
    if (isBracketed) edits.push_back({tokens[i + 1].end, Node4C::CLOSE_C});
  }
  return edits;
}

EditsT findProducts(std::vector<TokenS> const& tokens) {
  EditsT edits;
  TokenE last = TOKEN_SIGN;  // of an operand that ends here its kind, TOKEN_OPERAND after what follows one
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    TokenS const& token = tokens[i];
    bool const afterOperand = last == TOKEN_NUMBER || last == TOKEN_OPERAND;
    bool const afterAny = afterOperand || last == TOKEN_NAME;
    bool implied = false;
    switch (token.kind) {
      case TOKEN_NUMBER:
        implied = afterAny && last != TOKEN_NUMBER;
        break;
      case TOKEN_OPEN:
        implied = afterOperand;
        break;
      case TOKEN_PREFIX:
      case TOKEN_NAME:
      case TOKEN_FUNCTION:
      case TOKEN_CONSTRUCT:
      case TOKEN_OPERAND:
      case TOKEN_CALL:
        implied = afterAny && !(last == TOKEN_NUMBER && (isNumberFraction(token) || isTypedNumber(token)));
        break;
      default:
        break;
    }
    if (implied) edits.push_back({token.begin, common::times_sign});
    switch (token.kind) {
      case TOKEN_OPEN:
      case TOKEN_NOT:
      case TOKEN_SIGN:
        last = TOKEN_SIGN;
        break;
      case TOKEN_PREFIX:
        last = beginsOperand(tokens, i + 1) ? TOKEN_SIGN : TOKEN_OPERAND;
        break;
      case TOKEN_CLOSE:
      case TOKEN_CALL:
        last = TOKEN_OPERAND;
        break;
      case TOKEN_POWER:
      case TOKEN_FACTORIAL:
        if (last != TOKEN_FUNCTION && last != TOKEN_SIGN) last = TOKEN_OPERAND;
        break;
      case TOKEN_CONSTRUCT:
        last = TOKEN_FUNCTION;
        break;
      default:
        last = token.kind;
    }
  }
  return edits;
}

void completeRow(FormulaCopyC& copy, Node4C& row, RowReaderC& reader, OperatorListC const& operators,
                 InputOptionsS const& options) {
  if (options.impliedProducts) {
    EditsT const edits = findMixedNumbers(reader.read(row), operators);
    if (!edits.empty()) copy.edit(row, edits);
  }
  if (options.impliedBrackets) {
    auto const tokens = reader.read(row);
    EditsT const edits = ArgumentsC(tokens, operators).findEdits();
    if (!edits.empty()) copy.edit(row, edits);
  }
  if (!options.impliedProducts) return;
  EditsT const edits = findProducts(reader.read(row));
  if (!edits.empty()) copy.edit(row, edits);
}

}  // namespace

DiagnosisS diagnoseTyped(Node4C const& formula, OperatorListC const& operators, InputOptionsS const& options,
                         ReplacementS const& completion, std::vector<SelectionS>* parts) {
  DiagnosisS found;
  if (!completion.begin) found = math::ved::diagnose(formula);
  if (found.expression && parts) *parts = math::ved::findParts(formula);
  bool const lacksSigns = found.cause != ERROR_CAUSE_PLACEHOLDER && found.cause != ERROR_CAUSE_EMPTY;
  if (found.expression || !(completion.begin || lacksSigns)) return found;
  FormulaCopyC copy(formula, operators, completion);
  if (completion.begin) found = copy.diagnose(parts);
  if (found.expression) return found;
  RowReaderC reader(operators);
  walkTree(copy.refRoot(), [&](Node4C& node) {
    if (node.getType() == NODE4_LINE) completeRow(copy, node, reader, operators, options);
  });
  return copy.isEdited() ? copy.diagnose(parts) : found;
}

}  // namespace zolt::field::detail
