#include "zolt/mathml/mathml.h"

#include <algorithm>
#include <utility>

#include "zolt/exchange/latex.h"
#include "zolt/mathml/detail/content_reader.h"
#include "zolt/mathml/detail/content_writer.h"
#include "zolt/mathml/detail/presentation_reader.h"
#include "zolt/mathml/detail/presentation_writer.h"
#include "zolt/mathml/detail/xml_builder.h"

namespace zolt::mathml {

using namespace math::common;

namespace {

/// The element that decides which kind of MathML it is.
MathmlIdT findContents(MathmlTreeC const& tree) {
  MathmlIdT id = MathmlTreeC::root;
  for (;;) {
    MathmlElementS const& element = tree.cref(id);
    bool const isWrapper = element.tag == MATHML_MATH || element.tag == MATHML_SEMANTICS ||
                           element.tag == MATHML_MROW || element.tag == MATHML_MSTYLE;
    if (!isWrapper || element.first == no_element) return id;
    id = element.first;
  }
}

PointerTC<AlgebraicExpressionC> fail(MathmlTreeC const& tree, MathmlIdT first, MathmlIdT last,
                                     ReadErrorE cause, ReadErrorS* error) {
  if (!error) return nullptr;
  std::size_t const begin = tree.cref(first).begin;
  std::size_t const end = std::max(tree.cref(first).end, tree.cref(last).end);
  *error = {cause, static_cast<unsigned long>(begin), static_cast<unsigned long>(end),
            describe(cause) + u", in " + tree.path(first)};
  return nullptr;
}

PointerTC<AlgebraicExpressionC> readPresentation(MathmlTreeC const& tree, PointerTC<CASSessionBC> session,
                                                 ReadErrorS* error) {
  detail::PresentationReaderC reader(tree);
  if (!reader.read(MathmlTreeC::root)) {
    auto const& fault = reader.crefFault();
    return fail(tree, fault.element, fault.element, fault.cause, error);
  }
  ReadErrorS inner;
  auto expression = exchange::fromLatex(reader.crefLatex(), std::move(session), &inner);
  if (expression) return expression;
  MathmlIdT const first = reader.elementAt(inner.begin);
  MathmlIdT const last = inner.end > inner.begin ? reader.elementAt(inner.end - 1) : first;
  ReadErrorE const cause = inner.cause == READ_ERROR_UNKNOWN_COMMAND ? READ_ERROR_BAD_CHARACTER : inner.cause;
  return fail(tree, first, last, cause, error);
}

wstring inMath(detail::XmlBuilderC& builder, detail::XmlBuilderC::IdT formula) {
  auto const math = builder.addElement(u"math", &formula, 1);
  // The attribute that is added last comes first.
  builder.addAttribute(math, u"display", u"block");
  builder.addAttribute(math, u"xmlns", u"http://www.w3.org/1998/Math/MathML");
  return builder.write(math);
}

}  // namespace

PointerTC<AlgebraicExpressionC> fromMathml(MathmlTreeC const& tree, PointerTC<CASSessionBC> session,
                                           ReadErrorS* error) {
  MathmlIdT const contents = findContents(tree);
  if (!detail::ContentReaderC::isContent(tree, contents))
    return readPresentation(tree, std::move(session), error);
  detail::ContentReaderC reader(tree);
  auto node = reader.read(MathmlTreeC::root);
  if (node) return new AlgebraicExpressionC(std::move(node), std::move(session));
  return fail(tree, reader.getFaultElement(), reader.getFaultElement(), reader.getFault(), error);
}

wstring toMathml(AlgebraicExpressionC const& expression, MathmlAnnotationE annotation) {
  if (!expression.getNode()) return {};
  detail::XmlBuilderC builder;
  wstring const latex = exchange::toMarkedLatex(expression);
  auto formula = detail::PresentationWriterC(latex, builder).write();
  if (annotation == MATHML_ANNOTATED) {
    auto const source = builder.addToken(u"annotation", exchange::toLatex(expression));
    builder.addAttribute(source, u"encoding", u"application/x-tex");
    detail::XmlBuilderC::IdT const parts[] = {formula, source};
    formula = builder.addElement(u"semantics", parts, 2);
  }
  return inMath(builder, formula);
}

wstring toContentMathml(AlgebraicExpressionC const& expression) {
  auto const node = expression.getNode();
  if (!node) return {};
  detail::XmlBuilderC builder;
  return inMath(builder, detail::ContentWriterC(builder).write(*node));
}

}  // namespace zolt::mathml
