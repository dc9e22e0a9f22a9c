// What is wider than the page is scrolled by keys as well.
for (const wide of document.querySelectorAll("pre, table")) if (wide.scrollWidth > wide.clientWidth) wide.tabIndex = 0;

// The field of a page: what is edited shows as text, what is typed as text shows as a formula, and examples go there on a click.
const player = document.querySelector(".player");
if (player) play(player);

async function play(box) {
  const field = box.querySelector("zolt-formula");
  const text = box.querySelector("textarea");
  const status = box.querySelector("p");
  const { notation } = box.dataset;
  await field.ready;

  const show = () => {
    const written = field[notation === "plain" ? "value" : notation];
    // While the formula is incomplete, the last text stays.
    if (written) text.value = written;
    status.textContent = field.fault?.message ?? "";
  };
  const set = (value, as) => {
    status.textContent = field.setValue(value, as)?.message ?? "";
  };
  const read = notation === "words" ? "plain" : notation;
  set(field.dataset.formula, read);
  show();
  field.addEventListener("input", show);
  text.addEventListener("input", () => set(text.value, read));

  if (!("examples" in box.dataset)) return;
  // The first column of a table about a notation has what can be written in it.
  for (const code of document.querySelectorAll("main td:first-child code")) {
    const example = document.createElement("button");
    example.type = "button";
    example.className = "example";
    example.title = "Show in the field";
    code.replaceWith(example);
    example.append(code);
    example.addEventListener("click", () => {
      set(code.textContent, read);
      text.value = code.textContent;
    });
  }
}
