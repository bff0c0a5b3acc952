"""Capstan end to end: the program runs on the test desktop (scripts/test-desktop) in a home
of its own and is driven the way a user meets it, through its windows as the accessibility
bus (AT-SPI) shows them, the tray through X, and the files it leaves behind.

Widgets are found by their accessible description (the key of their title or image, or their
property name); their accessible name is the text a screen reader says, a label's name its
text. Every wait polls for the result; nothing sleeps a fixed time in the hope it is enough.

Run with /usr/bin/python3: pyatspi is the distribution's package.
"""
import datetime
import json
import os
import plistlib
import re
import shutil
import signal
import struct
import subprocess
import sys
import tempfile
import time
import unittest
import warnings
import xml.etree.ElementTree as ET


def quiet_pyatspi():
    # pyatspi still calls the deprecated names of libatspi's introspection.
    warnings.filterwarnings("ignore", category=DeprecationWarning, module="pyatspi")


quiet_pyatspi()

# ctest reports this exit status as "skipped": the test found no desktop to run on.
SKIP_STATUS = 77
SOURCE_DIR = os.path.abspath(os.path.join(os.path.dirname(__file__), "..", ".."))

pyatspi = None  # imported once the desktop is known to be there (it connects at import)
GLib = None


def desk_problem():
    """Why these tests cannot run here, or None."""
    if not os.environ.get("DISPLAY"):
        return "no DISPLAY: run on scripts/test-desktop"
    if not os.environ.get("DBUS_SESSION_BUS_ADDRESS"):
        return "no DBUS_SESSION_BUS_ADDRESS: the desktop has no session bus"
    try:
        _import_atspi()
        pyatspi.Registry.getDesktop(0).childCount
    except Exception as e:  # noqa: BLE001 - any failure here means no usable bus
        return f"the accessibility bus does not answer: {e}"
    return None


def _import_atspi():
    global pyatspi, GLib
    if pyatspi is None:
        import pyatspi as atspi_module
        from gi.repository import GLib as glib_module

        pyatspi, GLib = atspi_module, glib_module


def main():
    """unittest's main, but a missing desktop makes the whole file skip (status 77)."""
    problem = desk_problem()
    if problem:
        print(f"skipped: {problem}", file=sys.stderr)
        sys.exit(SKIP_STATUS)
    binary = os.environ.get("CAPSTAN_BIN", "")
    if not os.access(binary, os.X_OK):
        print(f"CAPSTAN_BIN={binary!r} is not an executable program", file=sys.stderr)
        sys.exit(1)
    unittest.main(module="__main__", verbosity=2)


# ---------------------------------------------------------------------------------------------
# Waiting


class WaitTimeout(AssertionError):
    pass


class Abort(AssertionError):
    """Raised inside a wait when waiting longer cannot help (the program is gone)."""


def pump_events():
    """Delivers the accessibility events that arrived (they come through GLib's main loop)."""
    if GLib is None:
        return
    context = GLib.MainContext.default()
    while context.pending():
        context.iteration(False)


def wait_until(predicate, timeout=5.0, what="the condition", interval=0.05):
    """Polls predicate until it returns something true, and returns that. An exception from
    the predicate counts as "not yet" (widgets come and go while a window changes), except
    Abort."""
    end = time.monotonic() + timeout
    last_error = None
    while True:
        pump_events()
        try:
            value = predicate()
            if value:
                return value
        except Abort:
            raise
        except Exception as e:  # noqa: BLE001
            last_error = e
        if time.monotonic() > end:
            detail = f" (last error: {last_error!r})" if last_error else ""
            raise WaitTimeout(f"timed out after {timeout:g} s waiting for {what}{detail}")
        time.sleep(interval)


# ---------------------------------------------------------------------------------------------
# Accessibles


def state_names(acc):
    return {pyatspi.stateToString(s) for s in acc.getState().getStates()}


def is_showing(acc):
    return acc.getState().contains(pyatspi.STATE_SHOWING)


def is_enabled(acc):
    st = acc.getState()
    return st.contains(pyatspi.STATE_ENABLED) and st.contains(pyatspi.STATE_SENSITIVE)


def extents(acc):
    """(x, y, width, height) on the X screen."""
    box = acc.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
    return (box.x, box.y, box.width, box.height)


