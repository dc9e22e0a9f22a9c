// The style sheet and the elements of a field.

import { make, sheetOf } from './dom.js';

// A sheet of its own needs no permission of a content security policy.
const css = `
:host {
  display: inline-block; box-sizing: border-box; position: relative; vertical-align: baseline;
  /* Formulas are written alike in all scripts. */
  direction: ltr; writing-mode: horizontal-tb;
  min-inline-size: 7em; max-inline-size: 100%; font-size: 1.25em; line-height: 1.2;
  color: FieldText; background: Field; border: 1px solid color-mix(in srgb, currentColor 38%, transparent);
  border-radius: .25em; cursor: text; -webkit-tap-highlight-color: transparent; touch-action: pan-x pan-y pinch-zoom;
}
:host([hidden]) { display: none }
:host(:state(focused)) { outline: 2px solid var(--zolt-focus-color, color-mix(in srgb, Highlight 72%, currentColor)); outline-offset: -1px }
:host(:disabled) { color: GrayText; cursor: default }
:host([readonly]) { background: transparent }
:host(:state(faulty)) { border-color: var(--zolt-fault-color, #d03030) }
.frame { display: flex; align-items: flex-start; position: relative; min-block-size: 1.7em; inline-size: 100%; block-size: 100% }
.strut { align-self: baseline; inline-size: 0 }
.scroller { flex: 1; min-inline-size: 0; min-block-size: 100%; max-block-size: inherit; align-self: stretch; overflow: auto; scrollbar-width: none; overscroll-behavior-inline: contain; display: grid; align-items: center }
.scroller::-webkit-scrollbar { display: none }
.above { position: absolute; inset: 0; overflow: hidden; pointer-events: none; border-radius: inherit }
canvas.formula {
  position: absolute; inset-block-start: 0; left: 0;
  /* What is painted with; a change of a colour is told as the end of a transition. */
  text-decoration-color: var(--zolt-selection-color, color-mix(in srgb, Highlight 32%, transparent));
  outline-color: var(--zolt-fault-color, #e04848); caret-color: inherit;
  transition: color 1ms, text-decoration-color 1ms, outline-color 1ms;
}
.em { position: absolute; inline-size: 1em; visibility: hidden }
textarea {
  position: absolute; inset-block-start: 0; left: 0; inline-size: 2px; block-size: 1.2em; margin: 0; padding: 0; border: 0; opacity: 0;
  resize: none; overflow: hidden; white-space: pre; pointer-events: none; font-family: inherit; font-size: max(1em, 16px); outline: none;
}
.placeholder { unicode-bidi: plaintext; position: absolute; inset: 0; padding-inline: .35em; display: flex; align-items: center; opacity: .6; font-size: .8em; white-space: nowrap; overflow: hidden; pointer-events: none }
.placeholder[hidden] { display: none }
.unseen { position: absolute; inline-size: 1px; block-size: 1px; overflow: hidden; clip-path: inset(50%); white-space: nowrap; contain: strict }
@media (forced-colors: active) {
  canvas.formula { forced-color-adjust: none; text-decoration-color: color-mix(in srgb, SelectedItem 45%, Canvas); outline-color: Mark; color: inherit }
}
`;

export const adoptSheet = sheetOf(css);

export interface Parts {
  readonly frame: HTMLElement;
  readonly strut: HTMLElement;
  readonly scroller: HTMLElement;
  readonly sizer: HTMLElement;
  readonly em: HTMLElement;
  readonly canvas: HTMLCanvasElement;
  readonly input: HTMLTextAreaElement;
  readonly placeholder: HTMLElement;
  readonly formula: HTMLElement;
  readonly announcement: HTMLElement;
}

export function build(root: ShadowRoot): Parts {
  adoptSheet(root);
  const sizer = make('div');
  const strut = make('span', { class: 'strut' });
  const scroller = make('div', { class: 'scroller' });
  const canvas = make('canvas', { class: 'formula', part: 'formula', 'aria-hidden': 'true' });
  const em = make('span', { class: 'em' });
  const input = make('textarea', {
    part: 'input', autocapitalize: 'none', autocomplete: 'off', autocorrect: 'off', spellcheck: 'false', rows: 1,
    'aria-multiline': 'false',
  });
  const placeholder = make('div', { class: 'placeholder', part: 'placeholder', 'aria-hidden': 'true', hidden: true });
  const formula = make('div', { class: 'unseen' });
  const announcement = make('div', { class: 'unseen', 'aria-live': 'assertive' });
  scroller.append(input, sizer);
  const above = make('div', { class: 'above' }, canvas, em);
  const frame = make('div', { class: 'frame', part: 'field' }, strut, scroller, above, placeholder, formula, announcement);
  root.append(frame);
  return { frame, strut, scroller, sizer, em, canvas, input, placeholder, formula, announcement };
}
