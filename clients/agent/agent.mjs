// An agent that does what it was asked to in three applications, and is careful about it. It works
// alike through the client and through the server for models: a desk gives it applications, and
// lets it wait.

/**
 * What refuses keys while the user is at that keyboard: nothing was done, and it may be tried
 * again.
 */
const busy = new Set(["user-in-other-window", "keyboard-owned-by-user"]);

/** Pastes the file into the field when the user is not in the application. */
async function attach(desk, app, field, file) {
  await desk.until(async () => {
    if ((await app.windows()).active) return false;
    try {
      await app.focus(field);
      return await app.pasteFiles([file]);
    } catch (error) {
      if (!busy.has(error.id)) throw error;
      return false;
    }
  });
  await desk.until(async () => (await app.dump()).elements.some((one) => one.role === "AXImage"));
}

/** Waits until the text is shown. */
function shown(desk, app, text) {
  return desk.until(async () => (await app.findText([text])).counts[text] > 0);
}

/** Answers the one dialog, once it has read it. */
async function answer(desk, app, text, button) {
  const dialog = await desk.until(async () => (await app.modals()).modals[0]);
  if (dialog.text !== text) throw new Error(`it asks something else: ${dialog.text}`);
  await app.pressInModal(text, button);
  await desk.until(async () => (await app.modals()).modals.length === 0);
}

/** Writes the text unless it is there: the agent may have been here before. */
async function write(app, label, text) {
  const { element } = await app.match(label);
  if (element.value?.includes(text)) return;
  await app.insert(label, "end", text);
}

/** Finds Grace's mail, answers it with the file, and confirms the sending. */
export async function mail(desk, file) {
  const inbox = await desk.open("Mail", "Inbox");
  const { counts } = await inbox.findText(["Grace Hopper — Minutes"]);
  if (counts["Grace Hopper — Minutes"] !== 1)
    throw new Error("there is no such mail, or more than one");
  const row = (await inbox.match("Grace Hopper — Minutes")).element.frame;
  await inbox.click(row.x + row.width / 2, row.y + row.height / 2);
  await shown(desk, inbox, "minutes of Tuesday");
  await inbox.press("Reply");
  const all = await desk.open("Mail");
  await desk.until(async () =>
    (await all.windows()).windows.some((one) => one.title === "Re: Minutes")
  );

  const letter = await desk.open("Mail", "Re: Minutes");
  await write(letter, "Message", "Dear Grace, here they are.");
  await attach(desk, letter, "Message", file);
  await letter.press("Send");
  await answer(desk, letter, "Send this answer to Grace Hopper?", "Send it");
  await shown(desk, inbox, "Sent to grace@example.com");
}

/** Accepts the invitation, takes the dialog, and answers with the file. */
export async function chat(desk, file) {
  const talk = await desk.open("Chat", "Grace");
  await talk.pressInDocument("Conversation with Grace", "Accept");
  await answer(desk, await desk.open("Chat"), "Put the meeting into the calendar?", "Yes");
  await shown(desk, talk, "You have accepted.");
  await write(talk, "Message", "See you on Tuesday.");
  await attach(desk, talk, "Message", file);
  await talk.click(1300, 574);
  await shown(desk, talk, "Sent a moment ago");
}

/** Sets what is to be set, and restores nothing. */
export async function settings(desk, file) {
  const pane = await desk.open("Settings", "Displays");
  await pane.slider("Brightness", { value: 80 });
  await pane.press("Night Shift");
  await pane.press("Appearance");
  await desk.until(async () => (await pane.popupItems()).items.length === 3);
  await pane.press("Dark");
  await attach(desk, pane, "Picture", file);
  await pane.click(400, 574);
  await answer(desk, pane, "Restore the defaults of this display?", "Cancel");
  const { value } = await pane.slider("Brightness");
  if (value !== 80) throw new Error(`the brightness is ${value}`);
}

export const tasks = { mail, chat, settings };