def centre(acc):
    x, y, w, h = extents(acc)
    return (x + w // 2, y + h // 2)


def matches(acc, desc=None, name=None, role=None, showing=True):
    if acc is None:
        return False
    if desc is not None and acc.description != desc:
        return False
    if name is not None and acc.name != name:
        return False
    if role is not None and acc.getRoleName() not in ((role,) if isinstance(role, str) else role):
        return False
    return not showing or is_showing(acc)


def find(root, desc=None, name=None, role=None, showing=True):
    """The first accessible under root (root included) that matches, or None."""
    if matches(root, desc, name, role, showing):
        return root
    return pyatspi.findDescendant(root, lambda a: matches(a, desc, name, role, showing))


def find_all(root, desc=None, name=None, role=None, showing=True):
    return pyatspi.findAllDescendants(root, lambda a: matches(a, desc, name, role, showing))


def actions(acc):
    action = acc.queryAction()
    return [action.getName(i) for i in range(action.nActions)]


def do_action(acc, name):
    names = actions(acc)
    if name not in names:
        raise AssertionError(f"{describe(acc)} has no action {name!r} (it has {names})")
    acc.queryAction().doAction(names.index(name))


def describe(acc):
    try:
        return f"{acc.getRoleName()} name={acc.name!r} desc={acc.description!r}"
    except Exception:  # noqa: BLE001
        return "a gone accessible"


def dump(acc, depth=0, out=None, showing_only=False):
    """The tree under acc as text, for failure messages."""
    out = [] if out is None else out
    try:
        if showing_only and not is_showing(acc):
            return "\n".join(out)
        flags = "" if is_showing(acc) else " (hidden)"
        flags += "" if is_enabled(acc) else " (disabled)"
        out.append("  " * depth + describe(acc) + flags)
        for child in acc:
            if child is not None and child.getRoleName() != "list item":
                dump(child, depth + 1, out, showing_only)
    except Exception as e:  # noqa: BLE001
        out.append("  " * depth + f"<{e!r}>")
    return "\n".join(out)


class PopupWatch:
    """Catches windows and menus as they are shown: popups (QMenu, a tray's menu) are not in
    the application's tree, but they announce that they are showing."""

    def __init__(self):
        self.shown = []

    def _on_event(self, event):
        if event.detail1:
            self.shown.append(event.source)

    def __enter__(self):
        pyatspi.Registry.registerEventListener(self._on_event, "object:state-changed:showing")
        return self

    def __exit__(self, *exc):
        pyatspi.Registry.deregisterEventListener(self._on_event, "object:state-changed:showing")

    def menus(self):
        """The menus shown since the watch began that are still showing."""
        pump_events()
        found = []
        for acc in self.shown:
            try:
                if acc.getRoleName() in ("menu", "popup menu") and is_showing(acc):
                    if acc not in found and any(c.getRoleName() == "menu item" for c in acc):
                        found.append(acc)
            except Exception:  # noqa: BLE001 - a menu already gone
                pass
        return found


def is_selected(acc):
    return acc.getState().contains(pyatspi.STATE_SELECTED)


def list_rows(root):
    """The list of recordings' rows (desc "VideoCell") that show, top down."""
    return sorted(find_all(root, desc="VideoCell"), key=lambda row: extents(row)[1])


def selected_rows(root):
    """The names of the rows shown as selected: the row itself, or the table cell holding it,
    in the selected state."""
    names = []
    for row in list_rows(root):
        holder = row
        for _ in range(2):
            if holder is None:
                break
            if is_selected(holder):
                names.append(row.name)
                break
            holder = holder.parent
    return names


def menu_items(menu):
    """[(text, enabled)] of a menu's items, top down."""
    items = [c for c in menu if c is not None and c.getRoleName() == "menu item"]
    return [(item.name, is_enabled(item)) for item in items]


# ---------------------------------------------------------------------------------------------
# X: the pointer, windows, monitors

_last_click = 0.0


def xdotool(*args):
    result = subprocess.run(["xdotool", *map(str, args)], capture_output=True, text=True,
                            timeout=20)
    if result.returncode != 0:
        raise RuntimeError(f"xdotool {' '.join(map(str, args))}: {result.stderr.strip()}")
    return result.stdout


def click(x, y, button=1, repeat=1):
    """A real click (XTEST) at a point of the screen. Clicks are kept 0.45 s apart, or Qt would
    pair two single clicks into a double click; repeat=2 makes one (80 ms apart)."""
    global _last_click
    gap = 0.45 - (time.monotonic() - _last_click)
    if gap > 0:
        time.sleep(gap)
    xdotool("mousemove", x, y)
    xdotool("click", "--repeat", repeat, "--delay", 80, button)
    _last_click = time.monotonic()


def key(name):
    xdotool("key", name)


def x_geometry(window_id):
    """(x, y, width, height) of an X window, as xdotool reads it."""
    values = dict(
        line.split("=", 1) for line in xdotool("getwindowgeometry", "--shell", window_id).split()
    )
    return (int(values["X"]), int(values["Y"]), int(values["WIDTH"]), int(values["HEIGHT"]))


def x_windows(*search):
    """The ids that `xdotool search` finds (none is not an error)."""
    result = subprocess.run(["xdotool", "search", *map(str, search)], capture_output=True,
                            text=True, timeout=20)
    return result.stdout.split()


def monitors():
    """The RandR monitors as (x, y, width, height), in xrandr's order (the first is DESK-1)."""
    out = subprocess.run(["xrandr", "--listmonitors"], capture_output=True, text=True,
                         check=True).stdout
    found = []
    for line in out.splitlines()[1:]:
        m = re.search(r"(\d+)/\d+x(\d+)/\d+\+(\d+)\+(\d+)", line)
        if m:
            w, h, x, y = map(int, m.groups())
            found.append((x, y, w, h))
    return found


def main_monitor():
    """The main display (x, y, width, height): the RandR monitor marked primary ("*"), else the
    first, as X clients take it when none is marked."""
    out = subprocess.run(["xrandr", "--listmonitors"], capture_output=True, text=True,
                         check=True).stdout
    for line in out.splitlines()[1:]:
        m = re.search(r"^\s*\d+: \+?\*\S+ (\d+)/\d+x(\d+)/\d+\+(\d+)\+(\d+)", line)
        if m:
            w, h, x, y = map(int, m.groups())
            return (x, y, w, h)
    return monitors()[0]


def x_property(name, window_id=None):
    """An X window's property as xprop prints it after its name and type ("= 0",
    ": window id # 0x1, 0x2"), or None when the window has none; the root's without an id."""
    where = ["-root"] if window_id is None else ["-id", str(window_id)]
    out = subprocess.run(["xprop", *where, name], capture_output=True, text=True, timeout=20)
    if out.returncode != 0:
        raise RuntimeError(f"xprop {' '.join(where)} {name}: {out.stderr.strip()}")
    m = re.match(r"^\S+\([^)]*\)\s*[=:]\s*(.*)$", out.stdout.strip())
    return m.group(1) if m else None  # "not found." or "no such atom on any window."


def window_opacity(window_id):
    """The opacity a compositor gives an X window (_NET_WM_WINDOW_OPACITY), 0 to 1; 1 without
    the property."""
    value = x_property("_NET_WM_WINDOW_OPACITY", window_id)
    return 1.0 if value is None else int(value.split(",")[0]) / 0xFFFFFFFF


def stacking_order():
    """The managed X windows (their client windows' ids), bottom to top."""
    value = x_property("_NET_CLIENT_LIST_STACKING") or ""
    return [int(v, 16) for v in re.findall(r"0x[0-9a-fA-F]+", value)]


class PointerCatcher:
    """A plain X window (xev's) at a place of the screen that notes every button press it gets:
    laid under a window, it tells whether clicks there go through that window."""

    def __init__(self, rect, name="capstan-e2e-catcher"):
        self.rect = rect
        self.name = name
        self.process = None
        self.window_id = None

    def __enter__(self):
        x, y, w, h = self.rect
        self._output = tempfile.TemporaryFile(mode="w+")
        self.process = subprocess.Popen(
            ["xev", "-name", self.name, "-geometry", f"{w}x{h}+{x}+{y}", "-event", "button"],
            stdout=self._output, stderr=subprocess.STDOUT, stdin=subprocess.DEVNULL)
        self.window_id = int(wait_until(
            lambda: next(iter(x_windows("--onlyvisible", "--name", f"^{self.name}$")), None),
            10, f"the window {self.name!r}"))
        return self

    def presses(self):
        """How many button presses reached the window."""
        self._output.seek(0)
        return self._output.read().count("ButtonPress event")

    def __exit__(self, *exc):
        self.process.terminate()
        self.process.wait(10)
        self._output.close()


# ---------------------------------------------------------------------------------------------
# Files and media


def read_plist(path):
    with open(path, "rb") as f:
        return plistlib.load(f)


def write_plist(path, records):
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "wb") as f:
        plistlib.dump(records, f, fmt=plistlib.FMT_XML)


