"""The client as a process that is told what to do by lines of JSON: for conformance_test.py."""
import json
import sys

from driver_client import CommandError, Mac, NoReplyError
from driver_client.lines import Lines


def reply_of(work):
    """What the client gives, or the reply of the failure that it raises."""
    try:
        return work()
    except CommandError as failure:
        return failure.reply


class Client:
    def __init__(self):
        self.talking = None

    def run(self, told):
        mac = Mac(environment=told["environment"], scope=told.get("scope"), capture_pid=told.get("capturePid"))
        return reply_of(lambda: mac.run(told["command"], told["given"]))

    def talk(self, told):
        mac = Mac(environment=told["environment"])
        command = told["command"]
        if command == "capture-service":
            self.talking = mac.start_capture_service(*told["words"])
            return {"ok": True, "pid": self.talking.pid}
        if command == "keep-awake":
            self.talking = mac.keep_awake()
        elif command == "lock-guard":
            self.talking = mac.lock_guard()
        else:
            self.talking = mac.watch_input(*told["words"])
        return reply_of(self.talking.line)

    def ask(self, told):
        return reply_of(lambda: self.talking.ask(told["request"]))

    def end(self, _):
        """The lines that were left."""
        talking, self.talking = self.talking, None
        if isinstance(talking, Lines):
            return talking.end()
        talking.end()
        return []


def main():
    client = Client()
    for line in sys.stdin:
        told = json.loads(line)
        try:
            answer = {"gives": getattr(client, told["do"])(told)}
        except NoReplyError as error:
            answer = {"error": str(error)}
        print(json.dumps(answer), flush=True)


if __name__ == "__main__":
    main()
