#!/usr/bin/python3
"""Makes the pictures of this folder: every card at scales 1 and 2 (cards/), and the moving picture of the
island opening, sending and folding (island.webp).

Runs the release build on virtual desktops with the local cluster, a real keyring and, as root, a real polkit. Needs
Debian's python3-pil beside what the end-to-end tests need. Takes about two minutes; the machine should be
idle, because the moving picture shows every frame when the screen did."""

import argparse
import pathlib
import shutil
import subprocess
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parents[1]
sys.path.insert(0, str(ROOT / "tests/e2e"))
from PIL import Image, ImageDraw  # noqa: E402
from support import KEY, KEY_ADDRESS, WalletTest, wait_until  # noqa: E402

RECIPIENT = "2iXtA8oeZqUU5pofxK971TCEvFGfems2AcDRaZHKD2pQ"  # of the key with the seed 42, 42, …
GROUND = (58, 92, 128)
MARGIN = 34  # points of the ground below a card
STILL_SECONDS = 2.5  # longer than anything that ends; some cards never rest
MOVING_BYTES = 2**20  # the largest size of the moving picture
MOVING_FRAMES = 30  # a second
POINTER = ((0, 0), (0, 17), (4, 13), (7, 20), (10, 19), (7, 12), (12, 12))  # points


def image_of(picture):
    data = b"".join(picture.row(row) for row in range(picture.height))
    return Image.frombytes("RGB", (picture.width, picture.height), data, "raw", "BGRX")


class Stage(WalletTest):
    """Not a test, but with the wallet and the desktop of the tests."""

    folder = scale = None

    def runTest(self):
        self.localnet.fund(KEY_ADDRESS, 8.2, "2")
        self.localnet.fund(RECIPIENT, 1)
        self.show_cards()
        self.show_locked()
        self.show_tour()
        if self.scale == 1:
            self.film()

    def save(self, name, image):
        image.save(self.folder / "cards" / f"{name}-{self.scale}.png", optimize=True)

    def show(self, corvane, name):
        """Saves the card, with its shadow and some of the ground."""
        corvane.point_at(0, 12)  # away from what was pressed
        time.sleep(STILL_SECONDS)
        picture = corvane.capture()
        bottom = round((corvane.outline(picture)[2] + MARGIN) * self.scale)
        self.save(name, image_of(picture).crop((0, 0, picture.width, bottom)))

    def show_cards(self):
        with self.run_wallet() as corvane:
            self.show_resting(corvane)
            corvane.hover()
            corvane.wait_for("CREATE WALLET")
            self.show(corvane, "setup")
            corvane.press_button("IMPORT")
            corvane.wait_for("IMPORT A WALLET")
            corvane.fill("secret key", KEY)
            self.show(corvane, "import")
            corvane.press_button("IMPORT")
            corvane.wait_for("TOTAL BALANCE", "$1,234.05")
            self.show(corvane, "balance")
            corvane.press_button("RECEIVE")
            corvane.wait_for("COPY ADDRESS")
            self.show(corvane, "receive")
            corvane.press_button("Back to the balance")
            corvane.press_button("SEND")
            corvane.fill("TO", RECIPIENT)
            corvane.fill("AMOUNT", "0.5")
            corvane.wait_enabled("SEND")
            self.show(corvane, "send")
            corvane.press_button("SEND")
            corvane.wait_for("SENT ✓")
            self.show(corvane, "sent")
            corvane.press_button("Settings")
            corvane.wait_for("BACKUP")
            self.show(corvane, "settings")
            corvane.press_button("BACKUP")
            corvane.wait_for("BACK UP YOUR KEY")
            self.show(corvane, "backup")

    def show_resting(self, corvane):
        picture = corvane.capture()
        self.save("rest", image_of(picture).crop((0, 0, picture.width, (corvane.band + MARGIN) * self.scale)))

    def show_locked(self):
        if not self.tester:
            return
        with self.run_wallet({"corvane.address": KEY_ADDRESS}, manner="hang") as corvane:
            corvane.point_at(0, 12)
            wait_until(lambda: corvane.outline()[2] > corvane.band + 20, "the locked card")
            self.show(corvane, "locked")

    def show_tour(self):
        with self.run_corvane(onboarded=False) as corvane:
            for page in range(1, 6):
                corvane.wait_for(f"Page {page} of 5")
                time.sleep(STILL_SECONDS)
                x, y, width, height = corvane.tree.find("Welcome to Corvane", "frame").extents(self.scale)
                pad = 12 * self.scale
                area = round(x - pad), round(y - pad), round(width + 2 * pad), round(height + 2 * pad)
                self.save(f"tour{page}", image_of(self.desktop.screen.capture(*area)))
                self.desktop.screen.press("Right")

    def film(self):
        """The island opens, sends and folds; the pointer is drawn where it was."""
        self.desktop.empty_keyring()
        self.localnet.fund(KEY_ADDRESS, 8.2, "2")
        with self.run_wallet() as corvane:
            self.import_key(corvane, KEY)
            corvane.wait_for("$1,234.05")
            corvane.leave()
            time.sleep(1)
            hand = Hand(self.desktop.screen, corvane.film())
            with hand.film:
                hand.go(*corvane.pixels(-350, 380), seconds=0)
                time.sleep(0.4)
                hand.go(*corvane.pixels(10, 16))
                wait_until(corvane.is_open, "the open card")
                time.sleep(1.6)
                hand.press(corvane.still("SEND", "push button"))
                time.sleep(0.9)
                hand.type(RECIPIENT, 0.012)
                hand.press(corvane.field("AMOUNT"))
                hand.type("0.5", 0.12)
                corvane.wait_enabled("SEND")
                hand.press(corvane.still("SEND", "push button"))
                corvane.wait_for("SENT ✓")
                time.sleep(1.6)
                hand.press(corvane.still("Back to the balance", "push button"))
                time.sleep(1.4)
                hand.go(*corvane.pixels(-350, 380))
                wait_until(corvane.is_resting, "the resting island")
                time.sleep(1)
            save_moving(self.folder / "island.webp", hand)