def png_size(path):
    """(width, height) of a PNG file, from its header."""
    with open(path, "rb") as f:
        head = f.read(24)
    if head[:8] != b"\x89PNG\r\n\x1a\n" or head[12:16] != b"IHDR":
        raise AssertionError(f"{path} is not a PNG file")
    return struct.unpack(">II", head[16:24])


def probe(path):
    """What ffprobe reads in a media file: {"duration", "streams": [{"codec_type", ...}],
    "width", "height" (of the first video stream, or None), "video", "audio" (stream lists)}."""
    out = subprocess.run(
        ["ffprobe", "-v", "error", "-show_entries",
         "format=duration:stream=codec_type,codec_name,width,height,duration,sample_rate,channels",
         "-of", "json", path],
        capture_output=True, text=True, timeout=60)
    if out.returncode != 0:
        raise AssertionError(f"ffprobe cannot read {path}: {out.stderr.strip()}")
    data = json.loads(out.stdout)
    streams = data.get("streams", [])
    video = [s for s in streams if s.get("codec_type") == "video"]
    audio = [s for s in streams if s.get("codec_type") == "audio"]
    return {
        "duration": float(data.get("format", {}).get("duration", "nan")),
        "streams": streams,
        "video": video,
        "audio": audio,
        "width": video[0].get("width") if video else None,
        "height": video[0].get("height") if video else None,
    }


def _ffmpeg_filter_log(path, audio_filter):
    out = subprocess.run(
        ["ffmpeg", "-hide_banner", "-nostats", "-i", path, "-vn", "-af", audio_filter,
         "-f", "null", "-"],
        capture_output=True, text=True, timeout=120)
    if out.returncode != 0:
        raise AssertionError(f"ffmpeg cannot decode the sound of {path}: {out.stderr[-500:]}")
    return out.stderr


def mean_volume(path):
    """The sound's mean volume in dB (volumedetect)."""
    m = re.search(r"mean_volume:\s*(-?[\d.]+|-inf) dB", _ffmpeg_filter_log(path, "volumedetect"))
    if not m:
        raise AssertionError(f"volumedetect found no sound in {path}")
    return float(m.group(1))


def sounding_seconds(path, noise_db=-40, duration=None):
    """How long the sound is louder than noise_db: the length less silencedetect's silences."""
    log = _ffmpeg_filter_log(path, f"silencedetect=noise={noise_db}dB:d=0.1")
    total = duration if duration is not None else probe(path)["duration"]
    starts = [float(v) for v in re.findall(r"silence_start: (-?[\d.]+)", log)]
    ends = [float(v) for v in re.findall(r"silence_end: ([\d.]+)", log)]
    silent = sum(e - s for s, e in zip(starts, ends))
    if len(starts) > len(ends):  # silence up to the end
        silent += total - starts[-1]
    return total - silent


def make_movie(path, seconds, size="320x240", rate=10):
    """A small real movie (a test pattern and a tone), as the list shows recordings."""
    os.makedirs(os.path.dirname(path), exist_ok=True)
    subprocess.run(
        ["ffmpeg", "-v", "error", "-y", "-f", "lavfi", "-i", f"testsrc=size={size}:rate={rate}",
         "-f", "lavfi", "-i", "sine=frequency=440", "-t", str(seconds), "-pix_fmt", "yuv420p",
         "-shortest", path],
        check=True, timeout=120)


def play_tone(seconds, frequency=440, sink=None):
    """Plays a sine tone in the background, as a media player does: to the default sink
    (while recording system sound, the program's own, which feeds the speaker and the
    loopback device), or to sink. wait() on the result to know when it has been played."""
    device = f" --device={sink}" if sink else ""
    command = (f"ffmpeg -v error -f lavfi -i sine=frequency={frequency}:duration={seconds} "
               f"-f s16le -ac 2 -ar 44100 - | pacat --raw --format=s16le --channels=2 "
               f"--rate=44100{device}")
    return subprocess.Popen(["sh", "-c", command])


