#!/usr/bin/env python3
"""Makes the seeds of the metadata fuzzers: small WAV files of every shape, and texts."""
import pathlib
import struct

here = pathlib.Path(__file__).parent / "corpus"


def chunk(name, body):
    return name + struct.pack("<I", len(body)) + body + b"\0" * (len(body) % 2)


def riff(*chunks):
    body = b"WAVE" + b"".join(chunks)
    return b"RIFF" + struct.pack("<I", len(body)) + body


fmt = chunk(b"fmt ", struct.pack("<HHIIHH", 1, 1, 48000, 96000, 2, 16))
data = chunk(b"data", b"sound!")
bext = chunk(b"bext", b"Rain on a roof".ljust(256, b"\0") + b"\0" * 346)
tags = "DESCRIPTION CATEGORY SUBCATEGORY CATID FXNAME KEYWORDS LIBRARY DESIGNER SOURCEID MICROPHONE MICPERSPECTIVE " \
       "LOCATION NOTES TRACKTITLE USERCATEGORY RATING".split()
block = "<USER>" + "".join(f"<{tag}>a &amp; {tag.lower()} &lt;é&gt;</{tag}>" for tag in tags) + "</USER>"
lines = "<USER>\n" + "".join(f"{tag}={tag.lower()} &quot;x&quot;\r\n" for tag in tags) + "</USER>"


def ixml(user, end="</BWFXML>"):
    return chunk(b"iXML", f"<?xml version=\"1.0\"?>\n<BWFXML><SCENE>1</SCENE>{user}{end}".encode())


files = {
    "plain.wav": riff(fmt, data),
    "bext.wav": riff(bext, fmt, data),
    "behind.wav": riff(fmt, data, chunk(b"LIST", b"INFOodd"), bext, ixml("")),
    "tags.wav": riff(fmt, bext, ixml(block), data),
    "lines.wav": riff(fmt, ixml(lines), data),
    "open.wav": riff(fmt, ixml("<USER><FXNAME>x", ""), data),
    "zeros.wav": riff(fmt, chunk(b"iXML", b"<BWFXML></BWFXML>\0\0\0"), data),
    "short.wav": riff(fmt, chunk(b"bext", b"odd"), data),
    "twice.wav": riff(fmt, bext, bext, ixml(block), ixml(lines), data, data),
    "cut.wav": riff(fmt) + b"data" + struct.pack("<I", 4000) + b"sound",
    "unclosed.wav": riff(fmt) + b"data" + bytes(4) + bytes(64) + b"sound",
    "long.wav": b"RF64" + riff(fmt, data)[4:],
}
texts = {
    "block": block,
    "lines": lines,
    "rating": "<USER><RATING> +5\n</RATING>",
    "listed": "DOORWood_Slam Heavy_JD_Take 3_b.wav",
    "unlisted": "AMBCity-2b_Park.v2.wav",
    "list": "CatID,Category,SubCategory\r\nAMBBird,AMBIENCE,BIRDSONG\n ambcity , x , y ,z\nA,B\n",
}
for folder, seeds in (("riff_meta", files), ("meta_text", {k: v.encode() for k, v in texts.items()})):
    (here / folder).mkdir(parents=True, exist_ok=True)
    for name, content in seeds.items():
        (here / folder / name).write_bytes(content)
