#pragma once

#include <vector>

#include "zolt/oss/wstring.h"

namespace zolt::math::ved {

using oss::wstring;

/// What people read and type of an operator. Palettes and the rules of typing use only this record, so that a
/// host's own operator with a record is treated like a standard one. Every field may be empty.
struct OperatorWordsS {
  /// A name that becomes the construct when "(" is typed after it. "_" is an underscore after any name, which
  /// becomes the first argument, as in "a_(i+1)".
  struct NameS {
    wstring name;
    wstring second;  ///< the text for the row of the second argument: "3" for "cbrt"; may be empty
  };

  // In palettes. Groups and their entries come in the order in which the operators were registered.
  wstring group;     ///< title of its group; empty: palettes leave the operator out
  wstring title;     ///< what it is, in small letters: "square root"
  wstring label;     ///< a few characters for a button that shows no picture; empty: the operator's text
  wstring shortcut;  ///< what is typed for it; empty: its name, with "(" when arguments go between brackets
  std::vector<wstring> aliases;  ///< further names by which people look for it: "leq", "cdot"

  // While typing. Where several operators claim the same text, the last registered one gets it.
  std::vector<NameS> names;  ///< besides the operator's own name
  /// A construct that is typed by that other one's name with its own number of arguments: "int(f,x)" is the
  /// integral of the name, but of two arguments. It takes the other's place once they are counted.
  wstring sharedName;
  /// What its command becomes before square brackets, which then hold the first row: "\sqrt[3]{x}".
  wstring indexedName;
  wstring signs;                  ///< characters each of which inserts it: "√"
  std::vector<wstring> signRuns;  ///< signs of a text, as the tree has them, that become it: "!="
  char16_t closingSign = u'\0';   ///< leads out of the construct from the end of a filled row: "⌋"
  /// A construct that becomes this one where all it holds is another of its kind and their closing signs are
  /// typed one after the other: the two absolute values in "||x||" are a norm.
  wstring doubledName;
  unsigned long valueRow = 0;  ///< row that the construct shows a sign before, to which that sign leads from
                               ///< the row before it; 0: none
  char16_t valueSign = u'=';   ///< that sign
  /// Of a big sign, as "∑" or "lim": how many of the rows that are filled first are below it; 0: none. Signs
  /// lead through the rows of "∑_(k=1)^n k" as in text.
  unsigned long lowerRows = 0;
  bool hasUpperRow = false;  ///< the row that is filled after these is above it
  /// The rows in the order in which a person fills them, where that is not the order of the arguments. Since
  /// its own name with the arguments means the expression, only `names` then become the construct.
  std::vector<unsigned long> typedRows;

  /// A sign that, typed in one of the construct's rows and outside brackets there, inserts another operator
  /// instead of itself, where that operator applies: "," and ";" in a matrix, whose operators add cells.
  /// U+0008 is the key Backspace or Delete, which takes away what is in no row: the side of a limit.
  struct InsideSignS {
    char16_t sign;
    wstring name;  ///< of the operator
  };
  std::vector<InsideSignS> insideSigns;
};

}  // namespace zolt::math::ved
