#!/usr/bin/env python3
"""Runs ved-desktop in a real window on a display of its own, types into it and looks at what it saved.

usage: window_test.py <ved-desktop> <folder to work in>; exits with 77 (skipped) without Xvfb or xdotool.
"""

import os
import pathlib
import shutil
import subprocess
import sys
import time

PATIENCE = 30  # seconds for anything to happen


def start_display():
    """A virtual display; its process and its name."""
    read_end, write_end = os.pipe()
    server = subprocess.Popen(
        ["Xvfb", "-displayfd", str(write_end), "-screen", "0", "1280x900x24", "-nolisten", "tcp"],
        pass_fds=[write_end],
        stderr=subprocess.DEVNULL,
    )
    os.close(write_end)
    with os.fdopen(read_end) as answer:
        number = answer.readline().strip()
    return server, f":{number}"


def wait_for(condition, what):
    deadline = time.monotonic() + PATIENCE
    while time.monotonic() < deadline:
        if condition():
            return
        time.sleep(0.1)
    raise SystemExit(f"waited in vain for {what}")


def main(program, folder):
    if not shutil.which("Xvfb") or not shutil.which("xdotool"):
        print("Xvfb or xdotool is missing")
        return 77
    folder = pathlib.Path(folder)
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    sheet = folder / "sheet.zved"
    sheet.write_text("zolt-sheet 1\nformula\nend 1\n", encoding="utf-8")

    server, display = start_display()
    env = dict(os.environ, DISPLAY=display, XDG_CONFIG_HOME=str(folder / "config"), HOME=str(folder), LC_ALL="C.UTF-8")
    env.pop("QT_QPA_PLATFORM", None)
    desktop = None

    def xdotool(*arguments):
        return subprocess.run(["xdotool", *arguments], env=env, capture_output=True, text=True, check=False)

    try:
        desktop = subprocess.Popen([program, "--appearance", "light", str(sheet)], env=env)
        wait_for(lambda: xdotool("search", "--onlyvisible", "--name", "sheet.zved").stdout.strip(), "the window")
        window = xdotool("search", "--onlyvisible", "--name", "sheet.zved").stdout.split()[0]
        xdotool("windowfocus", "--sync", window)
        xdotool("type", "--delay", "20", "y=(a+b)/2")
        xdotool("key", "Return")
        xdotool("type", "--delay", "20", "sqrt(x")
        xdotool("key", "ctrl+s")
        wait_for(lambda: "end 2" in sheet.read_text(encoding="utf-8"), "the saved sheet")
        xdotool("key", "ctrl+q")
        status = desktop.wait(PATIENCE)
    finally:
        if desktop and desktop.poll() is None:
            desktop.kill()
        server.terminate()
        server.wait()

    expected = "zolt-sheet 1\nformula =(y,/(+(a,b),2))\nformula sqrt(x)\nend 2\n"
    saved = sheet.read_text(encoding="utf-8")
    if saved != expected or status != 0:
        print(f"ended with {status} and saved\n{saved}instead of\n{expected}")
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
