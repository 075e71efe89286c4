"""Holds the public pages against the sources: what a front-end's author reads
must name what the library does.

Usage: public_pages_test.py PROJECT_ROOT
"""

import pathlib
import re
import sys
import unittest

ROOT = pathlib.Path(sys.argv.pop(1))
HEADERS = ("qvtcapi.h", "settings.h", "update.h")
LAST_LINES = ("Stores", "Runs", "Waits", "Read back with", "Fails")
# How a line may begin; what follows explains it.
VOCABULARY = {
    "Waits": r"(none|programs|(lock, )?programs|lock|(lock, |programs; )?long)\b",
    "Fails": r"(none|not told|told)\b",
}
NO_COMMENT = re.compile(r'^\s*//.*$|(?<=[;{},])\s*//.*$', re.MULTILINE)
TEXT = r'"(?:[^"\\\n]|\\.)*"'
TEXTS = re.compile(rf"{TEXT}(?:\s*{TEXT})*")

# First words in texts of the sources that look like commands and are none:
# arguments, words of clients and of configuration files.
NOT_PROGRAMS = {"cd", "encode", "freerdp", "main", "nameserver", "not", "parameter", "qvservice", "spice", "spicec",
                "system", "unkown", "xf_player_thread"}


def read(path):
    return (ROOT / path).read_text(encoding="utf-8")


def header_text():
    return "".join(read(f"include/qvtcapi/{name}") for name in HEADERS)


def pages():
    return header_text() + read("docs/settings.md") + read("docs/numbered-store.md")


def entries():
    """(function, text of the comment right above its declaration)."""
    declaration = re.compile(r"/\*((?:(?!\*/).)*)\*/\n((?:struct json_object \*|int |void )[^;{]*;)", re.DOTALL)
    for comment, declared in declaration.findall(header_text()):
        name = re.match(r"(?:struct json_object \*|\w+ )(\w+)\(", declared).group(1)
        yield name, re.sub(r"^ \* ?", "", comment, flags=re.MULTILINE)


def declared():
    return re.findall(r"^(?:struct json_object \*|int |void )(\w+)\(", header_text(), re.MULTILINE)


def last_lines(comment):
    """The named lines at the end of an entry, each joined into one."""
    found = re.findall(rf"^({'|'.join(LAST_LINES)}): ((?:.+\n?)(?:^ +.+\n?)*)", comment, re.MULTILINE)
    return [(name, " ".join(text.split())) for name, text in found]


def settings_keys():
    keys = re.findall(r'constexpr const char\* \w+ = "([^"]+)"', read("src/store/settings_keys.hpp"))
    return [key for key in keys if key != "configItem"]


def rows_of_keys():
    """key -> its row of the page: value, unset, factory, written by, read by."""
    rows = re.findall(r"^\| `([\w.-]+)` \|(.*)\|$", read("docs/settings.md"), re.MULTILINE)
    cells = {key: [cell.strip() for cell in rest.split(" | ")] for key, rest in rows}
    return {key: row for key, row in cells.items() if len(row) == 5}


def written_keys():
    """key -> the functions whose entries say that they store it."""
    writers = {}
    for name, comment in entries():
        stores = dict(last_lines(comment))["Stores"]
        for key in re.findall(r"(?:tc_config|networkconf|com\.valmora)[\w.-]*\w", stores):
            writers.setdefault(key, set()).add(name)
    return writers


def factory_values():
    rows = re.findall(r'\{"([^"]+)", "([^"]*)",\s*"', read("include/qvtcapi/factory_defaults.h"))
    return {key: value.replace("%", "&") for key, value in rows}


def functions_in(cell):
    return set(re.findall(r"`(qv\w+)`", cell))


def is_named(word, text):
    return re.search(rf"(?<![\w.-]){re.escape(word)}(?![\w-])", text) is not None


def commands_in(text):
    """The first words of the commands of a source's texts."""
    if not re.search(r"\bos\(\)|PipeStream|_command_line", text):
        return
    text = re.sub(r'R"\((.*?)\)"', lambda raw: '"' + raw.group(1).replace('"', "'") + '"', text)
    text = NO_COMMENT.sub("", re.sub(r"^#include.*$", "", text, flags=re.MULTILINE))
    call = r"\b(?:run|capture|lines|PipeStream\w* \w+|first_line)\(\s*(?:textf\(\s*)?"
    direct = {match.end() for match in re.finditer(call, text)}
    for match in TEXTS.finditer(text):
        joined = "".join(part[1:-1] for part in re.findall(TEXT, match.group()))
        if match.start() not in direct and not re.search(r"\S \S", joined):
            continue
        for command in re.split(r"[|;&]+", joined):
            words = command.split()
            while words and re.match(r"^([A-Z_0-9]+=.*|env)$", words[0]):
                words.pop(0)
            if words and re.match(r"^(\\\\)?(/[\w./-]+|[a-z][\w-]*)$", words[0]):
                yield words[0].lstrip("\\")


