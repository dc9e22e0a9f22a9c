#include "bench/expressions.h"

namespace zolt::bench {

namespace {

using oss::wstring;

wstring leafName(long i) {
  static constexpr char16_t const* names[] = {u"a", u"b", u"x", u"y", u"12", u"3.75", u"alpha", u"n"};
  return names[i % 8];
}

// Each term has ten leaves.
wstring makeTerm(long i) {
  wstring const a = leafName(i);
  wstring const b = leafName(i + 3);
  switch (i % 4) {
    case 0:
      return u"/(+(^(" + a + u",2),*(2," + b + u")),sqrt(+(*(4,^(x,2)),-(*(3,c),k))))";
    case 1:
      return u"integral(0,+(" + a + u",1),*(sin(*(omega,t)),^(t,/(1,n))),/(t," + b + u"))";
    case 2:
      return u"sum(k,1,n,/(^(" + a + u",k),!(k)))";
    default:
      return u"*(log(+(" + a + u",1),10),abs(-(f(x,y,z)," + b + u")))";
  }
}

void appendBalanced(wstring& out, long leaves, long level) {
  if (leaves <= 1) {
    out += leafName(leaves + level);
    return;
  }
  if (level % 5 == 4) {
    out += u"sqrt(";
    appendBalanced(out, leaves, level + 1);
  } else {
    static constexpr char16_t const* names[] = {u"+(", u"/(", u"^(", u"*("};
    out += names[level % 5];
    appendBalanced(out, leaves - leaves / 2, level + 1);
    out += u',';
    appendBalanced(out, leaves / 2, level + 1);
  }
  out += u')';
}

}  // namespace

wstring makePrefix(ShapeE shape, long leaves) {
  if (shape == ShapeE::constructs) {
    wstring out;
    appendBalanced(out, leaves, 0);
    return out;
  }
  bool const flat = shape == ShapeE::flat_sum;
  long const terms = flat ? leaves : (leaves + 9) / 10;
  wstring out;
  for (long i = 1; i < terms; ++i) out += u"+(";
  for (long i = 0; i < terms; ++i) {
    if (i > 0) out += u',';
    out += flat ? leafName(i) : makeTerm(i);
    if (i > 0) out += u')';
  }
  return out;
}

char const* nameOf(ShapeE shape) {
  switch (shape) {
    case ShapeE::flat_sum:
      return "flat_sum";
    case ShapeE::constructs:
      return "constructs";
    case ShapeE::mix:
      return "mix";
  }
  return "";
}

}  // namespace zolt::bench
