#include "zolt/ved/parser/detail/prefix_builder.h"

#include "zolt/common/signs.h"

namespace zolt::math::ved::detail {

PrefixBuilderC::PrefixBuilderC() { parts_.reserve(16); }

PrefixBuilderC::PartT PrefixBuilderC::add(KindE kind, std::u16string_view text) {
  parts_.push_back({text, none, none, none, kind});
  size_ += text.size() + 3;
  return static_cast<PartT>(parts_.size() - 1);
}

PrefixBuilderC::PartT PrefixBuilderC::addLeaf(std::u16string_view text) { return add(KIND_LEAF, text); }

PrefixBuilderC::PartT PrefixBuilderC::addNegativeNumber(std::u16string_view digits) {
  return add(KIND_NEGATIVE_NUMBER, digits);
}

PrefixBuilderC::PartT PrefixBuilderC::addFunction(std::u16string_view name) {
  return add(KIND_FUNCTION, name);
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

void PrefixBuilderC::write(PartT part, oss::wstring& output) const {
  output.reserve(output.size() + size_);
  std::vector<PartT> open;
  for (;;) {
    PartS const& current = parts_[part];
    if (current.kind == KIND_NEGATIVE_NUMBER) output += common::minus_sign;
    output += current.text;
    if (current.kind == KIND_FUNCTION) {
      output += u'(';
      open.push_back(part);
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
      part = open.back();
      open.pop_back();
    }
  }
}

}  // namespace zolt::math::ved::detail
