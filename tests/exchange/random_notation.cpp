#include "tests/exchange/random_notation.h"

#include <utility>
#include <vector>

#include "zolt/algexpr/make_node.h"

namespace zolt::tests {

using oss::wstring;

namespace {

struct ShapeS {
  char16_t const* name;
  unsigned arity;  // 0: any
};

// Every operator that a notation has a form for, and some that none has.
constexpr ShapeS shapes[] = {{u"+", 2},         {u"-", 2},        {u"*", 2},        {u"*", 2},
                             {u"/", 2},         {u"^", 2},        {u"mod", 2},      {u"_neg", 1},
                             {u"_pos", 1},      {u"!", 1},        {u"_deg", 1},     {u"=", 2},
                             {u"<=", 2},        {u"not", 1},      {u"and", 2},      {u":=", 2},
                             {u"_quietpos", 1}, {u"sqrt", 1},     {u"nthroot", 2},  {u"abs", 1},
                             {u"norm", 1},      {u"sin", 1},      {u"asin", 1},     {u"log", 2},
                             {u"log10", 1},     {u"max", 0},      {u"diff", 2},     {u"diffn", 3},
                             {u"pdiff", 2},     {u"pdiffn", 3},   {u"integral", 4}, {u"antiderivative", 2},
                             {u"sum", 4},       {u"product", 4},  {u"limit", 3},    {u"limit", 4},
                             {u"where", 3},     {u"binomial", 2}, {u"index", 2},    {u"index", 3},
                             {u"conj", 1},      {u"vec", 1},      {u"hat", 1},      {u"dot", 1},
                             {u"matrix", 0},    {u"det", 0},      {u"cases", 0},    {u"set", 0},
                             {u"interval", 4},  {u"list", 0},     {u"Limits", 3},   {u"Open", 1},
                             {u"Tuple", 2},     {u"Add", 2},      {u"Function", 2}, {u"f", 0},
                             {u"zeta", 1}};
constexpr char16_t const* leaves[] = {
    u"x", u"y",   u"i", u"d",  u"f",  u"x_1", u"n_max", u"θ",      u"_PI", u"∞",  u"∂",
    u"∇", u"1",   u"0", u"−1", u"2",  u"10",  u"2.5",   u"1e−3",   u"f′",  u"if", u"a-b",
    u"E", u"and", u"𝑎", u"ℝ",  u"pi", u"Pi",  u"Add",   u"zolt:x", u"'q'", u"\"", u"Nothing"};

}  // namespace

RandomNotationC::NodeT RandomNotationC::make(unsigned size) {
  if (size <= 1) return leaf();
  ShapeS const shape = shapes[below(std::size(shapes))];
  unsigned const arity = shape.arity == 0 || below(20) == 0 ? 1 + below(3) : shape.arity;
  wstring const name = shape.name;
  bool const isTable = (name == u"matrix" || name == u"det" || name == u"cases") && below(8) > 0;
  unsigned const columns = name == u"cases" ? 2 : 1 + below(3);
  std::vector<NodeT> operands;
  unsigned left = size - 1;
  for (unsigned i = 0; i < arity; ++i) {
    unsigned const share = i + 1 == arity ? left : below(left + 1);
    left -= share;
    operands.push_back(isTable ? row(columns, share) : make(share));
  }
  // Where a name or one of few numbers makes the form.
  auto const put = [&](std::size_t at, wstring const& text) {
    if (at < operands.size() && below(8) > 0) operands[at] = node(text);
  };
  if (name == u"sum" || name == u"product") put(0, u"k");
  if (name == u"integral") put(3, u"x");
  if (name.find(u"diff") != wstring::npos || name == u"limit" || name == u"where" ||
      name == u"antiderivative")
    put(1, u"x");
  if (name == u"interval") put(2, below(2) > 0 ? u"1" : u"0");
  if (name == u"interval") put(3, below(2) > 0 ? u"1" : u"0");
  if ((name == u"diffn" || name == u"pdiffn") && below(2) > 0) put(2, below(2) > 0 ? u"r" : u"o");
  if (name == u"limit") put(3, below(2) > 0 ? u"1" : u"−1");
  return math::algexpr::makeFunction(name, std::move(operands));
}

RandomNotationC::NodeT RandomNotationC::node(wstring const& text) {
  NodeT const number = math::algexpr::makeNumber(text);
  return number ? number : math::algexpr::makeNamed(text);
}

RandomNotationC::NodeT RandomNotationC::leaf() { return node(leaves[below(std::size(leaves))]); }

RandomNotationC::NodeT RandomNotationC::row(unsigned columns, unsigned size) {
  std::vector<NodeT> cells;
  for (unsigned i = 0; i < columns; ++i) cells.push_back(make(size / columns));
  return math::algexpr::makeFunction(u"list", std::move(cells));
}

}  // namespace zolt::tests
