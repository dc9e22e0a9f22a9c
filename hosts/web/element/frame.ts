// The words of a frame that tell of the formula; display_list.ts reads the rest.

import { Frame as Word, Flag, type FrameWords } from '../module/zolt_module.mjs';

/** Left, top, right, bottom, in units of the layout. */
export type Box = readonly [number, number, number, number];

const boxAt = ({ ints }: FrameWords, at: number): Box => [ints[at]!, ints[at + 1]!, ints[at + 2]!, ints[at + 3]!];

export { Flag };
export type { FrameWords };
export const has = (frame: FrameWords, flag: number): boolean => (frame.ints[Word.flags]! & flag) !== 0;
export const widthOf = (frame: FrameWords): number => frame.ints[Word.width]!;
export const heightOf = (frame: FrameWords): number => frame.ints[Word.height]!;
export const baselineOf = (frame: FrameWords): number => frame.floats[Word.baseline]!;
export const caretOf = (frame: FrameWords): Box => boxAt(frame, Word.caret);
export const anchorOf = (frame: FrameWords): Box => boxAt(frame, Word.anchor);
export const revealOf = (frame: FrameWords): Box => boxAt(frame, Word.reveal);
export const composedOf = (frame: FrameWords): Box => boxAt(frame, Word.composed);
export function bandsOf(frame: FrameWords): Box[] {
  const first = frame.ints[Word.bands]!;
  return Array.from({ length: frame.ints[Word.numBands]! }, (_, i) => boxAt(frame, first + 4 * i));
}
export const listOf = (frame: FrameWords): number => frame.ints[Word.list]!;
