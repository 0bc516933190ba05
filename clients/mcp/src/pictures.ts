import { PNG } from "pngjs";

/** A picture as it is shown to a model. */
export interface Picture {
  png: Buffer;
  width: number;
  height: number;
}

const channels = 4;

/** One axis of an image, made shorter: each new sample is the mean of what it covers. */
function shortened(
  from: Float32Array,
  lines: number,
  length: number,
  to: number,
  step: number,
  lineStep: number,
  into: Float32Array,
  intoStep: number,
  intoLineStep: number
): void {
  const scale = length / to;
  for (let place = 0; place < to; ++place) {
    const begin = place * scale;
    const end = Math.min(length, begin + scale);
    for (let source = Math.floor(begin); source < end; ++source) {
      const share = (Math.min(end, source + 1) - Math.max(begin, source)) / scale;
      for (let line = 0; line < lines; ++line) {
        const at = source * step + line * lineStep;
        const target = place * intoStep + line * intoLineStep;
        for (let channel = 0; channel < channels; ++channel)
          into[target + channel]! += share * from[at + channel]!;
      }
    }
  }
}

/** The colours with their opacity in them: only so can they be mixed. */
function premultiplied(data: Buffer): Float32Array {
  const mixed = new Float32Array(data.length);
  for (let at = 0; at < data.length; at += channels) {
    const alpha = data[at + 3]! / 255;
    for (let channel = 0; channel < 3; ++channel) mixed[at + channel] = data[at + channel]! * alpha;
    mixed[at + 3] = data[at + 3]!;
  }
  return mixed;
}

function straight(mixed: Float32Array, into: Buffer): void {
  for (let at = 0; at < mixed.length; at += channels) {
    const alpha = mixed[at + 3]! / 255;
    for (let channel = 0; channel < 3; ++channel) {
      into[at + channel] =
        alpha === 0 ? 0 : Math.min(255, Math.round(mixed[at + channel]! / alpha));
    }
    into[at + 3] = Math.round(mixed[at + 3]!);
  }
}

/** The picture, smaller where a side is longer than that many pixels; never larger. */
export function fitted(png: Buffer, longestSide: number): Picture {
  const whole = PNG.sync.read(png);
  const { width, height } = whole;
  const scale = longestSide / Math.max(width, height);
  if (scale >= 1) return { png, width, height };
  const across = Math.max(1, Math.round(width * scale));
  const down = Math.max(1, Math.round(height * scale));
  const narrow = new Float32Array(across * height * channels);
  shortened(
    premultiplied(whole.data),
    height,
    width,
    across,
    channels,
    width * channels,
    narrow,
    channels,
    across * channels
  );
  const small = new Float32Array(across * down * channels);
  shortened(
    narrow,
    across,
    height,
    down,
    across * channels,
    channels,
    small,
    across * channels,
    channels
  );
  const result = new PNG({ width: across, height: down });
  straight(small, result.data);
  return { png: PNG.sync.write(result), width: across, height: down };
}
