// Binaryen's tools, with what our modules use of WebAssembly.
import { execFileSync } from "node:child_process";

const features = ["mutable-globals", "bulk-memory", "sign-ext", "nontrapping-float-to-int"].map((name) => `--enable-${name}`);

/** Runs a tool; returns what it prints. */
export const run = (/** @type {string} */ tool, /** @type {string[]} */ ...args) =>
  execFileSync(tool, [...features, ...args], { encoding: "utf8", maxBuffer: 1e9, stdio: ["ignore", "pipe", "inherit"] });
