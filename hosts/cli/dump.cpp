#include "hosts/cli/dump.h"

#include <utility>
#include <vector>

#include "hosts/cli/utf8_text.h"
#include "zolt/surfaces/recording/recording_graphics.h"
#include "zolt/ved/parser/lexical_analyser.h"
#include "zolt/ved/tree/node4.h"

namespace zolt::cli {

using math::ved::LexicalAnalyserC;
using math::ved::Node4C;
using oss::wstring;

namespace {

char const* describeToken(math::ved::TokenTypeE type) {
  using namespace math::ved;
  switch (type) {
    case TOKEN_END:
      return "end";
    case TOKEN_NAME:
      return "name";
    case TOKEN_OPERATOR_WORD:
      return "word";
    case TOKEN_NUMBER:
      return "number";
    case TOKEN_PI:
      return "pi";
    case TOKEN_OPEN:
      return "open";
    case TOKEN_CLOSE:
      return "close";
    case TOKEN_COMMA:
      return "comma";
    case TOKEN_PLUS:
      return "plus";
    case TOKEN_MINUS:
      return "minus";
    case TOKEN_TIMES:
      return "times";
    case TOKEN_POWER:
      return "power";
    case TOKEN_FACTORIAL:
      return "factorial";
    case TOKEN_EQUAL:
      return "equal";
    case TOKEN_NOT_EQUAL:
      return "not-equal";
    case TOKEN_LESS:
      return "less";
    case TOKEN_LESS_OR_EQUAL:
      return "less-or-equal";
    case TOKEN_GREATER:
      return "greater";
    case TOKEN_GREATER_OR_EQUAL:
      return "greater-or-equal";
    case TOKEN_STORE:
      return "store";
    case TOKEN_ASSIGNMENT:
      return "assignment";
    case TOKEN_VERBATIM:
      return "verbatim";
    case TOKEN_NUL:
      return "nul";
    case TOKEN_SIGN:
      return "sign";
  }
  return "unknown";
}

char const* describeKind(math::ved::Node4TypeE type) {
  using namespace math::ved;
  switch (type) {
    case NODE4_ROOT:
      return "root";
    case NODE4_LINE:
      return "line";
    case NODE4_TEXT:
      return "text";
    case NODE4_OPERATOR:
      return "operator";
    case NODE4_POWER:
      return "power";
    case NODE4_OPEN:
      return "open";
    case NODE4_CLOSE:
      return "close";
    case NODE4_AUTO_OPEN:
      return "auto-open";
    case NODE4_AUTO_CLOSE:
      return "auto-close";
  }
  return "unknown";
}

void appendQuoted(std::string& out, std::u16string_view text) {
  out += '"';
  for (char const c : toUtf8(text)) {
    if (c == '"' || c == '\\') out += '\\';
    out += c;
  }
  out += '"';
}

void appendNode(std::string& out, Node4C const& node, std::size_t level) {
  out.append(2 * level, ' ');
  out += describeKind(node.getType());
  if (node.getType() == math::ved::NODE4_TEXT || node.getType() == math::ved::NODE4_OPERATOR) {
    out += ' ';
    appendQuoted(out, node.crefText());
  }
  std::pair<char const*, long> const values[] = {{" dx ", node.getDX()},
                                                 {" dy ", node.getDY()},
                                                 {" width ", node.getWidth()},
                                                 {" height ", node.getHeight()},
                                                 {" midHeight ", node.getMidHeight()},
                                                 {" depth ", static_cast<long>(node.getFontDepth())}};
  for (auto const& [name, value] : values) {
    out += name;
    out += std::to_string(value);
  }
  out += '\n';
}

}  // namespace

std::string dumpTokens(wstring const& infix) {
  std::string out;
  LexicalAnalyserC lexer(infix);
  for (;; lexer.readNextToken()) {
    out += describeToken(lexer.getCurrentTokenType());
    if (!lexer.viewCurrentToken().empty()) {
      out += ' ';
      appendQuoted(out, lexer.viewCurrentToken());
    }
    unsigned int start = 0;
    unsigned int end = 0;
    lexer.getCurrentTokenPosition(start, end);
    out += ' ' + std::to_string(start) + '-' + std::to_string(end);
    if (lexer.getCurrentTokenType() == math::ved::TOKEN_END) return out;
    out += "; ";
  }
}

std::string dumpLayout(Node4C& root, math::ved::GraphicsABC const& graphics) {
  root.layout(graphics);
  std::string out;
  std::vector<std::pair<Node4C const*, std::size_t>> pending{{&root, 0}};
  while (!pending.empty()) {
    auto const [node, level] = pending.back();
    pending.pop_back();
    appendNode(out, *node, level);
    for (unsigned long i = node->numChildren(); i > 0; --i)
      pending.emplace_back(node->child(i - 1), level + 1);
  }
  return out;
}

std::string dumpDrawing(Node4C& root) {
  surfaces::RecordingGraphicsC const graphics;
  root.layout(graphics);
  root.display(graphics, 0, 0, &root);
  return graphics.getText();
}

}  // namespace zolt::cli
