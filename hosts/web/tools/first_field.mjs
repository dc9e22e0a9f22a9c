// What a page does with a module until its first field is seen and takes keys. The functions that it calls make the first of the
// module's two files (split_module.mjs). It is simple typing and values in plain text.

import { Form } from "../module/zolt_module.mjs";

/** @param {import("../module/zolt_module.mjs").FormulaModule} module */
export function useFirstField(module) {
  const field = /** @type {import("../module/zolt_module.mjs").FormulaHandle} */ (module.open());
  const look = () => {
    field.frame(0, 0, 400, 100);
    return field.revision + field.moves;
  };
  look();
  field.setSpeech(0, 1);
  field.setEditable(true);
  for (const value of ["a^2/(x_1-3)+4", ""]) {
    field.set(Form.plain, value);
    look();
  }
  for (const character of "x+1/2") {
    field.type(character);
    module.takeShortage();
    look();
  }
  field.close();
}
