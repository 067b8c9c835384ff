# SPDX-FileCopyrightText: 2026 The Tonewright Authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""tonewright-files as it is used in a shell."""
import collections
import concurrent.futures
import http.server
import os
import pathlib
import pty
import random
import shutil
import subprocess
import sys
import tempfile
import threading
import time
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
from cases import BUILD, SOURCE, main  # noqa: E402

TOOL = BUILD / "bin/tonewright-files"
END = "WARNUNG:  Unbekannter Typ des Dateiobjektes oder <nil>.\n"


class SlowServer(http.server.ThreadingHTTPServer):
    """Sends the same content to everyone, over a quarter of a second, and tells when it was asked for a path."""
    content = bytes(i * 7 % 251 for i in range(1_500_000))

    class Answer(http.server.BaseHTTPRequestHandler):
        def do_GET(self):
            self.server.asked[self.path].set()
            self.send_response(200)
            self.send_header("Content-Length", str(len(SlowServer.content)))
            self.end_headers()
            for at in range(0, len(SlowServer.content), 65536):
                self.wfile.write(SlowServer.content[at:at + 65536])
                time.sleep(0.01)

        def log_message(self, *_):
            pass

    def __init__(self):
        super().__init__(("127.0.0.1", 0), self.Answer)
        self.asked = collections.defaultdict(threading.Event)
        threading.Thread(target=self.serve_forever, daemon=True).start()

    def handle_error(self, *_):
        pass  # the other side was killed