def pactl(*args):
    result = subprocess.run(["pactl", *args], capture_output=True, text=True, timeout=20)
    if result.returncode != 0:
        raise RuntimeError(f"pactl {' '.join(args)}: {result.stderr.strip()}")
    return result.stdout.strip()


def sound_modules():
    """{index: "name args"} of the modules loaded on the desk's sound server."""
    modules = {}
    for line in pactl("list", "short", "modules").splitlines():
        fields = line.split("\t")
        if len(fields) >= 2:
            modules[fields[0]] = " ".join(fields[1:3])
    return modules


def aggregate_devices():
    """The names of the program's aggregate devices ("MR-OutputDevice", "MR-InputDevice") that
    the sound server has as sinks or sources (they are found by their description)."""
    found = set()
    for kind in ("sinks", "sources"):
        for device in json.loads(pactl("--format=json", "list", kind) or "[]"):
            description = device.get("description") or ""
            if description.startswith("MR-"):
                found.add(description)
    return found


class SoundDesk:
    """The desk's sound server as a test found it: the program reroutes sound (aggregate
    devices, new defaults) while it runs, and a program killed on a hung quit leaves that
    behind for the tests that follow. restore() puts the server back."""

    def __init__(self):
        self.modules = sound_modules()
        self.sink = pactl("get-default-sink")
        self.source = pactl("get-default-source")

    def added(self):
        return {i: m for i, m in sound_modules().items() if i not in self.modules}

    def restore(self):
        for index in sorted(self.added(), key=int, reverse=True):
            subprocess.run(["pactl", "unload-module", index], capture_output=True, timeout=20)
        pactl("set-default-sink", self.sink)
        pactl("set-default-source", self.source)


def install_loopback(home):
    """Gives the user of home the loopback device system sound is recorded through, as the
    user does with scripts/install-loopback (its files go to that home)."""
    script = os.path.join(SOURCE_DIR, "scripts", "install-loopback")
    env = dict(os.environ, HOME=home, XDG_CONFIG_HOME=os.path.join(home, ".config"))
    subprocess.run([script], env=env, check=True, capture_output=True, timeout=60)
    if "PipeWire" not in pactl("info"):
        # A PulseAudio null sink keeps time only while something plays into it; the desk
        # clocks its own sinks with silence the same way.
        pactl("load-module", "module-loopback", "source=desk_silence", "sink=BlackHole2ch_UID",
              "latency_msec=60", "source_dont_move=true", "sink_dont_move=true")


_translations = None


def english_text(key, fallback):
    """The English text of a string key, from the program's English translation file; fallback
    while it has none."""
    global _translations
    if _translations is None:
        _translations = {}
        path = os.path.join(SOURCE_DIR, "resources", "translations", "capstan_en.ts")
        if os.path.exists(path):
            for message in ET.parse(path).getroot().iter("message"):
                translation = message.find("translation")
                text = translation.text if translation is not None else None
                if message.get("id") and text:
                    _translations[message.get("id")] = text
    return _translations.get(key, fallback)


def seconds_of(text):
    """The seconds a "HH:MM:SS" text counts, or None for another text."""
    m = re.fullmatch(r"(\d\d):(\d\d):(\d\d)", text or "")
    return int(m[1]) * 3600 + int(m[2]) * 60 + int(m[3]) if m else None


