"""Installation and removal. A test is skipped with a message if a tool is missing."""

import hashlib
import os
import pathlib
import platform
import re
import shutil
import subprocess
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
BUILD = pathlib.Path(os.environ.get("CORVANE_BUILD", ROOT / "build/release"))
BUNDLE = BUILD / "Corvane.app"
APP = "Applications/Corvane.app"
PLACEMENT = ROOT / "tools/setup/placement.sh"
POLICY = "usr/share/polkit-1/actions/org.corvane.policy"


def run(*command, environment=None, check=True):
    """The output of the command on both streams."""
    ended = subprocess.run(command, env=os.environ | {"LC_ALL": "C.UTF-8"} | (environment or {}),
                           stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False)
    if check and ended.returncode != 0:
        raise AssertionError(f"{command} ended with {ended.returncode}:\n{ended.stdout}")
    return ended.stdout if check else (ended.returncode, ended.stdout)


def sha256(path):
    return hashlib.sha256(path.read_bytes()).hexdigest()


def needs(tool):
    return unittest.skipUnless(shutil.which(tool), f"{tool} is not installed")


class Folder(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="corvane packaging ")
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)


class Hardening(unittest.TestCase):
    """Checks the compiler and linker options in the installed program."""

    @needs("readelf")
    def test_program(self):
        told = run("readelf", "--wide", "--segments", "--dynamic", "--dyn-syms", "--notes",
                   BUNDLE / "bin/corvane")
        present = {
            "position-independent": r"Flags: .*\bPIE\b",
            "bound before it runs": r"Flags: NOW\b",
            "relocations made read-only": r"\bGNU_RELRO\b",
            "stack not executable": r"\bGNU_STACK(\s+0x0+){3}\s0x0+\s0x0+\s+RW\s",
            "stack guarded": r"\b__stack_chk_fail\b",
            "library's assertions": r"\b__glibcxx_assert_fail|\b_ZSt21__glibcxx_assert_fail",
        }
        if platform.machine() == "x86_64":
            present["shadow stack"] = r"x86 feature:.*\bSHSTK\b"
        self.assertEqual([what for what, trace in present.items() if not re.search(trace, told)], [])
        self.assertNotRegex(told, r"\bTEXTREL\b|\(R(UN)?PATH\)|LOAD.*\sRWE\s")


class Descriptions(Folder):
    @needs("desktop-file-validate")
    def test_desktop_entry(self):
        self.assertEqual(run("desktop-file-validate", *BUNDLE.glob("share/applications/*")), "")

    @needs("appstreamcli")
    def test_metadata(self):
        told = run("appstreamcli", "validate", "--no-net", "--pedantic", "--no-color",
                   *BUNDLE.glob("share/metainfo/*"))
        # The application's id is also the name of its login item and its name on the bus. AppStream before
        # 1.0 does not know the element that later versions require.
        self.assertLessEqual(set(re.findall(r"^[EWIP]: \S+ (.*)", told, re.M)),
                             {"cid-contains-uppercase-letter org.corvane.Corvane", "unknown-tag developer"})

    @needs("man")
    def test_manual_page(self):
        page = next(BUNDLE.glob("share/man/man1/*"))
        self.assertEqual(run("sh", "-c", 'man --warnings -E UTF-8 -l -Tutf8 -Z "$1" >/dev/null', "sh", page), "")
        text = run("sh", "-c", 'man -E ascii -l "$1" | col -b', "sh", page)
        options = re.findall(r"--[a-z-]+", run(BUNDLE / "bin/corvane", "--help"))
        self.assertIn("--endpoints", options)
        self.assertEqual([option for option in options if option not in text], [])


