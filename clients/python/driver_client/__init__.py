"""Operates applications in the background of a Mac by running driver."""
from .asynchronous import AsyncCaptureService, AsyncCaptureSession, AsyncLines, AsyncMac
from .cancellation import Cancellation
from .clock import Clock
from .commands import App, AsyncApp
from .errors import (CancelledError, CommandError, DriverError, HungError, NoReplyError, Reply,
                     ServiceEndedError, TimedOutError, WaitedInVainError)
from .lines import InputWatch, KeepAwake, Lines, LockGuard
from .mac import Mac
from .service import CaptureService, CaptureSession

__all__ = [
    "App", "AsyncApp", "AsyncCaptureService", "AsyncCaptureSession", "AsyncLines", "AsyncMac",
    "Cancellation", "CancelledError", "CaptureService", "CaptureSession", "Clock", "CommandError",
    "DriverError", "HungError", "InputWatch", "KeepAwake", "Lines", "LockGuard", "Mac", "NoReplyError",
    "Reply", "ServiceEndedError", "TimedOutError", "WaitedInVainError"]