class LastLines(unittest.TestCase):
    def test_every_declared_function_is_an_entry(self):
        self.assertEqual([name for name, _ in entries()], declared())

    def test_every_entry_ends_with_the_same_lines(self):
        for name, comment in entries():
            self.assertEqual(tuple(line for line, _ in last_lines(comment)), LAST_LINES, name)
            self.assertRegex(comment, r"(?m)\n\nStores: ", f"{name}: the lines stand apart")

    def test_the_lines_keep_to_their_vocabulary(self):
        for name, comment in entries():
            for line, text in last_lines(comment):
                self.assertRegex(text, r"\.$", f"{name}, {line}: ends with a full stop")
                self.assertRegex(text, "^" + VOCABULARY.get(line, "."), f"{name}, {line}")

    def test_what_reads_back_is_a_function(self):
        functions = set(declared())
        for name, comment in entries():
            text = dict(last_lines(comment))["Read back with"]
            named = re.findall(r"(\w+)\(\)", text)
            self.assertTrue(named or text.startswith("nothing"), name)
            self.assertEqual(set(named) - functions, set(), name)


class FrontEndInC(unittest.TestCase):
    def test_it_calls_every_declared_function(self):
        called = set(re.findall(r"\b(\w+)\(", read("tests/abi/front_end_in_c.c")))
        self.assertEqual([name for name in declared() if name not in called], [])


class Names(unittest.TestCase):
    maxDiff = None

    def test_every_settings_key_is_on_the_pages(self):
        missing = [key for key in settings_keys() if not is_named(key, pages())]
        self.assertEqual(missing, [])

    def test_every_file_of_the_library_is_on_the_pages(self):
        paths = re.findall(r'= "(/[^"]+)"', read("src/core/paths.hpp"))
        names = {path: path.removeprefix("/home/root/") for path in paths}
        self.assertEqual([path for path, name in names.items() if not is_named(name, pages())], [])

    def test_every_number_of_the_store_is_on_its_page(self):
        numbers = set(re.findall(r"constexpr unsigned \w+ = (\d+);", read("src/store/numbered_store.hpp")))
        run = set(re.findall(r"qvplugin 0 (\d+)", "".join(p.read_text() for p in (ROOT / "src").glob("*/*.cpp"))))
        rows = set(re.findall(r"^\| (\d+) \|", read("docs/numbered-store.md"), re.MULTILINE))
        self.assertEqual(rows, numbers | run)

    def test_every_settings_key_has_its_row(self):
        wired = {"networkconf-eth0", "networkconf-eth1", "networkconf-wlan0"}
        self.assertEqual(set(rows_of_keys()), set(settings_keys()) | wired)

    def test_who_writes_a_key_is_the_same_in_header_and_page(self):
        header = {key: names - {"qvresetsysconf"} for key, names in written_keys().items()}
        page = {key: functions_in(row[3]) for key, row in rows_of_keys().items()}
        self.assertEqual({key: names for key, names in header.items() if names},
                         {key: names for key, names in page.items() if names})

    def test_what_a_factory_reset_writes_is_on_both_pages(self):
        on_page = {key: row[2] for key, row in rows_of_keys().items()}
        values = {key: text[1:-1] for key, text in on_page.items() if re.match(r"^`[^`]*`$", text)}
        self.assertEqual(values, factory_values())
        reset = {key for key, names in written_keys().items() if "qvresetsysconf" in names}
        self.assertEqual({key for key, text in on_page.items() if text != "kept"}, reset)

    def test_functions_on_the_page_are_declared(self):
        named = set(re.findall(r"`(qv[a-z_]+)(?:\(\w*\))?`", read("docs/settings.md")))
        self.assertEqual(named - set(declared()) - {"qvtcctl", "qvplugin"}, set())

    def test_the_version_is_the_projects(self):
        version = re.search(r"project\(qvtcapi VERSION (\d+)\.(\d+)\.(\d+)", read("CMakeLists.txt")).groups()
        macros = dict(re.findall(r"#define QVTC_VERSION_?(\w*) (\S+)", header_text()))
        self.assertEqual(macros, dict(zip(("MAJOR", "MINOR", "PATCH"), version)) | {"": f'"{".".join(version)}"'})

    def test_every_program_that_is_run_is_in_the_header(self):
        programs = re.search(r"^ \*   Programs .*?^ \* CONVENTIONS", header_text(), re.MULTILINE | re.DOTALL).group()
        missing, seen = set(), set()
        for path in sorted((ROOT / "src").glob("*/*.cpp")):
            text = re.sub(r"\blog\((?:[^()]|\([^()]*\))*\);", "", path.read_text(encoding="utf-8"))
            for word in commands_in(text):
                seen.add(word)
                if word not in NOT_PROGRAMS and not is_named(word, programs):
                    missing.add((word, path.name))
        self.assertEqual(sorted(missing), [])
        self.assertEqual(sorted(NOT_PROGRAMS - seen), [], "no longer needed")


if __name__ == "__main__":
    unittest.main()
