#include "zolt/mathml/detail/presentation_reader.h"

#include <algorithm>

#include "zolt/common/signs.h"
#include "zolt/mathml/detail/presentation_table.h"

namespace zolt::mathml::detail {

using namespace math::common;
using TextT = std::u16string_view;

bool PresentationReaderC::read(MathmlIdT id) {
  later(id, TASK_BARE);
  while (!tasks_.empty() && fault_.cause == READ_ERROR_NONE) {
    TaskS const task = tasks_.back();
    tasks_.pop_back();
    switch (task.kind) {
      case TASK_TEXT:
        put(task.text, task.element);
        break;
      case TASK_UPRIGHT:
        readUprightRun(task.element, task.count);
        break;
      case TASK_TABLE:
        readTable(task.element, task.text);
        break;
      case TASK_ROW:
        readRow(task.element, TASK_BARE);
        break;
      case TASK_BARE:
      case TASK_ELEMENT:
        readElement(task.element, task.kind);
        break;
    }
  }
  // The sentence that the formula ends does not belong to it.
  MathmlIdT const last = places_.size() > 1 ? places_.back().second : no_element;
  bool const isMark = last != no_element && isToken(at(last).tag) && isPunctuation(tree_.text(last)) &&
                      !tree_.hasAttribute(last, u"data-name");
  if (isMark) latex_.resize(places_.back().first);
  return fault_.cause == READ_ERROR_NONE;
}

MathmlIdT PresentationReaderC::elementAt(std::size_t position) const {
  auto const after = std::upper_bound(places_.begin(), places_.end(), position,
                                      [](std::size_t key, auto const& place) { return key < place.first; });
  return after == places_.begin() ? MathmlTreeC::root : (after - 1)->second;
}

void PresentationReaderC::fail(MathmlIdT id, ReadErrorE cause) {
  if (fault_.cause == READ_ERROR_NONE) fault_ = {cause, id};
}

// A command and a letter after it need a blank between them.
void PresentationReaderC::put(TextT text, MathmlIdT id) {
  if (text.empty()) return;
  if (endsCommand_ && isAsciiLetter(text[0])) latex_ += u' ';
  places_.emplace_back(latex_.size(), id);
  latex_ += text;
  endsCommand_ =
      text.size() > 1 && text[0] == u'\\' && std::all_of(text.begin() + 1, text.end(), isAsciiLetter);
}

// ---- Elements ---------------------------------------------------------------------------------------------

void PresentationReaderC::readElement(MathmlIdT id, TaskE kind) {
  if (!isToken(at(id).tag) && !tree_.text(id).empty()) return fail(id, READ_ERROR_BAD_MARKUP);
  switch (at(id).tag) {
    case MATHML_MI:
    case MATHML_MN:
    case MATHML_MO:
    case MATHML_MTEXT:
    case MATHML_MS:
      return readToken(id);
    case MATHML_MATH:
    case MATHML_MROW:
    case MATHML_MSTYLE:
    case MATHML_MPADDED:
    case MATHML_MTD:
      return readRow(id, at(id).tag == MATHML_MROW ? kind : TASK_BARE);
    case MATHML_SEMANTICS:
      if (at(id).first != no_element) later(at(id).first, kind);
      return;
    case MATHML_MACTION:
      return readAction(id);
    case MATHML_MFRAC:
      return readFraction(id);
    case MATHML_MSQRT:
      later(u"}", id);
      later(id, TASK_ROW);
      return later(u"\\sqrt{", id);
    case MATHML_MROOT:
      return readRoot(id);
    case MATHML_MSUB:
    case MATHML_MSUP:
    case MATHML_MSUBSUP:
    case MATHML_MUNDER:
    case MATHML_MOVER:
    case MATHML_MUNDEROVER:
      return readScripts(id);
    case MATHML_MMULTISCRIPTS:
      return readMultiscripts(id);
    case MATHML_MFENCED:
      return readFenced(id);
    case MATHML_MENCLOSE:
      return readEnclosed(id);
    case MATHML_MTABLE:
      return readTable(id, {});
    case MATHML_SPACE:
      return;
    default:
      return fail(id, READ_ERROR_UNKNOWN_ELEMENT);
  }
}

void PresentationReaderC::readAction(MathmlIdT id) {
  TextT const selection = tree_.attribute(id, u"selection");
  MathmlIdT child = at(id).first;
  for (char16_t n = u'1'; child != no_element && selection.size() == 1 && n < selection[0]; ++n)
    child = at(child).next;
  if (child == no_element) return fail(id, READ_ERROR_ARGUMENT_COUNT);
  later(child, TASK_ELEMENT);
}

// Reads the children in one line, some of them together.
void PresentationReaderC::readRow(MathmlIdT id, TaskE kind) {
  std::vector<MathmlIdT> const row = childrenOf(id);
  bool const isKept = tree_.attribute(id, u"data-brackets") == u"kept";
  TextT const command = tree_.attribute(id, u"data-command");
  if (!command.empty()) return readCommand(command, id, row);
  bool const isSign = row.size() == 1 && at(id).tag == MATHML_MROW && kind == TASK_ELEMENT &&
                      at(row[0]).tag == MATHML_MO && TextT(u"+-−").find(tree_.text(row[0])) != TextT::npos;
  bool const isLetter = kind == TASK_ELEMENT && tree_.attribute(id, u"data-brackets") == u"braces";
  bool const isBraced = isSign || isLetter || (kind == TASK_ELEMENT && groups(row));
  std::size_t const end = tasks_.size();
  if (isKept) later(u"\\mathord{", id);
  if (isBraced) later(u"{", id);
  bool const isHalf = isHalfFenced(row);
  if (isHalf) later(u"\\left.", id);
  bool const isSided = isHalf || hasSides(row);
  TaskE const inner = row.size() > 1 ? TASK_ELEMENT : TASK_BARE;
  for (std::size_t i = 0; i < row.size();) {
    bool const isLast = i + 1 == row.size();
    if (isSided && (isLast || (i == 0 && !isHalf))) later(i == 0 ? u"\\left" : u"\\right", row[i]);
    std::size_t const together = readTogether(row, i);
    if (together > 0) {
      i += together;
      continue;
    }
    bool const separates = i > 0 && at(row[i - 1]).next != row[i] && at(row[i]).tag == MATHML_MN &&
                           at(row[i - 1]).tag == MATHML_MN;
    if (separates) later(u"\\,", row[i]);
    later(row[i], inner);
    ++i;
  }
  if (isBraced) later(u"}", id);
  if (isKept) later(u"}", id);
  std::reverse(tasks_.begin() + static_cast<std::ptrdiff_t>(end), tasks_.end());
}

// Plans what several children mean together: a table with its delimiters, a binomial coefficient, upright
// letters that are one name. Returns how many these are, 0 when there is nothing of the kind.
std::size_t PresentationReaderC::readTogether(std::vector<MathmlIdT> const& row, std::size_t place) {
  std::size_t const upright = countUpright(row, place);
  if (upright > 1) {
    tasks_.push_back({TASK_UPRIGHT, row[place], {}, upright});
    return upright;
  }
  if (place + 1 >= row.size()) return 0;
  char16_t const open = fenceOf(row[place]);
  if (open == u'\0') return 0;
  MathmlIdT const inside = coreOf(row[place + 1]);
  char16_t const close = place + 2 < row.size() ? fenceOf(row[place + 2]) : u'\0';
  FenceS const* const fence = findFenceSign(open);
  bool const fits = fence && open == fence->openSign && close == fence->closeSign;
  if (at(inside).tag == MATHML_MTABLE) {
    bool const isCases = open == u'{' && close != u'}';
    if (!isCases && (!fits || fence->environment.empty())) return 0;
    tasks_.push_back({TASK_TABLE, inside, isCases ? TextT(u"cases") : fence->environment});
    return close == u'.' || fits ? 3 : 2;
  }
  if (!fits || open != u'(' || !isAtop(inside)) return 0;
  later(inside);
  return 3;
}

void PresentationReaderC::laterArgument(MathmlIdT id) {
  later(u"}", id);
  later(id, TASK_BARE);
  later(u"{", id);
}

void PresentationReaderC::readFraction(MathmlIdT id) {
  MathmlIdT const numerator = at(id).first;
  MathmlIdT const denominator = numerator == no_element ? no_element : at(numerator).next;
  if (denominator == no_element || at(denominator).next != no_element)
    return fail(id, READ_ERROR_ARGUMENT_COUNT);
  laterArgument(denominator);
  laterArgument(numerator);
  later(isAtop(id) ? TextT(u"\\binom") : TextT(u"\\frac"), id);
}

// An index that is a number by itself is one; in more rows it stays what it is.
void PresentationReaderC::readRoot(MathmlIdT id) {
  MathmlIdT const base = at(id).first;
  MathmlIdT const index = base == no_element ? no_element : at(base).next;
  if (index == no_element || at(index).next != no_element) return fail(id, READ_ERROR_ARGUMENT_COUNT);
  laterArgument(base);
  if (at(index).tag == MATHML_MN) {
    later(u"]", id);
    later(index);
    return later(u"\\sqrt[", id);
  }
  later(u"]", id);
  laterArgument(index);
  later(u"\\sqrt[", id);
}

void PresentationReaderC::readCommand(TextT command, MathmlIdT id, std::vector<MathmlIdT> const& row) {
  bool const hasOption = command.back() == u'[';
  for (std::size_t i = row.size(); i-- > 0;) {
    if (hasOption && i == 0) {
      later(u"]", id);
      later(row[i], TASK_BARE);
    } else {
      laterArgument(row[i]);
    }
  }
  later(command, id);
}

// ---- Scripts ----------------------------------------------------------------------------------------------

void PresentationReaderC::readScripts(MathmlIdT id) {
  MathmlIdT parts[3] = {no_element, no_element, no_element};
  std::size_t count = 0;
  for (MathmlIdT child = at(id).first; child != no_element; child = at(child).next) {
    if (count < 3) parts[count] = child;
    ++count;
  }
  MathmlTagE const tag = at(id).tag;
  bool const isPair = tag == MATHML_MSUBSUP || tag == MATHML_MUNDEROVER;
  if (count != (isPair ? 3u : 2u)) return fail(id, READ_ERROR_ARGUMENT_COUNT);
  if (tag == MATHML_MOVER) {
    MathmlIdT const above = coreOf(parts[1]);
    AccentS const* const accent = isToken(at(above).tag) ? findAccentSign(tree_.text(above)) : nullptr;
    if (accent) {
      laterArgument(parts[0]);
      return later(accent->command, id);
    }
  }
  bool const isUpper = tag == MATHML_MSUP || tag == MATHML_MOVER;
  laterScripts(parts[0], isUpper ? no_element : parts[1],
               isPair    ? parts[2]
               : isUpper ? parts[1]
                         : no_element);
}

void PresentationReaderC::laterScripts(MathmlIdT base, MathmlIdT lower, MathmlIdT upper) {
  if (upper != no_element && !isSpace(upper)) laterUpper(upper);
  if (lower != no_element && !isSpace(lower)) laterScript(u"_{", lower);
  laterBase(base);
}

void PresentationReaderC::laterScript(TextT sign, MathmlIdT id) {
  bool const isDouble = tree_.attribute(id, u"data-brackets") == u"braces";
  later(isDouble ? u"}}" : u"}", id);
  later(id, TASK_BARE);
  if (isDouble) later(u"{", id);
  later(sign, id);
}

void PresentationReaderC::laterUpper(MathmlIdT id) {
  MathmlIdT const core = coreOf(id);
  if (isToken(at(core).tag)) {
    TextT const text = tree_.text(core);
    if (at(core).tag != MATHML_MN && (text == u"∘" || text == u"°" || text == u"º"))
      return later(u"^{\\circ}", id);
    if (std::size_t const primes = countPrimesOf(core); primes > 0) return laterPrimes(primes, core);
  } else if (isRow(core)) {
    // Primes come before an exponent.
    std::vector<MathmlIdT> const row = childrenOf(core);
    std::size_t primes = 0;
    std::size_t first = 0;
    for (; first < row.size() && countPrimesOf(row[first]) > 0; ++first) primes += countPrimesOf(row[first]);
    if (primes > 0) {
      if (first < row.size()) {
        later(u"}", id);
        for (std::size_t i = row.size(); i-- > first;) later(row[i]);
        later(u"^{", id);
      }
      return laterPrimes(primes, core);
    }
  }
  laterScript(u"^{", id);
}

void PresentationReaderC::laterPrimes(std::size_t count, MathmlIdT id) {
  constexpr TextT primes = u"''''''''''''''''";
  for (; count > primes.size(); count -= primes.size()) later(primes, id);
  later(primes.substr(0, count), id);
}

// What the base is decides whether braces would change its meaning.
void PresentationReaderC::laterBase(MathmlIdT id) {
  if (isSpace(id)) return;
  MathmlIdT const core = coreOf(id);
  MathmlTagE const tag = at(core).tag;
  if (isToken(tag)) {
    bool const isSimple = tag == MATHML_MN || (tag == MATHML_MI && tree_.text(core).size() == 1);
    // A name with an index of its own takes a further one only from outside of braces.
    bool const hasIndex = tag == MATHML_MTEXT && tree_.text(core).find(u'_') != TextT::npos;
    bool const isBraced = hasIndex || (core != id && isSimple && asBar(tree_.text(core)) == u'\0');
    return isBraced ? laterArgument(core) : later(core);
  }
  if (isRow(core)) {
    std::vector<MathmlIdT> const row = childrenOf(core);
    if (row.size() == 2 && isSign(row[1], u"\u2061")) return later(row[0]);
    bool const isWord = row.size() > 1 && countUpright(row, 0) == row.size();
    bool const isBare =
        isFenced(row) || isHalfFenced(row) || tree_.attribute(core, u"data-brackets") == u"kept" || isWord;
    return isBare ? later(core, TASK_BARE) : laterArgument(core);
  }
  bool const isScripted = tag == MATHML_MSUP || tag == MATHML_MSUBSUP;
  if ((isScripted || tag == MATHML_MSUB) && at(core).first == no_element) return later(core);
  MathmlIdT last = isScripted ? at(core).first : no_element;
  while (last != no_element && at(last).next != no_element) last = at(last).next;
  bool const hasPrimes = last != no_element && countPrimesOf(coreOf(last)) > 0;
  // Bounds of a sum may be in elements of their own.
  MathmlIdT const innermost = isScripted || tag == MATHML_MSUB ? coreOf(at(core).first) : core;
  if (at(innermost).tag == MATHML_MO) return later(core);
  bool const isFraction = tag == MATHML_MFRAC || tag == MATHML_MTABLE || tag == MATHML_MSUB || isScripted;
  return isFraction && !hasPrimes ? laterArgument(core) : later(core);
}

void PresentationReaderC::readMultiscripts(MathmlIdT id) {
  MathmlIdT const base = at(id).first;
  MathmlIdT const lower = base == no_element ? no_element : at(base).next;
  MathmlIdT const upper = lower == no_element ? no_element : at(lower).next;
  if (base == no_element) return fail(id, READ_ERROR_ARGUMENT_COUNT);
  if (lower != no_element && (upper == no_element || at(upper).next != no_element))
    return fail(id, READ_ERROR_MISPLACED);
  laterScripts(base, lower, upper);
}

// ---- Brackets and tables ----------------------------------------------------------------------------------

void PresentationReaderC::readFenced(MathmlIdT id) {
  auto const attribute = [&](TextT name, TextT value) {
    return tree_.hasAttribute(id, name) ? tree_.attribute(id, name) : value;
  };
  TextT const open = attribute(u"open", u"(");
  TextT const close = attribute(u"close", u")");
  TextT const separators = attribute(u"separators", u",");
  std::vector<MathmlIdT> const row = childrenOf(id);
  FenceS const* const fence = open.size() == 1 ? findFenceSign(open[0]) : nullptr;
  bool const fits = fence && open[0] == fence->openSign && close.size() == 1 && close[0] == fence->closeSign;
  if (row.size() == 1) {
    MathmlIdT const core = coreOf(row[0]);
    bool const isCases = open == u"{" && close.empty();
    if (at(core).tag == MATHML_MTABLE && (isCases || (fits && !fence->environment.empty())))
      return readTable(core, isCases ? TextT(u"cases") : fence->environment);
    if (fits && open == u"(" && isAtop(core)) return later(core);
  }
  bool const isPlain = open == u"(" && close == u")";
  std::vector<std::size_t> places;  // of the separators
  for (std::size_t i = 0; i < separators.size() && places.size() < row.size(); ++i) {
    if (separators[i] != u' ') places.push_back(i);
  }
  laterDelimiter(isPlain ? u"" : u"\\right", close, id);
  for (std::size_t i = row.size(); i-- > 0;) {
    later(row[i], row.size() > 1 ? TASK_ELEMENT : TASK_BARE);
    if (i > 0 && !places.empty()) later(separators.substr(places[std::min(i, places.size()) - 1], 1), id);
  }
  laterDelimiter(isPlain ? u"" : u"\\left", open, id);
}

void PresentationReaderC::laterDelimiter(TextT side, TextT delimiter, MathmlIdT id) {
  TextT const command = findSignCommand(delimiter);
  char16_t const bar = asBar(delimiter);
  later(delimiter.empty() ? TextT(u".")
        : bar == u'|'     ? TextT(u"|")
        : bar == u'‖'     ? TextT(u"\\|")
        : command.empty() ? delimiter
                          : command,
        id);
  later(side, id);
}

// A table of one row without delimiters is a formula whose parts are aligned.
void PresentationReaderC::readTable(MathmlIdT id, TextT environment) {
  std::vector<MathmlIdT> const rows = childrenOf(id);
  bool const isLine = environment.empty() && rows.size() == 1;
  std::size_t const end = tasks_.size();
  TextT const name = environment.empty() ? TextT(u"matrix") : environment;
  if (!isLine) {
    later(u"\\begin{", id);
    later(name, id);
    later(u"}", id);
  }
  for (std::size_t i = 0; i < rows.size(); ++i) {
    MathmlTagE const tag = at(rows[i]).tag;
    if (tag != MATHML_MTR && tag != MATHML_MLABELEDTR) return fail(rows[i], READ_ERROR_UNKNOWN_ELEMENT);
    if (i > 0) later(u"\\\\", rows[i]);
    MathmlIdT cell = at(rows[i]).first;
    if (tag == MATHML_MLABELEDTR && cell != no_element) cell = at(cell).next;
    for (bool isFirst = true; cell != no_element; cell = at(cell).next, isFirst = false) {
      if (!isFirst && !isLine) later(u"&", cell);
      later(cell, TASK_BARE);
    }
  }
  if (!isLine) {
    later(u"\\end{", id);
    later(name, id);
    later(u"}", id);
  }
  std::reverse(tasks_.begin() + static_cast<std::ptrdiff_t>(end), tasks_.end());
}

void PresentationReaderC::readEnclosed(MathmlIdT id) {
  TextT const notation = tree_.attribute(id, u"notation");
  if (notation.find(u"strike") != TextT::npos) return fail(id, READ_ERROR_MISPLACED);
  TextT const command = notation == u"radical" ? TextT(u"\\sqrt{")
                        : notation == u"top"   ? TextT(u"\\overline{")
                                               : TextT();
  if (!command.empty()) later(u"}", id);
  later(id, TASK_ROW);
  later(command, id);
}

}  // namespace zolt::mathml::detail
