// The display list of a frame (`ZoltItemE`), read once for every surface that paints it.

import { listOf, type FrameWords } from './frame.js';

/** What paints: a canvas context answers to the names of the paths. */
export interface Surface {
  font(face: number, em: number): void;
  glyph(text: string, x: number, y: number): void;
  /** Text in the font of the page, in that width. */
  text(text: string, em: number, x: number, y: number, width: number): void;
  beginPath(): void;
  moveTo(x: number, y: number): void;
  lineTo(x: number, y: number): void;
  bezierCurveTo(x1: number, y1: number, x2: number, y2: number, x: number, y: number): void;
  closePath(): void;
  fill(ink: number): void;
  stroke(ink: number, thickness: number): void;
  rule(ink: number, x1: number, y1: number, x2: number, y2: number, thickness: number): void;
}

/** How much of the colour an ink is. */
export const inks = [1, 0.45, 0.16] as const;

const GLYPHS = 0, FILL = 1, STROKE = 2, RULE = 3;

const letters = new Map<number, string>();

function letterOf(code: number): string {
  let letter = letters.get(code);
  if (letter === undefined) letters.set(code, letter = String.fromCodePoint(code));
  return letter;
}

function drawPath(words: Int32Array, floats: Float32Array, from: number, end: number, to: Surface): void {
  to.beginPath();
  for (let i = from; i < end; ) {
    switch (words[i]!) {
      case 0:
        to.moveTo(floats[i + 1]!, floats[i + 2]!);
        i += 3;
        break;
      case 1:
        to.lineTo(floats[i + 1]!, floats[i + 2]!);
        i += 3;
        break;
      case 2:
        to.bezierCurveTo(floats[i + 1]!, floats[i + 2]!, floats[i + 3]!, floats[i + 4]!, floats[i + 5]!, floats[i + 6]!);
        i += 7;
        break;
      default:
        to.closePath();
        ++i;
    }
  }
}

export function draw(frame: FrameWords, to: Surface): void {
  const { ints: words, floats } = frame;
  for (let i = listOf(frame); i < words.length; ) {
    const kind = words[i]!;
    if (kind === GLYPHS) {
      to.font(words[i + 1]!, floats[i + 2]!);
      const y = floats[i + 3]!;
      const end = i + 5 + 2 * words[i + 4]!;
      for (i += 5; i < end; i += 2) to.glyph(letterOf(words[i]!), floats[i + 1]!, y);
    } else if (kind === FILL) {
      const from = i + 3, end = from + words[i + 2]!;
      drawPath(words, floats, from, end, to);
      to.fill(words[i + 1]!);
      i = end;
    } else if (kind === STROKE) {
      const from = i + 4, end = from + words[i + 3]!;
      drawPath(words, floats, from, end, to);
      to.stroke(words[i + 1]!, floats[i + 2]!);
      i = end;
    } else if (kind === RULE) {
      to.rule(words[i + 1]!, floats[i + 2]!, floats[i + 3]!, floats[i + 4]!, floats[i + 5]!, floats[i + 6]!);
      i += 7;
    } else {
      const count = words[i + 5]!;
      const text = String.fromCharCode(...words.subarray(i + 6, i + 6 + count));
      to.text(text, floats[i + 1]!, floats[i + 2]!, floats[i + 3]!, floats[i + 4]!);
      i += 6 + count;
    }
  }
}
