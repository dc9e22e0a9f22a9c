#include "zolt/exchange/detail/latex_words.h"

#include <iterator>

namespace zolt::exchange::detail {

namespace {

struct WordsS {
  LatexWordE meaning;
  std::u16string_view words;
};

constexpr WordsS words[] = {
    {LATEX_WORD_NOTHING, u"\\, \\! \\: \\; \\> \\  \\/"},
    {LATEX_WORD_NOTHING, u"\\space \\quad \\qquad \\enspace \\enskip \\thinspace \\medspace \\thickspace"},
    {LATEX_WORD_NOTHING,
     u"\\negthinspace \\negmedspace \\negthickspace \\nobreakspace \\nobreak \\allowbreak"},
    {LATEX_WORD_NOTHING, u"\\displaystyle \\textstyle \\scriptstyle \\scriptscriptstyle \\limits \\nolimits"},
    {LATEX_WORD_NOTHING, u"\\displaylimits \\mathstrut \\strut \\nonumber \\notag \\rm \\it \\bf \\sf \\cal"},
    {LATEX_WORD_NOTHING,
     u"\\mathbf \\mathsf \\mathtt \\mathcal \\mathscr \\mathfrak \\mathnormal \\boldsymbol"},
    {LATEX_WORD_NOTHING, u"\\bm \\pmb \\boldmath \\mathbin \\mathrel \\mathopen \\mathclose"},
    {LATEX_WORD_NOTHING, u"\\mathpunct \\mathinner \\ensuremath \\boxed \\smash \\middle \\hline"},
    {LATEX_WORD_SKIPPED,
     u"\\hspace \\hspace* \\kern \\mkern \\hskip \\mskip \\phantom \\hphantom \\vphantom"},
    {LATEX_WORD_SKIPPED, u"\\color \\textcolor \\label \\tag"},
    {LATEX_WORD_SIZE, u"\\big \\Big \\bigg \\Bigg \\bigm \\Bigm \\biggm \\Biggm"},
    {LATEX_WORD_LEFT, u"\\left \\bigl \\Bigl \\biggl \\Biggl"},
    {LATEX_WORD_RIGHT, u"\\right \\bigr \\Bigr \\biggr \\Biggr"},
    {LATEX_WORD_NAME, u"\\mathrm \\mathit \\mathup \\textrm \\textit \\textup \\textnormal"},
    {LATEX_WORD_OPERATOR, u"\\mathop"},
    {LATEX_WORD_FUNCTION, u"\\operatorname \\operatorname*"},
    {LATEX_WORD_TEXT, u"\\text \\mbox \\hbox"},
    {LATEX_WORD_DOUBLE_STRUCK, u"\\mathbb"},
    {LATEX_WORD_DELIMITER,
     u"\\{ \\} \\| \\vert \\lvert \\rvert \\Vert \\lVert \\rVert \\lbrace \\rbrace \\lbrack"},
    {LATEX_WORD_DELIMITER, u"\\rbrack \\lparen \\rparen \\lfloor \\rfloor \\lceil \\rceil"},
    {LATEX_WORD_BEGIN, u"\\begin"},
    {LATEX_WORD_END, u"\\end"},
    {LATEX_WORD_ROW, u"\\\\ \\cr"},
    {LATEX_WORD_MEANINGLESS,
     u"\\dots \\ldots \\cdots \\vdots \\ddots \\dotsb \\dotsc \\dotsi \\dotsm \\dotso"},
    {LATEX_WORD_MEANINGLESS,
     u"\\pmod \\pod \\oint \\oiint \\mid \\tilde \\widetilde \\ddot \\dddot \\breve \\check \\acute"},
    {LATEX_WORD_MEANINGLESS,
     u"\\grave \\underline \\underbrace \\overbrace \\overset \\underset \\stackrel \\xrightarrow"},
    {LATEX_WORD_MEANINGLESS,
     u"\\substack \\limsup \\liminf \\bigcup \\bigcap \\bigoplus \\bigotimes \\coprod \\oplus"},
    {LATEX_WORD_MEANINGLESS,
     u"\\otimes \\sim \\simeq \\cong \\forall \\exists \\dagger \\top \\bot \\circ \\star \\bullet"}};

struct DelimiterS {
  std::u16string_view command;
  char16_t sign;
  LatexSideE side = LATEX_SIDE_ANY;
};

constexpr DelimiterS delimiters[] = {{u"\\{", u'{'},
                                     {u"\\}", u'}'},
                                     {u"\\|", u'‖'},
                                     {u"\\vert", u'|'},
                                     {u"\\Vert", u'‖'},
                                     {u"\\lbrace", u'{'},
                                     {u"\\rbrace", u'}'},
                                     {u"\\lbrack", u'['},
                                     {u"\\rbrack", u']'},
                                     {u"\\lparen", u'('},
                                     {u"\\rparen", u')'},
                                     {u"\\lfloor", u'⌊'},
                                     {u"\\rfloor", u'⌋'},
                                     {u"\\lceil", u'⌈'},
                                     {u"\\rceil", u'⌉'},
                                     {u"\\lvert", u'|', LATEX_SIDE_LEFT},
                                     {u"\\rvert", u'|', LATEX_SIDE_RIGHT},
                                     {u"\\lVert", u'‖', LATEX_SIDE_LEFT},
                                     {u"\\rVert", u'‖', LATEX_SIDE_RIGHT}};

DelimiterS const* findDelimiterEntry(std::u16string_view command) {
  auto const* const found = std::find_if(std::begin(delimiters), std::end(delimiters),
                                         [&](DelimiterS const& entry) { return entry.command == command; });
  return found == std::end(delimiters) ? nullptr : found;
}

}  // namespace

std::vector<LatexWordS> const& latexWords() {
  static std::vector<LatexWordS> const sorted = [] {
    std::vector<LatexWordS> all;
    for (WordsS const& group : words) {
      forEachLatexWord(group.words, [&](std::u16string_view text) { all.push_back({text, group.meaning}); });
    }
    std::sort(all.begin(), all.end(), [](auto const& a, auto const& b) { return a.text < b.text; });
    return all;
  }();
  return sorted;
}

LatexWordE findLatexWord(std::u16string_view command) {
  std::vector<LatexWordS> const& sorted = latexWords();
  auto const found = std::lower_bound(sorted.begin(), sorted.end(), command,
                                      [](LatexWordS const& entry, auto key) { return entry.text < key; });
  return found != sorted.end() && found->text == command ? found->meaning : LATEX_WORD_UNKNOWN;
}

char16_t findDelimiter(std::u16string_view command) {
  DelimiterS const* const found = findDelimiterEntry(command);
  return found ? found->sign : u'\0';
}

LatexSideE findDelimiterSide(std::u16string_view command) {
  DelimiterS const* const found = findDelimiterEntry(command);
  return found ? found->side : LATEX_SIDE_ANY;
}

}  // namespace zolt::exchange::detail