class Installation(Folder):
    def install(self, *arguments, check=True):
        return run(ROOT / "install.sh", *arguments, check=check, environment={
            "DESTDIR": str(self.folder), "XDG_CONFIG_HOME": "/config"})

    def put(self, bundle=BUNDLE, check=True):
        return self.install("--bundle", str(bundle), check=check)

    def assert_refused(self, reason, bundle=BUNDLE):
        status, told = self.put(bundle, check=False)
        self.assertNotEqual(status, 0)
        self.assertIn(reason, told)

    def tree(self):
        """Every path below the folder with its content: a link's target or a file's bytes."""
        return {str(path.relative_to(self.folder)):
                os.readlink(path) if path.is_symlink() else path.read_bytes() if path.is_file() else None
                for path in self.folder.rglob("*")}

    def write(self, path, text=""):
        path = self.folder / path
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text)
        return path

    def installed_tree(self):
        """The tree without what a test has prepared for it."""
        return {path: content for path, content in self.tree().items()
                if path.partition("/")[0] in ("Applications", "usr")}

    def newer_bundle(self):
        newer = self.folder / "newer"
        shutil.copytree(BUNDLE, newer)
        (newer / "share/icons/hicolor/16x16/apps/org.corvane.Corvane.png").unlink()
        return newer

    def test_puts_everything_in_place_and_takes_it_away(self):
        made_by_others = [self.folder / "usr/local/share/man", self.folder / "usr/local/share/icons/other"]
        for folder in made_by_others:
            folder.mkdir(parents=True)
        self.put()
        installed = self.tree()
        self.assertEqual(installed[POLICY], (BUNDLE / "share/polkit-1/actions/org.corvane.policy").read_bytes())
        links = [path for path in self.folder.rglob("*") if path.is_symlink()]
        self.assertEqual({str(link.relative_to(self.folder)) for link in links},
                         {"usr/local/bin/corvane"} | {
                             ("usr/share/" if path.parts[0] == "metainfo" else "usr/local/share/") + str(path)
                             for path in (file.relative_to(BUNDLE / "share") for file in BUNDLE.rglob("share/**/*")
                                          if file.is_file())
                             if path.parts[0] not in ("doc", "polkit-1")})
        for link in links:
            self.assertTrue((self.folder / os.readlink(link).lstrip("/")).is_file(), link)
        for path in self.folder.rglob("*"):
            self.assertFalse(not path.is_symlink() and path.stat().st_mode & 0o022, path)

        self.put()
        self.assertEqual(self.tree(), installed)

        self.write("config/autostart/org.corvane.Corvane.desktop", f'Exec="/{APP}/bin/corvane"\n')
        other = self.write("usr/local/share/applications/other.desktop")
        self.assertIn("settings", self.install("--uninstall"))
        self.assertEqual([path for path in self.folder.rglob("*") if not path.is_dir()], [other])
        self.assertFalse((self.folder / "Applications").exists())
        self.assertEqual(sorted(folder for folder in (self.folder / "usr/local/share").rglob("*") if folder.is_dir()),
                         sorted([*made_by_others, made_by_others[1].parent, other.parent]))
        self.assertIn("not installed", self.install("--uninstall"))

    def test_upgrades(self):
        self.put()
        with open(self.folder / APP / "bin/corvane", "rb") as running:
            old = os.fstat(running.fileno()).st_ino
            self.put(self.newer_bundle())
            self.assertEqual(running.read(4), b"\x7fELF")
        self.assertNotEqual((self.folder / APP / "bin/corvane").stat().st_ino, old)
        self.assertNotIn("usr/local/share/icons/hicolor/16x16/apps/org.corvane.Corvane.png", self.tree())
        self.assertEqual(os.listdir(self.folder / "Applications"), ["Corvane.app"])

    def test_survives_failures(self):
        newer = self.newer_bundle()
        self.put()
        man = self.folder / "usr/local/share/man/man1"
        shutil.rmtree(man)
        man.write_text("a file where a folder has to be")
        before = self.tree()
        for killed_between_renames in (False, True):
            if killed_between_renames:
                (self.folder / APP).rename(self.folder / "Applications/.Corvane.app.old")
            self.assert_refused("as it was before", newer)
            self.assertEqual(self.tree(), before)

    def test_a_failed_first_installation_leaves_nothing(self):
        self.write("usr/local/share/man", "a file where a folder has to be")
        before = self.tree()
        self.assertNotEqual(self.put(check=False)[0], 0)
        self.assertEqual({path for path in self.tree() if not (self.folder / path).is_dir()},
                         {path for path in before if not (self.folder / path).is_dir()})

    def test_installs_nothing_that_changed_while_sudo_waited(self):
        policy = "share/polkit-1/actions/org.corvane.policy"
        elsewhere = self.write("elsewhere", (BUNDLE / policy).read_text())

        # As if the bundle had another content for the moment of the copy.
        changing_copy = self.write("bin/cp", '#!/bin/sh\n/bin/cp "$@"\nfor to; do :; done\ntouch "$to/share/more"\n')

        def link(path):
            path.unlink()
            path.symlink_to(elsewhere)

        def into_link(path):
            path.rename(self.folder / "moved")
            path.symlink_to(self.folder / "moved")
        changes = {
            "content": lambda bundle: (bundle / policy).write_text("<policyconfig/>"),
            "link": lambda bundle: link(bundle / policy),
            "linked folder": lambda bundle: into_link(bundle / "share/polkit-1"),
            "pipe": lambda bundle: os.mkfifo(bundle / "share/pipe"),
            "more": lambda bundle: (bundle / "share/applications/more.desktop").touch(),
            "less": lambda bundle: next(bundle.glob("share/metainfo/*")).unlink(),
            "while it is copied": lambda bundle: changing_copy.chmod(0o755),
            "name": lambda bundle: (bundle / "share/doc").rename(bundle / "share/dox"),
        }
        for installed in (False, True):
            for what, change in changes.items():
                with self.subTest(what, installed=installed):
                    bundle = self.folder / "bundle"
                    shutil.copytree(BUNDLE, bundle)
                    digest = run(PLACEMENT, "digest", bundle).strip()
                    before = self.installed_tree()
                    change(bundle)
                    status, told = run(PLACEMENT, "put", bundle, digest, sha256(BUNDLE / policy), check=False,
                                       environment={"DESTDIR": str(self.folder),
                                                  "PATH": f"{changing_copy.parent}:{os.environ['PATH']}"})
                    changing_copy.chmod(0o644)
                    self.assertNotEqual(status, 0, told)
                    self.assertRegex(told, "changed since|neither a file nor a folder")
                    self.assertEqual(self.installed_tree(), before)
                    shutil.rmtree(bundle)
                    shutil.rmtree(self.folder / "moved", ignore_errors=True)
            self.put()

    def test_refuses_what_is_not_for_root_to_install(self):
        other_policy = self.newer_bundle()
        with open(other_policy / "share/polkit-1/actions/org.corvane.policy", "a", encoding="utf-8") as policy:
            policy.write("\n")
        linked = self.folder / "linked"
        shutil.copytree(BUNDLE, linked)
        (linked / "share/link").symlink_to("doc")
        self.put()
        for bundle, reason in ((other_policy, "not the one of this version"),
                               (linked, "share/link is neither a file nor a folder")):
            with self.subTest(reason):
                before = self.installed_tree()
                self.assert_refused(reason, bundle)
                self.assertEqual(self.installed_tree(), before)

    @unittest.skipUnless(os.geteuid() == 0, "needs root")
    def test_root_installs_only_where_nobody_else_may_write(self):
        applications = self.folder / "Applications"
        applications.mkdir()
        for owner, mode in ((0, 0o775), (0, 0o757), (1, 0o755)):
            os.chown(applications, owner, -1)
            applications.chmod(mode)
            self.assert_refused("writable by nobody else")
            self.assertEqual(os.listdir(applications) if applications.exists() else [], [])
            applications.mkdir(exist_ok=True)

    def test_leaves_what_is_not_its_own(self):
        for path in ("usr/local/bin/corvane", POLICY, f"{APP}/bin/other",
                     "config/autostart/org.corvane.Corvane.desktop"):
            with self.subTest(path):
                file = self.write(path, "Exec=/opt/another\n")
                before = self.tree()
                if not path.startswith("config"):
                    self.assert_refused("move it away")
                self.assertIn("not installed", self.install("--uninstall"))
                self.assertEqual(self.tree(), before)
                file.unlink()
                shutil.rmtree(self.folder / APP, ignore_errors=True)


