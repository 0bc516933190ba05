"""The agent of agent.mjs once more, in Python, on its client: agent.py client TASK FILE runs it.

A desk gives it applications, and lets it wait.
"""
import os
import subprocess
import sys
import tempfile

from driver_client import CommandError, Mac

# What refuses keys while the user is at that keyboard: nothing was done, and it may be tried again.
BUSY = ("user-in-other-window", "keyboard-owned-by-user")
TRIES_MAX = 50


class Desk:
    """Applications through the client, each marked by one capture service."""

    def __init__(self, mac, lock, until):
        self._service = mac.start_capture_service(lock)
        self.until = until

    def open(self, name, scope=None):
        return self._service.open(name, scope=scope).app

    def end(self):
        self._service.end()


def is_attached(app):
    return any(one["role"] == "AXImage" for one in app.dump()["elements"])


def attach(desk, app, field, file):
    """Pastes the file into the field when the user is not in the application."""
    def tried():
        if app.windows()["active"]:
            return False
        try:
            app.focus(field)
            return app.paste_files([file])
        except CommandError as failure:
            if failure.id not in BUSY:
                raise
            return False
    desk.until(tried)
    desk.until(lambda: is_attached(app))


def shown(desk, app, text):
    """Waits until the text is shown."""
    desk.until(lambda: app.find_text([text])["counts"][text] > 0)


def answer(desk, app, text, button):
    """Answers the one dialog, once it has read it."""
    dialog = desk.until(lambda: app.modals()["modals"])[0]
    if dialog["text"] != text:
        raise ValueError(f"it asks something else: {dialog['text']}")
    app.press_in_modal(text, button)
    desk.until(lambda: not app.modals()["modals"])


def write(app, label, text):
    """Writes the text unless it is there: the agent may have been here before."""
    if text not in app.match(label)["element"].get("value", ""):
        app.insert(label, "end", text)


def mail(desk, file):
    """Finds Grace's mail, answers it with the file, and confirms the sending."""
    inbox = desk.open("Mail", "Inbox")
    row = inbox.match("Grace Hopper — Minutes")["element"]["frame"]
    inbox.click(row["x"] + row["width"] / 2, row["y"] + row["height"] / 2)
    shown(desk, inbox, "minutes of Tuesday")
    inbox.press("Reply")
    everything = desk.open("Mail")
    desk.until(lambda: "Re: Minutes" in [one["title"] for one in everything.windows()["windows"]])
    letter = desk.open("Mail", "Re: Minutes")
    write(letter, "Message", "Dear Grace, here they are.")
    attach(desk, letter, "Message", file)
    letter.press("Send")
    answer(desk, letter, "Send this answer to Grace Hopper?", "Send it")
    shown(desk, inbox, "Sent to grace@example.com")


def chat(desk, file):
    """Accepts the invitation, takes the dialog, and answers with the file."""
    talk = desk.open("Chat", "Grace")
    talk.press_in_document("Conversation with Grace", "Accept")
    answer(desk, desk.open("Chat"), "Put the meeting into the calendar?", "Yes")
    shown(desk, talk, "You have accepted.")
    write(talk, "Message", "See you on Tuesday.")
    attach(desk, talk, "Message", file)
    talk.click(1300, 574)
    shown(desk, talk, "Sent a moment ago")


def settings(desk, file):
    """Sets what is to be set, and restores nothing."""
    pane = desk.open("Settings", "Displays")
    pane.slider("Brightness", value=80)
    pane.press("Night Shift")
    pane.press("Appearance")
    desk.until(lambda: len(pane.popup_items()["items"]) == 3)
    pane.press("Dark")
    attach(desk, pane, "Picture", file)
    pane.click(400, 574)
    answer(desk, pane, "Restore the defaults of this display?", "Cancel")
    if pane.slider("Brightness")["value"] != 80:
        raise ValueError("the brightness is another one")


TASKS = {"mail": mail, "chat": chat, "settings": settings}


def until(ask):
    """Waits on a simulated Mac whose time stands still otherwise."""
    for _ in range(TRIES_MAX):
        told = ask()
        if told:
            return told
        subprocess.run([os.environ["SIMULATED_MAC_EXECUTABLE"], "advance", "200ms"], check=True,
                       stdout=subprocess.DEVNULL)
    raise TimeoutError("it was waited for in vain")


def main():
    with tempfile.TemporaryDirectory(prefix="agent-") as folder:
        # The service holds its lock, whatever becomes of the file.
        desk = Desk(Mac(driver=os.environ["DRIVER_EXECUTABLE"]), f"{folder}/lock", until)
    print(os.getpid(), flush=True)
    try:
        TASKS[sys.argv[2]](desk, sys.argv[3])
        print("done", flush=True)
    finally:
        desk.end()


if __name__ == "__main__":
    main()
