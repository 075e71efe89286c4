"""Promises of the public header that no stand-in may stand behind: the library is
called as a front-end calls it, with a real bash as /bin/sh and clients that live
as those of a service do, without a tty.

Usage, inside the disposable terminal: header_promises_test.py LIBRARY
"""

import base64
import ctypes
import json
import os
import pathlib
import signal
import subprocess
import sys
import threading
import time
import unittest

LIBRARY = ctypes.CDLL(sys.argv.pop(1))
JSON = ctypes.CDLL("libjson-c.so.5")
JSON.json_object_to_json_string.restype = ctypes.c_char_p
JSON.json_object_to_json_string.argtypes = [ctypes.c_void_p]
HOME = pathlib.Path("/home/root")
DOCUMENT = HOME / "vpclientData.xml"
LOG = HOME / "system.log"
STAYS = "sleep 600 & wait"  # the text of a program that lives on
LONGEST_PASSWORD = 45  # QVTC_PASSWORD_MAX_BYTES


def answer(name, *arguments):
    """What a getter tells."""
    function = getattr(LIBRARY, name)
    function.restype = ctypes.c_void_p
    text = JSON.json_object_to_json_string(function(*arguments))
    return json.loads(text) if text else None


def store(connection_type, params):
    return LIBRARY.qvsetconnections(connection_type, ctypes.create_string_buffer(params.encode()))


def wait_until(holds):
    deadline = time.monotonic() + 20
    while not holds():
        if time.monotonic() > deadline:
            raise AssertionError("it did not come to that in 20 seconds")
        time.sleep(0.02)


def is_running(name):
    return subprocess.run(["pgrep", "-x", name], stdout=subprocess.DEVNULL, check=False).returncode == 0


def log_text():
    return LOG.read_text(encoding="utf-8") if LOG.exists() else ""


def stored_form(password):
    """A password as the header says that a field holds it."""
    return base64.b64encode(password.encode()).decode().replace("+", "-").replace("=", "+")


