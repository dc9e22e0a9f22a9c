/* The formula field as plain C functions, for WebAssembly modules and for whatever else calls C.
 *
 * Fields are numbers. Texts and numbers travel as bridge_buffers.h says. Lengths are in units of the layout:
 * 12 are the size of the letters. A box is left, top, right, bottom. Calls with a result of 1 or 0 answer
 * whether they had an effect; without one nothing has changed. A number that is no open field has no effect.
 * No call is made back to the caller while one runs. When memory runs out, the call is taken back and has no
 * effect
 * (`zolt_take_shortage`). */
#pragma once

#include "hosts/web/bridge/bridge_buffers.h"

/* Raised whenever a call or a number below changes its meaning. */
#define ZOLT_BRIDGE_VERSION 3

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Module ---- */
int32_t zolt_version(void);
/* Once, before everything else. `extended` 0: the standard operators alone. */
int32_t zolt_start(int32_t extended);
/* Fills the table of operators, which the first call that needs it does otherwise: opening an empty field and
 * showing it does not. */
void zolt_prepare(void);
/* 1 once after memory has run out and a call was taken back. */
int32_t zolt_take_shortage(void);

/* ---- Fields ---- */
/* 0 without memory. */
int32_t zolt_open(void);
void zolt_close(int32_t field);

/* ---- Showing ---- */
/* Everything that a host paints, as 32-bit words; null for no field and without memory. The words of
 * `ZoltFrameE` come first. With right > left only what may be seen in the box is in the display list, else
 * all. It takes the request to reveal the caret. */
int32_t const* zolt_frame(int32_t field, int32_t left, int32_t top, int32_t right, int32_t bottom);
enum ZoltFrameE {
  ZOLT_FRAME_WORDS,    /* how many words there are in all */
  ZOLT_FRAME_FLAGS,    /* of ZoltFlagE */
  ZOLT_FRAME_REVISION, /* another number after every change of the formula */
  ZOLT_FRAME_HISTORY,  /* the number of the next step of the history: lower after undo */
  ZOLT_FRAME_WIDTH,
  ZOLT_FRAME_HEIGHT,
  ZOLT_FRAME_BASELINE,                         /* a float32, from the top */
  ZOLT_FRAME_CARET,                            /* a box one unit wide */
  ZOLT_FRAME_ANCHOR = ZOLT_FRAME_CARET + 4,    /* the same at the other end of the selection */
  ZOLT_FRAME_REVEAL = ZOLT_FRAME_ANCHOR + 4,   /* the box to scroll into view, if there is a request */
  ZOLT_FRAME_COMPOSED = ZOLT_FRAME_REVEAL + 4, /* the box of what an input method or a backslash composes */
  ZOLT_FRAME_BANDS = ZOLT_FRAME_COMPOSED + 4,  /* at which word the boxes of the selection begin */
  ZOLT_FRAME_NUM_BANDS,
  ZOLT_FRAME_LIST, /* at which word the display list begins; it ends with the frame */
  ZOLT_FRAME_HEAD  /* so many words come before the bands */
};
enum ZoltFlagE {
  ZOLT_FLAG_EMPTY = 1,
  ZOLT_FLAG_SELECTED = 2,
  ZOLT_FLAG_REVEAL = 4,     /* there is a request */
  ZOLT_FLAG_COMPOSES = 8,   /* text is being composed */
  ZOLT_FLAG_COMPLETES = 16, /* a list of completions is open */
  ZOLT_FLAG_EDITABLE = 32,
  ZOLT_FLAG_CAN_UNDO = 64,
  ZOLT_FLAG_CAN_REDO = 128
};
/* Of the frame that was asked for last, the words before the display list, and of the list what reaches into
 * the part between two x that must be painted anew: that from `left` to `right` (none when right < left), and
 * where list and bands differ from those of the call before. The numbers have both x; right < left: nothing
 * is to be painted. Null also when no frame has been asked for since. */
int32_t const* zolt_changes(int32_t field, int32_t left, int32_t right);
/* What ZOLT_FRAME_REVISION says, and a number that is another one after every move of the caret or of the
 * anchor. Both cost nothing. */
int32_t zolt_revision(int32_t field);
int32_t zolt_moves(int32_t field);
/* The display list is a sequence of these items. Words are integers unless marked f, which are float32. `ink`
 * is 0 for the full colour, 1 for 45 % and 2 for 16 % of it. A path is a number of words and so many of them:
 * 0 x y (to), 1 x y (line), 2 and three points (cubic curve), 3 (close), the numbers 0 to 3 being integers
 * and the coordinates f. */
