#include "zolt/ved/parser/detail/prefix_builder.h"

#include <algorithm>

#include "zolt/common/signs.h"
#include "zolt/ved/parser/prefix_part.h"

namespace zolt::math::ved::detail {

namespace {

// What is in an argument is in the function, too.
void include(PrefixPartS const& argument, PrefixPartS& function) {
  function.start = std::min(function.start, argument.start);
  function.end = std::max(function.end, argument.end);
}

}  // namespace

PrefixBuilderC::PartT PrefixBuilderC::add(KindE kind, std::u16string_view text, unsigned int start,
                                          unsigned int end) {
  parts_.push_back({text, none, none, none, start, end, kind});
  size_ += text.size() + 3;
  return static_cast<PartT>(parts_.size() - 1);
}

PrefixBuilderC::PartT PrefixBuilderC::addLeaf(std::u16string_view text, unsigned int start,
                                              unsigned int end) {
  return add(KIND_LEAF, text, start, end);
}

PrefixBuilderC::PartT PrefixBuilderC::addNegativeNumber(std::u16string_view digits, PartT sign,
                                                        PartT operand) {
  return add(KIND_NEGATIVE_NUMBER, digits, parts_[sign].start, parts_[operand].end);
}

PrefixBuilderC::PartT PrefixBuilderC::addFunction(std::u16string_view name, unsigned int start,
                                                  unsigned int end) {
  return add(KIND_FUNCTION, name, start, end);
}

void PrefixBuilderC::addArgument(PartT function, PartT argument) {
  PartS& part = parts_[function];
  if (part.lastArgument == none) {
    part.firstArgument = argument;
  } else {
    parts_[part.lastArgument].next = argument;
  }
  part.lastArgument = argument;
}

void PrefixBuilderC::write(PartT part, oss::wstring& output, std::vector<PrefixPartS>* written) const {
  output.reserve(output.size() + size_);
  struct OpenS {
    PartT part;
    std::size_t number;  // among what is written
  };
  std::vector<OpenS> open;
  for (;;) {
    PartS const& current = parts_[part];
    if (current.kind == KIND_NEGATIVE_NUMBER) output += common::minus_sign;
    output += current.text;
    bool const isFunction = current.kind == KIND_FUNCTION;
    if (written) {
      written->push_back({current.start, current.end, isFunction});
      if (!isFunction && !open.empty()) include(written->back(), (*written)[open.back().number]);
    }
    if (isFunction) {
      output += u'(';
      open.push_back({part, written ? written->size() - 1 : 0});
      part = current.firstArgument;
      continue;
    }
    for (;;) {
      if (open.empty()) return;
      PartT const next = parts_[part].next;
      if (next != none) {
        output += u',';
        part = next;
        break;
      }
      output += u')';
      part = open.back().part;
      std::size_t const number = open.back().number;
      open.pop_back();
      if (!written || open.empty()) continue;
      include((*written)[number], (*written)[open.back().number]);
    }
  }
}

}  // namespace zolt::math::ved::detail