class Hand:
    """Moves the pointer as a user does, and remembers where it was."""

    def __init__(self, screen, film):
        self._screen, self.film, self.way = screen, film, []

    def go(self, x, y, seconds=0.35):
        here = self._screen.root.query_pointer()
        began = time.monotonic()
        share = 0
        while share < 1:
            share = min(1, (time.monotonic() - began) / seconds) if seconds else 1
            eased = share * share * (3 - 2 * share)
            place = here.root_x + (x - here.root_x) * eased, here.root_y + (y - here.root_y) * eased
            self._screen.jump(*place)
            self.way.append((self.film.now(), place))
            time.sleep(0.008)

    def press(self, thing):
        x, y, width, height = thing.extents(1)
        self.go(x + width / 2, y + height / 2)
        time.sleep(0.15)
        self._screen.click()

    def type(self, text, pause):
        for character in text:
            self._screen.type(character)
            time.sleep(pause)

    def place_at(self, seconds):
        return [place for moment, place in self.way if moment <= seconds][-1]


def save_moving(path, hand):
    """Writes the film with the pointer, in the best quality that fits."""
    frames, film = [], list(hand.film)
    latest = 0
    for number in range(round(hand.film.now() * MOVING_FRAMES)):
        moment = number / MOVING_FRAMES
        if moment < hand.way[0][0]:
            continue
        while latest + 1 < len(film) and film[latest + 1][0] <= moment:
            latest += 1
        image = image_of(film[latest][1])
        x, y = hand.place_at(moment)
        arrow = [(x - hand.film.x + dx, y - hand.film.y + dy) for dx, dy in POINTER]
        ImageDraw.Draw(image).polygon(arrow, fill="black", outline="white")
        frames.append(image)
    for quality in range(90, 20, -10):
        frames[0].save(path, save_all=True, append_images=frames[1:], duration=round(1000 / MOVING_FRAMES),
                       loop=0, quality=quality, method=4, minimize_size=False)
        if path.stat().st_size <= MOVING_BYTES:
            return
    raise RuntimeError(f"{path.name} is too large")


def make(folder, scales):
    for scale in scales:
        kind = {"keyring": True, "size": (1280 * scale, 800 * scale), "scale": scale, "backdrop": GROUND}
        stage = type("Stage", (Stage,), {"folder": folder, "scale": scale, "desktop_kind": kind})
        stage.setUpClass()
        try:
            one = stage()
            one.setUp()
            one.runTest()
        finally:
            stage.doClassCleanups()


def main():
    options = argparse.ArgumentParser(description=__doc__)
    options.add_argument("--into", type=pathlib.Path, help="a folder other than docs/")
    options.add_argument("--scales", type=int, nargs="+", default=(1, 2))
    options.add_argument("--here", action="store_true", help=argparse.SUPPRESS)
    given = options.parse_args()
    if given.here:
        make(given.into, given.scales)
        return
    # It runs as the ordinary user whom with_polkit.py creates, and who may not write to this checkout.
    with tempfile.TemporaryDirectory(prefix="corvane-pictures-") as name:
        cards = pathlib.Path(name) / "cards"
        cards.mkdir()
        for folder in (cards, cards.parent):
            folder.chmod(0o777)
        subprocess.run([ROOT / "tests/e2e/with_polkit.py", "/usr/bin/python3", str(pathlib.Path(__file__).resolve()),
                        "--here", "--into", name, "--scales", *map(str, given.scales)], check=True)
        for picture in sorted(pathlib.Path(name).glob("**/*.*")):
            place = (given.into or ROOT / "docs") / picture.relative_to(name)
            place.parent.mkdir(parents=True, exist_ok=True)
            shutil.copyfile(picture, place)
            print(f"{place}: {place.stat().st_size // 1024} KB")


if __name__ == "__main__":
    main()