@needs("lintian")
@needs("dpkg-shlibdeps")
class DebianPackage(Folder):
    def test_package(self):
        run("cpack", "-G", "DEB", "-B", str(self.folder), "--config", BUILD / "CPackConfig.cmake")
        package, = self.folder.glob("*.deb")
        # Compiler and C library decide whether there is a call for _FORTIFY_SOURCE to replace.
        told = run("lintian", "--display-info", "--pedantic", "--fail-on", "error,warning,info,pedantic",
                   "--suppress-tags", "hardening-no-fortify-functions", "--allow-root", package)
        self.assertEqual(re.findall("^[EWIP]: .*", told, re.M), [])
        self.assertEqual(run("dpkg-deb", "--field", package, "Version").strip(),
                         run(BUNDLE / "bin/corvane", "--version").split()[1] + "-1")
        contents = self.folder / "contents"
        run("dpkg-deb", "--extract", package, contents)
        same = {path.relative_to(BUNDLE): path.read_bytes() for path in BUNDLE.rglob("*") if path.is_file()}
        for path, content in same.items():
            self.assertEqual((contents / APP / path).read_bytes(), content)
            if path.parts[0] == "share":
                self.assertEqual((contents / "usr" / path).read_bytes(), content)
        self.assertEqual(os.readlink(contents / "usr/bin/corvane"), f"/{APP}/bin/corvane")


if __name__ == "__main__":
    unittest.main()
