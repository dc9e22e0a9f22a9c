// Dragging what is selected, within a field, between fields and from and to other programs.

import type { Copies } from './clipboard.js';
import type { Box } from './frame.js';
import { commandsOf, type Owner } from './owner.js';
import type { View } from './view.js';

/** What a drag does to the pointer that began it, and what a drop does as a press. */
export interface DragSide {
  stop(): void;
  press(): void;
}

export function listenToDrags(owner: Owner, view: View, copies: Copies, ends: DragSide): void {
  const { scroller } = owner.parts;
  let isFromHere = false;
  const nearest = (event: DragEvent) => owner.shown.toUnits(event.clientX, event.clientY);
  scroller.addEventListener('dragstart', (event) => {
    if (!event.dataTransfer || !copies.write(event.dataTransfer, 'copy')) return event.preventDefault();
    event.dataTransfer.effectAllowed = owner.isLocked ? 'copy' : 'copyMove';
    isFromHere = true;
  });
  scroller.addEventListener('dragend', (event) => {
    const isGone = isFromHere && event.dataTransfer?.dropEffect === 'move' && !owner.isLocked;
    isFromHere = false;
    ends.stop();
    if (isGone) owner.act('deleteByDrag', null, (handle) => handle.run(commandsOf(handle.module).byName.get('delete-left')!));
  });
  scroller.addEventListener('dragover', (event) => {
    if (owner.isLocked || !event.dataTransfer || !copies.canRead(event.dataTransfer)) return;
    event.preventDefault();
    event.dataTransfer.dropEffect = isFromHere && !event.ctrlKey ? 'move' : event.dataTransfer.effectAllowed === 'move' ? 'move' : 'copy';
    view.drop = owner.handle?.findPlace(...nearest(event)) as Box | null ?? null;
    view.paintSoon();
  });
  scroller.addEventListener('dragleave', () => {
    view.drop = null;
    view.paintSoon();
  });
  scroller.addEventListener('drop', (event) => {
    view.drop = null;
    if (owner.isLocked || !event.dataTransfer) return;
    event.preventDefault();
    const at = nearest(event), data = event.dataTransfer;
    const isMoved = isFromHere && data.dropEffect === 'move';
    // The end of the drag must not delete what has been moved.
    if (isMoved) isFromHere = false;
    ends.press();
    owner.act('insertFromDrop', null, (handle) => {
      if (isMoved) return handle.moveSelection(...at);
      handle.pointerDown(...at, 1, false);
      handle.pointerUp(...at);
      return copies.read(data);
    });
  });
}
