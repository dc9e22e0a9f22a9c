// What a page does with a module until its first field is seen and takes keys. The functions that it calls make the first of the
// module's two files (split_module.mjs). It is typing on one line, without constructs: a field that begins
// with a formula waits for both.

import { Form } from "../module/zolt_module.mjs";

/** @param {import("../module/zolt_module.mjs").FormulaModule} module */
export function useFirstField(module) {
  if (module.faces.length === 0) throw new Error("the module has no faces");
  const field = /** @type {import("../module/zolt_module.mjs").FormulaHandle} */ (module.open());
  const look = () => {
    field.frame(0, 0, 400, 100);
    field.changes(1, 0);
    return field.revision + field.moves;
  };
  look();
  field.setSpeech(0, 1);
  field.setEditable(true);
  // An empty field tells its form so at once.
  field.get(Form.plain);
  field.get(Form.tree);
  module.prepare();
  for (const character of "x+1") {
    field.type(character);
    module.takeShortage();
    look();
  }
  field.close();
}
