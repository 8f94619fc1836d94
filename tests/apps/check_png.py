"""Reads a PNG (8-bit RGB or RGBA, not interlaced, as browsers write screenshots) with zlib
and prints "WIDTH HEIGHT SHARE COLOURS": the share of pixels that differ from the top-left
pixel and the number of distinct colours among a sample."""
import struct
import sys
import zlib

data = open(sys.argv[1], "rb").read()
assert data[:8] == b"\x89PNG\r\n\x1a\n", "not a PNG"
at, idat, header = 8, b"", None
while at < len(data):
    length, kind = struct.unpack(">I4s", data[at:at + 8])
    body = data[at + 8:at + 8 + length]
    if kind == b"IHDR":
        header = struct.unpack(">IIBBBBB", body)
    elif kind == b"IDAT":
        idat += body
    at += 12 + length
width, height, depth, colour, _, _, interlace = header
assert depth == 8 and colour in (2, 6) and interlace == 0, "unexpected PNG layout"
bpp = 3 if colour == 2 else 4
raw = zlib.decompress(idat)
stride = width * bpp
rows, previous, at = [], bytearray(stride), 0
for _ in range(height):
    kind, line = raw[at], bytearray(raw[at + 1:at + 1 + stride])
    at += 1 + stride
    for i in range(stride):
        left = line[i - bpp] if i >= bpp else 0
        up = previous[i]
        corner = previous[i - bpp] if i >= bpp else 0
        if kind == 1:
            line[i] = (line[i] + left) & 255
        elif kind == 2:
            line[i] = (line[i] + up) & 255
        elif kind == 3:
            line[i] = (line[i] + (left + up) // 2) & 255
        elif kind == 4:
            p = left + up - corner
            pa, pb, pc = abs(p - left), abs(p - up), abs(p - corner)
            line[i] = (line[i] + (left if pa <= pb and pa <= pc else up if pb <= pc else corner)) & 255
    rows.append(line)
    previous = line
background = bytes(rows[0][:3])
differing, colours = 0, set()
for y in range(0, height, 2):
    for x in range(0, width, 2):
        pixel = bytes(rows[y][x * bpp:x * bpp + 3])
        differing += pixel != background
        colours.add(pixel)
share = differing / float(((height + 1) // 2) * ((width + 1) // 2))
print(width, height, "%.4f" % share, len(colours))