def duration_text(seconds):
    s = int(seconds)
    return "%02d:%02d:%02d" % (s // 3600 % 60, s // 60 % 60, s % 60)


# ---------------------------------------------------------------------------------------------
# The desktop's handlers, as test doubles that note what the program asked of them


class DefaultApplication:
    """The desktop's default application for some file types, in a home of the program's: a
    small script that notes each argument it is started with, made the default for the types
    with xdg-mime, so that xdg-open (the desktop's way of opening a file) starts it."""

    def __init__(self, app, mime_types, name="capstan-e2e-opener"):
        self.log_path = os.path.join(app.home, f"{name}.log")
        script = os.path.join(app.home, name)
        with open(script, "w") as f:
            f.write(f"#!/bin/sh\nprintf '%s\\n' \"$@\" >> '{self.log_path}'\n")
        os.chmod(script, 0o755)
        applications = os.path.join(app.data_home, "applications")
        os.makedirs(applications, exist_ok=True)
        with open(os.path.join(applications, f"{name}.desktop"), "w") as f:
            f.write("[Desktop Entry]\nType=Application\nName=Capstan test opener\n"
                    f"Exec={script} %f\nMimeType={';'.join(mime_types)};\nNoDisplay=true\n")
        env = dict(os.environ, HOME=app.home, XDG_DATA_HOME=app.data_home,
                   XDG_CONFIG_HOME=app.config_home)
        subprocess.run(["xdg-mime", "default", f"{name}.desktop", *mime_types], env=env,
                       check=True, capture_output=True, timeout=20)

    def opened(self):
        """The arguments the application was started with, in order."""
        try:
            with open(self.log_path) as f:
                return f.read().splitlines()
        except FileNotFoundError:
            return []


class FakeFileManager:
    """The desktop's file manager on the session bus (org.freedesktop.FileManager1), as
    fake_file_manager.py stands in for it; calls() are the calls it answered."""

    def __init__(self):
        self.process = None

    def __enter__(self):
        handle, self.log_path = tempfile.mkstemp(prefix="capstan-e2e-file-manager-")
        os.close(handle)
        self._output = tempfile.TemporaryFile(mode="w+")
        script = os.path.join(os.path.dirname(os.path.abspath(__file__)), "fake_file_manager.py")
        self.process = subprocess.Popen([sys.executable, "-B", script, self.log_path],
                                        stdout=self._output, stderr=subprocess.STDOUT,
                                        stdin=subprocess.DEVNULL)

        def said():
            self._output.seek(0)
            text = self._output.read()
            if "ready" in text:
                return True
            if self.process.poll() is not None:
                raise Abort(f"the fake file manager could not own its name: {text.strip()}")
            return False

        wait_until(said, 10, "the fake file manager on the session bus")
        return self

    def calls(self):
        """[(method, [uris], startup id)] in the order they came."""
        with open(self.log_path) as f:
            return [tuple(json.loads(line)) for line in f if line.strip()]

    def __exit__(self, *exc):
        self.process.terminate()
        self.process.wait(10)
        self._output.close()
        os.unlink(self.log_path)


# ---------------------------------------------------------------------------------------------
# The program


class ProgramGone(Abort):
    pass


class Capstan:
    """One run of the program in a fresh home: ~/Videos/Capstan, ~/.cache/org.capstan.Capstan
    and ~/.config/Capstan are this run's own. Prepare files with the paths below before
    start(); close() stops the program and removes the home."""

    def __init__(self, binary=None):
        _import_atspi()
        self.binary = binary or os.environ["CAPSTAN_BIN"]
        self.home = tempfile.mkdtemp(prefix="capstan-e2e-")
        self.config_home = os.path.join(self.home, ".config")
        self.cache_home = os.path.join(self.home, ".cache")
        self.data_home = os.path.join(self.home, ".local", "share")
        self.movies = os.path.join(self.home, "Videos")
        self.videos = os.path.join(self.movies, "Capstan")
        self.plist_path = os.path.join(self.cache_home, "org.capstan.Capstan", "filelist.plist")
        self.settings_path = os.path.join(self.config_home, "Capstan", "Capstan.ini")
        self.log_path = os.path.join(self.home, "capstan.log")
        for d in (self.config_home, self.cache_home, self.data_home, self.movies):
            os.makedirs(d, exist_ok=True)
        # The XDG user folders, so the movies location is $HOME/Videos whatever the machine says.
        with open(os.path.join(self.config_home, "user-dirs.dirs"), "w") as f:
            for name, folder in (("DESKTOP", "Desktop"), ("DOWNLOAD", "Downloads"),
                                 ("DOCUMENTS", "Documents"), ("MUSIC", "Music"),
                                 ("PICTURES", "Pictures"), ("VIDEOS", "Videos")):
                f.write(f'XDG_{name}_DIR="$HOME/{folder}"\n')
        self.process = None
        self.app = None
        self.extra_environment = {}
        self.exit_status = None
        self.killed = False
        self.log = ""

    def environment(self):
        env = dict(os.environ)
        env.update(
            HOME=self.home,
            XDG_CONFIG_HOME=self.config_home,
            XDG_CACHE_HOME=self.cache_home,
            XDG_DATA_HOME=self.data_home,
            QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1",
            QT_QPA_PLATFORM="xcb",
            LANGUAGE="en",
            LC_ALL="C.UTF-8",
        )
        env.update(self.extra_environment)
        return env

    # -- life

    def start(self, timeout=30):
        log = open(self.log_path, "wb")
        self.process = subprocess.Popen([self.binary], env=self.environment(), cwd=self.home,
                                        stdin=subprocess.DEVNULL, stdout=log,
                                        stderr=subprocess.STDOUT)
        log.close()
        self.app = self.wait(self._find_application, timeout,
                             f"capstan (pid {self.process.pid}) on the accessibility bus")
        return self

    def _find_application(self):
        for app in pyatspi.Registry.getDesktop(0):
            if app is not None and app.get_process_id() == self.process.pid:
                return app
        return None

    def running(self):
        return self.process is not None and self.process.poll() is None

    def check_running(self):
        if self.process is not None and self.process.poll() is not None:
            raise ProgramGone(f"capstan exited with status {self.process.returncode}\n"
                              f"{self.read_log()}")

    def wait(self, predicate, timeout=5.0, what="the condition"):
        def checked():
            self.check_running()
            return predicate()

        return wait_until(checked, timeout, what)

    def stop(self, timeout=10):
        """SIGTERM, then SIGKILL after timeout s; the exit status (negative: the signal)."""
        if self.process is None:
            return self.exit_status
        if self.process.poll() is None:
            self.process.send_signal(signal.SIGTERM)
            try:
                self.process.wait(timeout)
            except subprocess.TimeoutExpired:
                self.killed = True
                self.process.kill()
                self.process.wait(10)
        self.exit_status = self.process.returncode
        self.log = self.read_log()
        self.app = None
        return self.exit_status

    def wait_exit(self, timeout=10):
        """Waits for the program to end by itself; its exit status."""
        wait_until(lambda: self.process.poll() is not None, timeout, "capstan to exit")
        self.exit_status = self.process.returncode
        self.log = self.read_log()
        self.app = None
        return self.exit_status

    def close(self):
        """Stops the program and removes its home (CAPSTAN_E2E_KEEP=1 keeps it to look at)."""
        status = self.stop()
        if os.environ.get("CAPSTAN_E2E_KEEP") == "1":
            sys.stderr.write(f"kept {self.home}\n")
        else:
            shutil.rmtree(self.home, ignore_errors=True)
        return status

    def read_log(self):
        try:
            with open(self.log_path, errors="replace") as f:
                return f.read()
        except OSError:
            return self.log

    # -- windows and widgets

    def windows(self):
        """The program's top-level windows that show."""
        return [w for w in self.app if w is not None and is_showing(w)]

    def window(self, name=None, desc=None, timeout=10):
        return self.wait(
            lambda: next((w for w in self.windows() if matches(w, desc, name)), None), timeout,
            f"a window{' named ' + repr(name) if name else ''}"
            f"{' desc ' + repr(desc) if desc else ''}; showing: "
            f"{[describe(w) for w in self.windows()] if self.app else []}")

    def main_window(self, timeout=10):
        return self.window(name="Capstan", timeout=timeout)

    def find(self, desc=None, name=None, role=None, root=None, showing=True):
        return find(root or self.app, desc, name, role, showing)

    def widget(self, desc=None, name=None, role=None, root=None, timeout=5):
        """Waits for a showing widget with that description (and name, role)."""
        try:
            return self.wait(lambda: self.find(desc, name, role, root), timeout,
                             f"a showing widget desc={desc!r}"
                             f"{' name=' + repr(name) if name else ''}")
        except WaitTimeout as e:
            raise WaitTimeout(f"{e}\nwhat shows:\n{self.showing_tree()}") from None

    def showing_tree(self):
        """The showing part of the program's windows, for failure messages."""
        try:
            lines = []
            for w in self.windows():
                lines.append(dump(w, showing_only=True))
            return "\n".join(lines)
        except Exception as e:  # noqa: BLE001
            return f"<{e!r}>"

    def press(self, target, timeout=5):
        """The button's "Press" action, once it shows and is enabled; target: a description or
        an accessible."""
        acc = self.widget(target, timeout=timeout) if isinstance(target, str) else target
        self.wait(lambda: is_enabled(acc), timeout, f"{describe(acc)} to be enabled")
        do_action(acc, "Press")
        return acc

    def text(self, desc, root=None, timeout=5):
        """A label's text (its accessible name)."""
        return self.widget(desc, root=root, timeout=timeout).name

    def choose(self, combo, item, timeout=5):
        """Chooses a combo box item by its text (or its description, for a key): opens the
        list and clicks the item, as a user does."""
        combo = self.widget(combo, timeout=timeout) if isinstance(combo, str) else combo
        do_action(combo, "ShowMenu")
        entry = self.wait(lambda: self._combo_item(combo, item, True), timeout,
                          f"the item {item!r} of {describe(combo)} to show")
        x, y = centre(entry)
        click(x, y)
        expected = entry.name
        self.wait(lambda: combo.name == expected, timeout,
                  f"{describe(combo)} to show {expected!r}")
        return combo

    @staticmethod
    def _combo_item(combo, item, listed):
        lists = [c for c in combo if c is not None and c.getRoleName() in ("list", "menu")]
        for lst in lists:
            if listed and not is_showing(lst):
                continue
            for entry in lst:
                if entry is not None and item in (entry.name, entry.description):
                    return entry
        return None

    def top_level(self, acc):
        """The window that holds acc."""
        while acc.parent is not None and acc.parent.getRoleName() != "application":
            acc = acc.parent
        return acc

    def point(self, acc):
        """The centre of acc on the X screen. Qt places a window the window manager framed by
        the frame's corner, and for a while reports its contents there too (openbox's title
        bar high); the X window says where they are."""
        window = self.top_level(acc)
        wx, wy, ww, wh = extents(window)
        x, y = centre(acc)
        for wid in x_windows("--onlyvisible", "--pid", self.process.pid):
            try:
                if xdotool("getwindowname", wid).rstrip("\n") != window.name:
                    continue
                gx, gy, gw, gh = x_geometry(wid)
            except RuntimeError:
                continue
            if (gw, gh) == (ww, wh):
                return (x + gx - wx, y + gy - wy)
        return (x, y)

    def click(self, acc, button=1, repeat=1):
        """Clicks the middle of acc, as a user with a mouse does."""
        click(*self.point(acc), button, repeat)

    def x_window(self, window):
        """The X window of one of the program's windows (the one of its title and size):
        (id, (x, y, width, height) as xdotool reads it)."""
        rect = extents(window)
        candidates = []
        for wid in x_windows("--onlyvisible", "--pid", self.process.pid):
            try:
                if xdotool("getwindowname", wid).rstrip("\n") != window.name:
                    continue
                geometry = x_geometry(wid)
            except RuntimeError:
                continue  # gone meanwhile
            if geometry[2:] == rect[2:]:
                return int(wid), geometry
            candidates.append((wid, geometry))
        raise AssertionError(f"no X window of capstan named {window.name!r} with the size of "
                             f"{rect}: {candidates}")

    def geometry(self, window):
        """A window's (x, y, width, height) by AT-SPI, checked against its X window as
        xdotool reads it."""
        rect = extents(window)
        wid, geometry = self.x_window(window)
        if geometry != rect:
            raise AssertionError(f"{describe(window)}: AT-SPI says {rect}, X says {geometry} "
                                 f"(window {wid})")
        return rect

    def opacity(self, window=None):
        """How opaque the window (the main window unless told) is on the screen, 0 to 1."""
        return window_opacity(self.x_window(window or self.main_window())[0])

    def alert(self, text=None, key=None, timeout=5):
        """Waits for a dialog (a QMessageBox) showing text, or a widget described key."""

        def holds_message(w):
            return ((text is not None and find(w, name=text) is not None) or
                    (key is not None and find(w, desc=key) is not None))

        return self.wait(
            lambda: next((w for w in self.windows()
                          if w.getRoleName() in ("alert", "dialog") and holds_message(w)), None),
            timeout, f"an alert with {text!r}; showing: {[describe(w) for w in self.windows()]}")

    def dismiss(self, dialog, button_name=None, timeout=5):
        buttons = find_all(dialog, role="push button")
        if button_name is not None:
            buttons = [b for b in buttons if b.name == button_name]
        if not buttons:
            raise AssertionError(f"no button to dismiss {describe(dialog)}\n{dump(dialog)}")
        do_action(buttons[0], "Press")
        self.wait(lambda: not is_showing(dialog), timeout, "the dialog to close")

    # -- the tray

    def tray_icon(self, timeout=10):
        """The X window of the program's tray icon (it is not on the accessibility bus): the
        program's window that lies in the tray."""

        def find_icon():
            trays = [x_geometry(w) for w in x_windows("--onlyvisible", "--class", "^trayer$")]
            for wid in x_windows("--pid", self.process.pid):
                try:
                    x, y, w, h = x_geometry(wid)
                except RuntimeError:
                    continue
                if 0 < w <= 64 and 0 < h <= 64 and any(
                        tx <= x + w // 2 < tx + tw and ty <= y + h // 2 < ty + th
                        for tx, ty, tw, th in trays):
                    return wid
            return None

        return self.wait(find_icon, timeout, "capstan's icon in the tray")

    def click_tray_icon(self, button=1):
        x, y, w, h = x_geometry(self.tray_icon())
        click(x + w // 2, y + h // 2, button)

    def open_tray_menu(self, button=3, timeout=5):
        """Clicks the tray icon (right: its menu) and returns the menu that opens."""
        with PopupWatch() as watch:
            self.click_tray_icon(button)
            return self.wait(lambda: next(iter(watch.menus()), None) or self._shown_menu(),
                             timeout, "the tray menu")

    def choose_tray_item(self, key, fallback=None, button=3, timeout=5):
        """Opens the tray icon's menu (button 3: the right click's, 2: the middle click's) and
        clicks its item titled with the English text of key, as a user does; waits for the menu
        to close. When the item was clicked, by the monotonic clock."""
        title = english_text(key, fallback)
        menu = self.open_tray_menu(button, timeout)
        item = next((c for c in menu if c is not None and c.getRoleName() == "menu item" and
                     c.name == title), None)
        if item is None or not is_enabled(item):
            items = menu_items(menu)
            self.close_menu(menu)
            raise AssertionError(f"the tray menu has no enabled item {title!r}: {items}")
        click(*centre(item))
        clicked = time.monotonic()
        self.wait(lambda: not is_showing(menu), timeout, "the tray menu to close")
        return clicked

    def _shown_menu(self):
        for w in self.windows():
            menu = find(w, role=("menu", "popup menu"))
            if menu is not None and any(c.getRoleName() == "menu item" for c in menu):
                return menu
        return None

    def close_menu(self, menu, timeout=5):
        key("Escape")
        self.wait(lambda: not is_showing(menu), timeout, "the menu to close")

    # -- the main window's views and recording

    def view(self, height, timeout=5):
        """Waits until the main window is height pixels high; its (x, y, width, height)."""
        window = self.main_window()
        last = []

        def sized():
            last[:] = [self.geometry(window)]
            return last[0] if last[0][3] == height else None

        return self.wait(sized, timeout, f"the main window to be {height} px high (it is {last})")

    def enter_source(self, key, height=220):
        """Presses a home button and waits for its source screen."""
        self.press(key)
        return self.view(height)

    def sample_text(self, desc, seen):
        """Reads a label and keeps each new text in seen; its text."""
        text = self.text(desc)
        if not seen or seen[-1] != text:
            seen.append(text)
        return text

    def start_recording(self, label="recordCurrentTimelabel", timeout=20):
        """Presses the record button and waits until the recording runs: the button turned to
        stop and the time label reads 00:00:01. Returns (when the recording began by the
        monotonic clock, the wall time of the press, the label texts seen)."""
        pressed_at = datetime.datetime.now()
        self.press("btnStartRecrord")
        self.widget("btnStopRecord", role="push button", timeout=timeout)
        seen = []
        counted = self.wait(lambda: seconds_of(self.sample_text(label, seen)), timeout,
                            f"the time label {label} to count (it read {seen})")
        # The label turns to 00:00:01 one second into the recording.
        return time.monotonic() - counted, pressed_at, seen

    def hold(self, until, label=None, seen=None):
        """Lets the program run until the monotonic clock reads until, reading the label."""

        def done():
            if label is not None:
                self.sample_text(label, seen)
            return time.monotonic() >= until

        self.wait(done, max(0.0, until - time.monotonic()) + 5, "time to pass")

    def stop_recording(self, timeout=30):
        """Presses stop and waits until the record button is back (the file is complete);
        when stop was pressed, by the monotonic clock."""
        self.press("btnStopRecord")
        pressed = time.monotonic()
        self.widget("btnStartRecrord", role="push button", timeout=timeout)
        return pressed

    # -- the list of recordings

    def open_file_list(self):
        """Opens the list of recordings from a full-screen source screen; its window."""
        self.main_window()
        self.enter_source("Main_Full_Screen")
        self.press("fileListBtn")
        files = self.window(desc="FileListWindowController")
        self.widget("tableView", root=files)
        return files

    def row_names(self, files, count, timeout=5):
        """Waits for the list window to show count rows; their names, top down."""
        return self.wait(lambda: (lambda names: names if len(names) == count else None)(
            [row.name for row in list_rows(files)]), timeout, f"{count} rows")

    # -- files

    def recordings(self):
        """The files in ~/Videos/Capstan."""
        if not os.path.isdir(self.videos):
            return []
        return sorted(os.path.join(self.videos, f) for f in os.listdir(self.videos))

    def recording_list(self):
        return read_plist(self.plist_path)


def recording_name_time(path, extension):
    """The time in a recording's file name "yyyyMMdd_HHmmss.EXT", or None for another name."""
    m = re.fullmatch(r"(\d{8}_\d{6})" + re.escape(extension), os.path.basename(path))
    if not m:
        return None
    return datetime.datetime.strptime(m.group(1), "%Y%m%d_%H%M%S")


class CapstanTestCase(unittest.TestCase):
    """A test that runs Capstan: every run started through launch() is stopped at the end of
    the test (and must quit cleanly on SIGTERM); a failed test prints the programs' logs."""

    def launch(self, start=True, loopback=False):
        """A program in a home of its own, started unless start is False. loopback: the
        user installed the loopback device system sound is recorded through."""
        if os.environ.get("PULSE_SERVER") and not hasattr(self, "_sound"):
            self._sound = SoundDesk()
            self.addCleanup(self._restore_sound)
        app = Capstan()
        self._runs.append(app)
        if loopback:
            install_loopback(app.home)
        self.addCleanup(self._finish, app)
        if start:
            app.start()
        return app

    def _finish(self, app):
        status = app.close()
        if app.killed:
            raise AssertionError("capstan did not quit within 10 s of SIGTERM")
        if status not in (0, None):
            raise AssertionError(f"capstan quit with status {status} on SIGTERM")

    def _restore_sound(self):
        # After every program of the test has stopped (cleanups run last first). What the
        # program left after a clean quit is its fault; after a kill, only tidied up.
        left = self._sound.added()
        self._sound.restore()
        if all(not app.killed for app in self._runs):
            leftovers = {i: m for i, m in left.items() if "BlackHole2ch_UID" not in m}
            if leftovers:
                raise AssertionError(f"capstan quit and left sound modules loaded: {leftovers}")

    def run(self, result=None):
        quiet_pyatspi()  # unittest's runner set its own warning filters
        self._runs = []
        result = result if result is not None else self.defaultTestResult()
        before = len(result.failures) + len(result.errors)
        outcome = super().run(result)
        if len(result.failures) + len(result.errors) > before:
            for app in self._runs:
                sys.stderr.write(f"---- capstan's log ({app.home}) ----\n{app.log}\n")
        return outcome


# ---------------------------------------------------------------------------------------------
# Test patterns and the overlays

# Four quadrants, none like another and none a mirror of another: red, green / blue, white.
QUADRANTS = ((255, 0, 0), (0, 255, 0), (0, 0, 255), (255, 255, 255))
PATTERN = (400, 300)


PATTERN_BIN = os.environ.get("CAPSTAN_PATTERN_BIN",
                             os.path.join(os.path.dirname(os.path.abspath(__file__)),
                                          "..", "..", "build", "tests", "e2e",
                                          "capstan_e2e_pattern"))


class PatternWindow:
    """The test pattern in a borderless window at (x, y) of the desktop; with a colour, a
    window of that colour alone."""

    def __init__(self, x, y, size=PATTERN, colour=None):
        self.x, self.y, self.size, self.colour = x, y, size, colour
        self.name = "capstan-cover" if colour else "capstan-pattern"

    def __enter__(self):
        self.process = subprocess.Popen(
            [PATTERN_BIN, str(self.x), str(self.y), *map(str, self.size),
             *([self.colour] if self.colour else [])],
            env=dict(os.environ, QT_QPA_PLATFORM="xcb"), stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL)
        ids = wait_until(lambda: x_windows("--onlyvisible", "--name", self.name),
                             15, self.name)
        xdotool("windowmove", ids[0], self.x, self.y)
        wait_until(lambda: x_geometry(ids[0])[:2] == (self.x, self.y), 5,
                       "the pattern window in place")
        time.sleep(0.5)  # drawn
        return self

    def __exit__(self, *exc):
        self.process.terminate()
        self.process.wait(10)


def frame_pixels(path, at_seconds, points):
    """The RGB colours of a movie's frame at the given (x, y) points."""
    out = subprocess.run(
        ["ffmpeg", "-v", "error", "-ss", str(at_seconds), "-i", path, "-frames:v", "1", "-f",
         "rawvideo", "-pix_fmt", "rgb24", "-"], capture_output=True, timeout=60, check=True)
    width = probe(path)["width"]
    pixels = []
    for x, y in points:
        i = (y * width + x) * 3
        pixels.append(tuple(out.stdout[i:i + 3]))
    return pixels


def overlays():
    """The visible overlay windows: named as the program, each the size of a monitor."""
    sizes = {m[2:] for m in monitors()}
    return [i for i in x_windows("--onlyvisible", "--name", "^Capstan$")
            if x_geometry(i)[2:] in sizes]


def near(colour, wanted, tolerance=60):
    return all(abs(a - b) <= tolerance for a, b in zip(colour, wanted))


def drag(start, end):
    """A press at start, five moves and a release at end, as a hand drags."""
    xdotool("mousemove", *start)
    time.sleep(0.2)
    xdotool("mousedown", 1)
    for step in range(1, 6):
        xdotool("mousemove", start[0] + (end[0] - start[0]) * step // 5,
                start[1] + (end[1] - start[1]) * step // 5)
        time.sleep(0.05)
    xdotool("mouseup", 1)


def clipboard_picture():
    """The clipboard's picture as (width, height, (r, g, b) at its centre), or None."""
    out = subprocess.run([PATTERN_BIN, "--clipboard"], env=dict(os.environ, QT_QPA_PLATFORM="xcb"),
                         capture_output=True, text=True, timeout=30).stdout.split()
    if len(out) != 5:
        return None
    w, h, r, g, b = map(int, out)
    return w, h, (r, g, b)