enum ZoltItemE {
  ZOLT_ITEM_GLYPHS, /* face, f em, f baseline, count, then for each glyph: code point, f x */
  ZOLT_ITEM_FILL,   /* ink, path: filled by the nonzero rule */
  ZOLT_ITEM_STROKE, /* ink, f thickness, path: with round ends and joins */
  ZOLT_ITEM_RULE,   /* ink, f x1, f y1, f x2, f y2, f thickness: a bar between the centres of its ends, which
                     * are   square and half the thickness beyond these; to be aligned with the pixels */
  ZOLT_ITEM_TEXT /* f em, f x, f baseline, f width, count, then the UTF-16 units, one a word: in the font of
                    the page */
};
/* The families and styles of the faces, one text for each face: "KaTeX_Main", "KaTeX_Math italic". */
int32_t zolt_faces(void);
/* A formula in tree notation as the words of a frame, without caret: the pictures of palettes. Null when it
 * is no formula. */
int32_t const* zolt_picture(int32_t length);

/* ---- Input ---- */
/* Text from a keyboard or an input method: one character with all that typing does, or several as one step.
 */
int32_t zolt_type(int32_t field, int32_t length);
/* Shows text that is being composed, the caret in it after `caret` units; with length 0 none. */
int32_t zolt_compose(int32_t field, int32_t length, int32_t caret);
/* Commands by number (`zolt_commands`). */
int32_t zolt_run(int32_t field, int32_t command);
int32_t zolt_is_enabled(int32_t field, int32_t command);
/* When the focus is lost: a name that was just typed becomes its letter. */
void zolt_complete(int32_t field);
/* Inserts the operator of that name, a table of so many rows and columns as "matrix:3x4". */
int32_t zolt_insert(int32_t field, int32_t length);
enum ZoltPointerE { ZOLT_POINTER_DOWN, ZOLT_POINTER_MOVE, ZOLT_POINTER_UP };
/* `clicks` 2 selects the item, 3 its row, 4 all; `extend` keeps the other end of the selection. */
int32_t zolt_pointer(int32_t field, int32_t act, int32_t x, int32_t y, int32_t clicks, int32_t extend);
/* The caret's box where a press would put it, as 4 numbers; nothing moves. */
int32_t zolt_find_place(int32_t field, int32_t x, int32_t y);
/* Moves one end of the selection to the place nearest to a point: 0 the anchor, 1 the caret. */
int32_t zolt_drag_end(int32_t field, int32_t end, int32_t x, int32_t y);
/* Moves what is selected to the place nearest to a point. */
int32_t zolt_move_selection(int32_t field, int32_t x, int32_t y);
/* Why the last input was refused, once: the sentence, and `ZoltErrorE` numbers. -1: it was not. */
int32_t zolt_take_refusal(int32_t field);
enum ZoltErrorE {
  ZOLT_ERROR_CAUSE,
  ZOLT_ERROR_BEGIN,
  ZOLT_ERROR_END,
  ZOLT_ERROR_BOX,
  ZOLT_ERROR_NUMBERS = ZOLT_ERROR_BOX + 4
};

/* ---- Values ---- */
enum ZoltFormE {
  ZOLT_PLAIN,
  ZOLT_PREFIX,
  ZOLT_LATEX,
  ZOLT_MATHML,
  ZOLT_CONTENT_MATHML,
  ZOLT_WORDS, /* as it is read aloud, complete or not; read only */
  ZOLT_TREE,  /* tree notation with caret and selection, complete or not */
  ZOLT_BYTES, /* clipboard only: a unit for each byte */
  ZOLT_HTML   /* clipboard only: a copied block of cells as a table, or a page to be pasted */
};
/* The formula in that form; "" when it is empty, -1 when it is incomplete or wrong. In proportion to the
 * formula. */
int32_t zolt_get(int32_t field, int32_t form);
/* The same of the expression that this prefix text is; of words, of any expression. */
int32_t zolt_convert(int32_t length, int32_t form);
/* Shows what the text means. 1, or 2 when that is what is shown already: then nothing changes, caret and
 * history included. 0 when refused: then the sentence is in the text buffer, `zolt_text_length` units long,
 * and `ZoltErrorE` in the numbers. MathML is not text: its elements are in the numbers, and all of their
 * texts one after another in the text. */
int32_t zolt_set(int32_t field, int32_t form, int32_t length);
/* The elements of MathML, in the order of the document: `ZoltMathmlE`, how many units of text belong to it,
 * and for an attribute how many of these are its name. The text of "open" is the name of the element. */
