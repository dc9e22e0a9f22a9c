// Calls into a part of a module that may not be there yet: wasm-split lets the table of functions hold an import for each of its functions
// until then. A page would have to make hundreds of functions for them at its start, which takes longer than all else there.
import { readFileSync, writeFileSync } from "node:fs";
import { run } from "./binaryen.mjs";

/** Replaces these imports by functions of the module, which ask for the other part (`rest.load`) and call what is then in their place. */
export function replacePlaceholders(/** @type {string} */ path) {
  const text = `${path}.wat`;
  run("wasm-dis", path, "-o", text);
  let count = 0, late = "";
  const module = readFileSync(text, "utf8").replace(/^ \(import "placeholder" "(\d+)" \(func (\S+)((?: \(\w+[^)]*\))*)\)\)\n/gm,
    (_, number, name, signature) => {
      const parameters = (/\(param ([^)]*)\)/.exec(signature)?.[1] ?? "").split(" ").filter(Boolean);
      const named = parameters.map((type, i) => ` (param $${i} ${type})`).join("");
      const result = /\(result [^)]*\)/.exec(signature)?.[0] ?? "";
      late += ` (func ${name}${named} ${result} (call $load) (call_indirect${signature} ${parameters.map((_, i) => `(local.get $${i})`).join(" ")}` +
        ` (i32.const ${number})))\n`;
      return count++ ? "" : ' (import "rest" "load" (func $load))\n';
    });
  writeFileSync(text, module.replace(/\)\s*$/, `${late})\n`));
  run("wasm-as", text, "-o", path);
}
