# SPDX-License-Identifier: GPL-3.0-or-later
"""Finds false declarations in a saved JPEG file: entries of the multi-picture index, items of a container directory,
gain maps and movies that the file does not contain. An independent parser, not the editor's."""

import re
import struct
import subprocess

# Declarations of attachments in XMP packets, which are text.
ITEM = re.compile(rb"<Container:Item\b(.*?)/?>", re.DOTALL)
ATTRIBUTE = rb'%s\s*=\s*["\'](.*?)["\']'
GAIN_MAP_SIGNS = (rb"hdrgm:Version", rb"urn:iso:std:iso:ts:21496:-1\0")
MOVIE_SIGNS = (rb"MicroVideoOffset", rb'MotionPhoto="1"')


def segments_of(data):
    """(marker, payload) of each segment before the first scan."""
    position = 2
    while position + 4 <= len(data) and data[position] == 0xFF and data[position + 1] != 0xDA:
        length = int.from_bytes(data[position + 2:position + 4], "big")
        yield data[position + 1], position + 4, data[position + 4:position + 2 + length]
        position += 2 + length


def index_entries(data):
    """(begin, size) of each picture of the multi-picture index but the first, and whether there is an index."""
    for marker, begin, payload in segments_of(data):
        if marker != 0xE2 or not payload.startswith(b"MPF\0"):
            continue
        structure = payload[4:]
        order = "<" if structure[:2] == b"II" else ">"
        table, = struct.unpack_from(order + "I", structure, 4)
        count, = struct.unpack_from(order + "H", structure, table)
        for i in range(count):
            tag, _, length, place = struct.unpack_from(order + "HHII", structure, table + 2 + 12 * i)
            if tag == 0xB002:
                entries = [struct.unpack_from(order + "III", structure, place + 16 * k) for k in range(length // 16)]
                return [(begin + 4 + offset, size) for _, size, offset in entries[1:]], entries[0][1]
    return [], None


def attribute(text, name):
    found = re.search(ATTRIBUTE % name, text)
    return found.group(1) if found else b""


def archive_trailer_length(data):
    """The length of an AFCP trailer at the very end; 0 if there is none."""
    if data[-12:-8] not in (b"AXS!", b"AXS*"):
        return 0
    return len(data) - int.from_bytes(data[-8:-4], "big" if data[-9:-8] == b"!" else "little")


def trailer_length(data):
    """The length of a Samsung trailer, which follows everything that is declared; 0 if there is none."""
    if not data.endswith(b"SEFT"):
        return 0
    directory = len(data) - 8 - int.from_bytes(data[-8:-4], "little")
    count = int.from_bytes(data[directory + 8:directory + 12], "little")
    distances = [int.from_bytes(data[at + 4:at + 8], "little")
                 for at in range(directory + 12, directory + 12 + 12 * count, 12)]
    return len(data) - directory + max(distances, default=0)


def dangling(path):
    """The false declarations in the file; empty if there are none."""
    data = path.read_bytes()
    entries, first_size = index_entries(data)
    for begin, size in entries:
        if begin + size > len(data) or data[begin:begin + 2] != b"\xff\xd8":
            return f"an index entry of {size} bytes at {begin} is no picture"
    if first_size is not None and entries and first_size != min(begin for begin, _ in entries):
        return "the index has another length of the picture itself"
    head = b"".join(payload for marker, _, payload in segments_of(data) if marker in (0xE1, 0xE2))
    items = [item for item in ITEM.findall(head) if attribute(item, b"Item:Semantic") != b"Primary"]
    lengths = [int(attribute(item, b"Item:Length") or 0) for item in items]
    declared = data[:len(data) - archive_trailer_length(data)]
    begin = len(declared) - trailer_length(declared) - sum(lengths)
    for item, length in zip(items, lengths):
        if length and attribute(item, b"Item:Mime") == b"image/jpeg" and data[begin:begin + 2] != b"\xff\xd8":
            return "an item of the container directory is not where it should be"
        begin += length
    has_map = any(b"hdrgm:GainMap" in data[begin:begin + size] or b"hdrgainmap" in data[begin:begin + size]
                  for begin, size in entries) or any(attribute(item, b"Item:Semantic") == b"GainMap" for item in items)
    if not has_map and any(sign in head for sign in GAIN_MAP_SIGNS):
        return "a gain map is promised"
    if b"ftyp" not in data and any(sign in head for sign in MOVIE_SIGNS):
        return "a movie is promised"
    return promised_to_exiftool(path)


def promised_to_exiftool(path):
    """The warnings of exiftool about the multi-picture index."""
    done = subprocess.run(["exiftool", "-s3", "-Warning", "-a", path], capture_output=True, text=True, check=False)
    return next((line for line in done.stdout.splitlines() if "MPF" in line or "MPImage" in line), "")