class Tool(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="tonewright-tool-"))
        self.addCleanup(shutil.rmtree, self.folder, ignore_errors=True)
        (self.folder / "music/Drums").mkdir(parents=True)
        (self.folder / "music/Drums/kick.wav").write_bytes(b"x" * 1500)
        (self.folder / "music/b.txt").write_text("b")

    def run_tool(self, *words, stdin="", **keywords):
        return subprocess.run([TOOL, *words], input=stdin, capture_output=True, text=True, cwd=self.folder,
                              timeout=60, **keywords)

    def test_forms_go_to_standard_output_and_lines_elsewhere(self):
        result = self.run_tool("xml", ".//music/.")  # relative
        self.assertEqual((result.returncode, result.stderr), (0, END))
        self.assertTrue(result.stdout.startswith(f"\n<folder path='{self.folder}/music' expanded='true' "))
        self.assertIn("\n\t\t<file name='kick.wav' size='2 KB' ", result.stdout)
        self.assertTrue(result.stdout.endswith("\n</folder>\n"))
        self.assertEqual(self.run_tool("scan", "music/").stdout, "2 files, 1 folder, 1501 bytes\n")
        listing = self.run_tool("list", "music").stdout
        self.assertEqual(listing.count("\n\t"), 3)
        self.assertIn(f"<files basepath='{self.folder}/music'>", listing)
        page = self.run_tool("page", "music", str(os.stat(self.folder / "music/Drums").st_ino))
        self.assertIn("name='kick.wav'", page.stdout)
        self.assertNotIn("b.txt", page.stdout)
        self.assertIn("b.txt", self.run_tool("page", "music").stdout)
        missing = self.run_tool("page", "music", "x")
        self.assertEqual((missing.returncode, missing.stdout), (1, ""))
        (self.folder / "empty").mkdir()
        for root in ((), ("NSFileProviderRootContainerItemIdentifier",)):
            self.assertEqual(self.run_tool("page", "empty", *root).returncode, 0)
        dump = self.run_tool("dump", "music")
        self.assertEqual(dump.stderr, END)
        self.assertEqual(dump.stdout.count("\n"), 5 + 5 + 14 + 14)

    def test_nothing_is_deleted_unasked(self):
        litter = self.folder / "music/__MACOSX/deep"
        litter.mkdir(parents=True)
        (self.folder / "music/Drums/a\x1b[31m.DS_Store").touch()
        (self.folder / os.fsdecode("music/Drums/c\x9bd".encode() + b"\x9b" +
                                   "\N{MUSICAL SYMBOL G CLEF}ü.DS_Store".encode())).touch()
        refused = self.run_tool("scan", "music")
        self.assertEqual((refused.returncode, refused.stdout), (1, ""))
        lines = self.folder / "lines"
        lines.mkdir()
        for name in ("a.DS_Store\nb", "c\\.DS_Store", "d\\\n.DS_Store"):
            (lines / name).touch()
        self.assertEqual(self.run_tool("scan", "-ny", "-oresult", "lines").returncode, 0)
        self.assertEqual((self.folder / "result").read_text(),
                         f"\\{lines}/a.DS_Store\\nb\n{lines}/c\\.DS_Store\n\\{lines}/d\\\\\\n.DS_Store\n")
        self.assertEqual(len(os.listdir(lines)), 3)
        self.assertTrue(litter.exists())
        for answer, code in (("n", 1), ("", 1), ("yes!", 1), ("Yes", 0)):
            master, slave = pty.openpty()
            process = subprocess.Popen([TOOL, "scan", "music"], stdin=slave, stdout=subprocess.PIPE, stderr=slave,
                                       cwd=self.folder)
            os.write(master, answer.encode() + b"\n")
            self.assertEqual(process.wait(timeout=60), code)
            process.stdout.close()
            os.close(slave)
            asked = os.read(master, 65536)
            self.assertIn(b"Delete and go on? [y/N]", asked)
            # A name does not command the terminal.
            self.assertIn(b"  Drums/a?[31m.DS_Store", asked)
            self.assertIn("  Drums/c?d?\N{MUSICAL SYMBOL G CLEF}ü.DS_Store".encode(), asked)
            os.close(master)
            self.assertEqual(litter.exists(), code == 1)
        (self.folder / "music/.DS_Store").touch()
        self.assertEqual(self.run_tool("scan", "-y", "music").returncode, 0)
        self.assertFalse((self.folder / "music/.DS_Store").exists())

    def test_pipes_files_and_usage(self):
        self.assertEqual(self.run_tool("scan", "-", stdin="music\n").stdout, "2 files, 1 folder, 1501 bytes\n")
        self.assertEqual(self.run_tool("scan", "music", "-o", "result").stdout, "")
        self.assertEqual((self.folder / "result").read_text(), "2 files, 1 folder, 1501 bytes\n")
        self.assertEqual(self.run_tool("scan", "music", "-o", "none/result").returncode, 1)
        for form in ("xml music", "dump music", "report"):
            full = subprocess.run(f"'{TOOL}' {form} > /dev/full", shell=True, cwd=self.folder, capture_output=True)
            self.assertEqual(full.returncode, 1, form)
            self.assertIn(b"cannot write standard output: No space left on device", full.stderr)
        closed = subprocess.run(f"'{TOOL}' xml -o result music >&-", shell=True, cwd=self.folder, capture_output=True)
        self.assertEqual((closed.returncode, closed.stderr.decode()), (0, END))
        self.assertTrue((self.folder / "result").read_text().endswith("\n</folder>\n"))
        for form in ("xml music", "dump music", "report", "--help", "download http://127.0.0.1:1/"):
            closed = subprocess.run(f"'{TOOL}' {form} >&-", shell=True, cwd=self.folder, capture_output=True)
            self.assertEqual(closed.returncode, 1, form)
            self.assertIn(b"cannot write standard output: Bad file descriptor", closed.stderr)
        help_text = self.run_tool("--help")
        self.assertEqual(help_text.returncode, 0)
        self.assertTrue(help_text.stdout.startswith("Usage: tonewright-files "))
        self.assertRegex(self.run_tool("--version").stdout, r"^tonewright-files \d+\.\d+")
        for wrong in ((), ("sing",), ("xml",), ("xml", "a", "b"), ("scan", "--loud", "music"), ("download", "no url"),
                      ("scan", "music", "-o"), ("scan", ""), ("scan", "-"), ("download", "-n", "http://127.0.0.1:1/"),
                      ("report", "--yes")):
            result = self.run_tool(*wrong)
            self.assertEqual((result.returncode, result.stdout), (2, ""), wrong)
            self.assertTrue(result.stderr.startswith("tonewright-files: "), wrong)
        missing = self.run_tool("xml", "none")
        self.assertEqual(missing.returncode, 1)
        self.assertEqual(missing.stderr,
                         f"Error: Could not set current path '{self.folder}/none' for the file manager.\n")

    def test_what_cannot_be_read_is_said_and_fails(self):
        closed = self.folder / "closed"
        closed.mkdir(mode=0o311)
        bounds = ["setpriv", "--bounding-set=-dac_override,-dac_read_search"] if os.geteuid() == 0 else []
        for words in (("scan",), ("scan", "-y"), ("xml", "-y"), ("scan", "-n")):
            result = subprocess.run([*bounds, TOOL, *words, closed], capture_output=True, text=True, timeout=60)
            self.assertEqual((result.returncode, result.stdout, result.stderr),
                             (1, "", f"tonewright-files: cannot open '{closed}'\n"), words)
        # A process that has ended and was not waited for: the names in its "net" cannot be read.
        process = subprocess.Popen(["true"])
        self.addCleanup(process.wait)
        os.waitid(os.P_PID, process.pid, os.WEXITED | os.WNOWAIT)
        failing = f"/proc/{process.pid}/net"
        error = f"The directory '{failing}' couldn't be read to its end (Invalid argument).\n"
        for words, output in ((("scan", "-y"), "0 files, 0 folders, 0 bytes\n"), (("scan", "-n"), "")):
            result = self.run_tool(*words, failing)
            self.assertEqual((result.returncode, result.stdout), (1, output))
            self.assertEqual(result.stderr.removeprefix(END), error)
        nowhere = 'mkdir gone && cd gone && rmdir ../gone && exec "$0" scan -n none'
        removed = subprocess.run(["sh", "-c", nowhere, TOOL], cwd=self.folder, capture_output=True, timeout=60)
        self.assertEqual(removed.returncode, 2)

    def test_downloads(self):
        environment = dict(os.environ, XDG_DATA_HOME=str(self.folder / "data"))
        failed = self.run_tool("download", "http://127.0.0.1:1/", env=environment)
        self.assertEqual((failed.returncode, failed.stderr), (1, ""))
        self.assertTrue(failed.stdout.endswith("\nAsynchroner Download...\n"))
        self.assertIn("FEHLER: Während des Downloads der Datei (http://127.0.0.1:1/)", failed.stdout)
        local = self.run_tool("download", f"file://{self.folder}/music/b.txt", env=environment)
        self.assertEqual((local.returncode, local.stdout.count("\n")), (1, 2))
        self.assertIn("only what comes over http or https is stored", local.stderr)

    def test_a_killed_download_leaves_the_old_file_or_none_or_the_whole_new(self):
        server = SlowServer()
        self.addCleanup(server.shutdown)

        def run(number):
            group = self.folder / str(number) / "group.tonewright.example"
            group.mkdir(parents=True)
            (group / "download.zip").write_bytes(b"the old file")
            process = subprocess.Popen(
                [TOOL, "download", f"http://127.0.0.1:{server.server_port}/{number}"], stdout=subprocess.DEVNULL,
                env=dict(os.environ, XDG_DATA_HOME=str(group.parent), TMPDIR=str(group.parent)))
            self.assertTrue(server.asked[f"/{number}"].wait(60))
            if number % 20 != 0:  # these come to their end
                time.sleep(random.uniform(0, 0.4))
                process.kill()
            process.wait()
            self.assertLessEqual(set(os.listdir(group)), {"download.zip"})
            self.assertEqual(os.listdir(group.parent), [group.name])  # no copy beside it, however the tool ended
            content = (group / "download.zip").read_bytes() if os.listdir(group) else b""
            self.assertIn(content, (b"", b"the old file", server.content))
            return len(content)

        with concurrent.futures.ThreadPoolExecutor(25) as several:
            lengths = collections.Counter(several.map(run, range(210)))
        self.assertGreater(lengths[len(b"the old file")], 0)
        self.assertGreaterEqual(lengths[len(server.content)], 11)

    @unittest.skipUnless(shutil.which("mandoc"), "no mandoc")
    def test_the_manual_page_is_well_formed(self):
        lint = subprocess.run(["mandoc", "-Tlint", "-Wwarning", SOURCE / "tools/files/tonewright-files.1"],
                              capture_output=True, text=True)
        self.assertEqual(lint.stdout, "")


if __name__ == "__main__":
    main("test_files_tool")
