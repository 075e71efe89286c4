"""Calls every function of the public headers and holds what it runs and stores
against the lines "Runs" and "Stores" of its entry.

Usage, inside the disposable terminal with its recorder:
header_entries_test.py PROJECT_ROOT LIBRARY
"""

import ctypes
import os
import pathlib
import re
import sys
import unittest
from xml.etree import ElementTree

ROOT = pathlib.Path(sys.argv.pop(1))
sys.path.insert(0, str(ROOT / "tests/house"))
sys.argv.insert(1, str(ROOT))
import public_pages_test as pages  # noqa: E402

LIBRARY = ctypes.CDLL(sys.argv.pop(1))
DOCUMENT = pathlib.Path("/home/root/vpclientData.xml")
RECORD = pathlib.Path("/run/disposable-terminal/commands")
KEY = re.compile(r"(?:tc_config|networkconf|com\.valmora)[\w.-]*\w")
ADDRESSES = b"conf=1&ip=10.0.0.2&mask=255.0.0.0&gateway=10.0.0.1&ssid=6162"

# The arguments with which a function goes its whole way; those not named take none.
ARGUMENTS = {
    "qvlog": (1, b"text"),
    "LogWrite": (1, b"text"),
    "qvgetconnections": (1,),
    "qvsetconnections": (1, ctypes.create_string_buffer(b"name=a&serverAddress=10.0.0.5")),
    "qvdelconnection": (1, 3),
    "qvsetconnectdelay": (b"delay=3",),
    "qvsort": ((ctypes.c_int * 2)(2, 1), 2),
    "qvlaunchclient": (32,),
    "qvvelopanelaunchclient": (b"--version",),
    "qvgetclientstatus": (32,),
    "qvsetdispconf": (b"res=5&force=1",),
    "qvsetdisplaymode": (b"displayMode=extend",),
    "qvsetdisplayrefresh": (b"{}",),
    "qvsetdisplayorder": (b"displayOrder=Reverse",),
    "qvsetmonitor": (b"brightness=50",),
    "qvsetidle": (b"monitorPowerSave=on&monitorPowerSaveMins=5",),
    "qvsetuserportal": (b"useUserportal=on",),
    "qvsetdemomode": (1,),
    "qvsetvolume": (b"playVolume=10&micVolume=20",),
    "set_sound_config": (0,),
    "qvsetwiredconf": (ADDRESSES,),
    "qvsetexwiredconf": (ADDRESSES,),
    "qvsetwifionoff": (b"useWifi=on",),
    "qvsetwifiauth": (b"ssid=6162&encryptType=wpa2&password=secret78",),
    "qvsetwirelessconf": (ADDRESSES,),
    "qvsetdefaultroute": (b"default=eth0",),
    "qvsetdatetime": (b"region=Asia&city=Tokyo&useNTP=on&ntpHost=pool.example",),
    "qvgethostname": (ctypes.create_string_buffer(128),),
    "qvsethostname": (b"desk",),
    "qvsetmgrpwd": (b"password=x",),
    "qvreaddb": (42, ctypes.create_string_buffer(64), 64),
    "qvwritedb": (42, b"text"),
    "qvsetlanguage": (b"language=en_US",),
    "qvsetvmwaretoolbar": (1,),
    "qvsethdxcamera": (1,),
    "qvsetcitrixtoolbar": (1,),
    "qvsetcitrixprinter": (1,),
    "xmlread": (b"configItem", b"tc_config_param_8", ctypes.create_string_buffer(65536)),
    "xmlwrite": (b"callersItem", b"key", ctypes.create_string_buffer(b"value", 65536)),
    "download": (b"http://10.0.0.1/update.qvtc",),
}


def settings():
    if not DOCUMENT.exists():
        return {}
    item = ElementTree.parse(DOCUMENT).find("configItem")
    return {} if item is None else {key.tag: key.text or "" for key in item}


def base_programs():
    """The programs that the header takes for granted."""
    listed = re.search(r" all {9}(.*?)\(not", pages.header_text(), re.DOTALL).group(1)
    return set(re.findall(r"\w+", listed))


class Entries(unittest.TestCase):
    def call(self, name):
        """(programs, keys) that a call has run and changed."""
        before = settings()
        RECORD.write_text("", encoding="utf-8")
        getattr(LIBRARY, name)(*ARGUMENTS.get(name, ()))
        # Three texts a command; the last is what the shell was given.
        commands = RECORD.read_text(encoding="utf-8", errors="replace").split("\0")[2::3]
        after = settings()
        source = "os()" + "".join(' run("' + re.sub(r'["\\\n]', "'", text) + '")' for text in commands)
        changed = {key for key in before.keys() | after.keys() if before.get(key) != after.get(key)}
        return set(pages.commands_in(source)), changed

    def test_what_is_run_and_stored_is_in_the_entry(self):
        os.environ["PATH"] = "/nowhere"  # no program is there, and none is waited for
        more = {}
        # The launch comes last: its watcher goes on for a while beside later calls.
        for name, comment in sorted(pages.entries(), key=lambda entry: entry[0] == "qvlaunchclient"):
            lines = dict(pages.last_lines(comment))
            programs, keys = self.call(name)
            unnamed = {word for word in programs - base_programs() - {"cd"}
                       if not pages.is_named(word, lines["Runs"])}
            unnamed |= keys - set(KEY.findall(lines["Stores"]))
            if unnamed:
                more[name] = unnamed
        self.assertEqual(more, {})


if __name__ == "__main__":
    unittest.main()
