"""Permissions on hosted Macs: what is added to databases as the releases have them, and what is
refused."""
import os
import plistlib
import sqlite3
import unittest
from datetime import datetime

from runner import SCHEMA, OnARunner

SERVICES = ["kTCCServiceAccessibility", "kTCCServiceListenEvent", "kTCCServicePostEvent",
            "kTCCServiceScreenCapture"]


class Grant(OnARunner):
    """Databases of permissions as the releases have them."""

    def setUp(self):
        super().setUp()
        self.program = self.folder / "bin" / "driver"
        self.program.write_text("")
        self.system = self.database("root/Library/Application Support/com.apple.TCC/TCC.db")
        self.user = self.database("home/Library/Application Support/com.apple.TCC/TCC.db")
        self.approvals = self.home / ("Library/Group Containers/group.com.apple.replayd/"
                                      "ScreenCaptureApprovals.plist")

    def database(self, name, more=""):
        path = self.folder / name
        path.parent.mkdir(parents=True, exist_ok=True)
        with sqlite3.connect(path) as database:
            database.execute(SCHEMA.format(more=more))
        return path

    def add(self, path, service, client, value, reason):
        with sqlite3.connect(path) as database:
            database.execute("INSERT INTO access (service, client, client_type, auth_value, "
                             "auth_reason, auth_version, last_modified) "
                             "VALUES (?, ?, 1, ?, ?, 1, 7)", (service, client, value, reason))

    def rows(self, path):
        with sqlite3.connect(path) as database:
            return database.execute("SELECT service, client, auth_value, auth_reason FROM access "
                                    "ORDER BY service, client").fetchall()

    def grant(self, *programs, **environment):
        return self.run_script("grant", "--root", self.folder / "root", "--home", self.home,
                               "--uid", os.getuid(), *(programs or [self.program]), **environment)

    def test_adds_what_is_missing_on_each_release(self):
        for release in ("14.8.1", "15.7.7", "26.5.2"):
            with self.subTest(release=release):
                self.tells("sw_vers", release)
                done = self.grant()
                self.assertEqual((0, ""), (done.returncode, done.stderr))
                expected = [(service, str(self.program), 2, 3) for service in SERVICES]
                self.assertEqual([expected] * 2, [self.rows(self.system), self.rows(self.user)])
                self.assertEqual(release[:2] != "14", self.approvals.exists())

    def test_leaves_what_is_there_and_makes_rows_alike(self):
        self.add(self.system, SERVICES[0], "/bin/bash", 2, 4)
        self.add(self.system, SERVICES[0], str(self.program), 0, 2)
        self.assertEqual(0, self.grant().returncode)
        self.assertEqual([(SERVICES[0], "/bin/bash", 2, 4), (SERVICES[0], str(self.program), 2, 4)],
                         self.rows(self.system)[:2])
        before = self.rows(self.system)
        self.assertNotIn("TCC.db: ", self.grant().stdout)
        self.assertEqual(before, self.rows(self.system))

    def test_takes_the_real_path(self):
        link = self.folder / "link"
        link.symlink_to(self.program)
        self.grant(link, self.program)
        self.assertEqual([str(self.program)] * 4, [row[1] for row in self.rows(self.user)])

    def test_finds_the_database_that_the_system_has_open(self):
        elsewhere = self.database("private/Data/com.apple.TCC/TCC.db")
        self.tells("lsof", f"p5\nn/Library/Application Support/com.apple.TCC/TCC.db\nn{elsewhere}")
        self.assertEqual(0, self.grant().returncode)
        self.assertEqual(([], 4), (self.rows(self.user), len(self.rows(elsewhere))))

    def test_says_where_a_release_has_moved_them(self):
        self.user.unlink()
        done = self.grant()
        self.assertEqual(1, done.returncode)
        self.assertIn("this release keeps the user's permissions elsewhere", done.stdout)
        self.assertEqual(4, len(self.rows(self.system)))
        self.assertFalse(self.user.exists())

    def test_says_when_there_are_several(self):
        self.tells("lsof", "n/one/TCC.db\nn/two/TCC.db")
        done = self.grant()
        self.assertEqual(1, done.returncode)
        self.assertIn("tccd has several databases open: /one/TCC.db, /two/TCC.db", done.stdout)

    def test_says_what_it_does_not_know(self):
        self.user.unlink()
        self.database(str(self.user.relative_to(self.folder)), ", oath TEXT NOT NULL")
        done = self.grant()
        self.assertEqual(1, done.returncode)
        self.assertIn("its table of permissions has oath, of which nothing is known", done.stdout)
        self.assertEqual([], self.rows(self.user))

    def test_adds_approvals_of_the_kind_that_is_there(self):
        self.approvals.parent.mkdir(parents=True)
        agent = {"/agent": datetime(2030, 1, 1)}
        self.approvals.write_bytes(plistlib.dumps(agent))
        self.grant()
        self.assertEqual({**agent, str(self.program): datetime(2099, 1, 1)},
                         plistlib.loads(self.approvals.read_bytes()))

    def test_adds_approvals_where_there_are_none(self):
        self.grant()
        entry = plistlib.loads(self.approvals.read_bytes())[str(self.program)]
        self.assertEqual((datetime(2099, 1, 1), 1),
                         (entry["kScreenCaptureApprovalLastAlerted"],
                          entry["kScreenCaptureAlertableUsageCount"]))

    def test_has_the_system_read_them_again(self):
        self.tells("pgrep", "71")
        self.grant()
        self.assertEqual(["kill -TERM 71", "kill -KILL 71"],
                         [call for call in self.calls() if call.startswith("kill")])

    def test_is_refused_elsewhere(self):
        done = self.grant(RUNNER_ENVIRONMENT="")
        self.assertEqual(2, done.returncode)
        self.assertIn("permissions are changed on hosted runners alone", done.stderr)
        self.assertEqual([], self.rows(self.system))


if __name__ == "__main__":
    unittest.main()
