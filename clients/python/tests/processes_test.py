"""What becomes of runs that are cut off or wrong, and of two acts on one application."""
import asyncio
import os
import re
import signal
import subprocess
import sys
import threading
import unittest
from pathlib import Path

from support import DESK, DRIVER, HERE, ROOT, on_mac, start_mac

from driver_client import children
from driver_client import (AsyncMac, Cancellation, CommandError, DriverError, HungError, Mac, NoReplyError,
                           ServiceEndedError, TimedOutError)

REAL = Mac()


def processes_on(simulated):
    """The processes of the driver on a Mac."""
    found = []
    for folder in Path("/proc").glob("[0-9]*"):
        try:
            environment = (folder / "environ").read_bytes().split(b"\0")
            program = (folder / "cmdline").read_bytes().split(b"\0")[0]
        except OSError:
            continue
        if f"SIMULATED_MAC={simulated.socket}".encode() in environment and program.endswith(b"/driver"):
            found.append(folder.name)
    return found


def posted(simulated):
    return [call for call in simulated.tell("trace") if call["call"] == "private.post"]


class Calls(unittest.TestCase):
    def test_that_are_cancelled_raise_the_reason_when_everything_is_given_back(self):
        with on_mac(real_time=True) as simulated:
            stop = Cancellation()
            raised = []

            def click():
                try:
                    simulated.mac.app("Notes").click(340, 574, cancellation=stop)
                except BaseException as error:
                    raised.append(error)

            thread = threading.Thread(target=click)
            thread.start()
            REAL.until(lambda: posted(simulated), every=0.005)
            reason = DriverError("enough")
            stop.cancel(reason)
            thread.join()
            self.assertEqual([reason], raised)
            self.assertEqual([], processes_on(simulated))

    def test_of_a_task_end_with_it(self):
        async def click(simulated):
            task = asyncio.create_task(AsyncMac(simulated.mac).app("Notes").click(340, 574))
            while not posted(simulated):
                await asyncio.sleep(0.005)
            task.cancel()
            await asyncio.wait([task])
            self.assertTrue(task.cancelled())

        with on_mac(real_time=True) as simulated:
            asyncio.run(click(simulated))
            self.assertEqual([], processes_on(simulated))

    def test_that_take_too_long_say_so(self):
        with on_mac(real_time=True) as simulated:
            simulated.tell("hang", "Chat")
            with self.assertRaises(TimedOutError) as raised:
                simulated.mac.app("Chat").list(timeout=0.05)
            self.assertEqual(0.05, raised.exception.seconds)
            self.assertEqual([], processes_on(simulated))

    def test_with_arguments_that_a_command_does_not_have_are_refused(self):
        with self.assertRaises(TypeError):
            Mac().bg_click("Notes", 1, 2, buton="right")

    def test_without_an_argument_that_a_command_needs_are_refused(self):
        notes = Mac(driver="/nowhere/driver").app("Notes")
        with self.assertRaisesRegex(TypeError, "^bg-type needs text$"):
            notes.type(None)
        with self.assertRaisesRegex(TypeError, "^ax-insert needs mode$"):
            notes.insert("Body", None, "text")

    def test_with_one_text_in_the_place_of_several_are_refused(self):
        with self.assertRaisesRegex(TypeError, "^texts is a list of texts, not one text$"):
            Mac().app("Notes").find_text("Order")
        with self.assertRaisesRegex(TypeError, "^ownedTexts is a list of texts, not one text$"):
            Mac().app("Notes").insert("Body", "replace", "text", owned_texts="before")

    def test_with_a_word_that_is_not_in_the_list_are_refused(self):
        notes = Mac(driver="/nowhere/driver").app("Notes")
        for call, text in (
                (lambda: notes.insert("Body", "append", "text"),
                 "mode is one of replace, message, end, new_line, caret, not 'append'"),
                (lambda: notes.press("Send", which="first"), "which is one of only, last, not 'first'"),
                (lambda: notes.click(1, 2, button="middle"), "button is one of left, right, not 'middle'"),
                (lambda: notes.slider("Size", value="80"),
                 "value is one of a number, increment, decrement, not '80'"),
                (lambda: Mac().lock_guard(language="de"), "language is one of zh, en, not 'de'")):
            with self.assertRaisesRegex(TypeError, f"^{text}$"):
                call()
        with self.assertRaises(NoReplyError):
            notes.slider("Size", value=80.5)

    def test_that_fail_say_what_to_do(self):
        with on_mac() as simulated, self.assertRaises(CommandError) as raised:
            simulated.mac.app("Chat").press("Like")
        self.assertEqual('ax-press-exact: 2 elements labelled "Like"', raised.exception.text)
        self.assertEqual('ax-press-exact: 2 elements labelled "Like"\n'
                         "What to do: Name the container, or pass last for the lowest one.", str(raised.exception))

    def test_of_an_application_that_hangs_say_so(self):
        with on_mac() as simulated, self.assertRaises(HungError) as raised:
            simulated.tell("hang", "Chat")
            simulated.mac.app("Chat").press("Accept")
        self.assertEqual("ax-press-exact: the application did not answer for twelve seconds: "
                         'no element labelled "Accept"', raised.exception.text)

    def test_of_a_driver_that_is_not_there_or_says_nothing_are_told_apart(self):
        for driver in ("/nowhere/driver", "/bin/true"):
            mac = Mac(driver=driver)
            for call in (mac.session, lambda mac=mac: mac.keep_awake().line(),
                         lambda mac=mac: mac.start_capture_service("lock")):
                with self.assertRaises(NoReplyError):
                    call()


