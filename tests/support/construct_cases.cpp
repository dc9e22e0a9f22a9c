#include "tests/support/construct_cases.h"

#include <gtest/gtest.h>

#include "tests/support/stage.h"
#include "zolt/exchange/plain_text.h"

namespace zolt::tests {

using math::algexpr::AlgebraicExpressionC;

void checkConstructs(std::string const& path) {
  for (CaseS const& one : readCases(path)) {
    SCOPED_TRACE(one.where);
    StageC stage;
    if (one.input.compare(0, 5, "type ") == 0) {
      for (char16_t const c : fromUtf8(one.input.substr(5))) {
        bool const isBackspace = c == u'⌫';
        EXPECT_TRUE(isBackspace ? stage.refField().run(field::COMMAND_DELETE_LEFT)
                                : stage.refField().typeCharacter(c));
      }
      // Reading the expression completes a name that was typed last, so it comes before the notation.
      std::string const prefix = stage.prefix();
      EXPECT_EQ(stage.notation() + " " + prefix, one.expected);
      while (stage.refField().run(field::COMMAND_UNDO)) {
      }
      EXPECT_EQ(stage.notation(), "[\"‸\"]");
      continue;
    }
    if (one.input.compare(0, 5, "read ") == 0) {
      auto const read = exchange::fromPlainText(fromUtf8(one.input.substr(5)), nullptr);
      EXPECT_EQ(read ? toUtf8(read->toPrefixString()) : "", one.expected);
      continue;
    }
    auto const expression = AlgebraicExpressionC::fromPrefixString(fromUtf8(one.input));
    stage.refField().setExpression(expression);
    EXPECT_EQ(stage.tree(), one.expected);
    EXPECT_EQ(stage.prefix(), one.input);
    EXPECT_EQ(stage.findFault(), "");
    stage.refField().run(field::COMMAND_SELECT_ALL);
    field::ClipboardContentS const content = stage.refField().copy();
    StageC pasted;
    EXPECT_TRUE(pasted.refView().paste(content.bytes));
    EXPECT_EQ(pasted.tree(), one.expected);
    EXPECT_TRUE(pasted.refField().setNotation(stage.refField().writeNotation()));
    EXPECT_EQ(pasted.prefix(), one.input);
    auto const read = exchange::fromPlainText(exchange::toPlainText(*expression), nullptr);
    EXPECT_TRUE(read && read->equals(*expression)) << toUtf8(exchange::toPlainText(*expression));
  }
}

}  // namespace zolt::tests
