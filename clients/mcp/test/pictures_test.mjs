// Pictures are made smaller by the mean of what a pixel covers.
import assert from "node:assert/strict";
import { test } from "node:test";
import { PNG } from "pngjs";
import { fitted } from "../dist/pictures.js";

const red = [255, 0, 0, 255],
  blue = [0, 0, 255, 255],
  clear = [0, 255, 0, 0],
  white = [255, 255, 255, 255];

function pngOf(rows) {
  const png = new PNG({ width: rows[0].length, height: rows.length });
  png.data = Buffer.from(rows.flat(2));
  return PNG.sync.write(png);
}

function pixelsIn({ png }) {
  const { width, height, data } = PNG.sync.read(png);
  return Array.from({ length: height }, (_, y) =>
    Array.from({ length: width }, (_, x) => [
      ...data.subarray((y * width + x) * 4, (y * width + x + 1) * 4)
    ])
  );
}

test("a picture that fits stays as it is, to the byte", () => {
  const png = pngOf([[red, blue]]);
  assert.deepEqual(fitted(png, 2), { png, width: 2, height: 1 });
  assert.deepEqual(fitted(png, 500), { png, width: 2, height: 1 });
});

test("pixels are mixed in equal parts", () => {
  assert.deepEqual(
    pixelsIn(
      fitted(
        pngOf([
          [red, blue, white, white],
          [red, blue, white, white]
        ]),
        2
      )
    ),
    [[[128, 0, 128, 255], white]]
  );
});

test("a pixel that lies between two gives each its part", () => {
  assert.deepEqual(pixelsIn(fitted(pngOf([[red, blue, red]]), 2)), [
    [
      [170, 0, 85, 255],
      [170, 0, 85, 255]
    ]
  ]);
});

test("what is transparent lends no colour", () => {
  assert.deepEqual(
    pixelsIn(
      fitted(
        pngOf([
          [red, clear],
          [clear, clear]
        ]),
        1
      )
    ),
    [[[255, 0, 0, 64]]]
  );
});

test("the longer side decides, and no side goes away", () => {
  const tall = fitted(pngOf(Array.from({ length: 100 }, () => [red])), 10);
  assert.deepEqual([tall.width, tall.height], [1, 10]);
});
