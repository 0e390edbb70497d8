#!/usr/bin/env python3
"""Checks that PNG pictures are not blank: each must hold more than one colour.

Usage: png_colours.py FILE.png ...   Exit status 0 when every picture has two colours or more.
Reads 8-bit, non-interlaced PNG files (what the SVG renderer writes) with the standard library.
"""
import struct
import sys
import zlib

CHANNELS = {0: 1, 2: 3, 4: 2, 6: 4}  # colour type -> samples per pixel


def pixels(path):
    with open(path, 'rb') as f:
        data = f.read()
    if data[:8] != b'\x89PNG\r\n\x1a\n':
        raise ValueError('not a PNG file')
    at, idat, header = 8, b'', None
    while at < len(data):
        length, kind = struct.unpack('>I4s', data[at:at + 8])
        body = data[at + 8:at + 8 + length]
        if kind == b'IHDR':
            header = struct.unpack('>IIBBBBB', body)
        elif kind == b'IDAT':
            idat += body
        at += 12 + length
    width, height, depth, colour, _, _, interlace = header
    if depth != 8 or colour not in CHANNELS or interlace:
        raise ValueError('unsupported PNG layout (depth %d, colour type %d)' % (depth, colour))
    step = CHANNELS[colour]
    stride = width * step
    raw = zlib.decompress(idat)
    previous = bytearray(stride)
    for row in range(height):
        start = row * (stride + 1)
        kind, line = raw[start], bytearray(raw[start + 1:start + 1 + stride])
        for i in range(stride):
            left = line[i - step] if i >= step else 0
            up = previous[i]
            upper_left = previous[i - step] if i >= step else 0
            if kind == 1:
                line[i] = (line[i] + left) & 255
            elif kind == 2:
                line[i] = (line[i] + up) & 255
            elif kind == 3:
                line[i] = (line[i] + (left + up) // 2) & 255
            elif kind == 4:
                p = left + up - upper_left
                pa, pb, pc = abs(p - left), abs(p - up), abs(p - upper_left)
                guess = left if pa <= pb and pa <= pc else (up if pb <= pc else upper_left)
                line[i] = (line[i] + guess) & 255
        yield from (bytes(line[i:i + step]) for i in range(0, stride, step))
        previous = line


def main(paths):
    failed = False
    for path in paths:
        colours = set()
        for pixel in pixels(path):
            colours.add(pixel)
            if len(colours) > 1:
                break
        blank = len(colours) < 2
        failed |= blank
        print('%s: %s' % (path, 'blank' if blank else 'more than one colour'))
    return 1 if failed or not paths else 0


if __name__ == '__main__':
    sys.exit(main(sys.argv[1:]))
