// What goes between the page and the Mac: the same requests that `simulated-mac` makes.

/** How long a page looks at what it was told before it asks again. */
const pause = 100;

async function post(words) {
  const reply = await fetch("control", { method: "POST", cache: "no-store",
    headers: { "Content-Type": "application/json" }, body: JSON.stringify(words) });
  if (reply.status === 204) return null;
  if (!reply.ok) throw new Error((await reply.text()).trim());
  return reply.json();
}

/** What a command to the Mac prints, line by line. Throws an Error that says why it is refused. */
export async function tell(...words) {
  const { ok, lines } = await post(words);
  const told = lines.map((each) => JSON.parse(each));
  if (!ok) throw new Error(told[0].error);
  return told;
}

function waited(time) {
  return new Promise((resolve) => { setTimeout(resolve, time); });
}

/** Until somebody looks at the page. */
function looking() {
  if (!document.hidden) return Promise.resolve();
  return new Promise((resolve) => {
    document.addEventListener("visibilitychange", resolve, { once: true });
  });
}

/** Tells of all that is new, as it comes; comes back when the Mac has gone, and says why. */
export async function watch(take) {
  let known = { entry: 0, stamp: "", look: "" };
  try {
    for (;;) {
      await looking();
      const news = await post(["news", String(known.entry), known.stamp, known.look]);
      if (news === null) continue;
      known = news.mac;
      await take(news.mac, news.entries);
      await waited(pause);
    }
  } catch (error) {
    return error.message;
  }
}