class Promises(unittest.TestCase):
    def setUp(self):
        for file in (DOCUMENT, LOG):
            file.unlink(missing_ok=True)
        self.clients = []

    def tearDown(self):
        for client in self.clients:
            client.kill()
            client.wait()

    def program(self, name, text):
        path = pathlib.Path("/usr/local/bin") / name
        path.unlink(missing_ok=True)
        path.write_text(f"#!/bin/bash\n{text}\n", encoding="utf-8")
        path.chmod(0o755)
        self.addCleanup(path.unlink, missing_ok=True)
        return str(path)

    def running_client(self, name):
        """A client that a service has started: without a controlling tty."""
        client = subprocess.Popen([self.program(name, STAYS)], start_new_session=True)
        self.clients.append(client)
        wait_until(lambda: pathlib.Path(f"/proc/{client.pid}/comm").read_text().startswith(name[:15]))
        return client

    def test_a_double_quote_refuses_the_whole_record(self):
        self.assertEqual(store(1, 'name=a"b&serverAddress=10.0.0.5'), 0)
        self.assertEqual(answer("qvgetconnections", 1), {"list": []})
        self.assertIn("@setconnections", log_text())

    def test_a_record_has_what_was_given_and_nothing_more(self):
        store(1, "name=a\\b&serverAddress=10.0.0.5")
        record = answer("qvgetconnections", 1)["list"][0]
        self.assertEqual({field: text for field, text in record.items() if text},
                         {"id": "32", "name": "ab", "serverAddress": "10.0.0.5"})

    def test_an_id_of_another_block_is_stored_where_no_list_shows_it(self):
        store(1, "id=70&name=lost")
        self.assertIn("<rdpItem_id_70>", DOCUMENT.read_text(encoding="utf-8"))
        self.assertEqual([answer("qvgetconnections", kind) for kind in (1, 2)], [{"list": []}] * 2)

    def test_a_password_up_to_the_limit_reaches_the_client_whole(self):
        self.program("xfreerdp", "exit 0")
        for password in ("~" * LONGEST_PASSWORD, "~~~", "?>?>", "secret!", "a"):
            store(1, f"id=32&serverAddress=10.0.0.5&colorDepth=32&password={stored_form(password)}")
            self.assertEqual(LIBRARY.qvlaunchclient(32), 0)
            self.assertIn(f" /p:'{password}'", log_text())

    def test_a_longer_password_starts_nothing_and_gives_0(self):
        store(1, f"serverAddress=10.0.0.5&password={stored_form('x' * (LONGEST_PASSWORD + 1))}")
        self.assertEqual(LIBRARY.qvlaunchclient(32), 0)
        self.assertIn("@qvlaunchclient password decode error", log_text())
        self.assertNotIn("xfreerdp params", log_text())

    def test_a_document_that_is_none_of_ours_is_in_no_log(self):
        DOCUMENT.write_text("<other/>", encoding="utf-8")
        self.assertEqual(LIBRARY.qvsetmgrpwd(b"password=x"), 0)
        self.assertEqual(LIBRARY.qvsetvmwaretoolbar(1), -1)
        self.assertEqual((DOCUMENT.read_text(encoding="utf-8"), log_text()), ("<other/>", ""))

    def test_types_without_a_diagnosis_are_connected_at_once(self):
        for kind, name in ((3, "ovirt"), (4, "citrix"), (5, "horizon"), (7, "vnc"), (9, "web")):
            store(kind, f"name={name}&serverAddress=10.0.0.5")
            self.assertEqual(answer("qvgetclientstatus", kind * 32), {"status": "1"}, name)

    def test_rdp_is_connected_at_the_seventh_question_and_then_at_every_sixth(self):
        self.program("xfreerdp", STAYS)
        store(1, "serverAddress=10.0.0.5&colorDepth=32")
        LIBRARY.qvlaunchclient(32)
        self.addCleanup(subprocess.run, ["killall", "-q", "xfreerdp"], check=False)
        wait_until(lambda: is_running("xfreerdp"))
        answers = [answer("qvgetclientstatus", 32)["status"] for _ in range(19)]
        self.assertEqual([at for at, status in enumerate(answers, 1) if status == "1"], [7, 13, 19])

    def test_cancel_does_not_find_a_client_without_a_tty(self):
        client = self.running_client("xfreerdp")
        self.assertEqual(LIBRARY.qvcancelconnect(), 0)
        self.assertIsNone(client.poll())

    def test_a_launch_leaves_a_running_spice_viewer_alone(self):
        client = self.running_client("remote-viewer")
        store(2, "serverAddress=10.0.0.7&port=5900")
        self.assertEqual(LIBRARY.qvlaunchclient(64), 0)
        self.addCleanup(subprocess.run, ["killall", "-q", "remote-viewer"], check=False)
        self.assertIsNone(client.poll())

    def test_an_update_is_not_seen_behind_a_bash_that_becomes_its_last_command(self):
        folder = pathlib.Path("/tmp/nfs")
        folder.mkdir(exist_ok=True)
        script = folder / "qvupdate.sh"
        os.mkfifo(folder / "end")
        # One process from here on: a second one would be counted while it has the script's name.
        script.write_text("#!/bin/bash\n>began\nread <end\n", encoding="utf-8")
        script.chmod(0o755)
        update = threading.Thread(target=LIBRARY.doupdate, daemon=True)
        update.start()
        wait_until((folder / "began").exists)
        self.assertEqual(LIBRARY.updating(), 0)
        (folder / "end").write_text("\n", encoding="utf-8")
        update.join()

    def test_with_sigchld_ignored_a_status_is_minus_one(self):
        self.program("xfreerdp", "exit 0")
        self.assertEqual(LIBRARY.qvvelopanelaunchclient(b""), 0)
        signal.signal(signal.SIGCHLD, signal.SIG_IGN)
        self.addCleanup(signal.signal, signal.SIGCHLD, signal.SIG_DFL)
        self.assertEqual(LIBRARY.qvvelopanelaunchclient(b""), -1)

    def test_the_menu_bar_counts_as_on_where_nothing_is_stored(self):
        self.assertEqual(answer("qvgetvmwaretoolbar"), {"toolbar": "on"})


if __name__ == "__main__":
    unittest.main()
