#!/usr/bin/env python3
"""A worker that does what its question names, for tests of the client."""

import os
import struct
import sys
import time


def read(size):
    data = b""
    while len(data) < size:
        data += os.read(0, size - len(data)) or sys.exit(0)
    return data


def answer(value):
    text = f"answer(0,nothing,nothing,nothing,{value})".encode("utf-16-le")
    return struct.pack("<I", len(text) // 2) + text


while True:
    (count,) = struct.unpack("<I", read(4))
    name = read(2 * count).decode("utf-16-le").split(",")[-1].rstrip(")")
    if name == "crash":
        os.abort()
    elif name == "hang":
        time.sleep(600)
    elif name == "garbage":
        os.write(1, struct.pack("<I", 4) + "))((".encode("utf-16-le"))
    elif name == "half":
        os.write(1, answer("1")[:20])
        sys.exit(0)
    elif name == "gigabyte":
        os.write(1, struct.pack("<I", 1 << 30))
    elif name == "early":
        os.write(1, b"\0")
        os.close(1)
        os.close(0)
        sys.exit(0)
    elif name == "leak":
        # Besides the socket, nothing of the program's is open here.
        others = [file for file in range(3, 256) if os.path.exists(f"/proc/self/fd/{file}")]
        os.write(1, answer(len(others)))
    else:
        os.write(1, answer(name))
