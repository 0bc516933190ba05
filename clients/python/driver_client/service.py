"""The capture service: it marks for the user what is operated, and nothing is operated once it has gone."""
from __future__ import annotations

import json
import threading
from typing import Any, Dict, List, Literal, Optional, Union, cast

from . import contract
from .cancellation import Cancellation
from .commands import App
from .errors import DriverError, Reply, ServiceEndedError, failure_of
from .lines import Lines
from .mac import Mac, Runs
from .run import command_line


class CaptureService:
    """As a context it is ended where the block ends."""

    def __init__(self, owner: Mac, lock: str) -> None:
        self._lines = owner.talk(Lines, "capture-service", [lock])
        self.pid: int = self._lines.line()["pid"]
        self._cancellation = Cancellation()
        self._runs = Runs()
        self._turn = threading.Lock()
        self._sessions = 0
        #: The Mac for runs beside the service: they end with it.
        self.mac = owner.having(capture_pid=self.pid, cancellation=self._cancellation, runs=self._runs)
        self._end = threading.Thread(target=self._follow, daemon=True)
        self._end.start()

    def _follow(self) -> None:
        # A run that goes on finds out by itself that the service has gone.
        self._lines.wait()
        self._runs.wait()
        self._cancellation.cancel(ServiceEndedError())

    def open(self, app: str, *, scope: Optional[str] = None) -> "CaptureSession":
        """Shares the main window of an application, within the scope."""
        self._sessions += 1
        name = f"session-{self._sessions}"
        request = {"op": "open", "session": name, "app": app}
        shared = self.ask({**request, **({} if scope is None else {"window": scope})})
        return CaptureSession(self, name, app, scope, cast(contract.CaptureServiceShared, shared))

    def ask(self, request: Dict[str, Any]) -> Reply:
        """One request; raises its failure, with which the service ends."""
        with self._turn:
            self._lines.say(json.dumps(request, ensure_ascii=False))
            try:
                return self._lines.line()
            except DriverError:
                self.wait()
                raise

    def end(self) -> None:
        """Ends what runs beside the service, then the service: held focus is given back, the marks go."""
        self._cancellation.cancel(ServiceEndedError())
        self._runs.wait()
        self._lines.end()
        self.wait()

    def wait(self) -> None:
        """Returns when the service has ended, however that came, and what ran beside it."""
        self._end.join()

    def __enter__(self) -> "CaptureService":
        return self

    def __exit__(self, *_: Any) -> None:
        self.end()


class CaptureSession:
    """One shared window, and the commands in it."""

    def __init__(self, service: CaptureService, name: str, app_name: str, scope: Optional[str],
                 shared: contract.CaptureServiceShared) -> None:
        self.service = service
        self.name = name
        self.app_name = app_name
        self.scope = scope
        self.shared = shared
        self._focus_pid: Optional[int] = None

    @property
    def target(self) -> str:
        return f"pid:{self.shared['targetPid']}"

    @property
    def app(self) -> App:
        """The commands beside the service on the application that is shared, in its scope."""
        return App(self.service.mac.having(scope=self.scope, focus_pid=self._focus_pid), self.target)

    def refresh(self) -> contract.CaptureServiceShared:
        """Lets the sharing follow the application's main window."""
        reply = self.service.ask({"op": "refresh", "session": self.name})
        self.shared = cast(contract.CaptureServiceShared, reply)
        return self.shared

    def hold(self) -> contract.HeldFocusSuccess:
        """Gives the shared window input focus and holds it until `close`."""
        held = cast(contract.HeldFocusSuccess, self._command(["bg-focus-hold", self.app_name]))
        self._focus_pid = held["focusPid"]
        return held

    def run(self, command: str, given: Dict[str, Any]) -> Any:
        """Runs a shared command: capture, bg-click, bg-scroll or bg-move."""
        return self._command(command_line(command, {"app": self.app_name, **given}))

    def click(self, x: float, y: float, *, button: Literal["left", "right"] = "left",
              count: int = 1) -> contract.BgClickSuccess:
        return cast(contract.BgClickSuccess, self.run("bg-click", {"x": x, "y": y, "button": button, "count": count}))

    def scroll(self, x: float, y: float, dx: float, dy: float) -> contract.BgScrollSuccess:
        return cast(contract.BgScrollSuccess, self.run("bg-scroll", {"x": x, "y": y, "dx": dx, "dy": dy}))

    def move(self, x: float, y: float) -> contract.BgMoveSuccess:
        return cast(contract.BgMoveSuccess, self.run("bg-move", {"x": x, "y": y}))

    def capture(self, path: str) -> Union[contract.CapturePicture, contract.CaptureNoWindow,
                                          contract.CaptureNotRunning]:
        return cast(contract.CapturePicture, self.run("capture", {"path": path}))

    def close(self) -> None:
        """Ends the sharing, and gives focus back."""
        self.service.ask({"op": "close", "session": self.name})
        self._focus_pid = None

    def _command(self, words: List[str]) -> Reply:
        request = {"op": "command", "session": self.name, "args": words}
        answer = self.service.mac.in_turn(words[0], self.target, lambda: self.service.ask(request))
        reply: Reply = answer["reply"]
        if reply.get("ok") is not True:
            raise failure_of(words[0], reply)
        return reply
