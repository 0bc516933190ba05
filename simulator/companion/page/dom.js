// Small help with documents and texts.

/** A new element with these properties, and with what is in it. */
export function element(name, properties = {}, ...inside) {
  const made = Object.assign(document.createElement(name), properties);
  made.append(...inside.filter((each) => each !== null));
  return made;
}

export function byId(id) { return document.getElementById(id); }

export function textOf(value) { return typeof value === "string" ? value : `<${value.hex}>`; }

export function milliseconds(time) { return `${Math.round(time * 1000) / 1000} ms`; }

/** A word as a shell reads it. */
export function shellWord(word) {
  return /^[\w./:,+@%=-]+$/.test(word) ? word : `'${word.replaceAll("'", "'\\''")}'`;
}
