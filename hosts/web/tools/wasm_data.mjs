// The data of a linked module, and which of it some functions can reach: for split_module.mjs, which gives constants to the part of
// the module that uses them.
import { readFileSync, writeFileSync } from "node:fs";
import { run } from "./binaryen.mjs";

/** @typedef {{at: number, size: number}} Piece a piece of memory */

const DATA_COUNT = 12, DATA = 11;

/** A number as the format writes it, and where it ends. */
function readNumber(/** @type {Uint8Array} */ bytes, /** @type {number} */ at, isSigned = false) {
  let value = 0, shift = 0, byte;
  do {
    byte = bytes[at++];
    value += (byte & 127) * 2 ** shift;
    shift += 7;
  } while (byte & 128);
  return { value: isSigned && byte & 64 ? value - 2 ** shift : value, at };
}

function writeNumber(/** @type {number} */ value, isSigned = false) {
  const bytes = [];
  for (; value >= (isSigned ? 64 : 128); value = Math.floor(value / 128)) bytes.push((value % 128) | 128);
  return [...bytes, value];
}

/** The sections of a module, each with its kind and its contents. */
function readSections(/** @type {Uint8Array} */ bytes) {
  const sections = [];
  for (let at = 8; at < bytes.length; ) {
    const kind = bytes[at];
    const size = readNumber(bytes, at + 1);
    at = size.at + size.value;
    sections.push({ kind, bytes: bytes.subarray(size.at, at) });
  }
  return sections;
}

/** The memory that a module fills when it starts, up to its last byte. */
export function readMemory(/** @type {string} */ path) {
  /** @type {{at: number, bytes: Uint8Array}[]} */
  const segments = [];
  const data = readSections(readFileSync(path)).find(({ kind }) => kind === DATA)?.bytes ?? Uint8Array.of(0);
  const count = readNumber(data, 0);
  let at = count.at;
  for (let i = 0; i < count.value; ++i) {
    // Of the first memory, at a constant: 0, i32.const, end.
    if (data[at] !== 0 || data[at + 1] !== 0x41) throw new Error(`${path}: data at no fixed place`);
    const place = readNumber(data, at + 2, true);
    const size = readNumber(data, place.at + 1);
    at = size.at + size.value;
    segments.push({ at: place.value, bytes: data.subarray(size.at, at) });
  }
  const memory = new Uint8Array(Math.max(0, ...segments.map((one) => one.at + one.bytes.length)));
  for (const one of segments) memory.set(one.bytes, one.at);
  return memory;
}

/** Writes the module anew, with these pieces of the memory as its data. */
export function writeData(/** @type {string} */ path, /** @type {Uint8Array} */ memory, /** @type {Piece[]} */ pieces) {
  const isWanted = new Uint8Array(memory.length);
  for (const { at, size } of pieces) for (let i = at; i < at + size && i < memory.length; ++i) isWanted[i] = memory[i] ? 1 : 0;
  const segments = [];
  // A new segment takes some bytes itself, so short gaps are written, too, with what is there anyway.
  for (let at = isWanted.indexOf(1); at >= 0; ) {
    let end = at, next = at;
    for (; next >= 0 && next - end < 12; next = isWanted.indexOf(1, end)) end = next + 1;
    segments.push([0, 0x41, ...writeNumber(at, true), 0x0b, ...writeNumber(end - at), ...memory.subarray(at, end)]);
    at = next;
  }
  const data = [...writeNumber(segments.length), ...segments.flat()];
  const file = readFileSync(path);
  const others = readSections(file).filter(({ kind }) => kind !== DATA && kind !== DATA_COUNT);
  const all = [...others, { kind: DATA, bytes: data }];
  writeFileSync(path, Buffer.concat([file.subarray(0, 8), ...all.flatMap(({ kind, bytes }) => [
    Uint8Array.of(kind, ...writeNumber(bytes.length)), Uint8Array.from(bytes)])]));
}

/** The constants of a module, by the map that its linker has printed. @returns {Piece[]} */
export function readMap(/** @type {string} */ path) {
  return [...readFileSync(path, "utf8").matchAll(/^ +([0-9a-f]+) +[0-9a-f]+ +([0-9a-f]+) +\S.*:\(\.rodata\S*\)$/gm)]
    .map(([, at, size]) => ({ at: parseInt(at, 16), size: parseInt(size, 16) })).sort((a, b) => a.at - b.at);
}

/**
 * Which of the constants a module can reach: by a number in its functions or variables that is an address in a constant, or by such a
 * number in a constant that is reached. Addresses must be so high that other numbers are none.
 */
export function findReached(/** @type {string} */ path, /** @type {Uint8Array} */ memory, /** @type {Piece[]} */ constants) {
  const text = run("wasm-dis", path);
  const functions = text.split("\n").filter((line) => !/^ \((data|elem) /.test(line)).join("\n");
  const numbers = [...functions.matchAll(/(?:i32\.const |offset=)(\d+)/g)].map(([, number]) => Number(number));
  const words = new DataView(memory.buffer);
  const addWords = (/** @type {number} */ from, /** @type {number} */ end) => {
    for (let at = (from + 3) & ~3; at + 4 <= Math.min(end, memory.length); at += 4) numbers.push(words.getUint32(at, true));
  };
  [...constants, { at: memory.length, size: 0 }].forEach(({ at }, i) => addWords(i === 0 ? 0 : constants[i - 1].at + constants[i - 1].size, at));
  /** @type {Set<Piece>} */
  const reached = new Set();
  for (let number = numbers.pop(); number !== undefined; number = numbers.pop()) {
    let low = 0, high = constants.length;
    while (low < high) {
      const middle = (low + high) >> 1;
      if (constants[middle].at + constants[middle].size <= number) low = middle + 1; else high = middle;
    }
    const found = constants[low];
    if (!found || number < found.at || reached.has(found)) continue;
    reached.add(found);
    addWords(found.at, found.at + found.size);
  }
  return reached;
}
