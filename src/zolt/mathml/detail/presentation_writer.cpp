#include "zolt/mathml/detail/presentation_writer.h"

#include <algorithm>
#include <cstddef>
#include <initializer_list>

#include "zolt/common/signs.h"
#include "zolt/exchange/latex.h"
#include "zolt/mathml/detail/presentation_table.h"

namespace zolt::mathml::detail {

using namespace math::common;
using TextT = std::u16string_view;

namespace {

constexpr char16_t opening_brace = u'{';
constexpr char16_t closing_brace = u'}';
constexpr char16_t apply_sign = u'\u2061';

/// Whether a character is a name rather than an operator.
bool isNameSign(TextT sign) {
  char16_t const c = sign[0];
  return sign.size() > 1 || isAsciiLetter(c) || (c >= u'\u0370' && c <= u'\u03FF') ||
         (c >= u'\u2100' && c <= u'\u214F') || TextT(u"∞∅∂∇ıȷ").find(c) != TextT::npos;
}

bool isAnyOf(TextT text, std::initializer_list<TextT> list) {
  return std::find(list.begin(), list.end(), text) != list.end();
}

}  // namespace

PresentationWriterC::IdT PresentationWriterC::write() {
  begin(FRAME_GROUP);
  while (position_ < latex_.size()) {
    char16_t const c = latex_[position_];
    if (isDigit(c) || c == u'.') {
      readNumber();
    } else if (c == u'\\') {
      readCommand();
    } else if (c == u'^' || c == u'_') {
      ++position_;
      beginScript(c);
      continue;
    } else if (c == u'\'') {
      readPrimes();
      continue;
    } else {
      ++position_;
      readSign(c);
    }
    scripted_ = scripted_ && c == closing_brace;
  }
  while (frames_.size() > 1) put(takeRow());
  return takeRow();
}

// ---- Reading ----------------------------------------------------------------------------------------------

bool PresentationWriterC::skip(TextT text) {
  if (latex_.compare(position_, text.size(), text) != 0) return false;
  position_ += text.size();
  return true;
}

TextT PresentationWriterC::readWord() {
  std::size_t const begin = position_++;
  while (isAsciiLetter(peek())) ++position_;
  if (position_ == begin + 1) ++position_;
  return latex_.substr(begin, position_ - begin);
}

// The text up to the brace that closes the one that is next.
TextT PresentationWriterC::readBraced() {
  std::size_t const begin = ++position_;
  for (int depth = 1; position_ < latex_.size(); ++position_) {
    char16_t const c = latex_[position_];
    if (c == u'\\') {
      ++position_;
    } else if (c == opening_brace) {
      ++depth;
    } else if (c == closing_brace && --depth == 0) {
      return latex_.substr(begin, position_++ - begin);
    }
  }
  return latex_.substr(begin);
}

void PresentationWriterC::readNumber() {
  std::size_t const begin = position_;
  while (isDigit(peek()) || peek() == u'.') ++position_;
  oss::wstring number(latex_.substr(begin, position_ - begin));
  for (TextT const exponent : {TextT(u"\\mathrm{e}{"), TextT(u"\\mathrm{E}{")}) {
    if (!skip(exponent)) continue;
    number += exponent[exponent.size() - 3];
    if (skip(u"{-}")) number += minus_sign;
    while (position_ < latex_.size() && peek() != closing_brace) number += latex_[position_++];
    ++position_;
  }
  putToken(u"mn", number);
}

void PresentationWriterC::readSign(char16_t c) {
  switch (c) {
    case u' ':
      return;
    case opening_brace:
      return begin(FRAME_GROUP);
    case closing_brace:
      return closeGroup();
    case u'&':
      put(takeRow(u"mtd"));
      return begin(FRAME_CELL);
    case u']':
      if (frames_.back().kind != FRAME_OPTION) break;
      return finish(takeRow());
    case u'[':
      if (frames_.back().kind != FRAME_COMMAND || frames_.back().first != operands_.size()) break;
      frames_.back().hasOption = true;
      ++frames_.back().numOperands;
      return begin(FRAME_OPTION);
    default:
      break;
  }
  TextT const sign = latex_.substr(position_ - 1, 1);
  if (findFence(sign)) return putDelimiter(sign);
  if (c == u'-') return putSign(u"−");
  if (c == u':' && skip(u"=")) return putSign(u":=");
  if (isNameSign(sign)) return putToken(u"mi", sign);
  putSign(sign);
}

void PresentationWriterC::putSign(TextT sign) { putToken(u"mo", sign); }

void PresentationWriterC::readPrimes() {
  constexpr TextT signs[] = {u"′", u"″", u"‴"};
  std::size_t count = 0;
  for (; skip(u"'"); ++count) {
  }
  IdT const primes =
      builder_.addToken(u"mo", count <= 3 ? TextT(signs[count - 1]) : oss::wstring(count, u'′'));
  FrameS frame{FRAME_SCRIPT, u"^"};
  frame.joins = scripted_;
  finishScript(frame, primes);
}

void PresentationWriterC::beginScript(char16_t sign) {
  begin(FRAME_SCRIPT, sign == u'^' ? TextT(u"^") : TextT(u"_"));
  frames_.back().joins = scripted_;
}

void PresentationWriterC::beginCommand(TextT command, std::size_t numOperands) {
  begin(FRAME_COMMAND, command);
  frames_.back().numOperands = numOperands;
}

void PresentationWriterC::readCommand() {
  TextT const command = readWord();
  if (isAnyOf(command, {u"\\,", u"\\;", u"\\:", u"\\!", u"\\ ", u"\\quad", u"\\displaystyle", u"\\left",
                        u"\\right"})) {
    bool const isSide = command == u"\\left" || command == u"\\right";
    if (isSide && skip(u".")) return putDelimiter(command);
    if (isSide && skip(u"|"))
      return putDelimiter(command == u"\\left" ? TextT(u"\\lvert") : TextT(u"\\rvert"));
    // Open ends of an interval: brackets that look to the other side.
    if (command == u"\\left" && skip(u"]")) return openFenced(command, u"]");
    if (command == u"\\right" && skip(u"[")) return closeFenced(u"[", {});
    return;
  }
  if (isAnyOf(command, {u"\\mathrm", u"\\operatorname", u"\\mathbb", u"\\text", u"\\mathbin"}))
    return readName(command);
  if (command == u"\\begin") {
    begin(FRAME_TABLE, readBraced());
    begin(FRAME_CELLS);
    begin(FRAME_CELL);
    return;
  }
  if (command == u"\\end") {
    readBraced();
    return closeTable();
  }
  if (command == u"\\\\") {
    put(takeRow(u"mtd"));
    put(takeRow(u"mtr"));
    begin(FRAME_CELLS);
    begin(FRAME_CELL);
    return;
  }
  if (findFence(command)) return putDelimiter(command);
  if (isAnyOf(command, {u"\\frac", u"\\binom"})) return beginCommand(command, 2);
  if (command == u"\\sqrt" || command == u"\\mathord" || findAccent(command)) return beginCommand(command, 1);
  oss::wstring sign = exchange::findLatexSign(command);
  if (sign.empty()) sign = findCommandSign(command);
  if (sign.empty()) {
    // A command of a host's. How many operands it has shows only in the text.
    std::size_t const after = position_;
    std::size_t numOperands = 0;
    for (; peek() == opening_brace; ++numOperands) readBraced();
    position_ = after;
    if (numOperands > 0 || peek() == u'[')
      return beginCommand(command, std::max<std::size_t>(1, numOperands));
    putToken(u"mo", command.substr(1));
    return builder_.addAttribute(operands_.back(), u"data-sign", command);
  }
  bool const isFunction = peek() == apply_sign || peek() == u'_' || peek() == u'^';
  putToken(isNameSign(sign) && (sign.size() == 1 || isFunction) ? u"mi" : u"mo", sign);
}

// A word, or a letter in an upright style.
void PresentationWriterC::readName(TextT command) {
  TextT name = readBraced();
  bool const isSign = command == u"\\mathbin";
  if (isSign && name.substr(0, 8) == u"\\mathrm{") name = name.substr(8, name.size() - 9);
  if (command == u"\\text") {
    oss::wstring const text = exchange::fromLatexText(name);
    putToken(u"mtext", text);
    if (isOnlyRoom(text) || isPunctuation(text)) builder_.addAttribute(operands_.back(), u"data-name", text);
    return;
  }
  if (name.substr(0, 6) == u"\\text{") {
    oss::wstring const text = exchange::fromLatexText(name.substr(6, name.size() - 7));
    putToken(u"mi", text);
    return builder_.addAttribute(operands_.back(), u"data-name", text);
  }
  if (command == u"\\mathbb") {
    char16_t const letter = findDoubleStruck(name[0]);
    return putToken(u"mi", {&letter, 1});
  }
  oss::wstring const letter = name[0] == u'\\' ? exchange::findLatexSign(name) : oss::wstring(name);
  putToken(isSign ? u"mo" : u"mi", letter);
  // The name of two letters would be a differential in some places.
  if (letter.size() == 2 && letter[0] == u'd') builder_.addAttribute(operands_.back(), u"data-name", letter);
  if (letter.size() == 1 && !isSign) builder_.addAttribute(operands_.back(), u"mathvariant", u"normal");
}

// ---- Rows -------------------------------------------------------------------------------------------------

void PresentationWriterC::begin(FrameE kind, TextT command) {
  frames_.push_back({kind, command, operands_.size()});
}

PresentationWriterC::IdT PresentationWriterC::takeRow(TextT tag) {
  FrameS const frame = frames_.back();
  frames_.pop_back();
  IdT const* const first = operands_.data() + frame.first;
  std::size_t const count = operands_.size() - frame.first;
  IdT const row = tag.empty() ? builder_.addRow(first, count) : builder_.addElement(tag, first, count);
  operands_.resize(frame.first);
  return row;
}

void PresentationWriterC::closeGroup() {
  bool const isOperand = frames_.size() > 1 && (frames_[frames_.size() - 2].kind == FRAME_COMMAND ||
                                                frames_[frames_.size() - 2].kind == FRAME_SCRIPT);
  // Braces that are no operand of a command are in the text for a reason.
  if (!isOperand) {
    bool const isLetter =
        operands_.size() == frames_.back().first + 1 && builder_.tag(operands_.back()) == u"mi";
    group_ = takeRow(u"mrow");
    if (isLetter) builder_.addAttribute(group_, u"data-brackets", u"braces");
    return put(group_);
  }
  // Braces in the braces of a script keep it from being a part of a name or an order.
  bool const isDouble = frames_[frames_.size() - 2].kind == FRAME_SCRIPT &&
                        operands_.size() == frames_.back().first + 1 && operands_.back() == group_;
  bool const isMarked = isDouble && builder_.tag(builder_.children(group_)[0]) == u"mi";
  if (isDouble && !isMarked) builder_.addAttribute(group_, u"data-brackets", u"braces");
  finish(takeRow());
}

void PresentationWriterC::putDelimiter(TextT delimiter) {
  FenceS const* const fence = findFence(delimiter);
  bool const closes =
      delimiter == u"\\right" || (fence && fence->close == delimiter && fence->open != delimiter);
  if (closes) return closeFenced(fence ? TextT(&fence->closeSign, 1) : TextT(), fence);
  openFenced(delimiter, fence ? TextT(&fence->openSign, 1) : TextT());
}

// Signs that are none or brackets of the other side do not show by themselves on which side they are.
void PresentationWriterC::putFence(TextT sign, TextT form, TextT turned) {
  putToken(u"mo", sign);
  if (sign.empty()) builder_.addAttribute(operands_.back(), u"fence", u"true");
  if (sign.empty() || sign == turned || asBar(sign) != u'\0')
    builder_.addAttribute(operands_.back(), u"form", form);
}

void PresentationWriterC::openFenced(TextT delimiter, TextT sign) {
  begin(FRAME_FENCED, delimiter);
  putFence(sign, u"prefix", u"]");
}

void PresentationWriterC::closeFenced(TextT sign, FenceS const* fence) {
  if (frames_.back().kind != FRAME_FENCED) return putSign(sign);
  FrameS const frame = frames_.back();
  FenceS const* const opening = findFence(frame.command);
  bool const hasIntent = fence && fence == opening && !fence->intent.empty();
  if (hasIntent) {
    IdT const* const first = operands_.data() + frame.first + 1;
    IdT const inside = builder_.addRow(first, operands_.size() - frame.first - 1);
    operands_.resize(frame.first + 1);
    put(inside);
  }
  putFence(sign, u"postfix", u"[");
  IdT const inside = operands_[operands_.size() - 2];
  IdT const row = takeRow(u"mrow");
  if (hasIntent) setIntent(row, fence->intent, {inside});
  put(row);
}

void PresentationWriterC::closeTable() {
  put(takeRow(u"mtd"));
  put(takeRow(u"mtr"));
  TextT const environment = frames_.back().command;
  IdT const table = takeRow(u"mtable");
  FenceS const* const fence = findFenceOfTable(environment);
  bool const isCases = environment == u"cases";
  if (!fence && !isCases) return put(table);
  IdT const open = builder_.addToken(u"mo", isCases ? TextT(u"{") : TextT(&fence->openSign, 1));
  IdT const close = builder_.addToken(u"mo", isCases ? TextT() : TextT(&fence->closeSign, 1));
  builder_.addAttribute(open, u"form", u"prefix");
  builder_.addAttribute(close, u"form", u"postfix");
  IdT const row = makeElement(u"mrow", {open, table, close});
  if (environment == u"vmatrix") setIntent(row, u"determinant", {table});
  put(row);
}

// ---- Operations -------------------------------------------------------------------------------------------

void PresentationWriterC::setIntent(IdT id, TextT concept, std::vector<IdT> const& arguments) {
  oss::wstring intent(concept);
  char16_t name = u'a';
  for (IdT const argument : arguments) {
    intent += name == u'a' ? u"($" : u",$";
    intent += name;
    builder_.addAttribute(argument, u"arg", {&name, 1});
    ++name;
  }
  builder_.addAttribute(id, u"intent", intent + u')');
}

void PresentationWriterC::finish(IdT operand) {
  FrameS const frame = frames_.back();
  if (frame.kind == FRAME_SCRIPT) {
    frames_.pop_back();
    return finishScript(frame, operand);
  }
  put(operand);
  if (operands_.size() - frame.first == frame.numOperands) finishCommand(frame);
}

// Gives the script to the last operand of the row.
void PresentationWriterC::finishScript(FrameS const& frame, IdT script) {
  bool const isUpper = frame.command == u"^";
  bool const hasBase = operands_.size() > frames_.back().first;
  IdT const base = hasBase ? operands_.back() : builder_.addElement(u"mrow", nullptr, 0);
  if (hasBase) operands_.pop_back();
  TextT const tag = builder_.tag(base);
  if (frame.joins && (tag == u"msub" || tag == u"munder") && isUpper) {
    std::vector<IdT> children = builder_.children(base);
    children.push_back(script);
    put(makeElement(tag == u"msub" ? u"msubsup" : u"munderover", children));
    scripted_ = false;
    return;
  }
  bool const isToken = tag == u"mo" || tag == u"mi";
  bool const hasLimits = isToken && takesLimits(builder_.text(base)) && !(isUpper && tag == u"mi");
  put(makeElement(hasLimits ? (isUpper ? u"mover" : u"munder") : (isUpper ? u"msup" : u"msub"),
                  {base, script}));
  scripted_ = true;
}

void PresentationWriterC::finishCommand(FrameS const& frame) {
  frames_.pop_back();
  std::vector<IdT> const parts(operands_.begin() + static_cast<std::ptrdiff_t>(frame.first), operands_.end());
  operands_.resize(frame.first);
  TextT const command = frame.command;
  IdT result;
  if (command == u"\\frac") {
    result = makeElement(u"mfrac", parts);
  } else if (command == u"\\sqrt") {
    result = frame.hasOption ? makeElement(u"mroot", {parts[1], parts[0]}) : makeElement(u"msqrt", parts);
  } else if (command == u"\\binom") {
    IdT const fraction = makeElement(u"mfrac", parts);
    builder_.addAttribute(fraction, u"linethickness", u"0");
    result = makeElement(u"mrow", {builder_.addToken(u"mo", u"("), fraction, builder_.addToken(u"mo", u")")});
    setIntent(result, u"binomial", parts);
  } else if (command == u"\\mathord") {
    result = parts[0];
    builder_.addAttribute(result, u"data-brackets", u"kept");
  } else if (AccentS const* const accent = findAccent(command)) {
    result = makeElement(u"mover", {parts[0], builder_.addToken(u"mo", accent->signs.substr(0, 1))});
    builder_.addAttribute(result, u"accent", u"true");
    setIntent(result, accent->intent, parts);
  } else {
    result = makeElement(u"mrow", parts);
    builder_.addAttribute(result, u"data-command",
                          frame.hasOption ? oss::wstring(command) + u'[' : oss::wstring(command));
  }
  put(result);
}

}  // namespace zolt::mathml::detail
