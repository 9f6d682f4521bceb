"""Writing .ico and .bmp files from plain RGBA pixel grids (no libraries needed)."""
import struct


def ico_bytes(images):
    """images: list of (size, rows) where rows[y][x] = (r, g, b, a); 32-bit icons with an AND mask."""
    header = struct.pack('<HHH', 0, 1, len(images))
    entries, blobs = b'', b''
    offset = 6 + 16 * len(images)
    for size, rows in images:
        blob = _dib(size, rows)
        entries += struct.pack('<BBBBHHII', size % 256, size % 256, 0, 0, 1, 32, len(blob), offset)
        blobs += blob
        offset += len(blob)
    return header + entries + blobs


def _dib(size, rows):
    info = struct.pack('<IiiHHIIiiII', 40, size, size * 2, 1, 32, 0, 0, 0, 0, 0, 0)
    xor = b''.join(bytes((b, g, r, a)) for row in reversed(rows) for (r, g, b, a) in row)
    stride = ((size + 31) // 32) * 4
    mask = b''
    for row in reversed(rows):
        bits = bytearray(stride)
        for x, (_, _, _, a) in enumerate(row):
            if a == 0:
                bits[x // 8] |= 0x80 >> (x % 8)
        mask += bytes(bits)
    return info + xor + mask


def bmp_bytes(width, height, rows):
    """24-bit bitmap; rows[y][x] = (r, g, b)."""
    stride = (width * 3 + 3) & ~3
    pixels = b''
    for row in reversed(rows):
        line = b''.join(bytes((b, g, r)) for (r, g, b) in row)
        pixels += line + b'\0' * (stride - len(line))
    info = struct.pack('<IiiHHIIiiII', 40, width, height, 1, 24, 0, len(pixels), 2835, 2835, 0, 0)
    return struct.pack('<2sIHHI', b'BM', 14 + 40 + len(pixels), 0, 0, 54) + info + pixels
