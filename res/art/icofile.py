"""Writing .ico, .bmp and .png files from plain pixel grids (no libraries needed)."""
import struct
import zlib


def ico_bytes(images):
    """images: list of (size, rows) where rows[y][x] = (r, g, b, a), largest first is customary.
    Each image is a 32-bit DIB with alpha plus an AND mask that is set exactly where alpha is zero, so
    systems that ignore alpha still see the right shape."""
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
    assert len(rows) == size and all(len(r) == size for r in rows)
    stride = ((size + 31) // 32) * 4
    info = struct.pack('<IiiHHIIiiII', 40, size, size * 2, 1, 32, 0, size * size * 4 + stride * size,
                       0, 0, 0, 0)
    xor = b''.join(bytes((b, g, r, a)) for row in reversed(rows) for (r, g, b, a) in row)
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


def png_bytes(width, height, rows):
    """8-bit RGB PNG; rows[y][x] = (r, g, b)."""
    raw = b''.join(b'\0' + b''.join(bytes(p[:3]) for p in row) for row in rows)

    def chunk(kind, data):
        return struct.pack('>I', len(data)) + kind + data + struct.pack('>I', zlib.crc32(kind + data))

    return (b'\x89PNG\r\n\x1a\n' + chunk(b'IHDR', struct.pack('>IIBBBBB', width, height, 8, 2, 0, 0, 0))
            + chunk(b'IDAT', zlib.compress(raw, 9)) + chunk(b'IEND', b''))
