/** Lets those that name the same thing go one after the other, in the order in which they came. */
export class Turns {
  readonly #last = new Map<string, Promise<void>>();

  async take<Result>(name: string, work: () => Promise<Result>): Promise<Result> {
    const before = this.#last.get(name);
    let giveOver = (): void => undefined;
    const over = new Promise<void>((resolve) => { giveOver = resolve; });
    this.#last.set(name, over);
    try {
      await before;
      return await work();  // awaited, an error knows its caller
    } finally {
      giveOver();
      if (this.#last.get(name) === over) this.#last.delete(name);
    }
  }
}
