"""A virtual display with a simulated TV and the application on it, for end-to-end tests.

Everything runs in the caller's network namespace, session bus and folders, and ends with the test.
"""

import os
import subprocess
import sys
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

BIN = os.environ["QUIV_BIN_DIR"]

# A program under a sanitizer may take seconds for what it is asked in the middle of its work.
Atspi.set_timeout(20_000, 20_000)


def wait_for(what, condition, seconds=20):
    """Polls the world outside, which sends no events to wait for, until the condition gives something."""
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        result = condition()
        if result:
            return result
        time.sleep(0.05)
    raise AssertionError(f"waited {seconds} s in vain for {what}")


class Desktop:
    SIZE = "1280x820"  # of the application's window

    def __enter__(self):
        self._processes = []
        self.videos = os.path.join(os.environ["HOME"], "Videos")
        os.makedirs(self.videos)
        self.environment = dict(
            os.environ,
            QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1",
            QT_QPA_PLATFORM="xcb",
        )
        self._start_display()
        return self

    def __exit__(self, *_):
        for process in reversed(self._processes):
            process.terminate()
            process.wait(20)

    def start(self, *command, **options):
        process = subprocess.Popen(command, env=self.environment, **options)
        self._processes.append(process)
        return process

    def stop(self, process):
        process.terminate()
        process.wait(20)
        self._processes.remove(process)

    def _start_display(self):
        read, write = os.pipe()
        self.start("Xvfb", "-displayfd", str(write), "-screen", "0", self.SIZE + "x24",
                   "-nolisten", "tcp", pass_fds=[write], stderr=subprocess.DEVNULL)
        os.close(write)
        with os.fdopen(read) as display:
            self.environment["DISPLAY"] = ":" + display.readline().strip()

    def start_simulator(self, *options):
        """Starts a simulated TV; gives the lines it prints until it is ready as a dictionary."""
        simulator = self.start(os.path.join(BIN, "quiv-tv-simulator"), "--exit-with-parent", *options,
                               stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        told = {}
        for line in simulator.stdout:
            if line.strip() == "Ready":
                return told
            key, _, value = line.partition(": ")
            told[key] = value.strip()
        raise AssertionError("the simulated TV ended before it was ready")

    def start_application(self):
        return self.start(os.path.join(BIN, "quiv-controller"))

    def type(self, text):
        for key in text:
            self._xdotool("key", {" ": "space", "-": "minus", ".": "period"}.get(key, key))

    def press_key(self, key):
        self._xdotool("key", key)

    def click(self, element):
        box = Atspi.Component.get_extents(element, Atspi.CoordType.SCREEN)
        self._xdotool("mousemove", str(box.x + box.width // 2), str(box.y + box.height // 2), "click", "1")

    def drag(self, element, start, end):
        """Drags within an element, from and to a share of its width."""
        box = Atspi.Component.get_extents(element, Atspi.CoordType.SCREEN)
        y = str(box.y + box.height // 2)
        places = [str(round(box.x + box.width * (start + (end - start) * step / 8))) for step in range(9)]
        self._xdotool("mousemove", places[0], y, "mousedown", "1")
        for place in places[1:]:
            self._xdotool("mousemove", place, y)
        self._xdotool("mouseup", "1")

    def drop_files(self, target, *paths, held, taken):
        """Drags files from another program onto an element. `held` runs while they are over it, `taken`
        waits until they are there: the other program hands them over and must not end before."""
        source = self.start(os.path.join(BIN, "drag_source"), *paths, stderr=subprocess.DEVNULL)
        wait_for("the other program", lambda: subprocess.run(
            ["xdotool", "search", "--name", "drag source"], env=self.environment,
            capture_output=True).returncode == 0)
        box = Atspi.Component.get_extents(target, Atspi.CoordType.SCREEN)
        x, y = box.x + box.width // 2, box.y + box.height // 2
        self._xdotool("mousemove", "30", "30", "mousedown", "1")
        for step in range(1, 9):  # a drag begins with a movement, and is followed move by move
            self._xdotool("mousemove", str(30 + (x - 30) * step // 8), str(30 + (y - 30) * step // 8))
        held()
        self._xdotool("mouseup", "1")
        taken()
        self.stop(source)

    def _xdotool(self, *arguments):
        subprocess.run(["xdotool", *arguments], env=self.environment, check=True)

    def screenshot(self):
        """Goes to the file that the command line names, if it does."""
        if len(sys.argv) < 2:
            return
        self._xdotool("mousemove", "0", "0")
        subprocess.run(["ffmpeg", "-y", "-loglevel", "error", "-f", "x11grab", "-draw_mouse", "0",
                        "-video_size", self.SIZE, "-i", self.environment["DISPLAY"],
                        "-frames:v", "1", sys.argv[1]], check=True)


def _descendants(element):
    for index in range(element.get_child_count()):
        child = element.get_child_at_index(index)
        if child is not None and child.get_state_set().contains(Atspi.StateType.SHOWING):
            yield child
            yield from _descendants(child)


def elements(role=None, name=None):
    """What assistive technology sees of the application, in order: showing elements only."""
    desktop = Atspi.get_desktop(0)
    found = []
    for index in range(desktop.get_child_count()):
        application = desktop.get_child_at_index(index)
        if application is not None:
            application.set_cache_mask(Atspi.Cache.NONE)
        if application is None or application.get_name() != "quiv-controller":
            continue
        for window in range(application.get_child_count()):
            try:
                found += [each for each in _descendants(application.get_child_at_index(window))
                          if role in (None, each.get_role_name()) and name in (None, each.get_name())]
            except Exception:  # the tree changed while it was read; the next look sees it whole
                return []
    return found


def element(role, name, seconds=20):
    return wait_for(f"{role} '{name}'", lambda: elements(role, name), seconds)[0]


def names(role):
    return [each.get_name() for each in elements(role)]


def focused():
    """The name of what has the keyboard, the innermost; None while nothing has it."""
    found = [each for each in elements() if each.get_state_set().contains(Atspi.StateType.FOCUSED)]
    return found[-1].get_name() if found else None


class Announcements:
    """What a screen reader says by itself, from now on."""

    def __init__(self):
        self._said = []
        self._listener = Atspi.EventListener.new(self._hear)
        self._listener.register("object:state-changed:showing")

    def _hear(self, event):
        try:
            if event.detail1 and event.source.get_role_name() == "notification":
                self._said.append(event.source.get_name())
        except GLib.GError:  # a row that was there and went
            pass

    def said(self):
        while GLib.MainContext.default().iteration(False):
            pass
        return self._said


def press(target):
    """Does what a screen reader does to press a control."""
    assert Atspi.Action.do_action(target, 0), "the control has no press action"