enum ZoltMathmlE { ZOLT_MATHML_OPEN, ZOLT_MATHML_ATTRIBUTE, ZOLT_MATHML_TEXT, ZOLT_MATHML_CLOSE };
int32_t zolt_set_mathml(int32_t field, int32_t length, int32_t numbers);
/* Empties the formula. */
void zolt_clear(int32_t field);
/* The cause why the formula is no expression, 0 when it is one; sentence and numbers as above. */
int32_t zolt_diagnose(int32_t field);
/* The same, and selects the faulty part. */
int32_t zolt_check(int32_t field);
/* Selects what a node of the expression came from, by its number in prefix order. */
int32_t zolt_select_part(int32_t field, int32_t number);

/* ---- Clipboard: one for the module, which copy, cut and paste go through ---- */
/* In any form but words and tree. -1: it has none of that form. */
int32_t zolt_clipboard_get(int32_t form);
/* The text holds the forms one after another, in these lengths; 0: absent. */
void zolt_clipboard_set(int32_t plain, int32_t prefix, int32_t latex, int32_t bytes, int32_t html);
/* MathML as for `zolt_set_mathml`, in the place of the prefix. 0 when it has no meaning. */
int32_t zolt_clipboard_set_mathml(int32_t length, int32_t numbers);
/* 1: pasted; 2: typed character by character; 0: refused. */
int32_t zolt_paste(int32_t field);

/* ---- Options ---- */
void zolt_set_editable(int32_t field, int32_t editable);
/* By the names that event scripts use, such as "decimal-comma", and "powers-of-ten". */
int32_t zolt_set_option(int32_t field, int32_t length, int32_t on);
/* The names that "single-letters" leaves whole, with blanks between them. */
void zolt_set_names(int32_t field, int32_t length);
/* Constraints as text ("number or names x y"), none for a blank one. -1, or the first character that is not
 * understood. */
int32_t zolt_set_constraints(int32_t field, int32_t length);
/* How numbers that are set from now on are shown: significant digits (0: all), and the format. */
void zolt_set_numbers(int32_t field, int32_t precision, int32_t format);
/* Language 0 English, 1 German; verbosity 0 to 2. */
void zolt_set_speech(int32_t field, int32_t language, int32_t verbosity);

/* ---- Selection as data ---- */
/* The ends of the selection as numbers, which stay valid as long as the shape of the formula does: for anchor
 * and caret each the length of the path, the path, the position. Returns how many. */
int32_t zolt_get_selection(int32_t field);
int32_t zolt_set_selection(int32_t field, int32_t numbers);
/* The words of the formula; numbers: where anchor and caret are in them. */
int32_t zolt_get_words(int32_t field);
int32_t zolt_select_words(int32_t field, int32_t anchor, int32_t caret);
/* The row's text around the caret, at most `reach` units on each side, U+FFFC for a construct; numbers: where
 * anchor and caret are in it. For input methods. */
int32_t zolt_get_around(int32_t field, int32_t reach);
/* Selects from one place to another of that row, counted in such units from the caret. */
int32_t zolt_select_around(int32_t field, int32_t from, int32_t to);
/* What a listener hears since the last call; the first call says nothing, and begins to listen. Numbers: 1
 * when it is about where the caret is. */
int32_t zolt_announce(int32_t field);

/* ---- Tables for menus ---- */
/* All commands, by number: name, title, help, keys ("Ctrl+Y, Ctrl+Shift+Z"), and "1" when it can change the
 * formula. */
int32_t zolt_commands(void);
/* By name, or by a chord such as "Ctrl+Shift+Z". -1: none. */
int32_t zolt_find_command(int32_t length);
int32_t zolt_find_keys(int32_t length);
/* The palette. Numbers: how many groups there are, and how many entries each has. Texts: the title of each
 * group, followed by its entries: title, label, shortcut, tool tip, keywords (a blank between them), picture,
 * and of a table that comes in any size its operator, for `zolt_insert`. Kept by the module. */
int32_t zolt_palette(void);
int32_t zolt_run_entry(int32_t field, int32_t group, int32_t entry);
/* A number for each entry, those of all groups in a row: whether it could be inserted now. Returns how many.
 */
int32_t zolt_enabled_entries(int32_t field);
/* The same: how well it answers a search, 0 (not) to 3. */
int32_t zolt_search(int32_t length);
/* The list of completions. Numbers: 0 closed, 1 after a backslash, 2 of letters in the formula; the number of
 * the current entry, or -1; the box to show it at; how many entries. Texts: what was typed, then for each
 * entry: title, label, shortcut, picture. */
int32_t zolt_completion(int32_t field);
/* Opens it for the letters before the caret, after a pause in typing. */
int32_t zolt_suggest(int32_t field);
int32_t zolt_accept(int32_t field, int32_t entry);

#ifdef __cplusplus
}
#endif
