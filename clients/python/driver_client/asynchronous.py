"""The same for asyncio. Cancelling a task ends its run, which gives back what it has borrowed."""
from __future__ import annotations

import asyncio
import contextvars
import threading
from typing import Any, AsyncIterator, Awaitable, Callable, Dict, List, Optional, TypeVar

from . import contract
from .cancellation import Cancellation
from .commands import AsyncApp, AsyncCommands
from .errors import CancelledError, Reply
from .lines import Lines, next_or_cancelled
from .mac import Asking, Mac
from .service import CaptureService, CaptureSession

Result = TypeVar("Result")

# pytest shows a failure where the test calls this module, not in it.
__tracebackhide__ = True


async def in_thread(work: Callable[[Cancellation], Result]) -> Result:
    """Does the work in a thread of its own; a cancelling is handed on, and its end waited for."""
    loop = asyncio.get_running_loop()
    done: "asyncio.Future[Result]" = loop.create_future()
    cancellation = Cancellation()

    def settle(result: Any, failure: Optional[BaseException]) -> None:
        if failure is not None:
            done.set_exception(failure)
        else:
            done.set_result(result)

    def perform() -> None:
        result, failure = None, None
        try:
            result = work(cancellation)
        except BaseException as raised:  # whatever it is, the task gets it
            failure = raised
        loop.call_soon_threadsafe(settle, result, failure)

    threading.Thread(target=contextvars.copy_context().run, args=(perform,), daemon=True).start()
    try:
        return await asyncio.shield(done)
    except asyncio.CancelledError:
        await in_thread_end(cancellation, done)
        raise


async def in_thread_end(cancellation: Cancellation, done: "asyncio.Future[Any]") -> None:
    threading.Thread(target=cancellation.cancel, args=(CancelledError("cancelled"),), daemon=True).start()
    await asyncio.wait([done])
    done.exception()


class AsyncLines(AsyncIterator[Reply]):
    """A run that keeps going. As a context it is ended where the block ends."""

    def __init__(self, lines: Any) -> None:
        self.lines: Lines = lines

    async def __anext__(self) -> Reply:
        line = await in_thread(lambda cancellation: next_or_cancelled(self.lines, cancellation))
        if line is None:
            raise StopAsyncIteration
        return line

    async def end(self) -> List[Reply]:
        """Closes its standard input, and gives what it still says when it has ended."""
        return await in_thread(lambda _: self.lines.end())

    def say(self, line: str) -> None:
        self.lines.say(line)

    async def __aenter__(self) -> "AsyncLines":
        return self

    async def __aexit__(self, *_: Any) -> None:
        await self.end()


class AsyncMac(AsyncCommands):
    """What Mac is, with functions that are awaited. Options as of Mac, or a Mac of which it is to be one."""

    def __init__(self, mac: Optional[Mac] = None, **options: Any) -> None:
        self.mac = Mac(**options) if mac is None else mac

    def having(self, **options: Any) -> "AsyncMac":
        return AsyncMac(self.mac.having(**options))

    def app(self, name: str, *, scope: Optional[str] = None) -> AsyncApp:
        return AsyncApp(self if scope is None else self.having(scope=scope), name)

    async def run(self, command: str, given: Dict[str, Any], **options: Any) -> Any:
        return await in_thread(
            lambda cancellation: self.mac.run(command, given, cancellation=cancellation, **options))

    async def until(self, ask: Callable[[], Awaitable[Result]], *, timeout: float = 10,
                    every: float = 0.2, what: Optional[str] = None) -> Result:
        """Waits until what is asked for is so, and gives what is told; see Mac.until."""
        clock = self.mac.clock
        end = await in_thread(lambda _: clock.now()) + timeout
        asking = Asking()
        while True:
            with asking.once():
                told = await ask()
            if told:
                return told
            if await in_thread(lambda _: clock.now()) + every > end:
                raise asking.in_vain(what, timeout, told)
            await in_thread(lambda _: clock.sleep(every))

    async def start_capture_service(self, lock: str) -> "AsyncCaptureService":
        return AsyncCaptureService(await in_thread(lambda _: CaptureService(self.mac, lock)))

    def lock_guard(self, **options: Any) -> AsyncLines:
        return AsyncLines(self.mac.lock_guard(**options))

    def keep_awake(self) -> AsyncLines:
        return AsyncLines(self.mac.keep_awake())

    def watch_input(self, app: Optional[str] = None) -> AsyncLines:
        return AsyncLines(self.mac.watch_input(app))


class AsyncCaptureService:
    """The capture service, see CaptureService."""

    def __init__(self, service: CaptureService) -> None:
        self.service = service
        self.mac = AsyncMac(service.mac)

    async def open(self, app: str, *, scope: Optional[str] = None) -> "AsyncCaptureSession":
        return AsyncCaptureSession(await in_thread(lambda _: self.service.open(app, scope=scope)))

    async def end(self) -> None:
        await in_thread(lambda _: self.service.end())

    async def __aenter__(self) -> "AsyncCaptureService":
        return self

    async def __aexit__(self, *_: Any) -> None:
        await self.end()


class AsyncCaptureSession:
    """One shared window, see CaptureSession. What has been asked for is waited for, also when cancelled."""

    def __init__(self, session: CaptureSession) -> None:
        self.session = session

    @property
    def shared(self) -> contract.CaptureServiceShared:
        return self.session.shared

    @property
    def app(self) -> AsyncApp:
        app = self.session.app
        return AsyncApp(AsyncMac(app.commands), app.name)  # type: ignore[arg-type]

    async def refresh(self) -> contract.CaptureServiceShared:
        return await in_thread(lambda _: self.session.refresh())

    async def hold(self) -> contract.HeldFocusSuccess:
        return await in_thread(lambda _: self.session.hold())

    async def click(self, x: float, y: float, **more: Any) -> contract.BgClickSuccess:
        return await in_thread(lambda _: self.session.click(x, y, **more))

    async def scroll(self, x: float, y: float, dx: float, dy: float) -> contract.BgScrollSuccess:
        return await in_thread(lambda _: self.session.scroll(x, y, dx, dy))

    async def move(self, x: float, y: float) -> contract.BgMoveSuccess:
        return await in_thread(lambda _: self.session.move(x, y))

    async def capture(self, path: str) -> Any:
        return await in_thread(lambda _: self.session.capture(path))

    async def close(self) -> None:
        await in_thread(lambda _: self.session.close())
