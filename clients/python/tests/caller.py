"""A caller that is cut off: does what its argument says on the Mac that SIMULATED_MAC names."""
import sys
import threading

import support

from driver_client import Mac

what, lock = sys.argv[1:]
mac = Mac(driver=support.DRIVER)
if what == "click":
    print("begun", flush=True)
    mac.app("Notes").click(340, 574)
else:
    service = mac.start_capture_service(lock)
    session = service.open("Notes")
    session.hold()
    kept = [mac.keep_awake(), mac.watch_input(), mac.lock_guard()]
    for lines in kept:
        lines.line()
    print("begun", flush=True)
    threading.Event().wait()
