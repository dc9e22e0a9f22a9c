// The style sheet of what opens at a field.

import { sheetOf } from './dom.js';

const css = `
.handle { position: absolute; inline-size: 2.75rem; block-size: 2.75rem; margin: 0 0 0 -1.375rem; touch-action: none; z-index: 1 }
.handle::before { content: ""; position: absolute; inset-block-start: 2px; left: calc(50% - .6rem); inline-size: 1.2rem; block-size: 1.2rem; border-radius: 0 50% 50% 50%; rotate: 45deg; transform-origin: center; background: var(--zolt-focus-color, Highlight); box-shadow: 0 1px 3px #0006 }
[data-side=left]::before { left: calc(50% - 1.2rem); border-radius: 50% 0 50% 50%; rotate: 0deg }
[data-side=right]::before { left: 50%; border-radius: 0 50% 50% 50%; rotate: 0deg }
.magnifier { position: fixed; margin: 0; padding: 0; border: 1px solid color-mix(in srgb, FieldText 40%, transparent); border-radius: 1rem; background: Field; color: FieldText; box-shadow: 0 2px 12px #0005; overflow: hidden; pointer-events: none; inset: auto }
.panel {
  position: fixed; inset: auto; box-sizing: border-box; margin: 0; padding: .25rem; border: 1px solid color-mix(in srgb, CanvasText 25%, transparent); border-radius: .4rem;
  background: Canvas; color: CanvasText; box-shadow: 0 .25rem 1rem #0003; font: .875rem/1.3 system-ui, sans-serif; cursor: default;
  max-inline-size: min(28rem, calc(100vw - 8px)); overflow: auto; user-select: none; -webkit-user-select: none; touch-action: manipulation;
}
.panel[hidden], .magnifier[hidden], .handle[hidden] { display: none }
.panel canvas { flex: none; vertical-align: middle }
.panel button { font: inherit; color: inherit; background: none; border: 0; border-radius: .3rem; cursor: pointer }
.panel button:hover:enabled { background: color-mix(in srgb, CanvasText 9%, transparent) }
.panel button:focus-visible { outline: 2px solid Highlight; outline-offset: -2px }
.panel button:disabled { opacity: .38; cursor: default }
.note { max-inline-size: min(22rem, calc(100vw - 8px)); padding: .3rem .6rem; border-inline-start: .25rem solid var(--zolt-fault-color, #d03030); pointer-events: none }
.completions { overflow: hidden }
.option { display: flex; align-items: center; gap: .6rem; padding: .1rem .5rem; border-radius: .3rem; min-block-size: 2rem; cursor: pointer }
.option[aria-selected=true] { background: Highlight; color: HighlightText }
.option .typed { margin-inline-start: auto; padding-inline-start: 1rem; opacity: .8; white-space: nowrap }
.option[aria-selected=true] .typed { opacity: 1 }
.menu { display: flex; flex-direction: column; min-inline-size: 13rem; box-sizing: border-box; max-block-size: calc(100vh - 8px) }
.menu button { display: flex; justify-content: space-between; gap: 2rem; padding: .35rem .6rem; text-align: start }
.menu .keys { opacity: .65 }
.menu hr { inline-size: 100%; margin: .25rem 0; border: 0; border-block-start: 1px solid color-mix(in srgb, CanvasText 18%, transparent) }
.palette { inline-size: 25rem; max-block-size: min(24rem, 80vh) }
.palette .found { display: grid; grid-template-columns: repeat(auto-fill, minmax(3.1rem, 1fr)); gap: 2px }
.palette .found button { padding: 0; block-size: 2.4rem; display: grid; place-items: center }
.palette .title { margin: .5rem .3rem .15rem; font: 600 .78rem/1.2 system-ui, sans-serif; opacity: .8 }
.palette .sizes { display: grid; grid-template-columns: repeat(6, 1.9rem); gap: 3px; padding: .3rem }
.palette .sizes button { block-size: 1.9rem; padding: 0; border: 1px solid color-mix(in srgb, CanvasText 35%, transparent); border-radius: .2rem }
.palette .sizes .in { background: color-mix(in srgb, Highlight 40%, transparent) }
.palette input { font: inherit; inline-size: 100%; box-sizing: border-box; padding: .35rem .5rem; border: 1px solid color-mix(in srgb, CanvasText 30%, transparent); border-radius: .3rem; background: Field; color: FieldText }
.keyboard {
  inset: auto 0 0; inline-size: 100%; max-inline-size: none; box-sizing: border-box; border-radius: .6rem .6rem 0 0; border-inline: 0; border-block-end: 0;
  padding: .4rem max(.3rem, calc(50vw - 24rem)) max(.4rem, env(safe-area-inset-bottom)); display: grid; gap: .3rem; overflow: hidden;
}
.keyboard .tabs { display: flex; gap: .3rem }
.keyboard .tabs button { padding: .35rem .8rem }
.keyboard .tabs button[aria-selected=true] { background: color-mix(in srgb, CanvasText 14%, transparent) }
.keyboard .tabs .close { margin-inline-start: auto }
.keyboard .row { display: flex; gap: .3rem }
.keyboard .row button { flex: 1 1 0; min-inline-size: 0; block-size: 2.7rem; padding: 0; font-size: 1.15rem; background: color-mix(in srgb, CanvasText 7%, transparent); display: grid; place-items: center }
.keyboard .row button.wide { flex-grow: 1.6 }
.keyboard .row button:active { background: color-mix(in srgb, CanvasText 22%, transparent) }
@media (any-pointer: coarse) {
  .completions { overflow: auto }
}
@media (forced-colors: active) {
  .panel button { border: 1px solid ButtonText }
  /* Else the browser puts a plate of the page's colour below the text, and paints nothing else. */
  .option[aria-selected=true], .palette .sizes .in, .keyboard .tabs button[aria-selected=true] { forced-color-adjust: none; background: Highlight; color: HighlightText }
}
`;

export const adoptPanelSheet = sheetOf(css);
