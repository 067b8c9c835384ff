# SPDX-FileCopyrightText: 2026 The Tonewright Authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Tests tonewright-files as users run it in a shell."""
import collections
import concurrent.futures
import http.server
import os
import pathlib
import pty
import random
import shutil
import subprocess
import tempfile
import threading
import time
import unittest

from cases import BUILD, main

TOOL = BUILD / "bin/tonewright-files"
END = "WARNUNG:  Unbekannter Typ des Dateiobjektes oder <nil>.\n"
COUNTS = "2 files, 1 folder, 1501 bytes\n"


class SlowAnswer(http.server.BaseHTTPRequestHandler):
    """A server that sends the same content to every client, over a quarter of a second."""
    content = bytes(i * 7 % 251 for i in range(1_500_000))

    def do_GET(self):
        self.send_response(200)
        self.send_header("Content-Length", str(len(self.content)))
        self.end_headers()
        for at in range(0, len(self.content), 65536):
            self.wfile.write(self.content[at:at + 65536])
            time.sleep(0.01)

    def log_message(self, *_):
        pass


class Tool(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="tonewright-tool-"))
        self.addCleanup(shutil.rmtree, self.folder, ignore_errors=True)
        (self.folder / "music/Drums").mkdir(parents=True)
        (self.folder / "music/Drums/kick.wav").write_bytes(b"x" * 1500)
        (self.folder / "music/b.txt").write_text("b")

    def run_tool(self, *words, **keywords):
        return subprocess.run([TOOL, *words], capture_output=True, text=True, cwd=self.folder, timeout=60,
                              **({"stdin": subprocess.DEVNULL} if "input" not in keywords else {}), **keywords)

    def in_shell(self, command: str):
        """Run a shell command in which "$T" is the tool; return its exit status and its standard error."""
        result = subprocess.run(["sh", "-c", command], cwd=self.folder, capture_output=True, text=True, timeout=60,
                                env=dict(os.environ, T=str(TOOL)))
        return result.returncode, result.stderr

    def test_forms_go_to_standard_output_and_lines_elsewhere(self):
        result = self.run_tool("xml", ".//music/.")  # relative
        self.assertEqual((result.returncode, result.stderr), (0, END))
        self.assertTrue(result.stdout.startswith(f"\n<folder path='{self.folder}/music' expanded='true' "))
        self.assertIn("\n\t\t<file name='kick.wav' size='2 KB' ", result.stdout)
        self.assertTrue(result.stdout.endswith("\n</folder>\n"))
        listing = self.run_tool("list", "music").stdout
        self.assertEqual(listing.count("\n\t"), 3)
        self.assertIn(f"<files basepath='{self.folder}/music'>", listing)
        page = self.run_tool("page", "music", str(os.stat(self.folder / "music/Drums").st_ino)).stdout
        self.assertEqual(("kick.wav" in page, "b.txt" in page), (True, False))
        self.assertIn("b.txt", self.run_tool("page", "music").stdout)
        missing = self.run_tool("page", "music", "x")
        self.assertEqual((missing.returncode, missing.stdout), (1, ""))
        (self.folder / "empty").mkdir()
        for root in ((), ("NSFileProviderRootContainerItemIdentifier",)):
            self.assertEqual(self.run_tool("page", "empty", *root).returncode, 0)
        dump = self.run_tool("dump", "music")
        self.assertEqual((dump.stderr, dump.stdout.count("\n")), (END, 5 + 5 + 14 + 14))

    def test_nothing_is_deleted_unasked(self):
        litter = self.folder / "music/__MACOSX/deep"
        litter.mkdir(parents=True)
        clef = "\N{MUSICAL SYMBOL G CLEF}ü.DS_Store"
        (self.folder / "music/Drums/a\x1b[31m.DS_Store").touch()
        (self.folder / os.fsdecode(b"music/Drums/c\xc2\x9bd\x9b" + clef.encode())).touch()
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
        for answer, code in (("n", 1), ("", 1), ("yes!", 1), ("Yes", 0)):
            master, slave = pty.openpty()
            os.write(master, answer.encode() + b"\n")
            process = subprocess.run([TOOL, "scan", "music"], stdin=slave, stdout=subprocess.PIPE, stderr=slave,
                                     cwd=self.folder, timeout=60)
            os.close(slave)
            asked = os.read(master, 65536)
            os.close(master)
            self.assertEqual(process.returncode, code)
            # A file name must not send control sequences to the terminal.
            for said in ("Delete and go on? [y/N]", "  Drums/a?[31m.DS_Store", "  Drums/c?d?" + clef):
                self.assertIn(said.encode(), asked)
            self.assertEqual(litter.exists(), code == 1)
        (self.folder / "music/.DS_Store").touch()
        self.assertEqual(self.run_tool("scan", "-y", "music").returncode, 0)
        self.assertFalse((self.folder / "music/.DS_Store").exists())

    def test_pipes_files_and_usage(self):
        self.assertEqual(self.run_tool("scan", "-", input="music\n").stdout, COUNTS)
        self.assertEqual(self.run_tool("scan", "music", "-o", "result").stdout, "")
        self.assertEqual((self.folder / "result").read_text(), COUNTS)
        self.assertEqual(self.run_tool("scan", "music", "-o", "none/result").returncode, 1)
        for form in ("xml music", "dump music", "report"):
            status, said = self.in_shell(f'"$T" {form} > /dev/full')
            self.assertEqual(status, 1, form)
            self.assertIn("cannot write standard output: No space left on device", said)
        self.assertEqual(self.in_shell('"$T" xml -o result music >&-'), (0, END))
        self.assertTrue((self.folder / "result").read_text().endswith("\n</folder>\n"))
        for form in ("xml music", "dump music", "report", "--help", "download http://127.0.0.1:1/"):
            status, said = self.in_shell(f'"$T" {form} >&-')
            self.assertEqual(status, 1, form)
            self.assertIn("cannot write standard output: Bad file descriptor", said)
        self.assertTrue(self.run_tool("--help").stdout.startswith("Usage: tonewright-files "))
        self.assertRegex(self.run_tool("--version").stdout, r"^tonewright-files \d+\.\d+")
        for wrong in ((), ("sing",), ("xml",), ("xml", "a", "b"), ("scan", "--loud", "music"), ("download", "no url"),
                      ("scan", "music", "-o"), ("scan", ""), ("scan", "-"), ("download", "-n", "http://127.0.0.1:1/")):
            result = self.run_tool(*wrong)
            self.assertEqual((result.returncode, result.stdout), (2, ""), wrong)
            self.assertTrue(result.stderr.startswith("tonewright-files: "), wrong)

    def test_what_cannot_be_read_is_said_and_fails(self):
        missing = self.run_tool("xml", "none")
        self.assertEqual((missing.returncode, missing.stderr),
                         (1, f"Error: Could not set current path '{self.folder}/none' for the file manager.\n"))
        (self.folder / "closed").mkdir(mode=0o311)
        bounds = "setpriv --bounding-set=-dac_override,-dac_read_search" if os.geteuid() == 0 else ""
        for words in ("scan", "scan -y", "xml -y", "scan -n"):
            self.assertEqual(self.in_shell(f'{bounds} "$T" {words} {self.folder}/closed'),
                             (1, f"tonewright-files: cannot open '{self.folder}/closed'\n"), words)
        # The names in the "net" folder of a zombie process cannot be read.
        process = subprocess.Popen(["true"])
        self.addCleanup(process.wait)
        os.waitid(os.P_PID, process.pid, os.WEXITED | os.WNOWAIT)
        failing = f"/proc/{process.pid}/net"
        error = f"The directory '{failing}' couldn't be read to its end (Invalid argument).\n"
        for option, output in (("-y", "0 files, 0 folders, 0 bytes\n"), ("-n", "")):
            result = self.run_tool("scan", option, failing)
            self.assertEqual((result.returncode, result.stdout, result.stderr.removeprefix(END)), (1, output, error))
        self.assertEqual(self.in_shell('mkdir gone && cd gone && rmdir ../gone && "$T" scan -n none')[0], 2)

    def test_downloads(self):
        environment = dict(os.environ, XDG_DATA_HOME=str(self.folder / "data"))
        failed = self.run_tool("download", "http://127.0.0.1:1/", env=environment)
        self.assertEqual((failed.returncode, failed.stderr), (1, ""))
        self.assertTrue(failed.stdout.endswith("\nAsynchroner Download...\n"))
        self.assertIn("FEHLER: Während des Downloads der Datei (http://127.0.0.1:1/)", failed.stdout)
        local = self.run_tool("download", f"file://{self.folder}/music/b.txt", env=environment)
        self.assertEqual((local.returncode, local.stdout.count("\n")), (1, 2))
        self.assertIn("only http and https URLs can be downloaded", local.stderr)

    def test_a_killed_download_leaves_the_old_file_or_none_or_the_whole_new(self):
        server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), SlowAnswer)
        server.handle_error = lambda *_: None  # ignores the errors of killed clients
        threading.Thread(target=server.serve_forever, daemon=True).start()
        self.addCleanup(server.shutdown)

        def run(number):
            group = self.folder / str(number) / "group.tonewright.example"
            group.mkdir(parents=True)
            (group / "download.zip").write_bytes(b"the old file")
            process = subprocess.Popen(
                [TOOL, "download", f"http://127.0.0.1:{server.server_port}/"], stdout=subprocess.DEVNULL,
                env=dict(os.environ, XDG_DATA_HOME=str(group.parent), TMPDIR=str(group.parent)))
            if number % 20 != 0:  # every twentieth download completes
                time.sleep(random.uniform(0, 0.8))
                process.kill()
            process.wait()
            self.assertLessEqual(set(os.listdir(group)), {"download.zip"})
            self.assertEqual(os.listdir(group.parent), [group.name])  # no temporary file, however the tool ended
            content = (group / "download.zip").read_bytes() if os.listdir(group) else b""
            self.assertIn(content, (b"", b"the old file", SlowAnswer.content))
            return len(content)

        with concurrent.futures.ThreadPoolExecutor(25) as several:
            lengths = collections.Counter(several.map(run, range(210)))
        self.assertGreater(lengths[len(b"the old file")], 0)
        self.assertGreaterEqual(lengths[len(SlowAnswer.content)], 11)


if __name__ == "__main__":
    main("test_files_tool")
