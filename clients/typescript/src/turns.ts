/** Lets those that name the same thing go one after the other, in the order in which they came. */
export class Turns {
  readonly #last = new Map<string, Promise<void>>();

  async take<Result>(name: string, work: () => Promise<Result>): Promise<Result> {
    const before = this.#last.get(name) ?? Promise.resolve();
    const mine = before.then(work);
    const over = mine.then(() => undefined, () => undefined);
    this.#last.set(name, over);
    try {
      return await mine;
    } finally {
      if (this.#last.get(name) === over) this.#last.delete(name);
    }
  }
}