class Callers(unittest.TestCase):
    def begun(self, simulated, what):
        caller = subprocess.Popen([sys.executable, HERE / "caller.py", what, simulated.path("lock")],
                                  env=simulated.environment, stdout=subprocess.PIPE)
        self.addCleanup(caller.stdout.close)
        self.assertEqual(b"begun\n", caller.stdout.readline())
        return caller

    def test_that_are_told_to_end_let_their_runs_give_focus_back_first(self):
        for number, status in ((signal.SIGTERM, -signal.SIGTERM), (signal.SIGHUP, -signal.SIGHUP)):
            with on_mac(real_time=True) as simulated:
                caller = self.begun(simulated, "click")
                REAL.until(lambda: posted(simulated), every=0.005)
                caller.send_signal(number)
                self.assertEqual(status, caller.wait())
                self.assertEqual([], processes_on(simulated))

    def test_tell_a_child_to_end_once_whoever_asks(self):
        child = children.start_child(
            "/bin/sh", ["-c", "trap 'echo told' TERM; echo ready; until read -r line; do :; done"],
            dict(os.environ), subprocess.PIPE)
        self.addCleanup(children.forget, child)
        self.assertEqual(b"ready\n", child.stdout.readline())
        enders = [threading.Thread(target=children.end_child, args=(child,)) for _ in range(2)]
        enders[0].start()
        self.assertEqual(b"told\n", child.stdout.readline())
        children._tell_to_end(child)
        enders[1].start()
        self.assertEqual((b"", b""), child.communicate(b"go on\n"))
        for ender in enders:
            ender.join()

    def test_that_are_told_to_end_take_what_keeps_going_with_them(self):
        simulated = start_mac(real_time=True)
        self.addCleanup(simulated.end)
        caller = self.begun(simulated, "everything")
        caller.terminate()
        self.assertEqual(-signal.SIGTERM, caller.wait())
        self.assertEqual([], processes_on(simulated))
        self.assertEqual([], simulated.violations())

    def test_that_are_killed_leave_no_service_no_guard_and_nothing_else_behind(self):
        simulated = start_mac(real_time=True)
        self.addCleanup(simulated.end)
        caller = self.begun(simulated, "everything")
        self.assertEqual(4, len(processes_on(simulated)))
        caller.kill()
        caller.wait()
        REAL.until(lambda: not processes_on(simulated))
        self.assertEqual([], simulated.violations())
        self.assertIs(True, simulated.state()["locked"])


class Acts(unittest.TestCase):
    def test_on_one_application_go_one_after_the_other_whatever_it_is_called(self):
        with on_mac() as simulated:
            mac = simulated.mac
            works = [lambda: mac.app("Notes").click(120, 180), lambda: mac.app("com.example.notes").key("a"),
                     lambda: mac.having(scope="Inbox").app("pid:41").type("b"),
                     lambda: mac.app("Notes").move(340, 574)]
            threads = [threading.Thread(target=work) for work in works]
            for thread in threads:
                thread.start()
            for thread in threads:
                thread.join()
            kinds = ("private.post", "quartz.post", "private.post-record")
            acts = [call["pid"] for call in simulated.tell("trace") if call["call"] in kinds]
            changes = [pid for pid, before in zip(acts, [None, *acts]) if pid != before]
            self.assertEqual((4, 4), (len(changes), len(set(changes))))

    def test_that_paste_go_one_after_the_other_whatever_the_application(self):
        with on_mac(DESK + 'pasteboard item "public.utf8-plain-text" "mine"\n') as simulated:
            before = simulated.state()["clipboard"]
            pastes = [threading.Thread(target=simulated.mac.app(app).paste_files, args=(["/a"],))
                      for app in ("Notes", "Chat")]
            for paste in pastes:
                paste.start()
            for paste in pastes:
                paste.join()
            self.assertEqual(before, simulated.state()["clipboard"])


class Services(unittest.TestCase):
    def test_that_are_ended_end_what_runs_beside_them(self):
        with on_mac(real_time=True) as simulated:
            service = simulated.mac.start_capture_service(simulated.path("lock"))
            session = service.open("Notes")
            raised = []

            def click():
                try:
                    session.app.click(340, 574)
                except DriverError as error:
                    raised.append(type(error))

            thread = threading.Thread(target=click)
            thread.start()
            REAL.until(lambda: posted(simulated), every=0.005)
            service.end()
            thread.join()
            self.assertEqual([ServiceEndedError], raised)
            self.assertEqual([], processes_on(simulated))

    def test_that_die_have_driver_refuse_a_run_and_the_client_the_next(self):
        with on_mac() as simulated:
            service = simulated.mac.start_capture_service(simulated.path("lock"))
            session = service.open("Notes")
            simulated.tell("fault", "private.post", "3", "before", "stop", "sharing", "Notes")
            with self.assertRaises(CommandError) as raised:
                session.app.click(340, 574)
            self.assertEqual("capture-service-gone", raised.exception.id)
            service.wait()
            with self.assertRaises(ServiceEndedError):
                session.app.list()


class Examples(unittest.TestCase):
    def test_do_what_the_page_says(self):
        page = (HERE.parent / "README.md").read_text(encoding="utf-8")
        example = re.search(r"^```python title=agent.py\n(.*?)^```$", page, re.M | re.S)[1]
        environment = {**os.environ, "PATH": f"{Path(DRIVER).parent}:{os.environ['PATH']}",
                       "PYTHONPATH": str(HERE.parent), "WORLD": str(ROOT / "demo/desk.world")}
        done = subprocess.run([sys.executable, "-c", example], env=environment, capture_output=True,
                              text=True, check=False)
        self.assertEqual((0, "accepted\n", ""), (done.returncode, done.stdout, done.stderr))


if __name__ == "__main__":
    unittest.main()
